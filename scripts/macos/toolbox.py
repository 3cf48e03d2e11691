"""What the checks of platform/macos share: where the tools are, and the options of the compiler."""

import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parents[2]

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror", "-Wno-gnu",
            "-Wunguarded-availability"]

# What the toolkit's part of the room includes; the system's headers need not be there for the rest.
TOOLKIT = re.compile(r'#\s*include\s*["<](Q[A-Z]|platform/qt/)')


def fail(reason):
    sys.exit(f"{pathlib.Path(sys.argv[0]).name}: {reason}")


def newest(pattern, why):
    """The path of the highest version that matches."""
    def version(path):
        return [int(number) for number in re.findall(r"\d+", str(path))]
    found = sorted(pathlib.Path("/").glob(pattern.lstrip("/")), key=version)
    return found[-1] if found else fail(f"there is no {pattern}, {why}")


def clang():
    return shutil.which("clang++") or str(newest("/usr/bin/clang++-[0-9]*", "the compiler"))


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def all_sources(tree):
    """What is there for macOS alone."""
    rooms = [tree / "src/platform/macos", tree / "src/main/macos"]
    return sorted(path for room in rooms for path in room.iterdir() if path.suffix in (".mm", ".cpp"))


def sources(tree):
    """Of these the ones that do without the toolkit."""
    return [path for path in all_sources(tree)
            if not TOOLKIT.search(header_of(path).read_text() + path.read_text())]


def header_of(source):
    header = source.with_suffix(".h")
    return header if header.exists() else source


def declarations(tree, *kinds):
    folder = tree / "tests/platform/macos/declarations"
    return [option for kind in kinds for option in ("-isystem", str(folder / kind))]


def for_macos(tree):
    """Options by which a plain clang reads sources as it would for macOS, with our declarations and
    this machine's C and C++ libraries."""
    processor = platform.machine()
    triple = output("gcc", "-dumpmachine")
    cxx = newest("/usr/include/c++/[0-9]*", "the C++ library")
    own = pathlib.Path(output(clang(), "-print-resource-dir")) / "include"
    system = [cxx, pathlib.Path("/usr/include") / triple / "c++" / cxx.name, own,
              pathlib.Path("/usr/include") / triple, "/usr/include"]
    target = {"aarch64": "arm64"}.get(processor, processor)
    return [clang(), "-x", "objective-c++", "-target", f"{target}-apple-macosx12.0", "-std=c++20",
            "-fobjc-arc", *WARNINGS,
            # The C library has a macro of that name, and shows all of itself only to those who ask.
            "-U__nonnull", "-D_GNU_SOURCE", "-nostdinc++", *declarations(tree, "linux"),
            *[option for path in system for option in ("-isystem", str(path))],
            "-I", str(tree / "src"), *declarations(tree, "foundation", "frameworks")]


def toolkit(tree):
    """Options for sources that need the toolkit besides: this machine's headers of it."""
    qt = pathlib.Path("/usr/include") / output("gcc", "-dumpmachine") / "qt6"
    return [*declarations(tree, "toolkit"), "-isystem", str(qt),
            *[option for part in ("QtCore", "QtGui", "QtWidgets")
              for option in ("-isystem", str(qt / part))]]


def for_gnustep(tree):
    """Options by which clang compiles sources for GNUstep's Foundation, on the runtime that Debian
    has built it with."""
    runtime = newest("/usr/lib/gcc/*/[0-9]*/include/objc/objc.h", "libobjc's headers").parents[1]
    foundation = newest("/usr/include/**/GNUstep/Foundation/Foundation.h", "GNUstep's headers").parents[1]
    return [clang(), "-x", "objective-c++", "-std=c++20", "-fobjc-runtime=gcc", "-fblocks",
            # Not -fobjc-exceptions, with which exceptions of C++ would pass all who catch them.
            "-fconstant-string-class=NSConstantString", "-D_NATIVE_OBJC_EXCEPTIONS", "-DGNUSTEP=1", "-DGNUSTEP_BASE_LIBRARY=1",
            "-DGNU_RUNTIME=1", *WARNINGS, *declarations(tree, "gnustep"),
            "-isystem", str(foundation), "-isystem", str(runtime),
            "-I", str(tree / "src"), *declarations(tree, "frameworks")]


def runtime_libraries():
    """libBlocksRuntime comes before GNUstep, which has functions of the same names."""
    runtime = newest("/usr/lib/gcc/*/[0-9]*/libobjc.so", "libobjc")
    return ["-lBlocksRuntime", "-lgnustep-base", str(runtime)]


def run_all(commands):
    """Runs these at the same time, as many as there are cores, and ends with 1 if one fails."""
    waiting, running, status = list(commands), [], 0
    while waiting or running:
        while waiting and len(running) < (os.cpu_count() or 1):
            running.append(subprocess.Popen(waiting.pop(0)))
        status |= running.pop(0).wait() != 0
    sys.exit(status)
