#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks how the sources are written: each is formatted as .clang-format says, and each header compiles without others in front of it.

    sources.py BUILD [--all] [--bare]      BUILD: a built folder, such as build/dev

A source includes its own header first, so that the build shows whether such a header stands alone; the other headers are compiled here
(with --all: every header). Headers see the precompiled standard library and toolkit of their layer; with --bare not even these, which
takes minutes. Says what is wrong and answers 1.
"""
import argparse
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
FOLDERS = ("src", "programs", "tests", "benchmarks")
FORMATTER = "clang-format-14"  # others format in another way
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.M)


def unformatted(sources):
    if not shutil.which(FORMATTER):
        print(f"{FORMATTER} is not here: formatting is not checked")
        return []
    checked = subprocess.run([FORMATTER, "--dry-run", "--Werror", *sources], cwd=ROOT, capture_output=True, text=True)
    places = {line.split(": error:")[0].split(":")[0] for line in checked.stderr.splitlines() if ": error:" in line}
    return [f"{file} is not formatted: {FORMATTER} -i {file}" for file in sorted(places)]


def first_include(source):
    found = INCLUDE.search((ROOT / source).read_text())
    return found and found.group(1)


def included_later(sources):
    """Sources that have a header of their own and include another one before it."""
    wrong = []
    for source in sources:
        own = source.removesuffix(".cpp") + ".h"
        if source.endswith(".cpp") and own in sources and not own.endswith(first_include(source) or ""):
            wrong.append(f"{source} has to include its own header first")
    return wrong


def headers_to_compile(sources, is_all):
    firsts = {first_include(source) for source in sources if source.endswith(".cpp")}
    shown = {header for header in sources if any(first and header.endswith("/" + first) for first in firsts)}
    return [header for header in sources if header.endswith(".h") and (is_all or header not in shown)]


def commands_by_folder(build, is_bare):
    """How the sources of each folder are compiled, up to the names of the files: as the one that is told the most."""
    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        words = words[next(i for i, word in enumerate(words) if word.endswith("c++")):]
        if is_bare and "-include" in words:
            at = words.index("-include")
            del words[at:at + 2]
        words = words[:words.index("-o")]
        folder = pathlib.Path(entry["file"]).parent
        commands[folder] = max(commands.get(folder, []), words, key=len)
    return commands


def compile_alone(header, commands):
    """Nothing, or what is wrong."""
    folder = (ROOT / header).parent
    while folder not in commands and folder != ROOT:
        folder = folder.parent
    if folder == ROOT:
        return None  # not built here
    command = [*commands[folder], "-fsyntax-only", "-w", "-x", "c++", "-include", str(ROOT / header), os.devnull]
    done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
    if done.returncode == 0:
        return None
    errors = [line for line in done.stderr.splitlines() if "error" in line]
    return f"{header} does not compile alone: {errors[0] if errors else done.stderr.strip()}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--bare", action="store_true")
    arguments = parser.parse_args()
    files = [str(file.relative_to(ROOT)) for folder in FOLDERS for file in sorted((ROOT / folder).rglob("*")) if file.suffix in (".cpp", ".h")]
    own = [file for file in files if file.startswith(("src/", "programs/"))]
    wrong = unformatted(files) + included_later(own)
    commands = commands_by_folder(arguments.build.resolve(), arguments.bare)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        problems = pool.map(lambda header: compile_alone(header, commands), headers_to_compile(own, arguments.all))
        wrong += [problem for problem in problems if problem]
    print("\n".join(wrong), end="\n" if wrong else "")
    sys.exit(1 if wrong else 0)


main()
