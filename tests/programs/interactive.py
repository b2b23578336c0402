#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""osascript -i: statements that are typed on a terminal, with completion, history and Control-C, or come through a pipe.

    interactive.py BIN
"""
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

BIN = None
PATIENCE = 60  # seconds until a terminal that shows nothing is given up


class Terminal:
    """osascript on a terminal of its own."""

    def __init__(self, folder, *arguments, **variables):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.environ.update({"HOME": str(folder), "TERM": "xterm", "LC_ALL": "C.UTF-8", "COLUMNS": "80", **variables})
            os.environ.pop("XDG_STATE_HOME", None)
            os.execv(BIN / "osascript", ["osascript", "-i", *arguments])
        self.shown = ""

    def type(self, keys):
        os.write(self.terminal, keys.encode())

    def until(self, pattern):
        """What the terminal shows until the pattern comes, without its control sequences. What came is shown no more."""
        end = time.monotonic() + PATIENCE
        while not (found := re.search(pattern, self.shown)):
            ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
            if not ready:
                raise AssertionError(f"{pattern!r} did not come after {self.shown!r}")
            try:
                got = os.read(self.terminal, 4096).decode(errors="replace")
            except OSError:
                raise AssertionError(f"{pattern!r} did not come before the end: {self.shown!r}")
            self.shown += re.sub(r"\x1b\[[0-9;?]*[A-Za-z]|\x1b[=>]|\r", "", got)
        before, self.shown = self.shown[:found.end()], self.shown[found.end():]
        return before

    def prompt(self, mark=">> "):
        return self.until(re.escape(mark))

    def end(self):
        """Presses Control-D and returns the exit status."""
        self.type("\x04")
        try:
            while os.read(self.terminal, 4096):
                pass
        except OSError:
            pass
        _, status = os.waitpid(self.process, 0)
        os.close(self.terminal)
        return os.waitstatus_to_exitcode(status)


class Interactive(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def test_lines_of_a_pipe_are_statements(self):
        cases = [
            ("set x to 6\nx * 7\n", "6\n42\n", ""),
            ("on f(n)\nreturn n + 1\nend f\nf(1)\n", "2\n", ""),
            ("repeat 2 times\nlog 1\nend repeat\n3", "3\n", "1\n1\n"),
            ("set s to \"a\nb\"\ns\n", "a\nb\na\nb\n", ""),
            ("1 + ¬\n1\n", "2\n", ""),
            ("(* open\nstill *)\n1\n", "1\n", ""),
            ("1 +\n2\n", "2\n", "3:4: syntax error: "),
            ("error \"x\" number 7\n2\n", "2\n", "0:18: execution error: x (7)\n"),
            ("-- far away\non f()\n1 / 0\nend f\n{1, f()}\n", "", "4:7: execution error: Can’t divide"),
            ("tell me\n", "", "syntax error: Expected “end” but found end of script. (-2741)\n"),
            ("1 -- more ¬\n2 # ¬\n3 ¬ -- more\n + 4\n", "1\n2\n7\n", ""),
            ('log "once"\non f()\nend f\nproperty p : 1\nuse scripting additions\n', "", "once\n"),
            ("property p : 41\non add()\nset p to p + 1\nend add\nadd()\nproperty q : p * 2\nproperty p : 5\nadd()\n{p, q}\n", "42\n6\n6, 84\n", ""),
            ("property q : 1\nscript s\nproperty z : 3\non sum()\nz + q\nend sum\nend script\nset q to 10\ns's sum()\n", "10\n13\n", ""),
            ("global w\nset w to 9\non f()\nw\nend f\nf()\n", "9\n9\n", ""),
            ("set x to 6\non f()\nx\nend f\nf()\n", "6\n", "execution error: The variable x is not defined. (-2753)"),
            ('log "¬"\nlog 1 ¬\n\n2', "2\n", "¬\n1\n"),
            ('on f()\nlog "once"\nerror "Found end of script, but found end of script." number -2741\nend f\nproperty p : f()\n2\n',
             "2\n", "once\nsyntax error: Found"),
            ('set s to "a ¬\n(* b\" & ¬\n"c (*\nd" (* e\nstill *)\n2', "a ¬\n(* bc (*\nd\n2\n", ""),
            ("if true then -- a\nrepeat 1 times\nif false then\n1\nelse -- (*\n2\nend if\nend repeat\ntry\n1 / 0\non error number n\nn\nend try\nend if\n3",
             "-2701\n3\n", ""),
            ('set s to "a\nb" ¬\n & "c\nd" & ¬\n1\n2', "a\nbc\nd1\n2\n", ""),
            ("script s\non name(n)\nn + 1\nend name\non g()\nname(1)\nend g\nend script\ns's g()\n", "2\n", ""),
            ("on f()\ntell me\nend tell\n1 +\n2\n", "2\n", "syntax error: "),
            (b'count "a\xffb"\ntell me\nlog "\xc3("\nlog 1\nend tell\n2\n', "2\n", "osascript: a statement has bytes that are no UTF-8; it was not run\n" * 2),
        ]
        for typed, output, errors in cases:
            with self.subTest(typed):
                typed = typed if isinstance(typed, bytes) else typed.encode()
                done = subprocess.run([BIN / "osascript", "-i"], input=typed, capture_output=True, timeout=PATIENCE)
                failed = "error" in errors or "not run" in errors
                self.assertEqual((done.returncode, done.stdout.decode()), (failed, output))
                self.assertIn(errors, done.stderr.decode())
                self.assertEqual(bool(errors), bool(done.stderr))

    def test_a_block_may_have_many_lines(self):
        some = ["if n > 0 then", "-- it is", "(* or", "is it */ ? *)", "repeat 1 times -- (", 'set n to n + (count "a")', "end repeat", "end if"]
        lines = ["on f(n)", *some * 1600, "return n", "end f"]
        done = subprocess.run([BIN / "osascript", "-i"], input="\n".join([*lines, "f(1)"]).encode(), capture_output=True, timeout=PATIENCE)
        self.assertEqual((done.stdout, done.stderr), (b"1601\n", b""))

    def test_a_terminal_is_talked_with(self):
        terminal = Terminal(self.folder, "-ss")
        terminal.prompt()
        terminal.type('set greeting to "grüß"\n')
        terminal.until('=> "grüß"\n')
        terminal.prompt()
        terminal.type("if true then\n")
        terminal.prompt(".. ")
        terminal.type("greeting & 1\nend if\n")
        terminal.until('=> "grüß1"\n')
        terminal.prompt()
        terminal.type("1 + + \n")
        terminal.until("syntax error: ")
        terminal.until(r"\^")  # the mark below the place
        terminal.prompt()
        self.assertEqual(terminal.end(), 0)

    def test_the_tab_key_completes(self):
        terminal = Terminal(self.folder)
        terminal.prompt()
        terminal.type("set lengthOfAll to 1\n")
        terminal.until("=> 1\n")
        terminal.prompt()
        terminal.type("lengthO\t+ 1\n")
        terminal.until("=> 2\n")
        terminal.prompt()
        terminal.type('offs\tof "b" in "abc"\n')
        terminal.until("=> 2\n")
        terminal.prompt()
        terminal.type("set |two words| to 3\n")
        terminal.until("=> 3\n")
        terminal.prompt()
        terminal.type("|two\t+ 1\n")
        terminal.until("=> 4\n")
        terminal.prompt()
        terminal.type("display \t\t")  # several commands begin so
        listed = terminal.until("display notification")
        self.assertIn("display dialog", listed)
        terminal.type("\x03")
        terminal.until(r"\^C\n")
        terminal.prompt()
        self.assertEqual(terminal.end(), 0)

    def test_the_history_lasts(self):
        first = Terminal(self.folder)
        first.prompt()
        first.type("40 + 2\n")
        first.until("=> 42\n")
        first.prompt()
        self.assertEqual(first.end(), 0)
        history = self.folder / ".local/state/quoddle/osascript_history"
        self.assertEqual(history.stat().st_mode & 0o777, 0o600)
        second = Terminal(self.folder)
        second.prompt()
        second.type("\x1b[A\n")  # the up arrow
        second.until("=> 42\n")
        second.prompt()
        self.assertEqual(second.end(), 0)

    def test_control_d_gives_up_an_open_block(self):
        for kind in ("xterm", "dumb"):
            with self.subTest(kind):
                terminal = Terminal(self.folder, TERM=kind)
                terminal.prompt()
                terminal.type("tell me\n")
                terminal.prompt(".. ")
                terminal.type("\x04")
                self.assertRegex(terminal.until("syntax error: "), r"\n[\d: ]*syntax error: $")
                terminal.prompt()
                terminal.type("6 * 7\n")
                terminal.until("=> 42\n")
                terminal.prompt()
                self.assertEqual(terminal.end(), 0)

    def test_bytes_that_are_no_character_are_seen(self):
        terminal = Terminal(self.folder)
        terminal.prompt()
        os.write(terminal.terminal, b'"a\xffb"\n')
        terminal.until("=> a\ufffdb\n")
        terminal.prompt()
        self.assertEqual(terminal.end(), 0)

    def test_the_file_of_the_history_may_be_anything(self):
        history = self.folder / ".local/state/quoddle/osascript_history"
        history.parent.mkdir(parents=True)
        elsewhere = self.folder / "elsewhere"
        elsewhere.write_text("20 + 3\n\ngrüß\n")
        history.symlink_to(elsewhere)
        terminal = Terminal(self.folder)
        terminal.prompt()
        terminal.type("\x1b[A\x1b[A\n")
        terminal.until("=> 23\n")
        terminal.prompt()
        self.assertEqual(terminal.end(), 0)
        self.assertTrue(history.is_symlink())
        self.assertEqual(elsewhere.read_text().splitlines()[0], "_HiStOrY_V2_")
        self.assertIn("gr", elsewhere.read_text())
        for make in (os.mkfifo, os.mkdir, lambda path: path.symlink_to("nowhere"), lambda path: path.write_bytes(b"\0\n")):
            history.unlink()
            make(history)
            terminal = Terminal(self.folder)
            terminal.until("history is not kept")
            terminal.prompt()
            terminal.type("6 * 7\n")
            terminal.until("=> 42\n")
            terminal.prompt()
            self.assertEqual(terminal.end(), 0)
            if history.is_dir():
                history.rmdir()
                history.touch()
            self.assertNotIn(b"6", history.read_bytes() if history.is_file() else b"")
        self.assertFalse((history.parent / "nowhere").exists())

    def test_control_c_gives_up_what_is_typed_and_ends_what_runs(self):
        terminal = Terminal(self.folder)
        terminal.prompt()
        terminal.type("tell me\n")
        terminal.prompt(".. ")
        terminal.type("half a line\x03")
        terminal.until(r"\^C\n")
        terminal.prompt(">> ")
        for endless in ("delay 1000", "repeat\nend repeat", 'do shell script "sleep 1000"'):
            with self.subTest(endless):
                terminal.type("tell me\nlog \"runs\"\n" + endless + "\nend tell\n")
                terminal.until("\nruns\n")
                terminal.type("\x03")
                terminal.until(r"\(-128\)")
                terminal.prompt()
        self.assertEqual(terminal.end(), 0)

    def test_every_character_arrives_without_a_locale(self):
        terminal = Terminal(self.folder, "-ss", LC_ALL="C")
        terminal.prompt()
        terminal.type('count "Müller"\n')
        terminal.until("=> 6\n")
        terminal.prompt()
        self.assertEqual(terminal.end(), 0)

    def test_a_plain_terminal_will_do(self):
        terminal = Terminal(self.folder, TERM="dumb")
        terminal.prompt()
        terminal.type("tell me\n")
        terminal.prompt(".. ")
        terminal.type("half a line\x03")
        terminal.prompt()
        terminal.type("6 * 7\n")
        terminal.until("=> 42\n")
        terminal.prompt()
        self.assertEqual(terminal.end(), 0)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    signal.alarm(280)
    unittest.main()
