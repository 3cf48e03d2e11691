"""scripts/setup installs what is missing, asks for rights only then, and says what it lacks:
setup_test.py TREE

apt-get, sudo and id are stand-ins, the first two of which record their calls; dpkg's records are real.
"""

import pathlib
import platform
import shutil
import subprocess
import sys
import tempfile
import unittest

SETUP = pathlib.Path(sys.argv.pop(1)) / "scripts/setup"
REAL = ["awk", "bash", "dirname", "dpkg-query", "env", "grep", "sort"]
PACKAGES = """
# comment base
dpkg                 base        is on every system
no-such-package      extra       is on none
no-such-package-two  extra,more  is on none either
for-twelve@12        one         is not wanted on 13
for-thirteen@13      one         is not wanted on 12
"""


class SetupTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.tools = self.folder / "bin"
        self.tools.mkdir()
        self.calls = self.folder / "calls"
        self.calls.touch()
        shutil.copy(SETUP, self.folder)
        (self.folder / "packages").write_text(PACKAGES)
        for tool in REAL:
            (self.tools / tool).symlink_to(shutil.which(tool))
        self.stand_in("apt-get", f'echo "apt-get $DEBIAN_FRONTEND $*" >>{self.calls}')
        self.be_user(0)

    def stand_in(self, name, body):
        (self.tools / name).write_text(f"#!/bin/sh\n{body}\n")
        (self.tools / name).chmod(0o755)

    def be_user(self, number):
        self.stand_in("id", f"echo {number}")

    def setup_groups(self, *groups):
        return subprocess.run([self.folder / "setup", *groups], env={"PATH": str(self.tools)},
                              capture_output=True, text=True, check=False)

    def apt_calls(self):
        return [line.replace("-y -o DPkg::Lock::Timeout=300 ", "")
                for line in self.calls.read_text().splitlines()]

    def test_leaves_the_package_manager_alone_when_nothing_is_missing(self):
        self.be_user(1000)
        self.assertEqual(self.setup_groups("base").returncode, 0)
        self.assertEqual(self.apt_calls(), [])

    def test_installs_what_is_missing_and_nothing_else(self):
        self.assertEqual(self.setup_groups("base", "extra").returncode, 0)
        self.assertEqual(self.apt_calls(), [
            "apt-get noninteractive update",
            "apt-get noninteractive install --no-install-recommends "
            "no-such-package no-such-package-two"])

    def test_takes_the_packages_of_the_named_groups_only(self):
        self.assertEqual(self.setup_groups("more").returncode, 0)
        self.assertTrue(self.apt_calls()[-1].endswith("--no-install-recommends no-such-package-two"))

    def test_takes_the_package_that_this_release_has(self):
        is_twelve = platform.freedesktop_os_release().get("VERSION_ID") == "12"
        self.assertEqual(self.setup_groups("one").returncode, 0)
        self.assertTrue(self.apt_calls()[-1].endswith(
            f"--no-install-recommends {'for-twelve' if is_twelve else 'for-thirteen'}"))

    def test_asks_sudo_for_the_rights_it_lacks(self):
        self.be_user(1000)
        self.stand_in("sudo", f'echo sudo >>{self.calls}\n"$@"')
        self.assertEqual(self.setup_groups("more").returncode, 0)
        self.assertEqual(self.apt_calls()[:2], ["sudo", "apt-get noninteractive update"])

    def test_names_the_packages_when_it_has_no_rights(self):
        self.be_user(1000)
        done = self.setup_groups("base", "more")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no-such-package-two", done.stderr)
        self.assertEqual(self.apt_calls(), [])

    def test_fails_when_the_package_manager_does(self):
        self.stand_in("apt-get", "exit 100")
        self.assertEqual(self.setup_groups("extra").returncode, 100)

    def test_knows_no_group_that_the_list_does_not_name(self):
        self.assertEqual(self.setup_groups("comment").returncode, 2)


unittest.main()
