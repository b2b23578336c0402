#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: applets and dialogs speak the user's language, whichever way it is set, and an applet's own texts come before ours.

    languages.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any.
"""
import subprocess

import accessibility
import harness
from accessibility import ASKING
from harness import binaries

LANGUAGES = {  # Quit, Run, Cancel, the menu of the window, the title of a panel that chooses a folder
    "de": ("Beenden", "Ausführen", "Abbrechen", "Fenster", "Ordner auswählen"),
    "es": ("Salir", "Ejecutar", "Cancelar", "Ventana", "Elegir una carpeta"),
    "fr": ("Quitter", "Exécuter", "Annuler", "Fenêtre", "Choisir un dossier"),
    "ja": ("終了", "実行", "キャンセル", "ウインドウ", "フォルダを選択"),
}


class Languages(accessibility.AccessibleCase):
    def setUp(self):
        super().setUp()
        usual = dict(self.display.environment)
        self.addCleanup(lambda: (self.display.environment.clear(), self.display.environment.update(usual)))

    def speak(self, language, name="LANGUAGE"):
        """Sets the language with the variable alone, on a machine that need not have it installed."""
        for other in ("LC_ALL", "LC_MESSAGES", "LANGUAGE"):
            self.display.environment.pop(other, None)
        self.display.environment.update({"LANG": "C.UTF-8", "LC_CTYPE": "C.UTF-8", name: language})

    def test_windows_and_dialogs(self):
        for language, (quit_title, run, cancel, window, folder) in LANGUAGES.items():
            with self.subTest(language=language):
                self.speak(language)
                applet = self.start("Startup" + language, "delay 60", options=["-u"])
                self.find(quit_title, "push button")
                self.find(run, "push button")
                self.find(window, "menu item")
                applet.picture("startup")
                applet.kill()
                asking = self.start("Asking" + language, ASKING.replace("ASK", 'jot(button returned of (display dialog "?"))\nchoose folder'))
                self.find(cancel, "push button")
                asking.picture("dialog")
                asking.key("Return")
                self.find(folder)
                self.find(cancel, "push button")
                asking.picture("folder")
                self.assertEqual(asking.said("noted"), "OK\n")  # what scripts see is in no language
                asking.kill()
                (self.folder / "noted").unlink()

    def test_the_ways_to_set_the_language(self):
        for variable, value, expected in [("LANG", "de_AT.UTF-8", "Beenden"), ("LC_MESSAGES", "ja_JP.UTF-8", "終了"), ("LANGUAGE", "sv:fr:de", "Quitter"),
                                          ("LANGUAGE", "en:de", "Quit"), ("LANG", "sv_SE.UTF-8", "Quit")]:
            with self.subTest(variable=variable, value=value):
                self.speak(value, variable)
                applet = self.start("Way", "delay 60", options=["-u"])
                self.find(expected, "push button")
                applet.kill()

    def test_an_applet_s_own_texts_come_first(self):
        def bring(bundle):
            for name, text in {"en": '"QuitButton" = "Leave";', "de": '"RuntimeErrorMessage" = "Eigener Text.";'}.items():
                folder = bundle / f"Contents/Resources/{name}.lproj"
                folder.mkdir(parents=True, exist_ok=True)
                (folder / "Localizable.strings").write_text(text, encoding="utf-8")

        self.speak("de")
        applet = self.start("Own", 'error "Weh!"', prepare=bring)
        self.find("Eigener Text.")
        self.find("Leave", "push button")  # of the applet, though in another language
        applet.kill()
        self.start("Without", 'error "Weh!"')
        self.find("Das Applet wurde wegen eines Fehlers angehalten.")
        self.find("Beenden", "push button")

    def test_dialogs_of_osascript(self):
        self.speak("de")
        script = 'display dialog "?" giving up after 60'
        environment = dict(self.display.environment, HOME=str(self.folder))
        run = subprocess.Popen([binaries() / "osascript", "-e", script], env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(run.kill)
        self.find("Abbrechen", "push button").do_action(0)
        self.assertIn("User canceled. (-128)", run.communicate()[1])  # what it says itself stays English


if __name__ == "__main__":
    harness.main(Languages)
