#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Holds the texts in all languages against the sources: nothing is missing, left over or half translated, and what is put into a text at
run time has its place in every language.

    catalogues.py ROOT
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(sys.argv.pop(1))
RESOURCES = ROOT / "resources"
TABLES = ("Localizable", "MainMenu")
TRANSLATED = sorted(path.stem.removeprefix("quoddle_") for path in (RESOURCES / "translations").glob("*.ts"))
PLACEHOLDER = re.compile(r"%%|%\d|%L?n|%l?[d@]|APPNAME")
SAME_IN_TWO_LANGUAGES = {"1 byte", "Version %1", "Page %1"}


def placeholders(text):
    return sorted(PLACEHOLDER.findall(text))


def messages(language):
    """Yields (source, translation, forms, type) for each text of a catalogue."""
    for message in ElementTree.parse(RESOURCES / f"translations/quoddle_{language}.ts").getroot().iter("message"):
        translation = message.find("translation")
        forms = [form.text or "" for form in translation.iter("numerusform")] or [translation.text or ""]
        yield message.find("source").text, forms, translation.get("type")


def strings(language, table):
    text = (RESOURCES / f"{language}.lproj/{table}.strings").read_text(encoding="utf-8")
    return dict(re.findall(r'^"([^"]*)" = "([^"]*)";$', text, re.M))


class Catalogues(unittest.TestCase):
    def test_there_is_a_folder_for_each_catalogue(self):
        folders = {path.name.removesuffix(".lproj") for path in RESOURCES.glob("*.lproj")}
        self.assertEqual(folders, {"en", "de", "es", "fr", "ja"})
        self.assertEqual(folders - {"en"}, set(TRANSLATED))

    def test_they_have_the_texts_of_the_sources(self):
        with tempfile.TemporaryDirectory() as folder:
            for language in TRANSLATED:
                name = f"quoddle_{language}.ts"
                pathlib.Path(folder, name).write_bytes((RESOURCES / "translations" / name).read_bytes())
            subprocess.run([ROOT / "scripts/update-translations", folder], check=True)
            for path in pathlib.Path(folder).iterdir():
                self.assertEqual(path.read_text(encoding="utf-8"), (RESOURCES / "translations" / path.name).read_text(encoding="utf-8"),
                                 "run scripts/update-translations, and translate what is unfinished then")

    def test_every_text_is_translated_with_its_placeholders(self):
        for language in TRANSLATED:
            for source, forms, kind in messages(language):
                with self.subTest(language=language, source=source):
                    self.assertIsNone(kind)
                    for form in forms:
                        self.assertTrue(form.strip())
                        self.assertEqual(placeholders(form), placeholders(source))
                        self.assertEqual("&" in form, "&" in source)  # the letters of keys
                        self.assertEqual(form.endswith(":"), source.endswith(":"))

    def test_sentences_do_not_stay_english(self):
        for language in TRANSLATED:
            for source, forms, _ in messages(language):
                if re.search(r"[a-z] |\d [a-z]", source) and source not in SAME_IN_TWO_LANGUAGES:
                    with self.subTest(language=language):
                        self.assertNotIn(source, forms)

    def test_the_tables_have_the_same_keys_and_placeholders(self):
        for table in TABLES:
            english = strings("en", table)
            self.assertTrue(english)
            for language in TRANSLATED:
                with self.subTest(table=table, language=language):
                    others = strings(language, table)
                    self.assertEqual(list(others), list(english))
                    for key, text in others.items():
                        self.assertEqual(placeholders(text), placeholders(english[key]), key)
                        self.assertTrue(text.strip(), key)

    def test_what_desktops_read_is_in_all_languages(self):
        lines = (RESOURCES / "desktop/quoddle.desktop").read_text(encoding="utf-8").splitlines()
        for key in ("Name", "GenericName", "Comment"):
            self.assertEqual(sorted(re.findall(rf"^{key}\[(\w+)\]=\S", "\n".join(lines), re.M)), TRANSLATED)
        language_of = "{http://www.w3.org/XML/1998/namespace}lang"
        for file, tags in (("quoddle.xml", {"comment"}), ("quoddle.metainfo.xml", {"summary", "p", "li"})):
            texts = [node for node in ElementTree.parse(RESOURCES / "desktop" / file).iter() if node.tag.rpartition("}")[2] in tags]
            self.assertTrue(texts)
            said = [(node.get(language_of), " ".join(node.text.split())) for node in texts]
            self.assertEqual([language for language, _ in said], [None, *TRANSLATED] * (len(said) // 5), file)
            self.assertEqual(len({text for _, text in said}), len(said))

    def test_the_menu_has_the_keys_of_its_table(self):
        titles = re.findall(r'title = "([^"]*)"', (RESOURCES / "MainMenu.plist").read_text(encoding="utf-8"))
        self.assertEqual(set(titles), set(strings("en", "MainMenu")))


if __name__ == "__main__":
    unittest.main()
