"""Lines end without white space, files with exactly one newline."""

import tree

# Inputs of fuzzers: every byte counts, the last one too.
INPUTS = "tests/fuzz/seeds/"


def check(root):
    for name, lines in tree.texts(root):
        if name.startswith(INPUTS):
            continue
        for number, line in enumerate(lines, start=1):
            if line != line.rstrip():
                yield f"{name}:{number}: white space at the end of the line"
        if lines[-1]:
            yield f"{name}:{len(lines)}: no newline at the end of the file"
        elif lines[-2:] == ["", ""]:
            yield f"{name}:{len(lines) - 1}: empty line at the end of the file"


tree.run(check)
