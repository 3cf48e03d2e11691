"""The layout of sources and headers is what clang-format makes of them."""

import subprocess

import tree


def check(root):
    names = tree.files(root, "*.h", "*.cpp", "*.mm")
    done = subprocess.run(["clang-format", "--dry-run", "-Werror", *names], cwd=root,
                          capture_output=True, text=True, check=False)
    found = [line for line in done.stderr.splitlines() if ": error: " in line]
    return found or ([f"clang-format failed: {done.stderr}"] if done.returncode else [])


tree.run(check)
