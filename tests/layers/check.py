#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads every #include below src/ and holds it against the ladder of the layers: lower never includes higher, same rank never each other.
Plain layers include no Qt. Exits 1 and names the lines that break the rule.

    check.py SRC
"""
import pathlib
import re
import sys

# A layer and what it may include, itself aside.
MAY = {
    "platform/base": [],
    "platform/ae": ["platform/base"],
    "platform/osa": ["platform/base", "platform/ae"],
    "platform/sdef": ["platform/base"],
    "platform/applescript": ["platform/base", "platform/ae", "platform/osa", "platform/sdef"],
    "platform/additions": ["platform/base", "platform/ae"],
    "platform/foundation": ["platform/base"],
    "platform/search": ["platform/base", "platform/foundation"],
    "platform/delivery": ["platform/base"],
    "platform/appkit": ["platform/base", "platform/ae", "platform/foundation"],
    "platform/preview": ["platform/base", "platform/foundation", "platform/appkit"],
    "platform/panels": ["platform/base", "platform/ae", "platform/additions", "platform/foundation", "platform/appkit"],
    "platform/clipboard": ["platform/base", "platform/ae", "platform/additions", "platform/foundation", "platform/appkit"],
    "platform/updater": ["platform/base", "platform/ae", "platform/foundation", "platform/appkit"],
    "engine": ["platform/base", "platform/ae", "platform/osa", "platform/foundation"],
    "runtime": ["platform/base", "platform/ae", "platform/osa", "platform/foundation", "engine"],
    "dialogs": ["platform/base", "platform/ae", "platform/additions", "platform/osa", "platform/foundation", "platform/appkit", "platform/panels",
                "engine", "runtime"],
    "window": ["platform/base", "platform/ae", "platform/osa", "platform/foundation", "platform/appkit", "engine", "runtime"],
}
MAY["droplet"] = MAY["window"] + ["platform/search", "platform/preview", "dialogs", "window"]
PLAIN = ["platform/base", "platform/ae", "platform/osa", "platform/sdef", "platform/applescript", "platform/additions"]
WIDGETLESS = PLAIN + ["platform/foundation", "platform/search", "platform/delivery", "engine", "runtime"]
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def layer_of(path):
    return next((layer for layer in sorted(MAY, key=len, reverse=True) if path == layer or path.startswith(layer + "/")), None)


def faults(src):
    for file in sorted(p for p in src.rglob("*") if p.suffix in (".h", ".cpp")):
        layer = layer_of(file.relative_to(src).as_posix())
        if layer is None:
            continue  # main.cpp knows everyone
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            bracket, name = match.groups()
            other = layer_of(name)
            if other and other != layer and other not in MAY[layer]:
                yield f"{file}:{number}: {layer} includes {name}"
            if bracket == "<" and re.match(r"Q[A-Z]", name):
                if layer in PLAIN:
                    yield f"{file}:{number}: {layer} is to do without Qt, but includes {name}"
                elif layer in WIDGETLESS and re.match(r"QtWidgets|QWidget|QApplication|QDialog|QMessageBox|QLabel|QPushButton|QMainWindow", name):
                    yield f"{file}:{number}: {layer} is to see no widget, but includes {name}"


def main():
    src = pathlib.Path(sys.argv[1])
    found = list(faults(src))
    print("\n".join(found) or "the ladder holds")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
