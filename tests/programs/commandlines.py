#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the programs say about their command lines and about errors in scripts: usage, versions, checks, and marked lines on a terminal.

    commandlines.py BIN
"""
import json
import os
import pathlib
import pty
import shutil
import subprocess
import sys
import tempfile
import unittest

BIN = None


def call(program, *words, stdin="", cwd=None):
    done = subprocess.run([str(BIN / program), *words], input=stdin, capture_output=True, text=True, timeout=60, cwd=cwd)
    return done.returncode, done.stdout, done.stderr


def on_terminal(program, *words, cwd=None):
    """Answers what a program writes to a terminal that is its standard error."""
    ours, theirs = pty.openpty()
    process = subprocess.Popen([str(BIN / program), *words], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=theirs, cwd=cwd)
    os.close(theirs)
    said = b""
    try:
        while part := os.read(ours, 4096):
            said += part
    except OSError:  # the other side has been closed
        pass
    os.close(ours)
    process.wait(60)
    return said.decode().replace("\r\n", "\n")


class CommandLines(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def test_wrong_missing_and_doubled_options(self):
        """Nothing is run or written then."""
        (self.folder / "s.applescript").write_text("do shell script \"touch ran\"")
        for program, words, complaint in [
            ("osascript", ["-q", "s.applescript"], "unknown option -q"),
            ("osascript", ["--quick", "s.applescript"], "unknown option --quick"),
            ("osascript", ["-iq"], "unknown option -q"),
            ("osascript", ["-e"], "option -e needs a value"),
            ("osascript", ["-l", "AppleScript", "-l", "AppleScript", "s.applescript"], "option -l is given twice"),
            ("osascript", ["-ii", "s.applescript"], "option -i is given twice"),
            ("osascript", ["-sz", "s.applescript"], "option -s has no flag z"),
            ("osascript", ["-l", "Klingon", "s.applescript"], "there is no language \"Klingon\""),
            ("osacompile", ["-q", "s.applescript"], "unknown option -q"),
            ("osacompile", ["-xx", "s.applescript"], "option -x is given twice"),
            ("osacompile", ["s.applescript", "-o"], "option -o needs a value"),
            ("osacompile", ["-o", "a.scpt", "-ob.scpt", "s.applescript"], "option -o is given twice"),
            ("osacompile", ["-o", "", "s.applescript"], "option -o needs a name"),
            ("osacompile", ["-e", "beep", "s.applescript"], "not by both"),
            ("osacompile", ["-", "-"], "standard input is given twice"),
            ("osacompile", ["--json", "s.applescript"], "option --json needs --check"),
            ("osacompile", ["--check", "--check", "s.applescript"], "option --check is given twice"),
            ("osacompile", ["--check", "-o", "a.scpt", "s.applescript"], "does not go with -o"),
            ("osacompile", ["-x", "--check", "s.applescript"], "does not go with -x"),
            ("osadecompile", [], "arguments are missing"),
            ("osadecompile", ["s.applescript", "s.applescript"], "too many arguments"),
            ("osadecompile", ["-x", "s.applescript"], "unknown option -x"),
            ("osalang", ["-lL"], "exclude each other"),
            ("osalang", ["-ll"], "option -l is given twice"),
            ("osalang", ["AppleScript"], "too many arguments"),
            ("quoddle", [], "a command is missing"),
            ("quoddle", ["fly"], "unknown command fly"),
            ("quoddle", ["--fly"], "unknown command --fly"),
            ("quoddle", ["run"], "run needs APPLET"),
            ("quoddle", ["open"], "open needs FILE"),
            ("quoddle", ["list", "all"], "too many"),
            ("quoddle", ["install", "a.app", "b.app"], "too many"),
            ("quoddle", ["install", "--all"], "unknown option --all"),
            ("quoddle-shell", [], None),
            ("quoddle-dialogs", [], None),
            ("quoddle-clipboard", [], None),
            ("quoddle-fetch", [], None),
            ("quoddle-preview", [], None),
        ]:
            with self.subTest(program=program, words=words):
                status, output, errors = call(program, *words, cwd=self.folder)
                self.assertEqual((status, output), (2, ""))
                if complaint:
                    self.assertIn(complaint, errors.splitlines()[0])
                    self.assertEqual(errors.splitlines()[1].split()[:2], ["usage:", program])
                self.assertTrue(errors)
                self.assertEqual([p.name for p in self.folder.iterdir()], ["s.applescript"])

    def test_options_that_look_like_files_and_files_that_look_like_options(self):
        (self.folder / "-e").write_text("return 1")
        for program, words, expected in [
            ("osascript", ["--", "-e"], (0, "1\n", "")),
            ("osascript", ["-e", "-5"], (0, "-5\n", "")),
            ("osascript", ["-e", ""], (0, "", "")),
            ("osascript", ["-ss", "-so", "-e", "\"a\""], (0, "\"a\"\n", "")),
            ("osadecompile", ["--", "-e"], (0, "return 1\n", "")),
            ("osacompile", ["--check", "--", "-e"], (0, "", "")),
            ("osacompile", ["-xo", "made", "--", "-e"], (0, "", "")),
            ("osascript", ["made"], (0, "1\n", "")),
        ]:
            with self.subTest(words):
                self.assertEqual(call(program, *words, cwd=self.folder), expected)

    def test_names_do_not_control_the_terminal(self):
        name = "\x1b[31m\x9b31m"
        for program, *words in [("osascript", name), ("osascript", "--" + name), ("osacompile", name), ("osacompile", "-e", "1", "-o", f"no/{name}"), ("osacompile", "--check", name),
                                ("osadecompile", name), ("quoddle", name), ("quoddle", "install", name), ("quoddle-shell", name)]:
            with self.subTest([program, *words]):
                status, output, errors = call(program, *words, cwd=self.folder)
                self.assertGreater(status, 0)
                self.assertIn("31m", output + errors)
                self.assertNotRegex(output + errors, "[\x1b\x9b]")
        self.assertIn("unknown option -é\n", call("osascript", "-é")[2])

    def test_every_program_tells_its_version_and_use(self):
        programs = [p.name for p in BIN.iterdir() if p.name.startswith(("osa", "quoddle"))]
        self.assertGreaterEqual(len(programs), 10)
        versions = set()
        for program in programs:
            with self.subTest(program):
                status, output, errors = call(program, "--version")
                self.assertEqual((status, errors), (0, ""))
                self.assertRegex(output, rf"^{program} \(Quoddle\) \d+\.\d+\.\d+\n$")
                versions.add(output.split()[-1])
                status, output, errors = call(program, "--help")
                self.assertEqual((status, errors), (0, ""))
                self.assertIn(program, output.splitlines()[0])
        self.assertEqual(len(versions), 1)
        self.assertEqual(call("osalang", "-l", "--version"), call("osalang", "--version"))

    def test_checking_scripts(self):
        good, bad, later = self.folder / "good.applescript", self.folder / "bäd \"1\".applescript", self.folder / "later.applescript"
        good.write_text("on run\nend run\n")
        bad.write_text("set a to 1\r\nset |é𝄞| to )\n", newline="")
        later.write_bytes("set x to 1\n\n\tset word to to\n".encode("utf-16"))
        before = sorted(self.folder.iterdir())
        self.assertEqual(call("osacompile", "--check", good), (0, "", ""))
        self.assertEqual(call("osacompile", "--check", "-e", "set x to )"), (1, "-:1:10: Expected expression but found “)”.\n", ""))
        self.assertEqual(call("osacompile", "--check", stdin="\n\n)"), (1, "-:3:1: Expected expression but found “)”.\n", ""))
        status, output, errors = call("osacompile", "--check", bad, good, "nowhere", later, "-", stdin=")", cwd=self.folder)
        self.assertEqual((status, errors), (1, ""))
        lines = output.splitlines()
        for line, start in zip(lines, (f"{bad}:2:13: Expected ", "nowhere:1:1: No such file", f"{later}:3:14: Expected ", "-:1:1: Expected "), strict=True):
            self.assertTrue(line.startswith(start), line)
        (self.folder / "a\nb").write_text(")")
        (self.folder / "folder").mkdir()
        self.assertEqual(call("osacompile", "--check", "a\nb", "folder", cwd=self.folder),
                         (1, "a?b:1:1: Expected expression but found “)”.\nfolder:1:1: There is no script in this folder.\n", ""))
        (self.folder / "a\nb").unlink()
        (self.folder / "folder").rmdir()
        status, output, errors = call("osacompile", "--json", "--check", bad, good, "nowhere", later, cwd=self.folder)
        self.assertEqual((status, errors), (1, ""))
        told = json.loads(output)
        self.assertEqual([[one[key] for key in ("file", "line", "column", "endLine", "endColumn", "number")] for one in told],
                         [[str(bad), 2, 13, 2, 14, -2741], ["nowhere", 1, 1, 1, 1, -43], [str(later), 3, 14, 3, 16, -2741]])
        self.assertEqual([f"{one['file']}:{one['line']}:{one['column']}: {one['message']}" for one in told], lines[:3])
        self.assertEqual(json.loads(call("osacompile", "--check", "--json", good)[1]), [])
        self.assertEqual(sorted(self.folder.iterdir()), before)

    def test_a_terminal_shows_the_place_of_an_error(self):
        for source, shown in [
            ("set b to 1\nset c to )\n", "  2 | set c to )\n    |          ^\n"),
            ("\tset é to 日本 & )", "  1 |     set é to 日本 & )\n    |                     ^\n"),
            ("log \"\u1112\u1161\u11ab e\u0301\" & )", "  1 | log \"\u1112\u1161\u11ab e\u0301\" & )\n    | " + " " * 13 + "^\n"),
            ("return 1 +", "  1 | return 1 +\n    |           ^\n"),
            ("beep\rerror \"\x1b[31m\" number 7", "  2 | error \"?[31m\" number 7\n    | ^^^^^^^^^^^^^^^^^^^^^^\n"),
            ("x" * 300 + " to (3", "  1 | …" + "x" * 34 + " to (3\n    |  " + " " * 40 + "^\n"),
        ]:
            with self.subTest(source):
                (self.folder / "s").write_text(source, newline="")
                self.assertIn(shown, on_terminal("osascript", "s", cwd=self.folder))
        (self.folder / "s").write_text("set x to ) & \"" + "\u0301" * 100_000 + "\"")
        self.assertLess(len(on_terminal("osascript", "s", cwd=self.folder)), 3000)
        self.assertNotIn("|", call("osascript", "s", cwd=self.folder)[2])
        self.assertIn("  1 | set c to )\n", on_terminal("osacompile", "-o", "made", "-e", "set c to )", cwd=self.folder))

    def test_a_terminal_tells_whose_word_a_name_is(self):
        for source, words, owner in [
            ("set size to 5", "size", "AppleScript"),
            ("set text   item to 5", "text item", "AppleScript"),
            ("property list : 5", "list", "AppleScript"),
            ("on copy(x)\nend copy", "copy", "AppleScript"),
            ("set folder to 5", "folder", "the Standard Additions"),
            ("tell application \"Nobody Here\" to beep\ntell application \"Mail\"\nset mailbox to 5\nend tell", "mailbox", "“Mail”"),
            ("set b to )", None, None),
            ("set b to 1 +", None, None),
            ("if true then\nelse else\nend if", None, None),
            ("error \"size\" number 5", None, None),
        ]:
            with self.subTest(source):
                (self.folder / "s").write_text(source)
                said = on_terminal("osascript", "s", cwd=self.folder)
                self.assertIn(" | ", said)
                if words:
                    self.assertIn(f"“{words}” is a word of {owner}. As a name of your own it is written |{words}|.\n", said)
                else:
                    self.assertNotIn("is a word of", said)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
