"""What .clang-tidy asks for, over all sources and headers of ours: tidy.py ROOT BUILD

clang-tidy looks at everything that a file includes, which takes half a minute for the toolkit and the
test library. So many sources are looked at together, as one file that includes them (a batch). A clean
batch is looked at again only when one of its sources, a header of ours that they include, or the
settings of the look change.
"""

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

PRECOMPILED = re.compile(r" -Winvalid-pch -include \S+/cmake_pch\.hxx\b")
INCLUDED = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
# What each program defines for itself.
ENTRY_POINT = re.compile(r"^\S+ (main|LLVMFuzzerTestOneInput|makeStory|makeStackingStory|makeBackend)\(", re.MULTILINE)
FINDING = re.compile(r"^\S+:\d+:\d+: (error|warning): ")

# The batches. Names at namespace scope are unique in each. Benchmarks are looked at with the tests whose
# headers they include.
BATCHES = {
    "src": re.compile("src/(?!platform/)"),
    "src/platform": re.compile("src/platform/"),
    "tests/desktop": re.compile("tests/(contracts|desktop|faults|package|show|ui)/|benchmarks/"),
    "tests": re.compile("tests/(?!(contracts|desktop|faults|package|show|ui)/)"),
}

# For a system whose compiler is not here: scripts/macos looks at it in its own way.
ELSEWHERE = re.compile(r"(src|tests)/(main|platform)/macos/")

SETTINGS = [".clang-tidy", "src/.clang-tidy", "tests/.clang-tidy"]

# The static analyzer takes what a file of this name includes for sources, and looks at them, too.
BATCH = "UnifiedSource.cpp"
NOT_FOR_BATCHES = "-bugprone-suspicious-include"
MAY_HIDE_NAMES = "-Wno-shadow"  # those of the other sources in the batch

# The static analyzer is not for tests, because the sanitizers that they run under find more, and not for
# benchmarks, because it takes their loops for mistakes. In a batch, programs have other names than main,
# so nothing asks for their linkage; and what they throw fails them, as it should.
FOR_SRC_ALONE = ",".join(["-clang-analyzer-*", "-bugprone-use-after-move", "-bugprone-exception-escape",
                          "-misc-use-internal-linkage"])


def options(command):
    """The options of a compiler's command, each with its value, without input and output."""
    found = []
    for word in shlex.split(command)[1:]:
        if word.startswith("-"):
            found.append((word,))
        elif found:
            found[-1] += (word,)
    return [option for option in found if option[0] not in ("-c", "-o")]


def compile_options(build):
    """The compiler's options for each source, by its path, without precompiled headers, because clang
    cannot read those of GCC."""
    return {file: options(PRECOMPILED.sub(" ", entry["command"]))
            for entry in json.loads((build / "compile_commands.json").read_text())
            for file in sources_in(entry["file"])}


def sources_in(file):
    """The sources that the build compiles together as this file, or the file itself."""
    return INCLUDED.findall(pathlib.Path(file).read_text()) if "/Unity/unity_" in file else [file]


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

    def closure(self, files):
        """The files and everything that they include, directly or not."""
        found, waiting = set(), list(files)
        while waiting:
            file = waiting.pop()
            if file not in found:
                found.add(file)
                waiting += self.of(file)
        return found


def batches(names):
    """The sources that are looked at together, by a name for them."""
    found = {batch: list(filter(files.match, names)) for batch, files in BATCHES.items()}
    return {batch: sources for batch, sources in found.items() if sources}


def unified(root, names):
    """The text of a file that includes the sources. The programs come last, and of those that begin
    with the same function all but one call it otherwise."""
    text, programs, begun = "", "", set()
    for number, name in enumerate(names):
        include = f'#include "{root / name}"\n'
        entries = set(ENTRY_POINT.findall((root / name).read_text()))
        if not entries:
            text += include
        elif known := sorted(entries & begun):
            programs += "".join(f"#define {entry} {entry}{number}\n" for entry in known)
            programs += include + "".join(f"#undef {entry}\n" for entry in known)
        else:
            programs = include + programs
        begun |= entries
    return text + programs


def fingerprint(root, files, *settings):
    """Changes whenever looking at the files again might find something else."""
    digest = hashlib.sha256(repr(settings).encode())
    for file in sorted(files):
        digest.update(f"{file.relative_to(root)}\0".encode())
        digest.update(hashlib.sha256(file.read_bytes()).digest())
    return digest.hexdigest()


def look(root, place, names, arguments):
    """What is wrong with these sources and with the headers of ours that they include."""
    place.mkdir(parents=True, exist_ok=True)
    (place / BATCH).write_text(unified(root, names))
    (place / "compile_commands.json").write_text(json.dumps([{
        "directory": str(place), "file": BATCH,
        "arguments": ["c++", *arguments, MAY_HIDE_NAMES, "-c", BATCH]}]))
    unwanted = [NOT_FOR_BATCHES, *([] if names[0].startswith("src/") else [FOR_SRC_ALONE])]
    done = subprocess.run(["clang-tidy", "-p", place, "--quiet", f"--checks={','.join(unwanted)}",
                           place / BATCH], capture_output=True, text=True, check=False)
    output = done.stdout + done.stderr
    found = {line.removeprefix(f"{root}/") for line in output.splitlines() if FINDING.match(line)}
    return found or ({f"{names[0]}:1: clang-tidy fails: {output}"} if done.returncode else set())


def settings_of(root, places):
    """Copies the settings of each folder to the place of its batches. Returns all that a look depends
    on besides the sources."""
    shutil.rmtree(places, ignore_errors=True)
    texts = [pathlib.Path(__file__).read_text(), subprocess.run(
        ["clang-tidy", "--version"], check=True, capture_output=True, text=True).stdout]
    for file in tree.files(root, *SETTINGS):
        texts += [file, (root / file).read_text()]
        (places / file).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(root / file, places / file)
    return texts


def files_here(root, ending):
    named = tree.files(root, f"src/*.{ending}", f"tests/*.{ending}", f"benchmarks/*.{ending}")
    return [name for name in named if not ELSEWHERE.match(name)]


def check(root, build):
    cache = pathlib.Path(build).resolve() / "tidy-cache"
    options_of, includes = compile_options(cache.parent), Includes(root)
    settings = settings_of(root, cache / "batches")

    yield from (f"{file}:1: stands for less than what is looked at together"
                for file in tree.files(root, "*.clang-tidy") if file not in SETTINGS)
    sources = files_here(root, "cpp")
    yield from (f"{name}:1: no target compiles this file" for name in sources
                if str(root / name) not in options_of)
    sources = [name for name in sources if str(root / name) in options_of]
    included = includes.closure(root / name for name in sources)
    yield from (f"{name}:1: no source includes this file"
                for name in files_here(root, "h")
                if root / name not in included)

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        looks = []
        for batch, names in batches(sources).items():
            each = chain.from_iterable(options_of[str(root / name)] for name in names)
            arguments = list(chain.from_iterable(dict.fromkeys(each)))
            clean = cache / fingerprint(root, includes.closure(root / name for name in names),
                                        names, arguments, settings)
            if not clean.exists():
                looks.append((clean, workers.submit(
                    look, root, cache / "batches" / batch, names, arguments)))
        told = set()
        for clean, found in looks:
            if not found.result():
                clean.touch()
            yield from sorted(found.result() - told)
            told |= found.result()


tree.run(check)
