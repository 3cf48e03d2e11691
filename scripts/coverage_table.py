"""Prints how many lines the tests reach of each room, and of the files below the bound:
coverage_table.py SUMMARY, which gcovr writes in JSON. Ends with 1 if a room of the logic is below the
bound. Backends may be: they handle failures that no desktop shows on demand."""

import collections
import json
import sys

BOUND = 90  # percent of the lines
LOGIC = {"app", "hotkeys", "model", "ui"}


def room_of(name):
    folders = name.split("/")[1:-1]
    return "/".join(folders[:2])


def percent(lines):
    covered, total = lines
    return 100 * covered / total if total else 100


def row(name, lines):
    return f"{name:44} {lines[0]:6} of {lines[1]:6} {percent(lines):6.1f} %"


def main():
    with open(sys.argv[1], encoding="utf-8") as summary:
        files = {file["filename"]: (file["line_covered"], file["line_total"])
                 for file in json.load(summary)["files"]}
    rooms = collections.defaultdict(lambda: (0, 0))
    for name, (covered, total) in files.items():
        before = rooms[room_of(name)]
        rooms[room_of(name)] = (before[0] + covered, before[1] + total)
    for room, lines in sorted(rooms.items()):
        print(row(room, lines))
    below = [(name, lines) for name, lines in files.items() if percent(lines) < BOUND]
    for name, lines in sorted(below, key=lambda file: percent(file[1])):
        print(row(name, lines))
    weak = [room for room in sorted(LOGIC) if percent(rooms.get(room, (0, 1))) < BOUND]
    if weak:
        sys.exit(f"less than {BOUND} % of the lines: {', '.join(weak)}")


main()
