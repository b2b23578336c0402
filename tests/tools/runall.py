#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs every compiled script below a folder and says how each one ended.

    runall.py FOLDER [BIN] [--home HOME] [--seconds N] [--output]

BIN holds osascript (default: build/bin of the tree). The scripts run one after the other, in the order of their names, in a scratch folder that is also the home folder,
so that scripts find the files of earlier ones; HOME is copied into it first. There is no display and nothing on standard input, and a script has at most N seconds (default 5).
The program prints a line for each script: file, tab, "ended", "stopped" when its time was up, "crashed", or the number of the error; tab, the message, or with
--output the result of a script that ended.
"""
import argparse
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile

ERROR = re.compile(r"(?:execution|load|syntax) error: (.*) \((-?\d+)\)\s*$", re.S)


def run(osascript, script, home, seconds):
    environment = {"PATH": os.environ["PATH"], "HOME": home, "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": home, "USER": "nobody"}
    child = subprocess.Popen([osascript, str(script)], cwd=home, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                             start_new_session=True)
    try:
        output, errors = child.communicate(timeout=seconds)
    except subprocess.TimeoutExpired:
        os.killpg(child.pid, signal.SIGKILL)
        child.communicate()
        return "stopped", ""
    if child.returncode < 0:
        return "crashed", signal.Signals(-child.returncode).name
    if child.returncode == 0:
        return "ended", output.decode("utf-8", "replace").rstrip("\n")
    error = ERROR.search(errors.decode("utf-8", "replace"))
    return (error[2], error[1]) if error else ("?", errors.decode("utf-8", "replace").strip()[-200:])


def main():
    tree = pathlib.Path(__file__).resolve().parents[2]
    arguments = argparse.ArgumentParser(usage=__doc__)
    arguments.add_argument("folder", type=pathlib.Path)
    arguments.add_argument("bin", type=pathlib.Path, nargs="?", default=tree / "build" / "bin")
    arguments.add_argument("--home", type=pathlib.Path)
    arguments.add_argument("--seconds", type=float, default=5)
    arguments.add_argument("--output", action="store_true")
    given = arguments.parse_args()
    scripts = sorted(given.folder.rglob("*.scpt"))
    ended = 0
    with tempfile.TemporaryDirectory() as home:
        if given.home:
            shutil.copytree(given.home, home, dirs_exist_ok=True)
        for script in scripts:
            how, message = run(str((given.bin / "osascript").resolve()), script.resolve(), home, given.seconds)
            ended += how == "ended"
            if how == "ended" and not given.output:
                message = ""
            print(script.relative_to(given.folder), how, repr(message)[1:-1], sep="\t", flush=True)
    print(f"{ended} of {len(scripts)} ended without an error")
    return 0


if __name__ == "__main__":
    sys.exit(main())
