#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: the applets among the examples do for a user what they promise.

    examples.py BIN [PATTERN]

Pictures of windows are left in the folder that QUODDLE_ARTEFACTS names, if any.
"""
import os
import plistlib
import shutil
import subprocess
import time

import accessibility
import harness
from harness import binaries, until

EXAMPLES = ("Shrink Pictures", "Rename Files", "Folder Watch", "Folder Report", "Jotter", "Word Count")


class Example(harness.Applet):
    """A copy of an example in the folder of the test, which is its user's home."""

    def __init__(self, case, name, *files, **environment):
        self.case, self.name, self.folder, self.more = case, name, case.folder, environment
        shutil.copytree(binaries().parent / "examples" / (name + ".app"), self.folder / (name + ".app"))
        self.launch(*map(str, files))
        case.addCleanup(self.kill)

    def environment(self):
        return super().environment() | self.more


class Examples(accessibility.AccessibleCase):
    def start_example(self, name, *files, **environment):
        self.applet = self.applets[name] = Example(self, name, *files, **environment)
        return self.applet

    def type_and_press(self, text, button):
        control = self.find(button, "push button")
        until(self.display.front, "a window in front")
        time.sleep(0.3)
        self.applet.press("ctrl+a")
        self.applet.type(text)
        self.press(control)

    def press(self, control):
        self.atspi.Action.do_action(control, 0)

    def choose_folder(self, path, button):
        control = self.find(button, "push button")
        time.sleep(0.3)
        self.applet.type(str(path))
        self.applet.press("Return")
        until(lambda: self.is_enabled(control), "the folder to be opened")
        time.sleep(0.3)
        self.press(control)

    def test_each_has_a_description_and_an_icon(self):
        for name in EXAMPLES:
            with self.subTest(name):
                contents = binaries().parent / "examples" / (name + ".app") / "Contents"
                icon = plistlib.loads((contents / "Info.plist").read_bytes())["CFBundleIconFile"]
                told = subprocess.run(["file", contents / "Resources" / (icon + ".png")], capture_output=True, text=True).stdout
                self.assertIn("256 x 256", told)
                self.assertTrue((contents / "Resources/description.rtf").exists())

    def test_pictures_are_made_smaller(self):
        pictures = self.folder / "Pictures"
        pictures.mkdir()
        subprocess.run(["convert", "-size", "2000x1000", "gradient:red-blue", pictures / "wide one.png"], check=True)
        (pictures / "wide one small.jpg").write_text("taken")
        (pictures / "broken.jpg").write_text("no picture")
        applet = self.start_example("Shrink Pictures", pictures / "wide one.png", pictures / "broken.jpg")
        self.find("1 picture could not be made smaller.", "dialog")
        applet.picture("alert")
        size = subprocess.run(["identify", "-format", "%m %w %h", pictures / "wide one small 2.jpg"], capture_output=True, text=True).stdout
        self.assertEqual(size, "JPEG 1600 800")
        self.assertEqual((pictures / "wide one small.jpg").read_text(), "taken")
        self.assertEqual(sorted(os.listdir(pictures)), ["broken.jpg", "wide one small 2.jpg", "wide one small.jpg", "wide one.png"])

    def test_pictures_without_the_program_for_them(self):
        tools = self.folder / "tools"
        tools.mkdir()
        for tool in ("sh", "dirname", "readlink", "env"):
            (tools / tool).symlink_to(shutil.which(tool))
        picture = self.folder / "a.png"
        picture.write_text("x")
        self.start_example("Shrink Pictures", picture, PATH=str(tools))
        until(lambda: any("Install the package “imagemagick”" in name for _, name, _ in self.showing()), "the alert to say what is missing")
        self.applet.picture("alert")
        self.assertFalse((self.folder / "a small.jpg").exists())

    def test_files_that_are_found_get_a_name_and_numbers(self):
        documents = self.folder / "Documents"
        documents.mkdir()
        for name in ("IMG 7.jpg", "IMG 8.jpg", "notes.txt", "Trip 2.jpg"):
            (documents / name).write_text(name)
        applet = self.start_example("Rename Files")
        self.press(self.find("Find files"))
        self.find("Search", "text")
        applet.type("IMG")
        self.find("2 found", "label")
        applet.press("Down", "ctrl+a")
        applet.picture("found")
        applet.press("Return")
        self.type_and_press("Trip", "Show")
        rename = self.find("Rename", "push button")
        applet.picture("plan")
        self.press(rename)
        self.find("Some files were not renamed", "dialog")  # there is a second trip already
        self.assertEqual(sorted(os.listdir(documents)), ["IMG 8.jpg", "Trip 1.jpg", "Trip 2.jpg", "notes.txt"])
        self.assertEqual([(documents / f"Trip {number}.jpg").read_text() for number in (1, 2)], ["IMG 7.jpg", "Trip 2.jpg"])

    def test_a_folder_is_watched(self):
        inbox = self.folder / "Inbox"
        inbox.mkdir()
        (inbox / "old.txt").write_text("x")
        applet = self.start_example("Folder Watch")
        run = self.find("Run", "push button")
        applet.picture("startup")
        self.press(run)
        self.choose_folder(inbox, "Watch")
        self.find("Watching “Inbox”", "label")
        applet.picture("watching")
        (inbox / "new.txt").write_text("x")
        # No service shows notifications here, so they are said on standard error.
        until(lambda: "new.txt" in applet.said("Folder Watch.log"), "the file to be told of")
        (inbox / "old.txt").unlink()
        until(lambda: "old.txt" in applet.said("Folder Watch.log"), "the file that has gone to be told of")
        said = applet.said("Folder Watch.log")
        self.assertIn("New in Inbox", said)
        self.assertIn("Gone from Inbox", said)

    def test_a_report_is_written(self):
        stuff = self.folder / "stuff"
        (stuff / "deep").mkdir(parents=True)
        for name, text in (("a.txt", "same"), ("deep/b.TXT", "same"), ("large.bin", "x" * 5000), (".hidden", "y" * 9000)):
            (stuff / name).write_text(text)
        applet = self.start_example("Folder Report")
        self.press(self.find("Run", "push button"))
        self.choose_folder(stuff, "Report")
        self.find("What shall the report tell?", "dialog")
        time.sleep(0.3)
        applet.press("ctrl+a")
        applet.picture("chapters")
        self.press(self.find("Continue", "push button"))
        self.type_and_press("many", "OK")
        self.find("How many lines? A number from 1 to 1000, please.", "label")
        self.type_and_press("2", "OK")
        self.find("Save the report as:")
        self.press(self.find("Save", "push button"))
        done = self.find("Done", "push button")
        applet.picture("saved")
        report = (stuff / "Folder Report.txt").read_text()
        self.press(done)
        self.assertIn("        5000  large.bin\n", report)
        self.assertIn("      2 txt\n", report)
        self.assertIn("\n./a.txt\n./deep/b.TXT\n", report)
        self.assertNotIn("hidden", report)

    def test_other_scripts_take_notes(self):
        applet = self.start_example("Jotter")
        until(lambda: self.osascript("-e", 'application "Jotter" is running').stdout == "true\n", "Jotter to listen")

        def tell(call):
            done = self.osascript("-s", "s", "-e", f'tell application "Jotter" to {call}')
            return done.stdout.strip() or done.stderr.strip()

        self.assertEqual(tell('jot("Call Ann")'), "1")
        self.assertEqual(tell('jot("Buy" & linefeed & "\'bread\'")'), "2")
        self.assertIn("There is nothing to jot down.", tell('jot("")'))
        self.assertEqual(tell('jottings("ann")'), '{"Call Ann"}')
        self.assertEqual(tell('strike("Call Bob")'), "false")
        self.assertEqual(tell('strike("Call Ann")'), "true")
        self.assertEqual(applet.said("Jottings.txt"), "Buy 'bread'\n")
        asking = subprocess.Popen([str(binaries() / "osascript"), "-e", 'tell application "Jotter" to review()'], env=applet.environment())
        self.find("Your notes. Which are done?", "dialog")
        self.click(self.find("Buy 'bread'", "table cell"))
        applet.picture("notes")
        self.press(self.find("Strike Out", "push button"))
        until(lambda: applet.said("Jottings.txt") == "", "the note to be struck out")
        asking.wait(harness.DEADLINE)

    def test_words_are_counted(self):
        (self.folder / "a.txt").write_text("apples apples pears, of\n")
        applet = self.start_example("Word Count", self.folder / "a.txt")
        self.find("4 words in 1 file", "label")
        self.find("Used most: apples, pears", "label")
        applet.ends()


if __name__ == "__main__":
    harness.main(Examples)
