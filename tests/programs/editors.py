#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The syntax files for editors: they have every word of the language and no other, and the editors themselves colour a script by them as is expected.

    editors.py BUILD/bin [PATTERN]
"""
import html.parser
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

try:
    import gi
except ImportError:
    if sys.executable == "/usr/bin/python3":
        raise
    os.execv("/usr/bin/python3", ["/usr/bin/python3", *sys.argv])  # the packages of the library are for the system's Python
gi.require_version("GtkSource", "5")
from gi.repository import GtkSource

SOURCE = pathlib.Path(__file__).resolve().parents[2]
USES = ["Keyword", "Command", "Constant", "Class", "Property", "Parameter"]
KATE, GTK, VIM = ("org.kde.syntax-highlighting/syntax/applescript.xml", "gtksourceview-5/language-specs/applescript.lang", "vim/vimfiles/syntax/applescript.vim")

# A script in pieces, and what each is. Names of one's own and blanks are nothing.
SAMPLE = [
    ("#!/usr/bin/osascript\n", "Comment"), ("(* one (* two *) set *)", "Comment"), ("\n", ""),
    ("set", "Keyword"), (" x ", ""), ("to", "Keyword"), (" ", ""), ("1", "Number"), (" ", ""), ("-- end \"\n", "Comment"),
    ("Set", "Keyword"), (" ", ""), ("text  item\tdelimiters", "Property"), (" ", ""), ("to", "Keyword"), (" ", ""),
    ("\"a", "Text"), ("\\\"", "Escape"), ("b -- \nset", "Text"), ("\\\\", "Escape"), ("\"", "Text"), (" & ", ""), ("|set \\| to|", "Name"), (" & ", ""),
    ("«event hookPlay»", "Raw Code"), (" ", ""), ("¬", "Continuation"), (" ", ""), ("-- set\n", "Comment"),
    ("\t+ ", ""), ("1.5E+3", "Number"), (" - ", ""), (".5", "Number"), (" ", ""), ("as", "Keyword"), (" ", ""), ("text items", "Class"), ("\n", ""),
    ("if", "Keyword"), (" settings ", ""), ("doesn't", "Keyword"), (" ", ""), ("contain", "Keyword"), (" to_set ", ""), ("then", "Keyword"), (" ", ""),
    ("display dialog", "Command"), (" ", ""), ("\"x\"", "Text"), (" ", ""), ("default answer", "Parameter"), (" ", ""), ("return", "Keyword"), (" ", ""),
    ("with icon", "Parameter"), (" ", ""), ("caution", "Constant"), ("\n", ""),
    ("délaiset's ", ""), ("list", "Class"), ("'s ", ""), ("2nd", "Number"), (" ", ""), ("word", "Class"), ("\n", ""),
]
TEXT = "".join(piece for piece, _ in SAMPLE)
KATES_STYLES = {"": "Normal", "Command": "Function", "Class": "DataType", "Property": "BuiltIn", "Parameter": "Attribute", "Name": "Variable", "Text": "String",
                "Escape": "SpecialChar", "Raw Code": "SpecialString", "Number": "DecVal", "Continuation": "Operator"}


def words_of_the_language(build):
    """Every term of the tables, in lower case, and the use that counts most among those that it has."""
    uses = {}

    def add(words, use):
        words = words.lower()
        if words and USES.index(use) < USES.index(uses.get(words, "Parameter")) or words not in uses:
            uses[words] = use

    for word in re.findall(r'X\(\w+, "([^"]+)", \w+\)', (SOURCE / "src/platform/applescript/syntax/Keyword.h").read_text()):
        add(word, "Keyword")
    parameters, *lists = re.split(r"std::to_array<(\w+)Row>", (SOURCE / "src/platform/applescript/terminology/LanguageTerms.cpp").read_text())
    made = (build / "src/platform/applescript/StandardAdditionsTerms.cpp").read_text()
    for words in re.findall(r'\{"([^"]+)", (?:"[^"]*"_4cc|\d+u), (?:"[^"]*"_4cc|\d+u)\}', parameters + made):
        add(words, "Parameter")
    for kind, rows in zip(lists[::2], lists[1::2]):
        for words, plural in re.findall(r'^        \{"([^"]+)", (?:"([^"]*)",)?', rows, re.M):
            add(words, {"Event": "Command"}.get(kind, kind))
            if kind == "Class" and plural:
                add(plural, "Class")
    for words, kind in re.findall(r'^    \{"([^"]+)", TermKind::(\w+),', made, re.M):
        add(words, {"Event": "Command", "Plural": "Class"}.get(kind, kind))
    return uses


def words_for_kate(file):
    root = xml.etree.ElementTree.parse(file).getroot()
    found = {item.text: words.get("name") for words in root.iter("list") for item in words}
    for rule in root.iter("RegExpr"):
        if rule.get("attribute") in USES:
            found |= dict.fromkeys(rule.get("String")[len(r"\b(?:"):-len(r")\b")].replace(r"\s+", " ").split("|"), rule.get("attribute"))
    return found


def words_for_gtk(file):
    return {word.text.replace(r"\s+", " "): context.get("style-ref").capitalize() for context in xml.etree.ElementTree.parse(file).getroot().iter("context")
            for word in context.findall("keyword")}


def words_for_vim(file):
    found = {}
    for use, words in re.findall(r"^syn match applescript(\w+) /\\v<%\((.*)\)>/$", file.read_text(), re.M):
        found |= dict.fromkeys(words.replace(r"\s+", " ").split("|"), use)
    return found


class Spans(html.parser.HTMLParser):
    """The text of a page's <pre> with the number of the colour of each character."""

    def __init__(self, text):
        super().__init__()
        self.colours, self.text, self.colour, self.inside = [], "", 0, False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.inside |= tag == "pre"
        if tag == "span":
            self.colour = int(re.search(r"color:#(\w+)", dict(attributes)["style"])[1], 16)

    def handle_endtag(self, tag):
        self.inside &= tag != "pre"
        if tag == "span":
            self.colour = 0

    def handle_data(self, data):
        if self.inside:
            self.text += data
            self.colours += [self.colour] * len(data)


class Editors(unittest.TestCase):
    def setUp(self):
        self.build = BUILD
        self.share = BUILD / "share"
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.script = self.folder / "sample.applescript"
        self.script.write_text(TEXT, encoding="utf-8")

    def run_tool(self, *words, **environment):
        done = subprocess.run([*map(str, words)], cwd=self.folder, capture_output=True, text=True, timeout=60, stdin=subprocess.DEVNULL,
                              env=dict(os.environ, HOME=str(self.folder), LC_ALL="C.UTF-8", **environment))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def expect(self, uses, known=lambda use: use):
        """`uses` has one for each character of the sample. Blanks and ends of lines in between may be coloured as an editor likes."""
        at = 0
        for piece, use in SAMPLE:
            for character, found in zip(piece, uses[at:at + len(piece)]):
                if not character.isspace():
                    self.assertEqual(found, known(use), f"{character!r} in {piece!r}")
            at += len(piece)
        self.assertEqual(len(uses), at)

    def test_the_files_have_all_words_and_no_others(self):
        expected = words_of_the_language(self.build)
        self.assertGreater(len(expected), 500)
        for place, words in ((KATE, words_for_kate), (GTK, words_for_gtk), (VIM, words_for_vim)):
            with self.subTest(place):
                self.assertEqual(words(self.share / place), expected)

    def test_the_files_are_what_their_formats_ask_for(self):
        self.run_tool("xmllint", "--noout", self.share / KATE)
        rules = "/usr/share/gtksourceview-5/language-specs/language2.rng"
        subprocess.run(["xmllint", "--noout", "--relaxng", rules, self.share / GTK], check=True, capture_output=True)

    def test_kate(self):
        styles = ["Normal", "Keyword", "Function", "Variable", "ControlFlow", "Operator", "BuiltIn", "Extension", "Preprocessor", "Attribute", "Char", "SpecialChar", "String",
                  "VerbatimString", "SpecialString", "Import", "DataType", "DecVal", "BaseN", "Float", "Constant", "Comment", "Documentation", "Annotation", "CommentVar",
                  "RegionMarker", "Information", "Warning", "Alert", "Others", "Error"]
        themes = self.folder / "share/org.kde.syntax-highlighting/themes"
        themes.mkdir(parents=True)
        colours = {style: {"text-color": f"#0000{number:02x}"} for number, style in enumerate(styles)}
        (themes / "numbered.theme").write_text(json.dumps({"metadata": {"name": "Numbered", "revision": 1}, "text-styles": colours, "editor-colors": {}}))
        page = self.run_tool("kate-syntax-highlighter", "--theme", "Numbered", self.script, XDG_DATA_DIRS=f"{self.folder}/share:{self.share}", QT_QPA_PLATFORM="offscreen")
        spans = Spans(page)
        self.assertEqual(spans.text.strip(), TEXT.strip())
        start = len(spans.text) - len(spans.text.lstrip())
        self.expect([styles[colour] for colour in spans.colours[start:start + len(TEXT)]], lambda use: KATES_STYLES.get(use, use))

    def test_gtksourceview(self):
        uses = [*(use for use in dict.fromkeys(use for _, use in SAMPLE) if use not in ("", "Name"))]
        styles = "".join(f'<style name="applescript:{use.lower().replace(" ", "-")}" foreground="#0000{number:02x}"/>' for number, use in enumerate(uses))
        (self.folder / "numbered.xml").write_text(f'<style-scheme id="numbered" name="numbered" version="1.0">{styles}</style-scheme>')
        schemes, languages = GtkSource.StyleSchemeManager(), GtkSource.LanguageManager()
        schemes.set_search_path([str(self.folder)])
        languages.set_search_path([str((self.share / GTK).parent), *languages.get_search_path()])
        buffer = GtkSource.Buffer()
        buffer.set_language(languages.guess_language("sample.applescript", None))
        buffer.set_style_scheme(schemes.get_scheme("numbered"))
        buffer.set_text(TEXT)
        buffer.ensure_highlight(buffer.get_start_iter(), buffer.get_end_iter())

        def use_at(offset):
            tags = [tag for tag in buffer.get_iter_at_offset(offset).get_tags() if tag.props.foreground_set]
            return uses[round(tags[-1].props.foreground_rgba.blue * 255)] if tags else ""

        self.expect([use_at(offset) for offset in range(len(TEXT))], lambda use: "" if use == "Name" else use)

    def test_vim(self):
        (self.folder / "ask.vim").write_text("""
            let out = []
            for number in range(1, line('$'))
              let text = getline(number)
              call add(out, map(range(strchars(text)), {i -> synIDattr(synID(g:number, byteidx(g:text, i) + 1, 1), 'name')}))
            endfor
            call writefile([json_encode({'type': &filetype, 'uses': out})], 'out.json')
            qa!
        """)
        (self.folder / "tool").write_text("#!/usr/bin/env -S osascript -l AppleScript\nbeep\n")
        for name, expected in ((self.script.name, "applescript"), ("tool", "applescript")):
            self.run_tool("vim", "-N", "-es", "-u", "NONE", "-i", "NONE", "--cmd", f"set encoding=utf-8 rtp={self.share}/vim/vimfiles,$VIMRUNTIME", "--cmd", "filetype on",
                          "--cmd", "syntax on", "-S", "ask.vim", name)
            told = json.loads((self.folder / "out.json").read_text())
            self.assertEqual(told["type"], expected)
            if name == self.script.name:
                self.expect([use.removeprefix("applescript") for line in told["uses"] for use in line + [""]], lambda use: use.replace(" ", ""))


BUILD = pathlib.Path(sys.argv[1]).resolve().parent

if __name__ == "__main__":
    pattern = sys.argv[2] if len(sys.argv) > 2 else ""
    suite = unittest.TestSuite(test for test in unittest.defaultTestLoader.loadTestsFromTestCase(Editors) if re.search(pattern, test.id()))
    sys.exit(not unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful())
