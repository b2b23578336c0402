#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Man pages and the shells' completions name every option and command that --help names, and no others; and the shells understand what
they are given.

    manuals.py BIN
"""
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

BIN = None
PROGRAMS = ("osascript", "osacompile", "osadecompile", "osalang", "quoddle")
MANUALS = pathlib.Path(__file__).resolve().parents[2] / "docs/man"


def known_to(program):
    """Answers the options and commands that a program tells."""
    text = subprocess.run([str(BIN / program), "--help"], capture_output=True, text=True, check=True).stdout
    return set(re.findall(r"^  (--?[A-Za-z]+|[a-z]+)(?= )", text, re.M))


def options(words):
    return {word for word in words if word.startswith("-")}


class Manuals(unittest.TestCase):
    def test_man_pages_name_what_the_programs_know(self):
        for program in PROGRAMS:
            with self.subTest(program):
                page = (MANUALS / f"{program}.1").read_text()
                named = {"-" + name for name in re.findall(r"^\.It Fl (\S+)", page, re.M)} | set(re.findall(r"^\.It Cm (\S+)", page, re.M))
                self.assertEqual(named, known_to(program))
                # What the options take is named as well.
                for option, value in re.findall(r"^  (--?[A-Za-z]+) ([A-Z]+) ", subprocess.run([str(BIN / program), "--help"], capture_output=True, text=True).stdout, re.M):
                    self.assertIn(f".It Fl {option[1:]} Ar {value.lower()}\n", page)

    def test_man_pages_are_well_formed(self):
        for program in PROGRAMS:
            done = subprocess.run(["mandoc", "-Tlint", "-Wwarning", str(MANUALS / f"{program}.1")], capture_output=True, text=True)
            self.assertEqual((done.returncode, done.stdout), (0, ""))


class Completions(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.share = BIN.parent / "share"
        self.environment = {"PATH": f"{BIN}:{os.environ['PATH']}", "HOME": str(self.folder), "TERM": "dumb", "LC_ALL": "C.UTF-8"}

    def bash(self, program, *words):
        script = f'. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _{program}; printf "%s\\n" "${{COMPREPLY[@]}}"'
        done = subprocess.run(["bash", "-c", script, "bash", str(self.share / "bash-completion/completions" / program), program, *words], env=self.environment,
                              cwd=self.folder, capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.split())

    def fish(self, program, line):
        file = self.share / "fish/vendor_completions.d" / f"{program}.fish"
        done = subprocess.run(["fish", "--no-config", "-c", 'source $argv[1]; complete -C $argv[2]', str(file), line], env=self.environment, cwd=self.folder,
                              capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        return {row.split("\t")[0] for row in done.stdout.splitlines()}

    def zsh(self, line):
        """Types a line and a tab into a shell; answers the text that appears."""
        shell, terminal = pty.openpty()
        process = subprocess.Popen(["zsh", "-f", "-i"], stdin=terminal, stdout=terminal, stderr=terminal, env=self.environment, cwd=self.folder, start_new_session=True)
        os.close(terminal)
        said = ""

        def until(mark):
            nonlocal said
            end = time.monotonic() + 20
            while mark not in said:
                self.assertTrue(select.select([shell], [], [], max(0, end - time.monotonic()))[0], f"no {mark!r} in {said!r}")
                said += os.read(shell, 4096).decode(errors="replace")

        folder = self.share / "zsh/site-functions"
        os.write(shell, f"fpath=('{folder}' $fpath); autoload -U compinit; compinit -u -D; setopt no_list_beep; LISTMAX=0; bindkey '^I' list-choices; PS1='rea''dy'\n".encode())
        until("ready")
        said = ""
        os.write(shell, (line + "\t").encode())
        # The next line is read when the list has been shown.
        os.write(shell, b"\x15print do''ne\n")
        until("\ndone")
        process.kill()
        process.wait()
        os.close(shell)
        return said

    def test_shells_offer_what_the_programs_know(self):
        for program in PROGRAMS:
            known = known_to(program)
            with self.subTest(program):
                self.assertEqual(self.bash(program, "-"), options(known))
                self.assertEqual(options(self.fish(program, f"{program} -")), options(known))
                shown = re.split(r"[\s,]+", self.zsh(f"{program} -"))
                self.assertEqual({word for word in shown if re.fullmatch(r"--?[A-Za-z]+", word)}, options(known))
        commands = {word for word in known_to("quoddle") if not word.startswith("-")}
        self.assertEqual(self.bash("quoddle", ""), commands)
        self.assertEqual(self.fish("quoddle", "quoddle "), commands)
        shown = self.zsh("quoddle ")
        for command in commands:
            self.assertRegex(shown, rf"\b{command} +-- ")

    def test_shells_offer_the_options_of_commands(self):
        with_own = 0
        for command in {word for word in known_to("quoddle") if not word.startswith("-")}:
            text = subprocess.run([str(BIN / "quoddle"), command, "--help"], capture_output=True, text=True, check=True).stdout
            own = set(re.findall(r"^  (--?[a-z]+) ", text, re.M)) - {"--help", "--version"}
            with_own += bool(own)
            with self.subTest(command):
                self.assertEqual(self.bash("quoddle", command, "-"), own | {"--help"})
                self.assertEqual(options(self.fish("quoddle", f"quoddle {command} -")) - {"--help", "--version"}, own)
                if own:  # a single choice is not listed
                    shown = re.split(r"[\s,]+", self.zsh(f"quoddle {command} -"))
                    self.assertEqual({word for word in shown if re.fullmatch(r"--?[a-z]+", word)}, own | {"--help"})
        self.assertTrue(with_own)

    def test_shells_offer_values_and_files(self):
        (self.folder / "my script.scpt").write_text("")
        self.assertEqual(self.bash("osascript", "-l", ""), {"AppleScript"})
        self.assertEqual(self.fish("osascript", "osascript -l "), {"AppleScript"})
        self.assertIn("AppleScript", self.zsh("osascript -l "))
        self.assertEqual(self.bash("osascript", "-s", ""), set("hseo"))
        self.assertEqual(self.bash("osascript", "-e", ""), set())
        for line in ("osadecompile my", "quoddle run my"):
            self.assertIn("my script.scpt", self.fish(line.split()[0], line))
            self.assertIn("script.scpt", self.zsh(line))


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
