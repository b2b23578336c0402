#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The command-line programs: what they print, where, and with which exit status.

    programs.py BIN
"""
import pathlib
import plistlib
import shutil
import subprocess
import sys
import tempfile
import unittest

BIN = None


def call(program, *arguments, stdin="", cwd=None):
    done = subprocess.run([str(BIN / program), *map(str, arguments)], input=stdin.encode(), capture_output=True, timeout=60, cwd=cwd)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


class Programs(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def test_osascript_prints_results_and_errors(self):
        cases = [
            (["-e", "6 * 7"], 0, "42\n", ""),
            (["-e", "set x to 2", "-e", "x & \"a\""], 0, "2, a\n", ""),
            (["-ss", "-e", "{1, \"a\", {b:2}}"], 0, "{1, \"a\", {b:2}}\n", ""),
            (["-e", "return"], 0, "", ""),
            (["-e", "log {1, \"two\"}"], 0, "", "1, two\n"),
            (["-e", "error \"boom\" number 3"], 1, "", "0:21: execution error: boom (3)\n"),
            (["-so", "-e", "error \"boom\" number 3"], 1, "0:21: execution error: boom (3)\n", ""),
            (["-e", "1 +"], 1, "", None),
            (["-l", "Klingon", "-e", "1"], 2, "", None),
            (["-q"], 2, "", None),
            (["/nowhere/x.scpt"], 1, "", "osascript: /nowhere/x.scpt: File not found.\n"),
        ]
        for arguments, status, output, errors in cases:
            with self.subTest(arguments):
                got = call("osascript", *arguments)
                self.assertEqual(got[:2], (status, output))
                if errors is not None:
                    self.assertEqual(got[2], errors)

    def test_osascript_reads_files_of_every_encoding_and_arguments(self):
        source = "on run argv\r\nreturn item 2 of argv & \"é\"\r\nend run\r\n"
        for name, content in [("utf8", source.encode()), ("bom", b"\xef\xbb\xbf" + source.encode()), ("utf16", source.encode("utf-16")),
                              ("roman", source.encode("mac_roman")), ("cr", source.replace("\r\n", "\r").encode()),
                              ("shebang", b"#!/usr/bin/osascript\n" + source.encode())]:
            with self.subTest(name):
                self.assertEqual(call("osascript", self.file(name, content), "a", "b"), (0, "bé\n", ""))
        self.assertEqual(call("osascript", "-", "x", "y", stdin=source), (0, "yé\n", ""))
        script = self.file("tool", f"#!{BIN / 'osascript'}\nreturn 5\n")
        script.chmod(0o755)
        self.assertEqual(subprocess.run([str(script)], capture_output=True).stdout, b"5\n")

    def test_compiling_storing_and_reading_back(self):
        source = "property n : 1\n\non double(x)\n\treturn x * 2 -- twice\nend double\n\nreturn double(n + 20)\n"
        path = self.file("s.applescript", source)
        for name in ("s.scpt", "s.scptd", "s.app"):
            self.assertEqual(call("osacompile", "-o", self.folder / name, path), (0, "", ""))
            self.assertEqual(call("osascript", self.folder / name), (0, "42\n", ""))
            self.assertEqual(call("osadecompile", self.folder / name), (0, source, ""))
        self.assertEqual(call("osacompile", "-x", "-o", self.folder / "r.scpt", self.folder / "s.scpt"), (0, "", ""))
        self.assertEqual(call("osascript", self.folder / "r.scpt"), (0, "42\n", ""))
        self.assertEqual(call("osadecompile", self.folder / "r.scpt")[0], 1)
        # Applets that are called differently do not get the same identifier.
        identifiers = []
        for name in ("C++", "C#", "Straße", "Stra--e", "日本", "本日", "My Tool", "a b&c"):
            self.assertEqual(call("osacompile", "-o", self.folder / (name + ".app"), path), (0, "", ""))
            identifiers.append(plistlib.loads((self.folder / (name + ".app/Contents/Info.plist")).read_bytes())["CFBundleIdentifier"])
        self.assertEqual(len(set(identifiers)), len(identifiers))
        self.assertEqual(identifiers[6], "local.applet.my-tool")
        for identifier in identifiers:
            self.assertRegex(identifier, r"^local\.applet\.[a-z0-9-]+$")
        # An applet that is compiled again keeps what it holds besides.
        extra = self.folder / "s.app/Contents/Resources/extra.txt"
        extra.write_text("kept")
        self.assertEqual(call("osacompile", "-o", self.folder / "s.app", "-e", "return 7"), (0, "", ""))
        self.assertEqual((call("osascript", self.folder / "s.app")[1], extra.read_text()), ("7\n", "kept"))

    def test_a_script_knows_its_file(self):
        script = self.file("where.applescript", "POSIX path of (path to me)")
        self.assertEqual(call("osascript", "where.applescript", cwd=self.folder), (0, f"{script}\n", ""))
        call("osacompile", "-o", self.folder / "where.scptd", script)
        self.assertEqual(call("osascript", self.folder / "where.scptd"), (0, f"{self.folder}/where.scptd/\n", ""))
        self.assertEqual(call("osascript", "-e", "POSIX path of (path to me)"), (0, f"{BIN}/osascript\n", ""))

    def test_nothing_is_written_when_it_fails(self):
        before = sorted(self.folder.iterdir())
        self.assertEqual(call("osacompile", "-o", self.folder / "x.scpt", "-e", "set set to set")[0], 1)
        self.assertEqual(call("osacompile", "-o", self.folder / "no/such/folder/x.scpt", "-e", "1")[0], 1)
        self.assertEqual(sorted(self.folder.iterdir()), before)

    def test_do_shell_script(self):
        self.assertEqual(call("osascript", "-e", "do shell script \"printf 'a\\\\nb\\\\n'\""), (0, "a\rb\n", ""))
        self.assertEqual(call("osascript", "-e", "do shell script \"echo oops >&2; exit 4\"")[2], "0:39: execution error: oops (4)\n")
        self.assertEqual(call("osascript", "-e", "do shell script \"printf 'x\\\\n'\" without altering line endings"), (0, "x\n\n", ""))


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
