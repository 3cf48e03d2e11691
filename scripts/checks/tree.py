"""What the checks share: the files of a tree, and how findings are told."""

import pathlib
import subprocess
import sys


def files(root, *patterns):
    """The files of the tree, relative to its root and sorted: those that git tracks, and new ones
    that it does not ignore."""
    listing = subprocess.run(
        ["git", "-c", "safe.directory=*", "-C", root, "ls-files", "-z", "--deduplicate",
         "--cached", "--others", "--exclude-standard", "--", *patterns],
        check=True, capture_output=True, text=True).stdout
    return [name for name in sorted(listing.split("\0")) if name and (root / name).is_file()]


def texts(root, *patterns):
    """Those of the files that hold text, each as (name, its lines); the last one is empty if the
    file ends with a newline."""
    for name in files(root, *patterns):
        data = (root / name).read_bytes()
        if b"\0" not in data:
            yield name, data.decode("utf-8", errors="replace").split("\n")


def run(check):
    """Runs check(root, *arguments) over the tree named first on the command line, prints what it
    finds, each as "file:line: what is wrong and why", and ends the process: with 1 if there was
    anything."""
    status = 0
    for finding in check(pathlib.Path(sys.argv[1]).resolve(), *sys.argv[2:]):
        print(finding, flush=True)
        status = 1
    sys.exit(status)
