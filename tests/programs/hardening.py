#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks in the linked programs that the build's flags against exploits have taken effect.

    hardening.py BIN
"""
import pathlib
import platform
import subprocess
import sys
import unittest

BIN = None
PROGRAMS = ("osascript", "osacompile", "osadecompile", "osalang", "quoddle", "quoddle-clipboard", "quoddle-dialogs", "quoddle-preview", "quoddle-shell", "quoddle-fetch")


def told(*words):
    return subprocess.run(words, capture_output=True, text=True, check=True).stdout


class Hardening(unittest.TestCase):
    def test_programs(self):
        for program in PROGRAMS:
            with self.subTest(program):
                path = str(BIN / program)
                self.assertIn("DYN (Position-Independent Executable", told("readelf", "-h", path))
                segments = told("readelf", "-lW", path)
                self.assertIn("GNU_RELRO", segments)
                self.assertRegex(segments, r"GNU_STACK .* RW +0x", "no stack that runs")
                self.assertRegex(told("readelf", "-dW", path), r"BIND_NOW|FLAGS_1.*NOW")
                symbols = told("readelf", "--dyn-syms", "-W", path)
                self.assertIn("__stack_chk_fail", symbols)
                self.assertRegex(symbols, r"__(fprintf|memcpy|memmove|snprintf|read|poll|readlink|vsnprintf)_chk")
                if platform.machine() == "x86_64":
                    # The code is looked at, because the linker leaves out its note where the system's start-up files lack it.
                    self.assertIn("endbr64", told("objdump", "-d", "--disassemble=main", path))


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
