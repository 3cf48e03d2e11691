"""Which rooms of src/ may include which others, and which libraries."""

import re

import tree

INCLUDE = re.compile(r'\s*#\s*include\s*(["<])([^">]+)[">]')

# The rooms whose headers a room may include besides its own and platform/*.h.
DOORS = {
    "app": {"ui", "hotkeys", "model"},
    "ui": {"hotkeys", "model"},
    "hotkeys": {"model"},
    "model": set(),
    "platform": set(),
    "platform/posix": set(),
    "platform/macos": {"platform/posix", "platform/qt"},
    "platform/freedesktop": {"platform/posix"},
    "platform/qt": {"platform/freedesktop", "platform/posix"},
    "platform/x11": {"platform/freedesktop", "platform/posix"},
    "platform/wayland": {"platform/freedesktop", "platform/posix"},
    "platform/sway": {"platform/freedesktop", "platform/posix", "platform/wayland"},
    "platform/kde": {"platform/freedesktop", "platform/posix", "platform/wayland"},
    "platform/gnome": {"platform/freedesktop", "platform/posix", "platform/wayland"},
    "platform/portal": {"platform/freedesktop", "platform/posix", "platform/wayland"},
}

# Single headers of another room: the texts of the windows depend on the language.
WICKETS = {
    "ui": {"app/L10n.h", "app/Language.h"},
}

# The folders from which the files of a folder include our headers.
ROOTS = {
    "src": ["src"],
    "tests": ["src", "tests"],
    "benchmarks": ["src", "tests", "benchmarks"],
}

# The one room that may include every other, because it chooses the backends.
CHOOSER = "src/main/"

# Libraries that only some rooms may include, recognised by the header's name.
STANDARD = re.compile(r"[a-z_]+")
LIBRARIES = [
    ("the JSON library", re.compile(r"rapidjson/.*"), {"model", "platform/sway"}),
    ("Qt", re.compile(r"Q[A-Z].*|Qt.*/.*"),
     {"app", "main", "platform/freedesktop", "platform/gnome",
      "platform/kde", "platform/macos", "platform/portal", "platform/qt", "platform/sway", "platform/wayland", "platform/x11", "ui"}),
    ("the toolkit's plug-ins", re.compile(r"(qpa|private)/.*"),
     {"platform/kde", "platform/wayland", "ui"}),
    ("zlib", re.compile(r"zlib\.h"), {"ui"}),
    ("X11", re.compile(r"(xcb|X11|libsn)/.*"), {"platform/x11"}),
    ("Wayland", re.compile(r"wayland-.*|.*-client-protocol\.h|xkbcommon/.*"),
     {"platform/kde", "platform/wayland"}),
    ("macOS", re.compile(r"(AppKit|ApplicationServices|CoreFoundation|Foundation|ServiceManagement)/.*"),
     {"platform/macos"}),
    ("GLib", re.compile(r"(glib|gio|gobject|gmodule)[-/.].*|glib\.h"), {"platform/freedesktop"}),
]
STANDARD_ONLY = {"model", "hotkeys", "platform"}


def room_of(name):
    """The room of a file below src/: "model", or "platform/x11" for a backend."""
    folders = name.split("/")[:-1]
    return "/".join(folders[:2] if folders[:1] == ["platform"] else folders[:1])


def fault_of_own(root, name, header):
    """What is wrong with including a header of ours, if anything."""
    if ".." in header.split("/"):
        return "leaves its folder: includes are rooted at src/"
    roots = ROOTS[name.split("/")[0]]
    if not any((root / base / header).is_file() for base in roots):
        return f"is not there: includes are rooted at {'/, '.join(roots)}/"
    if not name.startswith("src/") or name.startswith(CHOOSER):
        return None
    room, other = room_of(name.removeprefix("src/")), room_of(header)
    if other in {room, "platform"} | DOORS.get(room, set()) or header in WICKETS.get(room, set()):
        return None
    allowed = ", ".join(sorted(DOORS.get(room, set()) | {"platform/*.h"}))
    return f"goes from {room} to {other}: besides its own headers {room} knows only {allowed}"


def fault_of_library(root, name, header):
    """What is wrong with including a header that is not ours, if anything."""
    if (root / "src" / header).is_file():
        return "is ours: include it in quotes"
    if not name.startswith("src/") or STANDARD.fullmatch(header):
        return None
    room = room_of(name.removeprefix("src/"))
    for library, pattern, rooms in LIBRARIES:
        if pattern.fullmatch(header):
            return None if room in rooms else f"is of {library}: only {', '.join(sorted(rooms))} may"
    return f"is not of the standard library: {room} knows no other" if room in STANDARD_ONLY else None


def check(root):
    for name, lines in tree.texts(root, "src/*.h", "src/*.cpp", "src/*.mm", "tests/*.h",
                                  "tests/*.cpp", "tests/*.mm", "benchmarks/*.h", "benchmarks/*.cpp"):
        for number, line in enumerate(lines, start=1):
            if include := INCLUDE.match(line):
                quote, header = include.groups()
                fault = (fault_of_own if quote == '"' else fault_of_library)(root, name, header)
                if fault:
                    yield f"{name}:{number}: {header} {fault}"


tree.run(check)
