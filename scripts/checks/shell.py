"""shellcheck finds no fault in the shell scripts."""

import subprocess

import tree


def check(root):
    scripts = [name for name, lines in tree.texts(root) if lines[0] in ("#!/bin/sh", "#!/bin/bash")]
    done = subprocess.run(["shellcheck", "--format=gcc", *scripts], cwd=root, capture_output=True,
                          text=True, check=False)
    return done.stdout.splitlines() or ([f"shellcheck failed: {done.stderr}"] if done.returncode
                                        else [])


tree.run(check)
