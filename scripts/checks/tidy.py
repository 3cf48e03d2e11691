"""What .clang-tidy asks for, over all sources and headers of ours: tidy.py ROOT BUILD

clangd applies the checks to the file alone, where clang-tidy walks through every system header
that the file includes and takes ten times as long. Two things only clang-tidy can do, and it does
them for src/: the path analyzer, and the search for uses after a move. (Tests need neither: they
run under sanitizers.) A file that was found clean is not looked at again until it, a header of
ours that it includes, or the configuration changes.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess

import tree

# What .clang-tidy asks for, less what clangd has answered.
SLOW_CHECKS = ("-bugprone-*,bugprone-use-after-move,-cppcoreguidelines-*,-misc-*,-modernize-*,"
               "-performance-*,-readability-*")
QUOTED = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
CLANGD_FINDING = re.compile(r"^E\[[^\]]*\] \[(?P<check>[^\]]+)\] Line (?P<line>\d+): (?P<text>.*)")
CLANG_TIDY_FINDING = re.compile(r"^\S+:\d+:\d+: (error|warning): ")


def closure(root, name):
    """The file and all headers of ours that it includes, directly or not."""
    known, waiting = set(), [root / name]
    while waiting:
        file = waiting.pop()
        if file in known or not file.is_file():
            continue
        known.add(file)
        for header in QUOTED.findall(file.read_bytes()):
            waiting += [root / base / header.decode() for base in ("src", "tests", "benchmarks")]
    return sorted(known)


def fingerprint(root, name, common):
    """Changes whenever looking at the file again might find something else."""
    digest = hashlib.sha256(f"{common}\0{name}\0".encode())
    for file in closure(root, name):
        digest.update(f"{file.relative_to(root)}\0".encode())
        digest.update(hashlib.sha256(file.read_bytes()).digest())
    return digest.hexdigest()


def output_of(*command):
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


def ask_clangd(root, build, name):
    code, output = output_of("clangd", f"--check={root / name}", f"--compile-commands-dir={build}",
                             "--check-lines=1-1", "--log=error", "--enable-config=0")
    found = [CLANGD_FINDING.match(line) for line in output.splitlines()]
    found = [f"{name}:{m['line']}: {m['text']} [{m['check']}]" for m in found if m]
    return found or ([f"{name}:1: clangd failed: {output}"] if code else [])


def ask_clang_tidy(root, build, name):
    code, output = output_of("clang-tidy", "-p", build, "--quiet", f"--checks={SLOW_CHECKS}",
                             root / name)
    output = output.replace(f"{root}/", "")
    found = [line for line in output.splitlines() if CLANG_TIDY_FINDING.match(line)]
    return found or ([f"{name}:1: clang-tidy failed: {output}"] if code else [])


def look_at(root, build, name, clean):
    if clean.exists():
        return []
    found = ask_clangd(root, build, name)
    if name.startswith("src/") and name.endswith(".cpp"):
        found += ask_clang_tidy(root, build, name)
    if not found:
        clean.touch()
    return found


def check(root, build):
    build = pathlib.Path(build).resolve()
    commands = (build / "compile_commands.json").read_text()
    compiled = {pathlib.Path(entry["file"]) for entry in json.loads(commands)}
    names = tree.files(root, "src/*.cpp", "src/*.h", "tests/*.cpp", "tests/*.h",
                       "benchmarks/*.cpp", "benchmarks/*.h")
    for name in names:
        if name.endswith(".cpp") and root / name not in compiled:
            yield f"{name}:1: no target compiles this file"

    cache = build / "tidy-cache"
    cache.mkdir(exist_ok=True)
    common = "\0".join([output_of("clangd", "--version")[1], SLOW_CHECKS, commands,
                        *(f"{file}\0{(root / file).read_text()}"
                          for file in tree.files(root, ".clang-tidy", "*/.clang-tidy"))])
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        looks = [workers.submit(look_at, root, build, name, cache / fingerprint(root, name, common))
                 for name in names]
        for look in looks:
            yield from look.result()


tree.run(check)
