"""What .clang-tidy asks for, over all sources and headers of ours: tidy.py ROOT BUILD

clang-tidy walks through everything that a file includes, which takes it ten seconds and more. So
the sources of a folder are looked at together, as one file that includes them, and that file alone
is walked through. A source that was found clean is not looked at again until it, a header of ours
that it includes, or the configuration changes.
"""

import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
from itertools import chain

import tree

COMPILED_TOGETHER = re.compile(r"/CMakeFiles/\w+\.dir/Unity/unity_\d+_cxx\.cxx$")
PRECOMPILED = re.compile(r" -Winvalid-pch -include \S+/cmake_pch\.hxx\b")
INCLUDED = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
ENTRY_POINT = re.compile(r"^int (main|LLVMFuzzerTestOneInput)\(", re.MULTILINE)
FINDING = re.compile(r"^(\S+?):\d+:\d+: (error|warning): ")

# Folders that share a namespace are looked at together, too: their names are unique among them all.
TOGETHER = {
    "src": re.compile("src/(?!platform/)"),
    "tests/desktop": re.compile("tests/(desktop|faults|package)/"),
    "tests/model": re.compile("tests/(app|hotkeys|model)/"),
    "benchmarks": re.compile("benchmarks/"),
}

# By this name the search along paths knows that what is included there are sources and no headers.
BATCH = "UnifiedSource.cpp"
NOT_FOR_BATCHES = "-bugprone-suspicious-include"

# Tests run under sanitizers, which see what the search along paths would, and more; benchmarks have
# loops that it takes for mistakes.
NOT_BESIDE_SRC = "-clang-analyzer-*,-bugprone-use-after-move"


def options(command):
    """The options of a compiler's command, each with its value, less input and output."""
    found = []
    for word in shlex.split(command)[1:]:
        if word.startswith("-"):
            found.append((word,))
        elif found:
            found[-1] += (word,)
    return [option for option in found if option[0] not in ("-c", "-o")]


def compile_options(build):
    """The compiler's options for each source, by its path, as they would be without precompiled
    headers: clang cannot read another compiler's, and a file is judged by what it includes
    itself."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        sources = [entry["file"]]
        if COMPILED_TOGETHER.search(entry["file"]):
            sources = INCLUDED.findall(pathlib.Path(entry["file"]).read_text())
        found |= dict.fromkeys(sources, options(PRECOMPILED.sub(" ", entry["command"])))
    return found


class Includes:
    """What our files include of ours."""

    def __init__(self, root):
        self.root = root
        self.known = {}

    def of(self, file):
        if file not in self.known:
            named = [self.root / base / header for header in INCLUDED.findall(file.read_text())
                     for base in ("src", "tests", "benchmarks")]
            self.known[file] = [header for header in named if header.is_file()]
        return self.known[file]

    def closure(self, file):
        """The file and everything that it includes, directly or not."""
        found, waiting = set(), [file]
        while waiting:
            file = waiting.pop()
            if file not in found:
                found.add(file)
                waiting += self.of(file)
        return found


def fingerprint(root, files, *settings):
    """Changes whenever looking at the files again might find something else."""
    digest = hashlib.sha256("\0".join(settings).encode())
    for file in sorted(files):
        digest.update(f"{file.relative_to(root)}\0".encode())
        digest.update(hashlib.sha256(file.read_bytes()).digest())
    return digest.hexdigest()


def batch_of(name):
    """The sources that are looked at together: those that share a namespace."""
    for batch, files in TOGETHER.items():
        if files.match(name):
            return batch
    folders = name.split("/")[:-1]
    return "/".join(folders[:3 if folders[1] == "platform" else 2])


def batches(root, names):
    """Places for batches and the sources of each, long lists first. No batch has more than one
    entry point of a program."""
    found = collections.defaultdict(list)
    programs = collections.Counter()
    for name in names:
        batch, program = batch_of(name), 0
        if ENTRY_POINT.search((root / name).read_text()):
            program = programs[batch]
            programs[batch] += 1
        found[f"{batch}/{program}"].append(name)
    return sorted(found.items(), key=lambda batch: (-len(batch[1]), batch[0]))


def look(root, place, names, options_of):
    """What is wrong with these sources and with the headers of ours that they include."""
    place.mkdir(parents=True, exist_ok=True)
    (place / BATCH).write_text("".join(f'#include "{root / name}"\n' for name in names))
    each = chain.from_iterable(options_of[str(root / name)] for name in names)
    (place / "compile_commands.json").write_text(json.dumps([{
        "directory": str(place), "file": BATCH,
        "arguments": ["c++", *chain.from_iterable(dict.fromkeys(each)), "-c", BATCH]}]))
    unwanted = [NOT_FOR_BATCHES, *([] if names[0].startswith("src/") else [NOT_BESIDE_SRC])]
    done = subprocess.run(
        ["clang-tidy", "-p", place, "--quiet", f"--checks={','.join(unwanted)}",
         f"--header-filter=^{re.escape(str(root))}/(src|tests|benchmarks)/", place / BATCH],
        capture_output=True, text=True, check=False)
    output = done.stdout + done.stderr
    found = {line.removeprefix(f"{root}/") for line in output.splitlines() if FINDING.match(line)}
    return found or ({f"{names[0]}:1:1: error: {output}"} if done.returncode else set())


def check(root, build):
    build = pathlib.Path(build).resolve()
    cache = build / "tidy-cache"
    options_of, includes = compile_options(build), Includes(root)
    settings = [subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True,
                               text=True).stdout, NOT_FOR_BATCHES, NOT_BESIDE_SRC]
    for file in tree.files(root, "*.clang-tidy"):
        settings.append((root / file).read_text())
        (cache / file).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(root / file, cache / file)

    seen, waiting = set(), {}
    for name in tree.files(root, "src/*.cpp", "tests/*.cpp", "benchmarks/*.cpp"):
        if str(root / name) not in options_of:
            yield f"{name}:1: no target compiles this file"
            continue
        files = includes.closure(root / name)
        seen |= files
        clean = cache / fingerprint(root, files, name, *settings, str(options_of[str(root / name)]))
        if not clean.exists():
            waiting[name] = files, clean
    for name in tree.files(root, "src/*.h", "tests/*.h", "benchmarks/*.h"):
        if root / name not in seen:
            yield f"{name}:1: no source includes this file"

    told = set()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        looks = [(names, workers.submit(look, root, cache / place, names, options_of))
                 for place, names in batches(root, waiting)]
        for names, result in looks:
            found = result.result()
            faulty = {root / FINDING.match(line)[1] for line in found}
            # Not all is looked for in what cannot be compiled.
            is_whole = faulty <= seen and not any("[clang-diagnostic-" in line for line in found)
            for files, clean in map(waiting.get, names):
                if is_whole and not files & faulty:
                    clean.touch()
            yield from sorted(found - told)
            told |= found


tree.run(check)
