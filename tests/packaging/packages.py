#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The Debian packages, made from the programs as they are built: what each holds, what it needs, and that it brings no scripts of its own.

    packages.py BUILD/bin
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BIN = None
OSA = ["osacompile", "osadecompile", "osalang", "osascript"]


def told(*words, **more):
    return subprocess.run([*map(str, words)], capture_output=True, text=True, check=True, **more).stdout


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, folder)
        # Compressing would take most of the time.
        made = subprocess.run(["cpack", "--config", str(BIN.parent / "CPackConfig.cmake"), "-B", str(folder), "-D", "CPACK_DEBIAN_COMPRESSION_TYPE=none"],
                              capture_output=True, text=True, cwd=folder)
        assert made.returncode == 0, made.stdout + made.stderr
        cls.files = {re.match(r"[^_]+", file.name).group(): file for file in folder.glob("*.deb")}
        cls.contents = {name: [line.split(None, 5) for line in told("dpkg-deb", "--contents", file).splitlines()] for name, file in cls.files.items()}

    def field(self, package, name):
        return told("dpkg-deb", "--field", self.files[package], name).strip()

    def needs(self, package):
        return {re.match(r"\S+", one.strip()).group() for one in self.field(package, "Depends").split(",")}

    def test_there_are_two_and_each_file_is_in_one(self):
        self.assertEqual(set(self.files), {"quoddle", "quoddle-osa"})
        names = {package: {row[5].split(" -> ")[0] for row in rows if not row[0].startswith("d")} for package, rows in self.contents.items()}
        self.assertEqual(names["quoddle"] & names["quoddle-osa"], set())
        programs = {package: sorted(name.rpartition("/")[2] for name in names[package] if name.startswith("./usr/bin/")) for package in names}
        self.assertEqual(programs["quoddle-osa"], OSA)
        self.assertEqual(programs["quoddle"], sorted(p.name for p in BIN.iterdir() if p.name.startswith("quoddle")))
        for package in names:
            for program in programs[package]:
                self.assertIn(f"./usr/share/man/man1/{program}.1.gz", names[package])
            self.assertIn(f"./usr/share/doc/{package}/copyright", names[package])
        self.assertIn("./usr/share/quoddle/dictionaries/StandardAdditions.sdef", names["quoddle-osa"])
        for file in ("applications/quoddle.desktop", "mime/packages/quoddle.xml", "icons/hicolor/scalable/apps/quoddle.svg", "zsh/vendor-completions/_quoddle"):
            self.assertIn("./usr/share/" + file, names["quoddle"])

    def test_what_they_need(self):
        self.assertEqual({re.match("[a-z]+", name).group() for name in self.needs("quoddle-osa")}, {"libc", "libedit", "libgcc", "libicu", "libstdc", "libxml"})
        self.assertTrue(any(name.startswith("libqt6widgets6") for name in self.needs("quoddle")))
        version = told(BIN / "osascript", "--version").split()[-1]
        self.assertIn(f"quoddle-osa (= {version})", self.field("quoddle", "Depends"))
        for package in self.files:
            self.assertEqual(self.field(package, "Version"), version)
            self.assertIn("authors", self.field(package, "Maintainer"))
            description = self.field(package, "Description").splitlines()
            self.assertTrue(len(description) > 3 and all(len(line) <= 80 for line in description), description)

    def test_they_change_nothing_but_their_files(self):
        for package, file in self.files.items():
            members = told("dpkg-deb", "--ctrl-tarfile", file, errors="replace")
            self.assertEqual(set(re.findall(r"\./([a-z0-9]+)\0", members)), {"control", "md5sums"})
            for permissions, owner, *_, name in self.contents[package]:
                self.assertEqual(owner, "root/root")
                self.assertTrue(name.startswith("./usr/"), name)
                expected = "drwxr-xr-x" if name.endswith("/") else "lrwxrwxrwx" if " -> " in name else "-rwxr-xr-x" if "/bin/" in name else "-rw-r--r--"
                self.assertEqual(permissions, expected, name)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    os.umask(0o022)
    unittest.main(verbosity=2)
