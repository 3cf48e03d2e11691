"""Words that mark what is unfinished, a test that proves nothing, or a place that is not ours."""

import re

import tree

# Brackets keep this table from finding itself.
WORDS = [
    (r"\b(TO[D]O|FI[X]ME|X[X]X|HA[C]K)\b", "finish it now"),
    (r"\b(GTEST_[S]KIP|Q[S]KIP)\b", "a test that cannot run here must fail"),
    (r"\bDISA[B]LED_\w", "a test that does not run proves nothing"),
    (r"\b(EXPECT|ASSERT)_(TRUE\(tru[e]\)|FALSE\(fals[e]\))", "asserts nothing"),
    (r"\bSUC[C]EED\(", "asserts nothing"),
    (r"(//|@|\bwww\.)([\w-]+\.)*hollowfernpike\.(?!invalid\b)\w+", "the project has no site"),
    (r"\bNO[L]INT(NEXTLINE|BEGIN|END)?\b(?!\()", "name the check that is silenced"),
]

# Sleeping for a fixed time is right only between two looks at a condition.
SLEEP = re.compile(r"\b(sleep_for|usleep|sleep|qWait|qSleep)\(\s*(std::chrono::)?(\w+[({])?\s*\d")
WAITING = "tests/support/WaitUntil.h"

# Inputs that are to get a reader of texts into trouble.
SEEDS = "tests/fuzz/seeds/"


def check(root):
    for name, lines in tree.texts(root, f":!{SEEDS}"):
        for number, line in enumerate(lines, start=1):
            for pattern, why in WORDS:
                for found in re.finditer(pattern, line):
                    yield f"{name}:{number}: {found[0]}: {why}"
            if name.startswith("tests/") and name != WAITING and SLEEP.search(line):
                yield f"{name}:{number}: sleeps for a fixed time: wait for a condition with {WAITING}"


tree.run(check)
