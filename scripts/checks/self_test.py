"""Proves that a check can fail: self_test.py CHECK TREE

Runs the check over a small tree without faults, then over the same tree with faults, then with the
faults mended. It must find something at every line named in BAD and nothing else.
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent

GOOD = {
    "src/platform/Clock.h": "#pragma once\n\nclass Clock;\n",
    "src/platform/x11/Atoms.h": '#include "platform/Clock.h"\n\n#include <xcb/xcb.h>\n',
    "src/platform/x11/Atoms.cpp": '#include "platform/x11/Atoms.h"\n',
    "src/model/List.h": "#pragma once\n\ninline int twice(int value) {\n    return 2 * value;\n}\n\n"
                        "int four();\nint eight();\n",
    "src/model/List.cpp": '#include "model/List.h"\n\n#include <vector>\n\n'
                          "int four() {\n    return twice(2);\n}\n",
    "src/model/User.cpp": '#include "model/List.h"\n\nint eight() {\n    return twice(4);\n}\n',
    "data/gnome-shell/service.js": "class Service {\n    constructor() {\n        global.log('');\n"
                                   "    }\n}\n",
    "docs/list.md": "Here is the [list](../src/model/List.h#one).\n",
    "scripts/greet": '#!/bin/sh\necho "$1"\n',
}

# For every check: the files that spoil the tree, and where it must find something.
BAD = {
    "documents": (
        {"README.md": "[here](docs/list.md) and [there](docs/nowhere.md)\n`NoSuchTest`\n"
                      "`ListTest.IsShort`, unlike `ListTest` and `ListTest.IsLong`\n"
                      "`list.isWide`, unlike `list.isDeep`, `whole.isRound` and `else.where`\n"
                      "`whole.isSquare`\n`PlainTest`\n`Plain.IsBent`, unlike `Plain.IsPlain`\n",
         "tests/model/ListTest.cpp": "TEST(ListTest, IsLong) {\n}\nTEST(Plain, IsPlain) {\n}\n",
         "tests/CMakeLists.txt": "function(list_check name)\n"
                                 "  add_test(NAME list.${name} COMMAND ${ARGN})\nendfunction()\n"
                                 "list_check(isDeep true)\n"
                                 "add_test(NAME whole.isRound COMMAND true)\n"},
        [f"README.md:{line}" for line in range(1, 8)]),
    "extension": (
        {"data/gnome-shell/service.js": "var name = 'x';\nclass Service {\n    constructor() {\n"
                                        "        eval(name);\n        this.file = Nobody;\n"
                                        "        this.bus.call_sync();\n    }\n}\n"},
        [f"data/gnome-shell/service.js:{line}" for line in (1, 4, 5, 6)]),
    "format": (
        {"src/model/Bad.h": "#pragma once\n\nint  wide;\n"},
        ["src/model/Bad.h:3"]),
    "includes": (
        {"src/model/Bad.h": "#include <gio/gio.h>\n#include <QString>\n#include <unistd.h>\n"
                            '#include "platform/x11/Atoms.h"\n#include "Nowhere.h"\n'
                            '#include "../model/List.h"\n#include <model/List.h>\n',
         "src/platform/x11/Bad.h": '#include "model/List.h"\n#include <rapidjson/reader.h>\n'
                                   '#include "platform/qt/Bad.h"\n',
         "src/platform/qt/Bad.h": "#include <xcb/xcb.h>\n",
         "src/ui/Bad.h": '#include "main/main.cpp"\n',
         "src/main/main.cpp": '#include "platform/x11/Atoms.h"\n',
         "src/app/Bad.cpp": '#include "platform/x11/Atoms.h"\n',
         "tests/model/BadTest.cpp": '#include "support/Nothing.h"\n'},
        [*(f"src/model/Bad.h:{line}" for line in range(1, 8)),
         *(f"src/platform/x11/Bad.h:{line}" for line in range(1, 4)),
         "src/platform/qt/Bad.h:1", "src/ui/Bad.h:1", "src/app/Bad.cpp:1",
         "tests/model/BadTest.cpp:1"]),
    "shell": (
        {"scripts/greet": "#!/bin/sh\necho $1\n"},
        ["scripts/greet:2"]),
    "tidy": (
        {"src/model/List.h": "#pragma once\n\ninline bool twice(int Value) { return Value > 1; }\n"
                             "int four(bool odd);\nint eight();\n",
         "src/model/List.cpp": '#include "model/List.h"\n\nint four(bool odd) {\n'
                               "    const int* number = nullptr;\n    if (odd) {\n"
                               "        return *number;\n    }\n    return twice(2);\n}\n",
         "src/model/Orphan.cpp": "int orphan;\n", "src/model/Orphan.h": "#pragma once\n",
         "src/platform/x11/.clang-tidy": "InheritParentConfig: true\n"},
        ["src/platform/x11/.clang-tidy:1", "src/model/List.h:3", "src/model/List.cpp:6",
         "src/model/List.cpp:8", "src/model/User.cpp:4", "src/model/Orphan.cpp:1",
         "src/model/Orphan.h:1"]),
    "whitespace": (
        {"src/model/Bad.h": "int a; \nint b;\r\n\n\n", "src/model/Bad.cpp": "int c;\nint d;"},
        ["src/model/Bad.h:1", "src/model/Bad.h:2", "src/model/Bad.h:4", "src/model/Bad.cpp:2"]),
    "words": (
        {"tests/BadTest.cpp": "// TO" "DO\n// FIX" "ME\n// X" "XX\n// HA" "CK\nGTEST_" "SKIP();\n"
                              "TEST(A, DISA" "BLED_B)\nEXPECT_TRUE(" "true);\nSUC" "CEED();\n"
                              "int a; // NO" "LINT\nstd::this_thread::sleep_for(1s);\n"
                              "// https:/" "/docs.hollowfernpike.example/list\n"
                              "// someone@" "hollowfernpike.org, someone@hollowfernpike.invalid\n"
                              "// ~/applications/app.hollowfernpike.Hollowfernpike.desktop\n",
         "tests/fuzz/seeds/documents/bad": "TO" "DO\n", "README.md": "TO" "DO\n"},
        ["README.md:1", *(f"tests/BadTest.cpp:{line}" for line in range(1, 13))]),
}


def write(tree, files):
    for name, text in files.items():
        (tree / name).parent.mkdir(parents=True, exist_ok=True)
        (tree / name).write_bytes(text.encode())


def compile_commands(tree, build):
    alone, *together = (tree / name for name in GOOD if name.endswith(".cpp"))
    unity = build / "Unity/unity_0_cxx.cxx"
    unity.parent.mkdir(parents=True)
    unity.write_text("".join(f'#include "{file}"\n' for file in together))
    (build / "compile_commands.json").write_text(json.dumps([{
        "directory": str(tree), "file": str(file),
        "command": f"c++ -std=c++20 -I {tree}/src -c {file} -o some.o"}
        for file in (alone, unity)]))


def findings(name, tree, build):
    done = subprocess.run([sys.executable, HERE / f"{name}.py", tree, *([build] if build else [])],
                          capture_output=True, text=True, check=False)
    print(done.stdout, done.stderr, sep="", end="")
    assert done.returncode == (1 if done.stdout else 0), f"ended with {done.returncode}"
    assert not done.stderr
    return done.stdout.splitlines()


def prove(name, settings, tree, build):
    for file in (".clang-format", ".clang-tidy"):
        shutil.copy(settings / file, tree)
    subprocess.run(["git", "init", "-q", tree], check=True)
    write(tree, GOOD)
    assert findings(name, tree, build) == [], "finds fault with a tree that has none"
    bad, expected = BAD[name]
    for _ in ("anew", "and again, with whatever it remembers"):
        write(tree, bad)
        found = findings(name, tree, build)
        for place in expected:
            assert any(line.startswith(f"{place}:") for line in found), f"misses {place}"
        places = {tuple(line.split(":")[:2]) for line in found}
        assert places == {tuple(place.split(":")) for place in expected}, "finds too much"
    for file in bad:
        (tree / file).unlink()
    write(tree, GOOD)
    assert findings(name, tree, build) == [], "finds fault with what is mended"


def main():
    name, settings = sys.argv[1], pathlib.Path(sys.argv[2])
    for variable in [name for name in os.environ if name.startswith("GIT_")]:
        del os.environ[variable]
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder).resolve()
        build = folder / "build" if name == "tidy" else None
        if build:
            compile_commands(folder / "tree", build)
        (folder / "tree").mkdir()
        prove(name, settings, folder / "tree", build)


main()
