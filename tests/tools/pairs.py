#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compiles sources whose Mac-made compiled form is known and counts the handlers whose instructions are the same.

    pairs.py BIN PARITY_FOLDER PAIRS_TSV [--diff]

PARITY_FOLDER holds the independent reader (parity.py); PAIRS_TSV has a line for each pair: source, tab, compiled script, with paths relative to that file. Sources that
speak to an application whose dictionary does not come with the system are left out.
"""
import pathlib
import re
import subprocess
import sys
import tempfile


def source_text(path):
    data = path.read_bytes()
    for encoding in ("utf-8", "utf-16", "mac_roman"):
        try:
            return data.decode(encoding)
        except UnicodeDecodeError:
            pass
    return ""


def served_applications():
    """Names and identifiers of the applications whose dictionaries come with the system, in small letters."""
    table = pathlib.Path(__file__).parents[2] / "src/platform/applescript/terminology/ShippedDictionaries.cpp"
    return {name.lower() for name in re.findall(r'{"([^"]+)", "[^"]+\.sdef"}', table.read_text())}


def told_applications(text):
    for name in re.findall(r'\b(?:application|app)\s+(?:id\s+)?"([^"]*)"', text):
        yield re.split("[/:]", name.rstrip("/:"))[-1].removesuffix(".app").lower()


def main():
    tools, folder, table = pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])
    sys.dont_write_bytecode = True
    sys.path.insert(0, folder)
    sys.setrecursionlimit(20000)
    import parity

    served = served_applications()
    same = total = files = refused = 0
    for line in table.read_text().splitlines():
        source, compiled = (table.parent / name for name in line.split("\t")[:2])
        if not served.issuperset(told_applications(source_text(source))):
            continue
        files += 1
        theirs = parity.handlers(str(compiled))
        total += len(theirs)
        with tempfile.TemporaryDirectory() as work:
            done = subprocess.run([str(tools / "osacompile"), "-o", work + "/x.scpt", str(source)], capture_output=True, text=True)
            if done.returncode != 0:
                refused += 1
                print(source.name, done.stderr.strip()[-160:])
                continue
            ours = parity.handlers(work + "/x.scpt")
        for name, instructions in theirs.items():
            if ours.get(name) == instructions:
                same += 1
            elif "--diff" in sys.argv:
                mine = ours.get(name) or []
                at = next((i for i, (a, b) in enumerate(zip(instructions, mine)) if a != b), min(len(mine), len(instructions)))
                print(source.name, name, "at", at, instructions[at:at + 3], "against", mine[at:at + 3])
    print(f"{files} sources, {refused} refused; {same} of {total} handlers have the same instructions")


if __name__ == "__main__":
    main()
