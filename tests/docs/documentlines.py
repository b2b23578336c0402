#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every command line that README.md, the pages about applets, programs and coming from a Mac, and the examples of the manuals show is run, in
their order, in one folder. One that has no row here is an error, and so is a row that no page shows. The blocks of source compile.

    documentlines.py BIN
"""
import pathlib
import re
import sys
import unittest

from workplace import Workplace, pattern_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
BIN = None

PROGRAMS = "osascript|osacompile|osadecompile|osalang|quoddle-shell|quoddle|apt-get|cmake|openssl|echo|export"
COMMAND = re.compile(rf"(?:{PROGRAMS}) \S.*|(?:\./|scripts/)[a-z-]+(?: .*)?")

# A line that is shown, the line that is typed for it (None for the same), and what it prints. Lines with "DISPLAY " in front of what is typed
# get one.
LINES = [
    ('export PATH="$PWD/build/bin:$PATH"', "command -v osascript", "…/osascript"),
    ("osascript -e 'set x to 6' -e 'x * 7'", None, "42"),
    ("osascript FILE ARGUMENT…", "osascript Old.scpt one two", "one, two"),
    ("osascript -i", "osascript -i <<< '6 * 7'", "42"),
    ("osacompile -o Name.scpt FILE", "osacompile -o Name.scpt FILE; osascript Name.scpt", "5"),
    ("quoddle-shell Name.app [FILE…]", "DISPLAY quoddle-shell Name.app FILE", "took FILE"),
    ("osacompile --check FILE…", "osacompile --check FILE Wrong", "Wrong:1:5: …"),
    ("osadecompile Old.scpt", None, "on run argv…"),
    ("quoddle check Old.scpt", None, 'Old.scpt:2: application "Finder" is not here'),
    ("osascript Old.scpt ARGUMENT…", "osascript Old.scpt one", "one"),
    ("quoddle info Old.app", None, "…Handlers…run…"),
    ("quoddle run Old.app FILE…", "DISPLAY quoddle run Old.app FILE", "took FILE"),
    ("quoddle adopt Old.app", "rm -r Old.app/Contents/Linux; quoddle adopt Old.app && ls Old.app/Contents/Linux", "…Old"),
    ("osacompile -o New.app Old.app", "osacompile -o New.app Old.app && quoddle info New.app", "…Handlers…run…"),
    ("osacompile -o New.app new.applescript", "osacompile -o Newer.app sums.applescript", ""),
    ("osacompile -o Steps.app steps.applescript", "osacompile -o Steps.app steps.applescript && DISPLAY Steps.app/Contents/Linux/Steps", ""),
    ("osacompile -s", "osacompile -s -o Idle.app watch.applescript && quoddle info Idle.app", "…yes…"),
    ("osascript -e 'tell application \"Steps\" to quit'", "DISPLAY osascript -e 'tell application \"Steps\" to quit'", ""),
    ("osascript -e 'tell application \"/path/to/Sums.app\" to add(1, 2)'", "DISPLAY osascript -e \"tell application \\\"$PWD/Sums.app\\\" to add(1, 2)\"", "3"),
    ("quoddle install Name.app", None, "Installed: …"),
    ("quoddle pack Name.app", None, "…Name.appletz"),
    ("quoddle run Name.appletz", "DISPLAY quoddle run Name.appletz FILE", "took FILE"),
    ("quoddle quit Name", None, "quoddle: Name: no such applet is running…"),
    ("quoddle uninstall Name.app", None, "Removed: …"),
    ("openssl genpkey -algorithm ed25519 -out key.pem", None, ""),
    ("openssl pkey -in key.pem -pubout -outform DER | tail -c 32 | base64", None, "…="),
    ("openssl pkeyutl -sign -rawin -inkey key.pem -in Name.zip | base64 -w0", None, "…=="),
    ("quoddle check Old.app", None, 'Old.app:2: application "Finder" is not here'),
    ("osacompile -s -o Watch.app watch.applescript", None, ""),
    ("osacompile --check *.applescript", None, ""),
    ("echo 'item 2 of {\"a\", \"b\"}' | osascript -", None, "b"),
    ("quoddle run Steps.app", "DISPLAY quoddle run Steps.app", ""),
    ("quoddle install ~/Applications/Steps.app", "mkdir -p ~/Applications && cp -r Steps.app ~/Applications && quoddle install ~/Applications/Steps.app", "Installed: …"),
]

# Lines that cannot be typed in a test, each with the file that does it, or does the same. The scripts among them are asked for their use.
ELSEWHERE = {
    "./run": "run",
    './run "build/examples/Folder Watch.app"': "run",
    "./test": ".ci/run",
    "./bench": "bench",
    "./bench waits": "bench",
    "scripts/make-packages": "tests/packaging/packages.py",
    "apt-get install ./build/quoddle*.deb": "tests/packaging/clean-system",
    "apt-get remove quoddle quoddle-osa": "tests/packaging/clean-system",
    "cmake --install build --prefix PREFIX": "tests/packaging/installation.py",
}


def lines_of_page(text):
    """The command lines in a page: indented ones without the words behind them, and those within the prose."""
    for line in re.sub(r"^```.*?^```", "", text, flags=re.M | re.S).splitlines():
        if line.startswith("    "):
            yield re.split(r" {2,}", line.strip())[0]
            line = " ".join(re.split(r" {2,}", line.strip())[1:])
        yield from (quoted for quoted in re.findall(r"`([^`]+)`", line) if COMMAND.fullmatch(quoted))


def examples_of_manual(text):
    examples = re.search(r"^\.Sh EXAMPLES\n(.*?)(?=^\.Sh|\Z)", text, re.M | re.S)
    for line in re.findall(r"^\.Dl (.*)", examples.group(1) if examples else "", re.M):
        yield line.replace(r"\(dq", '"')


def shown_lines():
    pages = [ROOT / "README.md", *(ROOT / "docs" / page for page in ("applets.md", "programs.md", "from-a-mac.md"))]
    lines = [line for page in pages for line in lines_of_page(page.read_text())]
    return lines + [line for page in sorted((ROOT / "docs/man").glob("*.1")) for line in examples_of_manual(page.read_text())]


class DocumentLines(unittest.TestCase):
    def test_each_line_has_its_row(self):
        known = {line for line, _, _ in LINES} | set(ELSEWHERE)
        self.assertEqual(known, set(shown_lines()))
        for line, file in ELSEWHERE.items():
            self.assertTrue((ROOT / file).exists(), line)
            if line.startswith(("./", "scripts/")):
                done = Workplace(self, BIN).type(f"'{ROOT / line.split()[0]}' --help")
                self.assertEqual((done.returncode, bool(done.stdout)), (0, True), line)

    def test_each_line_does_what_is_said(self):
        place = Workplace(self, BIN)
        files = {
            "FILE": "return 2 + 3", "Wrong": "set )", "watch.applescript": "on idle\nend idle", "Name.zip": "any",
            "old.applescript": "on run argv\n\tif false then tell application \"Finder\" to activate\n\targv\nend run\n",
            "taker.applescript": "on run\n\tif false then tell application \"Finder\" to activate\nend run\n"
                                 "on open these\n\tlog \"took \" & name of (info for item 1 of these)\nend open\n",
            "sums.applescript": "on add(a, b)\n\treturn a + b\nend add\n",
            "steps.applescript": re.search(r"^```applescript\n(on run\n.*?)^```", (ROOT / "docs/applets.md").read_text(), re.M | re.S).group(1)}
        for name, text in files.items():
            (place.folder / name).write_text(text)
        for name, source in (("Old.scpt", "old"), ("Old.app", "taker"), ("Name.app", "taker"), ("Sums.app", "sums")):
            self.assertEqual(place.type(f"osacompile -o {name} {source}.applescript").stdout, "")
        for shown, typed, printed in LINES:
            with self.subTest(shown):
                typed = typed or shown
                done = place.type(typed.replace("DISPLAY ", ""), needs_display="DISPLAY " in typed)
                self.assertRegex(done.stdout.rstrip("\n"), pattern_of(printed))

    def test_blocks_of_source_compile(self):
        place = Workplace(self, BIN)
        count = 0
        for page in [ROOT / "README.md", *sorted((ROOT / "docs").rglob("*.md"))]:
            for block in re.findall(r"^```applescript\n(.*?)^```", page.read_text(), re.M | re.S):
                with self.subTest(page.name, block=block):
                    self.assertEqual(place.type("osacompile --check -", typed=block).stdout, "")
                count += 1
        self.assertGreater(count, 3)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
