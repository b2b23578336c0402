#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The reference of the commands is what its program writes from the tables, and says of each command that nothing performs that this is so.

    references.py BIN
"""
import pathlib
import re
import subprocess
import sys
import unittest
import xml.etree.ElementTree

SOURCE = pathlib.Path(__file__).resolve().parents[2]
# Performed by the scripting component and the language itself.
ELSEWHERE = {"load script", "run script", "store script", "current date"}


class References(unittest.TestCase):
    def test_the_reference_is_made_of_the_tables(self):
        made = subprocess.run([sys.executable, SOURCE / "scripts/make-command-reference.py", "-"], capture_output=True, text=True, check=True).stdout
        self.assertEqual((SOURCE / "docs/commands.md").read_text(), made, "scripts/make-command-reference.py has to be run again")

    def test_what_is_not_performed_is_told(self):
        rows = re.findall(r'\{"(.{4})"_4cc, "(.{4})"_4cc, additions::(\w+)\}', (SOURCE / "src/platform/additions/StandardAdditions.cpp").read_text())
        performed = {first + second for first, second, _ in rows}
        reference = (SOURCE / "docs/commands.md").read_text()
        for suite in xml.etree.ElementTree.parse(SOURCE / "resources/dictionaries/StandardAdditions.sdef").getroot().findall("suite"):
            about = reference.split(f"\n## {suite.get('name')}\n")[1].split("\n### ")[0]
            for command in suite.findall("command"):
                name = command.get("name")
                told = about + reference.split(f"\n### {name}\n")[1].split("\n#")[0]
                is_performed = command.get("code") in performed or name in ELSEWHERE
                self.assertNotEqual(is_performed, "Nothing calls" in told, name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
