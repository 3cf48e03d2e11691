"""eslint finds no fault in the extension of GNOME Shell, nor anything that its reviewers forbid."""

import json
import os
import subprocess
import tempfile

import tree

SERVICE = "data/gnome-shell/service.js"

# What the two packings import for it, and what the shell gives to all.
GLOBALS = ["Gio", "GLib", "Meta", "Shell", "Main", "InhibitShortcutsDialog", "global"]

RULES = {
    "eqeqeq": "error",
    "no-eval": "error",
    "no-implied-eval": "error",
    "no-new-func": "error",
    "no-shadow": "error",
    "no-throw-literal": "error",
    "no-unused-vars": ["error", {"varsIgnorePattern": "^Service$", "argsIgnorePattern": "^_"}],
    "no-var": "error",
    "prefer-const": "error",
    "require-await": "error",
    "no-restricted-syntax": ["error", {"selector": "MemberExpression[property.name=/_sync$/]",
                                       "message": "the shell stands still meanwhile"}],
}

# Debian's packages of modules are there, whatever node is installed.
MODULES = "/usr/share/nodejs"


def check(root):
    settings = {"root": True, "extends": "eslint:recommended", "rules": RULES,
                "parserOptions": {"ecmaVersion": 2020}, "env": {"es6": True},
                "globals": {name: "readonly" for name in GLOBALS}}
    with tempfile.NamedTemporaryFile("w", suffix=".json") as configuration:
        json.dump(settings, configuration)
        configuration.flush()
        done = subprocess.run(["eslint", "--no-eslintrc", "--format", "unix", "--config",
                               configuration.name, SERVICE], cwd=root,
                              env=os.environ | {"NODE_PATH": MODULES}, capture_output=True,
                              text=True, check=False)
    findings = [line.removeprefix(f"{root}/") for line in done.stdout.splitlines()
                if line.startswith(str(root))]
    return findings or ([f"eslint failed: {done.stdout}{done.stderr}"] if done.returncode else [])


tree.run(check)
