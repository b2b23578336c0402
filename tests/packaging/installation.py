#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""An installation in a folder of its own: complete, understood by the desktop's tools, usable, and usable still when it has been moved.

    installation.py BUILD/bin [PATTERN]
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "applets"))
import harness
from harness import binaries, until

OSA = ("osascript", "osacompile", "osadecompile", "osalang")
DESKTOP = ("quoddle", "quoddle-shell", "quoddle-dialogs", "quoddle-clipboard", "quoddle-preview", "quoddle-fetch")
# Every file, with the programs' own names in place of *.
FILES = ["share/applications/quoddle.desktop", "share/metainfo/local.quoddle.Quoddle.metainfo.xml", "share/mime/packages/quoddle.xml",
         "share/icons/hicolor/scalable/apps/quoddle.svg", "share/icons/hicolor/symbolic/apps/quoddle-symbolic.svg",
         "share/icons/hicolor/scalable/mimetypes/application-x-applescript-compiled.svg",
         "share/icons/hicolor/scalable/mimetypes/application-x-quoddle-appletz.svg",
         "share/icons/hicolor/scalable/mimetypes/text-x-applescript.svg", "share/doc/quoddle/copyright", "share/doc/quoddle/changelog.gz",
         "share/doc/quoddle-osa/copyright", "share/doc/quoddle-osa/changelog.gz",
         "share/org.kde.syntax-highlighting/syntax/applescript.xml", "share/gtksourceview-5/language-specs/applescript.lang",
         "share/vim/vimfiles/syntax/applescript.vim", "share/vim/vimfiles/ftdetect/applescript.vim"]
FOR_EACH = ["share/bash-completion/completions/*", "share/zsh/vendor-completions/_*", "share/fish/vendor_completions.d/*.fish"]
WITH_WORDS = 'tell application "Mail" to get subject of message 1 of mailbox "x"'


class Installation(harness.AppletCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.place = pathlib.Path(tempfile.mkdtemp(prefix="in a pläce")).resolve()
        cls.addClassCleanup(shutil.rmtree, cls.place)
        cls.prefix = cls.place / "stage" / "usr"
        # Without DESTDIR nothing would tell a path of the build or of the prefix in an installed file from one that is meant.
        subprocess.run(["cmake", "--install", str(binaries().parent), "--prefix", "/usr", "--strip"], env=dict(os.environ, DESTDIR=str(cls.prefix.parent)),
                       check=True, capture_output=True, umask=0o022)

    def environment_of(self, prefix):
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700, exist_ok=True)
        inherited = {name: value for name, value in self.display.environment.items() if not name.startswith("QUODDLE_") or name == "QUODDLE_LONGEST_PAUSE"}
        return inherited | {"HOME": str(self.folder), "XDG_RUNTIME_DIR": str(runtime), "XDG_DATA_HOME": str(self.folder / "data"), "XDG_CONFIG_HOME": str(self.folder / "config"),
                            "XDG_CACHE_HOME": str(self.folder / "cache"), "XDG_DATA_DIRS": f"{prefix}/share:/usr/share", "PATH": f"{prefix}/bin:/usr/bin:/bin"}

    def call(self, prefix, *words, **more):
        return subprocess.run([*map(str, words)], env=self.environment_of(prefix), cwd=self.folder, capture_output=True, text=True, timeout=60, **more)

    def test_everything_is_there_and_nothing_else(self):
        expected = {f"bin/{program}" for program in OSA + DESKTOP} | set(FILES)
        expected |= {f"share/man/man1/{program}.1.gz" for program in OSA + DESKTOP}
        expected |= {place.replace("*", program) for place in FOR_EACH for program in (*OSA, "quoddle")}
        source = pathlib.Path(__file__).resolve().parents[2]
        expected |= {f"share/quoddle/dictionaries/{file.name}" for file in (source / "resources/dictionaries").glob("*.sdef")}
        installed = {str(file.relative_to(self.prefix)) for file in self.prefix.rglob("*") if not file.is_dir()}
        self.assertEqual(installed, expected)
        for file in self.prefix.rglob("*"):
            if file.is_file():
                self.assertEqual(os.access(file, os.X_OK), file.parent.name == "bin", file)
                # What is said of a fault in a program may name the source file; nothing else knows the folders of the build.
                self.assertFalse(file.parent.name != "bin" and str(binaries().parent).encode() in file.read_bytes(), file)

    def test_the_first_programs_need_no_toolkit(self):
        for program in OSA:
            needed = subprocess.run(["ldd", str(self.prefix / "bin" / program)], capture_output=True, text=True, check=True).stdout
            self.assertNotIn("Qt", needed)
            self.assertNotIn("not found", needed)

    def test_the_desktop_understands_its_files(self):
        share = self.prefix / "share"
        for words in (["desktop-file-validate", share / "applications/quoddle.desktop"],
                      ["man", "-l", "-Tutf8", "--warnings", share / "man/man1/quoddle.1.gz"]):
            done = self.call(self.prefix, *words)
            self.assertEqual((done.returncode, done.stderr if words[0] == "man" else ""), (0, ""), done.stdout + done.stderr)
        said = self.call(self.prefix, "appstreamcli", "validate", "--no-net", share / "metainfo/local.quoddle.Quoddle.metainfo.xml").stdout
        self.assertIn("alidation", said)
        # Newer validators want a homepage, and there is none.
        self.assertLessEqual(set(re.findall(r"^[EW]: \S+ (\S+)", said, re.MULTILINE)), {"url-homepage-missing"}, said)
        self.call(self.prefix, "update-mime-database", share / "mime")
        self.call(self.prefix, "osacompile", "-o", "main", "-e", "beep")
        (self.folder / "Old.SCPT").write_bytes((self.folder / "main").read_bytes())
        (self.folder / "s.applescript").write_text("beep")
        (self.folder / "tool").write_text("#!/usr/bin/env -S osascript -l AppleScript\nbeep\n")
        (self.folder / "text").write_text("set x to 1\n")
        self.call(self.prefix, "osacompile", "-o", "Tool 1.app", "-e", "beep")
        self.assertEqual(self.call(self.prefix, "quoddle", "pack", "Tool 1.app").stdout, "Packed: Tool 1.appletz\n")
        for name, expected in [("main", "application/x-applescript-compiled"), ("Old.SCPT", "application/x-applescript-compiled"), ("s.applescript", "text/x-applescript"),
                               ("tool", "text/x-applescript"), ("text", "text/plain"), ("Tool 1.appletz", "application/x-quoddle-appletz")]:
            said = self.call(self.prefix, "gio", "info", "-a", "standard::content-type", name).stdout
            self.assertIn(f"standard::content-type: {expected}\n", said, name)
        for file in [share / "mime" / name for name in os.listdir(share / "mime") if name != "packages"]:
            shutil.rmtree(file) if file.is_dir() else file.unlink()

    def runs(self, prefix, launch_with):
        """A script, a compiled script with an application's words, and an applet do their work."""
        self.assertEqual(self.call(prefix, "osascript", "-e", "6 * 7").stdout, "42\n")
        made = self.call(prefix, "osacompile", "-o", "words.scpt", "-e", WITH_WORDS)
        self.assertEqual((made.returncode, made.stderr), (0, ""))
        self.assertEqual(self.call(prefix, "osadecompile", "words.scpt").stdout, WITH_WORDS + "\n")
        noted = self.folder / "noted"
        bundle = self.folder / "Töol 1.app"
        if not bundle.exists():
            source = f'on run\ndisplay dialog "At work"\ndo shell script "echo done >> {noted}"\nend run'
            self.assertEqual(self.call(prefix, "osacompile", "-o", bundle, "-e", source).stderr, "")
        noted.unlink(missing_ok=True)
        applet = subprocess.Popen([*map(str, launch_with(bundle))], env=self.environment_of(prefix), cwd="/")
        self.addCleanup(applet.wait)
        self.addCleanup(applet.kill)
        until(lambda: "Töol 1" in self.call(prefix, "quoddle", "list").stdout, "the applet to be listed")
        self.press("Töol 1", "Return")
        until(noted.exists, "the script to go on")
        until(lambda: applet.poll() is not None, "the applet to end")
        self.assertEqual(applet.returncode, 0)

    def press(self, title, *keys):
        """Presses keys in a window that has come to the front."""
        def tool(*words):
            return subprocess.run(["xdotool", *words], env=self.display.environment, capture_output=True, text=True).stdout.strip()
        until(lambda: tool("getactivewindow", "getwindowname") == title, f"“{title}” in front")
        harness.until_at_rest(int(until(lambda: tool("getactivewindow", "getwindowpid"), "its process")))
        if folder := os.environ.get("QUODDLE_ARTEFACTS"):
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
            subprocess.run(["import", "-window", "root", f"{folder}/installation-{self._testMethodName}-{keys[-1]}.png"], env=self.display.environment)
        tool("key", *keys)

    def test_scripts_and_applets_run_from_there(self):
        self.runs(self.prefix, lambda bundle: [bundle / "Contents/Linux" / bundle.stem])

    def test_it_may_be_moved(self):
        moved = self.place / "elsewhere"
        self.prefix.rename(moved)
        try:
            self.runs(moved, lambda bundle: ["quoddle", "run", bundle])
        finally:
            moved.rename(self.prefix)

    def test_a_script_is_opened_by_the_desktop(self):
        noted = self.folder / "noted"
        script = self.folder / "it's a \"scrïpt\" $HOME.applescript"
        script.write_text(f'do shell script "echo ran >> {noted}"\nerror "It broke."')
        shutil.copytree(self.prefix / "share/mime", self.folder / "data/mime")
        shutil.copytree(self.prefix / "share/applications", self.folder / "data/applications")
        self.call(self.prefix, "update-mime-database", self.folder / "data/mime")
        self.call(self.prefix, "update-desktop-database", self.folder / "data/applications")
        for answer in (["Escape"], ["Tab", "space"]):
            self.assertFalse(noted.exists())
            opening = subprocess.Popen(["gio", "open", str(script)], env=self.environment_of(self.prefix), cwd="/")
            self.addCleanup(opening.kill)
            self.press("Run Script", *answer)
            self.assertEqual(opening.wait(harness.DEADLINE), 0)
        until(noted.exists, "the script to run")
        self.press("osascript", "Return")
        # So is a packed applet, which has come from another user.
        noted.unlink()
        self.call(self.prefix, "osacompile", "-o", "Töol 2.app", "-e", f'do shell script "echo ran >> {noted}"')
        self.assertEqual(self.call(self.prefix, "quoddle", "pack", "Töol 2.app").returncode, 0)
        shutil.rmtree(self.folder / "data/quoddle")
        for keys in (["Tab", "space"], []):
            opening = subprocess.Popen(["gio", "open", "Töol 2.appletz"], env=self.environment_of(self.prefix), cwd=self.folder)
            self.addCleanup(opening.kill)
            if keys:
                self.press("Run Applet", *keys)
            until(noted.exists, "the applet to run")
            noted.unlink()
            self.assertEqual(opening.wait(harness.DEADLINE), 0)


if __name__ == "__main__":
    harness.main(Installation)
