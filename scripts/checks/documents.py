"""Files and tests that the documents name are there."""

import pathlib
import re

import tree

LINK = re.compile(r"\]\(([^)#:]+)(?:#[^)]*)?\)")
TEST = re.compile(r"`(\w+Test)(?:\.(\w+))?`")


def tests_of(root):
    """What defines tests, as "Suite" and "Suite.name"."""
    known = set()
    for _, lines in tree.texts(root, "tests/*.cpp"):
        for suite, name in re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)", "\n".join(lines), re.M):
            known |= {suite, f"{suite}.{name}", f"{suite}Test"}
    return known


def check(root):
    known = tests_of(root)
    for name, lines in tree.texts(root, "*.md"):
        folder = (root / name).parent
        for number, line in enumerate(lines, start=1):
            for target in LINK.findall(line):
                if not (folder / pathlib.Path(target)).exists():
                    yield f"{name}:{number}: {target} is not there"
            for suite, case in TEST.findall(line):
                test = f"{suite}.{case}" if case else suite
                if test not in known:
                    yield f"{name}:{number}: no test is called {test}"


tree.run(check)
