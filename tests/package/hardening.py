"""How a program guards itself against corrupted memory: hardening.py PROGRAM BUILD SOURCES

Prints what it lacks and fails if that is anything. "hardening.py --self-test COMPILER FOLDER" proves
that every lack is found.
"""

import json
import pathlib
import platform
import re
import subprocess
import sys


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def code_at(program, address, length):
    return output_of("objdump", "--disassemble", "--no-show-raw-insn",
                     f"--start-address={address}", f"--stop-address={address + length}", program)


def starts_with_a_mark(program, header):
    """Whether main, of which only the program's entry knows, begins as the target of a jump."""
    entry = int(re.search(r"Entry point address: +(0x[0-9a-f]+)", header)[1], 16)
    main = re.search(r"(?:%rip\),%rdi +# |mov +\$)(?:0x)?([0-9a-f]+)", code_at(program, entry, 64))
    return main and "endbr64" in code_at(program, int(main[1], 16), 4)


def unprobed(build, sources):
    """The sources whose large frames would skip pages. Programs without large frames do not tell."""
    commands = json.loads((pathlib.Path(build) / "compile_commands.json").read_text())
    return [f"large frames that touch every page: {entry['file']}" for entry in commands
            if entry["file"].startswith(f"{sources}/")
            and "-fstack-clash-protection" not in entry["command"].split()]


def lacks(program):
    header = output_of("readelf", "--wide", "--file-header", "--segments", program)
    dynamic = output_of("readelf", "--wide", "--dynamic", program)
    symbols = output_of("readelf", "--wide", "--dyn-syms", program)
    stack = re.search(r"GNU_STACK.* (\w+) +0x", header)
    needs = {
        "position-independent executable": re.search(r"FLAGS_1.*\bPIE\b", dynamic),
        "relocations that are read-only": "GNU_RELRO" in header,
        "all of them, from the start": re.search(r"\((FLAGS|FLAGS_1)\).*\b(BIND_)?NOW\b", dynamic),
        "stack without a right to run": stack and "E" not in stack[1],
        "libraries from nowhere but the system": not re.search(r"\((RPATH|RUNPATH)\)", dynamic),
        "guarded stack": "__stack_chk_fail" in symbols,
        "library functions that know sizes": re.search(r" __\w+_chk\b", symbols),
    }
    if "X86-64" in header:
        needs["marked targets of jumps"] = starts_with_a_mark(program, header)
    return [need for need, met in needs.items() if not met]


# Needs all of the guards.
SAMPLE = """
#include <stdio.h>
#include <string.h>
int main(int argc, char** argv) {
    char text[100];
    strcpy(text, argv[argc - 1]);
    return puts(text);
}
"""
# How to have a guard, how to do without, and what is then missing.
GUARDS = [
    ("-fPIE -pie", "-fno-PIE -no-pie", "position-independent executable"),
    ("-Wl,-z,relro", "-Wl,-z,norelro", "relocations that are read-only"),
    ("-Wl,-z,now", "-Wl,-z,lazy", "all of them, from the start"),
    ("-Wl,-z,noexecstack", "-Wl,-z,execstack", "stack without a right to run"),
    ("", "-Wl,-rpath,/nowhere", "libraries from nowhere but the system"),
    ("-fstack-protector-strong", "-fno-stack-protector", "guarded stack"),
    ("-D_FORTIFY_SOURCE=3", "", "library functions that know sizes"),
]
if platform.machine() == "x86_64":
    GUARDS.append(("-fcf-protection", "-fcf-protection=none", "marked targets of jumps"))


def prove(compiler, folder):
    folder.mkdir(exist_ok=True)
    (folder / "sample.c").write_text(SAMPLE)
    program = folder / "sample"
    for missing in [None, *GUARDS]:
        flags = " ".join(guard[1] if guard is missing else guard[0] for guard in GUARDS)
        subprocess.run([compiler, "-x", "c", "-O2", "-w", "-U_FORTIFY_SOURCE", *flags.split(),
                        "-o", program, folder / "sample.c"], check=True)
        found, expected = lacks(program), [missing[2]] if missing else []
        assert found == expected, f"with {flags}: {found}"
    for flag, count in ("-fstack-clash-protection", 0), ("-O2", 1):
        (folder / "compile_commands.json").write_text(
            json.dumps([{"file": "/src/a.c", "command": f"cc {flag}"}, {"file": "/b.c"}]))
        assert len(unprobed(folder, "/src")) == count, flag


def main():
    if sys.argv[1] == "--self-test":
        prove(sys.argv[2], pathlib.Path(sys.argv[3]))
        return 0
    found = lacks(sys.argv[1]) + unprobed(*sys.argv[2:])
    for lack in found:
        print(f"lacks: {lack}")
    return 1 if found else 0


sys.exit(main())
