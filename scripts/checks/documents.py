"""The files and tests that the documents name exist."""

import pathlib
import re

import tree

LINK = re.compile(r"\]\(([^)#:]+)(?:#[^)]*)?\)")
TEST = re.compile(r"`(\w+Test(?:\.\w+)?|[A-Z]\w*\.[A-Z]\w*)`")
DOTTED = re.compile(r"`(\w+(?:\.\w+)+)`")


def cases(root):
    """Tests in C++, as "Suite" and "Suite.name"."""
    for _, lines in tree.texts(root, "tests/*.cpp"):
        for suite, name in re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)", "\n".join(lines), re.M):
            yield from (suite, f"{suite}.{name}")


def commands(root):
    """Tests that are commands: those that CMake adds by their whole name, and those that it adds by
    functions with ${name} as a part of the name."""
    for _, lines in tree.texts(root, "*CMakeLists.txt"):
        text = "\n".join(lines)
        names = re.findall(r"^ *add_test\(NAME (\S+)", text, re.M)
        for function, body in re.findall(r"^function\((\w+) name\)\n(.*?)^endfunction", text,
                                         re.M | re.S):
            for pattern in re.findall(r"^ *add_test\(NAME (\S+)", body, re.M):
                for name in re.findall(rf"^ *{function}\(([\w.]+)", text, re.M):
                    names.append(pattern.replace("${name}", name))
        yield from (name for name in names if "$" not in name)


def check(root):
    added = set(commands(root))
    groups = {name.split(".")[0] for name in added}
    known = added | set(cases(root))
    for name, lines in tree.texts(root, "*.md"):
        folder = (root / name).parent
        for number, line in enumerate(lines, start=1):
            for target in LINK.findall(line):
                if not (folder / pathlib.Path(target)).exists():
                    yield f"{name}:{number}: {target} is not there"
            named = TEST.findall(line)
            named += (test for test in DOTTED.findall(line) if test.split(".")[0] in groups)
            for test in named:
                if test not in known:
                    yield f"{name}:{number}: no test is called {test}"


tree.run(check)
