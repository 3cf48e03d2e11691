"""What .clang-tidy asks for, over all sources and headers of ours: tidy.py ROOT BUILD

clang-tidy walks through everything that a file includes, which takes it ten seconds and more. So
the sources of a folder are looked at together, as one file that includes them all; that file alone
is looked through once. A source that was found clean is not looked at again until it, a header of
ours that it includes, or the configuration changes.
"""

import collections
import concurrent.futures
import hashlib
import itertools
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess

import tree

BATCHES = re.compile(r"/CMakeFiles/\w+\.dir/Unity/unity_\d+_cxx\.cxx$")
PRECOMPILED = re.compile(r" -Winvalid-pch -include \S+/cmake_pch\.hxx\b")
INCLUDED = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
FINDING = re.compile(r"^(\S+?):\d+:\d+: (error|warning): ")

# The file of a batch may include what nobody else may. The name is one by which the search along
# paths knows that what is included there are sources and no headers.
BATCH_CHECKS = "-bugprone-suspicious-include"
BATCH_NAME = "UnifiedSource.cpp"

# Tests run under sanitizers, which see what the search along paths would, and more.
TEST_CHECKS = ",-clang-analyzer-*,-bugprone-use-after-move"


def compile_commands(build):
    """The arguments with which each source is compiled, by its path, as they would be without
    precompiled headers: clang cannot read another compiler's, and a file is judged by what it
    includes itself."""
    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        arguments = shlex.split(PRECOMPILED.sub(" ", entry["command"]))
        arguments = arguments[:arguments.index("-o") if "-o" in arguments else -2]
        file = entry["file"]
        together = INCLUDED.findall(pathlib.Path(file).read_text()) if BATCHES.search(file) else []
        commands |= dict.fromkeys(together or [file], arguments)
    return commands


def closure(root, name, known):
    """The file and all headers of ours that it includes, directly or not."""
    found, waiting = set(), [root / name]
    while waiting:
        file = waiting.pop()
        if file in found or not file.is_file():
            continue
        found.add(file)
        if file not in known:
            known[file] = [root / base / header for header in INCLUDED.findall(file.read_text())
                           for base in ("src", "tests", "benchmarks")]
        waiting += known[file]
    return found


def fingerprint(root, files, *settings):
    """Changes whenever looking at the files again might find something else."""
    digest = hashlib.sha256("\0".join(settings).encode())
    for file in sorted(files):
        digest.update(f"{file.relative_to(root)}\0".encode())
        digest.update(hashlib.sha256(file.read_bytes()).digest())
    return digest.hexdigest()


class Folder:
    """Looks at sources of one folder."""

    def __init__(self, root, cache, folder):
        self.root, self.folder = root, folder
        self.place = cache / folder
        self.place.mkdir(parents=True, exist_ok=True)

    def findings(self, sources, commands):
        """What is wrong with these sources and with the headers of ours that they include."""
        batch = self.place / BATCH_NAME
        batch.write_text("".join(f'#include "{self.root / name}"\n' for name in sources))
        arguments = dict.fromkeys(itertools.chain.from_iterable(
            commands[str(self.root / name)] for name in sources))
        (self.place / "compile_commands.json").write_text(json.dumps([{
            "directory": str(self.place), "file": str(batch),
            "arguments": [*arguments, "-c", str(batch)]}]))
        checks = BATCH_CHECKS + (TEST_CHECKS if self.folder.startswith("tests/") else "")
        done = subprocess.run(["clang-tidy", "-p", self.place, "--quiet", f"--checks={checks}",
                               batch], capture_output=True, text=True, check=False)
        output = done.stdout + done.stderr
        found = [line for line in output.splitlines() if FINDING.match(line)]
        return found or ([f"{batch}:1:1: error: clang-tidy failed: {output}"]
                         if done.returncode else [])

    def look(self, sources, commands):
        """As findings(), with sources whose names get in each other's way looked at one by one."""
        found = self.findings(sources, commands)
        if len(sources) > 1 and any("[clang-diagnostic-error]" in line for line in found):
            found = [line for name in sources for line in self.findings([name], commands)]
        return {line.removeprefix(f"{self.root}/") for line in found}


def check(root, build):
    build = pathlib.Path(build).resolve()
    cache = build / "tidy-cache"
    commands = compile_commands(build)
    settings = [subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True,
                               check=True).stdout, BATCH_CHECKS, TEST_CHECKS]
    for file in tree.files(root, "*.clang-tidy"):
        settings.append((root / file).read_text())
        (cache / file).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(root / file, cache / file)

    known, covered, waiting = {}, set(), collections.defaultdict(dict)
    for name in tree.files(root, "src/*.cpp", "tests/*.cpp", "benchmarks/*.cpp"):
        if str(root / name) not in commands:
            yield f"{name}:1: no target compiles this file"
            continue
        files = closure(root, name, known)
        covered |= files
        clean = cache / fingerprint(root, files, name, *settings, *commands[str(root / name)])
        if not clean.exists():
            waiting[os.path.dirname(name)][name] = files, clean
    for name in tree.files(root, "src/*.h", "tests/*.h", "benchmarks/*.h"):
        if root / name not in covered:
            yield f"{name}:1: no source includes this file"

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        longest_first = sorted(waiting.items(), key=lambda item: (-len(item[1]), item[0]))
        looks = [(sources, workers.submit(Folder(root, cache, folder).look, list(sources), commands))
                 for folder, sources in longest_first]
        told = set()
        for sources, look in looks:
            found = look.result()
            faulty = {root / FINDING.match(line)[1] for line in found}
            for files, clean in sources.values():
                if faulty <= covered and not files & faulty:
                    clean.touch()
            yield from sorted(found - told)
            told |= found


tree.run(check)
