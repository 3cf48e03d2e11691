"""Which libraries a package asks for: dependencies.py PACKAGE FILE...

Prints every FILE that comes neither with a package that PACKAGE depends on, directly or not, nor
with PACKAGE itself.
"""

import re
import subprocess
import sys


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def names(relations):
    """The packages that a dependency field names, alternatives among them."""
    return re.findall(r"(?:^|[,|])\s*([a-z0-9][a-z0-9+.-]+)", relations)


def installed():
    """What every name of an installed package, or of what it provides, depends on."""
    needs = {}
    for line in output_of("dpkg-query", "--show", "--showformat",
                          "${Package}\t${Provides}\t${Pre-Depends},${Depends}\n").splitlines():
        package, provides, depends = line.split("\t")
        for name in [package, *names(provides)]:
            needs.setdefault(name, set()).update([package, *names(depends)])
    return needs


def closure(package):
    needs = installed()
    known, waiting = set(), names(output_of("dpkg-deb", "--field", package, "Depends"))
    while waiting:
        name = waiting.pop()
        if name in needs and name not in known:
            known.add(name)
            waiting += needs[name]
    return known


def owners(files):
    """The packages of each file. Records from before /lib was a part of /usr name the old place."""
    places = [*files, *(file.removeprefix("/usr") for file in files)]
    found = subprocess.run(["dpkg-query", "--search", *places], check=False, capture_output=True,
                           text=True).stdout
    packages = {}
    for line in found.splitlines():
        names_before, place = line.rsplit(": ", 1)
        file = place if place.startswith("/usr/") else f"/usr{place}"
        packages.setdefault(file, set()).update(
            name.split(":")[0] for name in names_before.split(", "))
    return packages


def main():
    package, files = sys.argv[1], sys.argv[2:]
    known, packages = closure(package), owners(files)
    for file in files:
        if not packages.get(file, set()) & known:
            print(file)


main()
