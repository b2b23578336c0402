#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compiles sources whose Mac-made compiled form is known and counts the handlers whose instructions are the same.

    pairs.py BIN PARITY_FOLDER PAIRS_TSV [--diff]

PARITY_FOLDER holds the independent reader (parity.py); PAIRS_TSV has a line for each pair: source, tab, compiled script, with paths relative to that file. Sources that
speak to an application whose dictionary does not come with the system are left out, and so are the handlers of libraries that a script has
loaded into its properties: only what the source itself defines counts. Libraries are looked for in the user's own folder for scripts.
A source that prints otherwise than the compiled script is another version of it, and is counted as that.
"""
import collections
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


def defined_here(text):
    """How often a source defines a handler of each name, in small letters; its run handler under the name by which it is stored."""
    text = re.sub(r"\(\*.*?\*\)", "", text, flags=re.S)
    names = [name.strip("|").lower() for name in re.findall(r"(?m)^\s*(?:on|to)\s+(\|[^|]*\||\w+)", text)]
    events = {"run": "c:aevtoapp", "open": "c:aevtodoc", "quit": "c:aevtquit", "reopen": "c:aevtrapp", "idle": "c:miscidle"}
    counted = collections.Counter(events.get(name, "u:" + name) for name in names if name != "error")
    counted["c:aevtoapp"] = max(1, counted["c:aevtoapp"])
    return counted


def variants(handlers, name):
    """The handlers of one name: "name", "name#2" and so on."""
    return [instructions for key, instructions in handlers.items() if key.partition("#")[0] == name]


def printed(tools, script):
    """A compiled script as source, without comments, blank lines and indentation."""
    text = subprocess.run([str(tools / "osadecompile"), str(script)], capture_output=True, text=True).stdout
    text = re.sub(r"\(\*.*?\*\)", "", text, flags=re.S)
    return [line for line in (re.sub(r"(--|#).*", "", line).strip() for line in text.splitlines()) if line]


def main():
    tools, folder, table = pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])
    sys.dont_write_bytecode = True
    sys.path.insert(0, folder)
    sys.setrecursionlimit(20000)
    import parity

    served = served_applications()
    same = total = files = refused = others = 0
    for line in table.read_text().splitlines():
        source, compiled = (table.parent / name for name in line.split("\t")[:2])
        if not served.issuperset(told_applications(source_text(source))):
            continue
        files += 1
        theirs = parity.handlers(str(compiled))
        wanted = [(name, instructions) for name, count in defined_here(source_text(source)).items()
                  for instructions in variants(theirs, name)[-count:]]
        with tempfile.TemporaryDirectory() as work:
            done = subprocess.run([str(tools / "osacompile"), "-o", work + "/x.scpt", str(source)], capture_output=True, text=True)
            if done.returncode != 0:
                refused += 1
                print(source.name, done.stderr.strip()[-160:])
                continue
            if printed(tools, work + "/x.scpt") != printed(tools, compiled):
                others += 1
                if "--diff" in sys.argv:
                    print(source.name, "is another version")
                continue
            ours = parity.handlers(work + "/x.scpt")
        total += len(wanted)
        for name, instructions in wanted:
            if instructions in variants(ours, name):
                same += 1
            elif "--diff" in sys.argv:
                mine = (variants(ours, name) or [[]])[-1]
                at = next((i for i, (a, b) in enumerate(zip(instructions, mine)) if a != b), min(len(mine), len(instructions)))
                print(source.name, name, "at", at, instructions[at:at + 3], "against", mine[at:at + 3])
    print(f"{files} sources, {refused} refused, {others} of another version; {same} of {total} handlers have the same instructions")


if __name__ == "__main__":
    main()
