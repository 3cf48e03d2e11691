"""What a package tells desktops of its program: metadata.py PACKAGE VERSION

Prints what is missing or does not fit together and fails if that is anything. "metadata.py
--self-test PACKAGE VERSION" proves that every fault is found.
"""

import configparser
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from xml.etree import ElementTree

ID = "app.hollowfernpike.Hollowfernpike"
ENTRY = f"applications/{ID}.desktop"
METAINFO = f"metainfo/{ID}.metainfo.xml"
SERVICE = f"dbus-1/services/{ID}.service"
LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"
TRANSLATED = ["summary", "developer_name", "p", "li", "keyword"]


def is_japanese(text):
    return bool(re.search("[\u3040-\u30ff\u4e00-\u9fff]", text or ""))


def key_file(path):
    parser = configparser.RawConfigParser(delimiters="=", strict=True)
    parser.optionxform = str
    parser.read_string(path.read_text(encoding="utf-8"))
    return parser


def wrong_names(share):
    """File names that are not of the one identifier."""
    wanted = {ENTRY, METAINFO, SERVICE}
    found = {str(file.relative_to(share)) for folder in ("applications", "metainfo", "dbus-1")
             for file in (share / folder).rglob("*") if file.is_file()}
    yield from (f"file name: {name}" for name in sorted(found ^ wanted))
    icons = {file.stem for file in (share / "icons").rglob("*.*")}
    yield from (f"icon: {name}" for name in sorted(icons ^ {ID, f"{ID}-symbolic"}))


def is_untranslated(parent, kind):
    """Whether some of its children of this kind have no twin in Japanese, or it has no children."""
    parts = parent.findall(kind)
    plain = [part.text for part in parts if not part.get(LANGUAGE)]
    japanese = [part.text for part in parts if part.get(LANGUAGE) == "ja"]
    return (not plain or len(plain) != len(japanese)
            or not all(plain) or not all(map(is_japanese, japanese)))


def wrong_metainfo(root, version):
    identifiers = {"id": ID, "icon[@type='stock']": ID, "provides/dbus[@type='user']": ID,
                   "launchable[@type='desktop-id']": f"{ID}.desktop"}
    for path, wanted in identifiers.items():
        if root.findtext(path) != wanted:
            yield f"{path} is {root.findtext(path)}"

    releases = [release.get("version") for release in root.iter("release")]
    if releases[:1] != [version]:
        yield f"newest release is {releases[:1]}"

    for release in root.findall("releases"): # their notes are the change log, in English
        root.remove(release)
    for kind in TRANSLATED:
        parents = [parent for parent in root.iter() if parent.find(kind) is not None]
        if not parents or any(is_untranslated(parent, kind) for parent in parents):
            yield f"{kind} without its twin in Japanese"


def wrong_entry(entry):
    main = entry["Desktop Entry"]
    if main.get("Icon") != ID:
        yield f"icon of the entry is {main.get('Icon')}"
    actions = main.get("Actions", "").rstrip(";").split(";")
    names = [("Desktop Entry", key) for key in ("GenericName", "Comment", "Keywords")]
    names += [(f"Desktop Action {action}", "Name") for action in actions]
    for group, key in names:
        here = entry[group] if entry.has_section(group) else {}
        if not here.get(key) or not is_japanese(here.get(f"{key}[ja]")):
            yield f"[{group}] {key} in both languages"


def wrong_service(service, share):
    section = service["D-BUS Service"]
    if section.get("Name") != ID:
        yield f"service is {section.get('Name')}"
    program = pathlib.PurePosixPath(section["Exec"])
    if not (share.parent.parent / program.relative_to("/")).is_file():
        yield f"service starts {program}"


def faults(share, version):
    found = list(wrong_names(share))
    if not found:
        found += wrong_metainfo(ElementTree.parse(share / METAINFO).getroot(), version)
        found += wrong_entry(key_file(share / ENTRY))
        found += wrong_service(key_file(share / SERVICE), share)
    return found


# How to spoil a file, and what is then found.
SPOILS = [
    (METAINFO, f"<id>{ID}", "<id>app.Other", "id is app.Other"),
    (METAINFO, f'"stock">{ID}', '"stock">other', "icon[@type='stock'] is other"),
    (METAINFO, f'"user">{ID}', '"user">other', "provides/dbus[@type='user'] is other"),
    (METAINFO, f'"desktop-id">{ID}', '"desktop-id">other',
     "launchable[@type='desktop-id'] is other.desktop"),
    (METAINFO, '<release version="', '<release version="9', "newest release is ['9VERSION']"),
    (METAINFO, "(?s)<releases>.*</releases>", "", "newest release is []"),
    *((METAINFO, rf'<{kind} xml:lang="ja">.*', "", f"{kind} without its twin in Japanese")
      for kind in TRANSLATED),
    (METAINFO, r'(<summary xml:lang="ja">)[^<]*', r"\1Not yet",
     "summary without its twin in Japanese"),
    (ENTRY, "Icon=.*", "Icon=other", "icon of the entry is other"),
    *((ENTRY, rf"{key}\[ja\]=.*\n", "", f"[Desktop Entry] {key} in both languages")
      for key in ("GenericName", "Comment", "Keywords")),
    (ENTRY, "\nComment=.*", "", "[Desktop Entry] Comment in both languages"),
    (ENTRY, r"(?s)(Action quitApp.*)Name\[ja\]=[^\n]*\n", r"\1",
     "[Desktop Action quitApp] Name in both languages"),
    (ENTRY, r"Action quitApp\]", "Action quit]",
     "[Desktop Action quitApp] Name in both languages"),
    (SERVICE, "Name=.*", "Name=other", "service is other"),
    (SERVICE, "Exec=.*", "Exec=/usr/bin/other", "service starts /usr/bin/other"),
]


def prove(root, version):
    share = root / "usr/share"
    assert faults(share, version) == []
    for name, pattern, replacement, expected in SPOILS:
        text = (share / name).read_text(encoding="utf-8")
        spoilt = re.sub(pattern, replacement, text, count=1)
        (share / name).write_text(spoilt, encoding="utf-8")
        found = faults(share, version)
        assert found == [expected.replace("VERSION", version)], f"{pattern}: {found}"
        (share / name).write_text(text, encoding="utf-8")
    for name in (ENTRY, METAINFO, SERVICE, f"icons/hicolor/scalable/apps/{ID}.svg"):
        shutil.move(share / name, (share / name).with_name("other.other"))
        assert faults(share, version) != [], name
        shutil.move((share / name).with_name("other.other"), share / name)
    assert faults(share, version) == []


def main():
    *option, package, version = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["dpkg-deb", "--extract", package, folder], check=True)
        if option == ["--self-test"]:
            prove(pathlib.Path(folder), version)
            return 0
        found = faults(pathlib.Path(folder) / "usr/share", version)
    for fault in found:
        print(fault)
    return 1 if found else 0


sys.exit(main())
