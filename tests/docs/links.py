#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Whatever the documents name is there: the targets of their relative links, the headings behind a "#", the paths below src, tests,
programs and so on, and the sources that are named by the end of their path ("appkit/NSAlert.h", "appkit/NSAlert").
Words in capitals ("tests/scripts/TOPIC") stand for any name.

    links.py
"""
import pathlib
import re
import sys
import unittest
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENTS = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").rglob("*.md"))]
FOLDERS = "src|tests|programs|docs|scripts|resources|examples"
SOURCE_ENDINGS = r"\.(?:h|cpp|py|ui|sdef|svg)"

LINK = re.compile(r"(?<!`)\]\(([^()\s]+)\)")
QUOTED = re.compile(r"`([^`\n]+)`")
PATH = re.compile(rf"(?:{FOLDERS})(?:/[\w.+-]+)+/?")
SOURCE = re.compile(rf"[\w+./-]+{SOURCE_ENDINGS}|[a-z]\w*(?:/[a-z]\w*)*/[A-Z][\w+-]*[a-z][\w+-]*")
ANY_NAME = re.compile(r"(?<![A-Za-z])(?!README|CONTRIBUTING)[A-Z]{4,}(?![A-Za-z])")
HEADING = re.compile(r"^#+ +(.*)", re.M)


def prose(text):
    """The text without blocks of code, with as many lines."""
    return re.sub(r"^```.*?^```", lambda block: "\n" * block.group().count("\n"), text, flags=re.M | re.S)


def anchors(document):
    """What a link may have behind "#": the headings, in small letters, without signs, blanks as dashes."""
    return {re.sub(r"[^\w -]", "", heading.lower()).strip().replace(" ", "-") for heading in HEADING.findall(prose(document.read_text()))}


def fault_of_link(document, link):
    if re.match(r"[a-z]+:", link):
        return None
    path, _, anchor = urllib.parse.unquote(link).partition("#")
    target = (document.parent / path).resolve() if path else document
    if not target.exists():
        return "leads nowhere"
    return "has no such heading" if anchor and anchor not in anchors(target) else None


def sources():
    """Every source by all ends of its path."""
    ends = set()
    for folder in FOLDERS.split("|"):
        for file in (ROOT / folder).rglob("*"):
            path = file.relative_to(ROOT)
            for parts in (path.parts, path.with_suffix("").parts):
                ends.update("/".join(parts[i:]) for i in range(len(parts)))
    return ends


def faults(document, ends):
    for number, line in enumerate(prose(document.read_text()).splitlines(), 1):
        place = f"{document.relative_to(ROOT)}:{number}"
        for link in LINK.findall(line):
            if fault := fault_of_link(document, link):
                yield f"{place}: {link} {fault}"
        for quoted in QUOTED.findall(line):
            if ANY_NAME.search(quoted):
                continue
            if PATH.fullmatch(quoted) and not (ROOT / quoted).exists():
                yield f"{place}: there is no {quoted}"
            elif SOURCE.fullmatch(quoted) and not quoted.startswith(("/", ".")) and quoted not in ends:
                yield f"{place}: no path ends with {quoted}"


class Links(unittest.TestCase):
    def test_what_the_documents_name_is_there(self):
        ends = sources()
        found = [fault for document in DOCUMENTS for fault in faults(document, ends)]
        self.assertFalse(found, "\n" + "\n".join(found))

    def test_every_layer_has_its_page(self):
        """Each folder that is a layer is named by a page in docs/layers, and the overview leads to each page."""
        pages = {page: page.read_text() for page in (ROOT / "docs/layers").glob("*.md")}
        check = (ROOT / "tests/layers/check.py").read_text()
        layers = set(re.findall(r'^    "([\w/]+)": \[|MAY\["(\w+)"\]', check, re.M))
        self.assertGreater(len(layers), 15)
        for layer in sorted(first or second for first, second in layers):
            with self.subTest(layer):
                self.assertTrue(any(f"`src/{layer}`" in text for text in pages.values()), "no page begins with its folder")
        overview = (ROOT / "docs/architecture.md").read_text()
        for page in sorted(pages):
            with self.subTest(page.name):
                self.assertTrue(f"(layers/{page.name})" in overview, "docs/architecture.md does not lead to it")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
