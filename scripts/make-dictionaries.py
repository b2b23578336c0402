#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes resources/dictionaries/NAME.sdef from tables of words and codes.

    make-dictionaries.py FOLDER_OF_TSV [OUTPUT_FOLDER]

A table has one term a line: kind, suite, owner, name, plural, code, type, flags. The standard suite that many applications share is written once, and a
dictionary that holds it unchanged includes it. The same tables give the same bytes.
"""
import pathlib
import sys
from xml.sax.saxutils import quoteattr

SHARED = "cocoa-standard"
TITLES = {
    "cocoa-standard": "CocoaStandard", "google-chrome": "Google Chrome", "omni-focus": "OmniFocus", "quick-time-player": "QuickTime Player",
    "text-edit": "TextEdit",
}
COLUMNS = ["kind", "suite", "owner", "name", "plural", "code", "type", "flags"]
# Names that lost a capital or a dot on their way into the tables.
SPELLINGS = {
    "text ctxt": "text", "text_ U002 e_ctxt": "text", "i work item": "iWork item", "i work container": "iWork container",
    "Microsoft word": "Microsoft Word", "Microsoft excel": "Microsoft Excel", "Microsoft power point": "Microsoft PowerPoint",
}
# What a row of the table opens, and what it is called in the dictionary.
DEFINITIONS = {
    "class": "class", "extends": "class-extension", "command": "command", "event": "event", "enumeration": "enumeration", "record": "record-type",
    "value type": "value-type",
}
PARTS = {
    "property": ("class", "record"), "contents": ("class",), "element": ("class",),
    "responds to": ("class",), "direct": ("command", "event"), "parameter": ("command", "event"), "enumerator": ("enumeration",),
}


class Element:
    def __init__(self, tag, **attributes):
        self.tag = tag
        self.attributes = {name.replace("_", "-"): value for name, value in attributes.items() if value}
        self.children = []

    def add(self, child):
        self.children.append(child)
        return child

    def lines(self, depth=0):
        head = "\t" * depth + "<" + self.tag + "".join(f" {name}={quoteattr(value)}" for name, value in self.attributes.items())
        if not self.children:
            return [head + "/>"]
        return [head + ">", *(line for child in self.children for line in child.lines(depth + 1)), "\t" * depth + f"</{self.tag}>"]


def spelled(name):
    return SPELLINGS.get(name, name)


def rows_of(table):
    lines = table.read_text(encoding="utf-8").splitlines()
    if lines[0].split("\t") != COLUMNS:
        sys.exit(f"{table}: the first line names other columns")
    rows = []
    for number, line in enumerate(lines[1:], 2):
        fields = line.split("\t")
        if len(fields) != len(COLUMNS):
            sys.exit(f"{table}:{number}: {len(fields)} columns")
        row = dict(zip(COLUMNS, fields))
        row.update(owner=spelled(row["owner"]), name=spelled(row["name"]), at=f"{table}:{number}")
        rows.append(row)
    return rows


def code_of(code):
    """Bytes outside ASCII are \\xNN in the tables, and one of those makes the whole code hexadecimal in a dictionary."""
    if not code.startswith("0x") and "\\x" not in code:
        return code
    raw = code.encode("latin-1").decode("unicode_escape").encode("latin-1")
    return "0x" + raw.hex()


def set_type(element, text, tag="type"):
    """One type is an attribute; alternatives and lists are elements."""
    types = [spelled(name.strip()) for name in text.split("|") if name.strip()]
    if len(types) == 1 and not types[0].startswith("list of "):
        element.attributes[tag] = types[0]
        return
    for name in types:
        is_list = name.startswith("list of ")
        element.add(Element("type", type=spelled(name.removeprefix("list of ")), list="yes" if is_list else ""))


def flags_of(row):
    flags = row["flags"]
    words = flags.replace("not in properties", "").replace("requires", "").split()
    access = next((word for word in words if word in ("r", "w", "rw")), "")
    return {
        "access": access, "hidden": "yes" if "hidden" in words else "", "optional": "yes" if "optional" in words else "",
        "in_properties": "no" if "not in properties" in flags else "",
        "forms": [word for word in words if word in ("index", "name", "id", "range", "relative", "test")],
    }


def definition(row):
    kind, flags = row["kind"], flags_of(row)
    if kind == "extends":
        return Element("class-extension", extends=row["name"], hidden=flags["hidden"])
    element = Element(DEFINITIONS[kind], name=row["name"], code=code_of(row["code"]))
    if kind == "class":
        default = row["name"] + "s"
        element.attributes.update({key: value for key, value in (("plural", row["plural"]), ("inherits", spelled(row["type"])))
                                   if value and not (key == "plural" and value == default)})
    if flags["hidden"]:
        element.attributes["hidden"] = "yes"
    return element


def part(row):
    kind, flags = row["kind"], flags_of(row)
    if kind == "direct":
        element = Element("direct-parameter", optional=flags["optional"], requires_access=flags["access"])
    elif kind == "element":
        element = Element("element", type=row["name"], access=flags["access"], hidden=flags["hidden"])
        for form in flags["forms"]:
            element.add(Element("accessor", style=form))
        return element
    elif kind == "responds to":
        return Element("responds-to", command=row["name"])
    elif kind == "enumerator":
        return Element("enumerator", name=row["name"], code=code_of(row["code"]), hidden=flags["hidden"])
    elif kind == "parameter":
        element = Element("parameter", name=row["name"], code=code_of(row["code"]), optional=flags["optional"], hidden=flags["hidden"],
                          requires_access=flags["access"])
    else:
        code = "" if kind == "contents" and row["code"] == "pcnt" else code_of(row["code"])
        element = Element(kind, name=row["name"], code=code, access=flags["access"], hidden=flags["hidden"], in_properties=flags["in_properties"])
    set_type(element, row["type"])
    return element


def place_synonym(row, opened, parts):
    element = Element("synonym", name=row["name"], code=code_of(row["code"]), hidden=flags_of(row)["hidden"])
    owner, _, name = row["owner"].partition(".")
    place = parts.get((spelled(owner), spelled(name))) if name else next(
        (opened[kind, owner] for kind in DEFINITIONS if (kind, owner) in opened), None)
    if place is None:
        sys.exit(f"{row['at']}: nothing is called {row['owner']}")
    # Synonyms stand in front of all else in an element.
    place.children.insert(sum(child.tag == "synonym" for child in place.children), element)


def suites_of(rows):
    suites, opened, parts, synonyms = {}, {}, {}, []
    for row in rows:
        kind = row["kind"]
        suite = suites.setdefault(row["suite"], Element("suite", name=row["suite"], code="????"))
        if kind in DEFINITIONS:
            element = opened["class" if kind == "extends" else kind, row["name"]] = suite.add(definition(row))
            if kind in ("command", "event") and row["type"]:
                result = Element("result")
                set_type(result, row["type"])
                element.add(result)
        elif kind == "synonym":
            synonyms.append((row, dict(opened), dict(parts)))
        elif kind in PARTS:
            owner = next((opened[k, row["owner"]] for k in PARTS[kind] if (k, row["owner"]) in opened), None)
            if owner is None:  # a class of another dictionary, or of the language
                owner = opened["class", row["owner"]] = suite.add(Element("class-extension", extends=row["owner"]))
            parts[row["owner"], row["name"]] = owner.add(part(row))
        else:
            sys.exit(f"{row['at']}: unknown kind {kind}")
    for row, known, known_parts in synonyms:
        place_synonym(row, known, known_parts)
    for suite in suites.values():
        for element in suite.children:
            # The parameters of a command stand in front of its result.
            element.children.sort(key=lambda child: child.tag == "result")
    return suites


def dictionary(stem, rows, shared_rows):
    title = TITLES.get(stem, stem.replace("-", " ").title())
    root = Element("dictionary", title=title)
    bare = lambda row: tuple(row[column] for column in COLUMNS)
    standard = [bare(row) for row in rows if row["suite"] == "Standard Suite"]
    if stem != SHARED and sorted(standard) == sorted(map(bare, shared_rows)):
        rows = [row for row in rows if row["suite"] != "Standard Suite"]
        root.attributes["xmlns:xi"] = "http://www.w3.org/2001/XInclude"
        root.add(Element("xi:include", href=TITLES[SHARED] + ".sdef", xpointer="xpointer(/dictionary/suite)"))
    for suite in suites_of(rows).values():
        root.add(suite)
    return title.replace(" ", "") + ".sdef", "\n".join(['<?xml version="1.0" encoding="UTF-8"?>', *root.lines()]) + "\n"


def main():
    folder = pathlib.Path(sys.argv[1])
    output = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else pathlib.Path(__file__).parent.parent / "resources/dictionaries")
    tables = {table.stem: rows_of(table) for table in sorted(folder.glob("*.tsv"))}
    if SHARED not in tables:
        sys.exit(f"{folder} has no {SHARED}.tsv")
    for stem, rows in tables.items():
        name, text = dictionary(stem, rows, tables[SHARED])
        (output / name).write_text(text, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
