"""What .clang-tidy asks for, over all sources and headers of ours: tidy.py ROOT BUILD

clang-tidy walks through every system header that a file includes, which takes it ten seconds;
clangd applies the same checks to the file alone, in one. So clangd has the first look, and
clang-tidy judges what it suspects (clangd sees faults in the macros of system headers, and does not
see where a silenced stretch ends). Two things only clang-tidy can do, and does for all of src/: the search along
paths, and for uses after a move. Tests need neither: they run under sanitizers. A file that was
found clean is not looked at again until it, a header of ours that it includes, or the
configuration changes.
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
PRECOMPILED = re.compile(r" -Winvalid-pch -include \S+/cmake_pch\.hxx\b")
FINDING = re.compile(r"^\S+:\d+:\d+: (error|warning): ")


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


def fingerprint(root, name, *settings):
    """Changes whenever looking at the file again might find something else."""
    digest = hashlib.sha256("\0".join([name, *settings]).encode())
    for file in closure(root, name):
        digest.update(f"{file.relative_to(root)}\0".encode())
        digest.update(hashlib.sha256(file.read_bytes()).digest())
    return digest.hexdigest()


def output_of(*command):
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


def looks_clean(root, build, name):
    code, output = output_of("clangd", f"--check={root / name}", f"--compile-commands-dir={build}",
                             "--check-lines=1-1", "--log=error", "--enable-config=0")
    return code == 0 and not output.strip()


def ask_clang_tidy(root, build, name, checks):
    code, output = output_of("clang-tidy", "-p", build, "--quiet", f"--checks={checks}",
                             root / name)
    found = [line.removeprefix(f"{root}/") for line in output.splitlines() if FINDING.match(line)]
    found = [f"{name}:1: {line}" if line.startswith("/") else line for line in found]
    return found or ([f"{name}:1: clang-tidy failed: {output}"] if code else [])


def look_at(root, build, name, clean):
    found = []
    if clean.exists():
        return found
    if not looks_clean(root, build, name):
        found = ask_clang_tidy(root, build, name, "")
    elif name.startswith("src/") and name.endswith(".cpp"):
        found = ask_clang_tidy(root, build, name, SLOW_CHECKS)
    if not found:
        clean.touch()
    return found


def commands_without_precompiled_headers(build, cache):
    """The compile commands of the build as they would be without such headers, in the cache too:
    clang cannot read another compiler's, and a file is judged by what it includes itself."""
    entries = json.loads((build / "compile_commands.json").read_text())
    for entry in entries:
        entry["command"] = PRECOMPILED.sub(" ", entry["command"])
    text = json.dumps(entries)
    file = cache / "compile_commands.json"
    if not file.is_file() or file.read_text() != text:
        file.write_text(text)
    return entries


def check(root, build):
    build = pathlib.Path(build).resolve()
    cache = build / "tidy-cache"
    cache.mkdir(exist_ok=True)
    commands = {entry["file"]: json.dumps(entry)
                for entry in commands_without_precompiled_headers(build, cache)}
    names = tree.files(root, "src/*.cpp", "src/*.h", "tests/*.cpp", "tests/*.h",
                       "benchmarks/*.cpp", "benchmarks/*.h")
    for name in names:
        if name.endswith(".cpp") and str(root / name) not in commands:
            yield f"{name}:1: no target compiles this file"

    settings = (output_of("clangd", "--version")[1], SLOW_CHECKS,
                *((root / file).read_text() for file in tree.files(root, "*.clang-tidy")))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        looks = [workers.submit(look_at, root, cache, name, cache / fingerprint(
                     root, name, *settings, commands.get(str(root / name), "")))
                 for name in names]
        for look in looks:
            yield from look.result()


tree.run(check)
