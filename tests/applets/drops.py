#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: files and other data, dragged from the window of another program over a droplet's window, dropped or taken away again.

    drops.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any.
"""
import os
import select
import subprocess
import time

import accessibility
import harness
from harness import binaries, until

GREEN, RED = (117, 209, 123), (228, 66, 72)

# A droplet that writes down the files that came and the end of each event.
OPENING = """
on open theFiles
    set names to ""
    repeat with f in theFiles
        set names to names & POSIX path of f & (character id 1)
    end repeat
    set noted to open for access (POSIX file "FOLDER/opened") with write permission
    write names & (character id 2) to noted starting at eof as «class utf8»
    close access noted
end open
"""

WAIT = 'do shell script "until [ -e FOLDER/go ]; do sleep 0.02; done"'

PLAIN_NAMES = ["report.txt", "two words.txt", "Grüße & Küsse.txt", "50% #1.txt", "日本語.txt", "two\nlines.txt", "plus+and?.txt", "quote'\".txt"]


class DragSource:
    """A program with a window in the corner of the screen, from which the pointer drags."""

    def __init__(self, case, form, *names, listed=None):
        self.case = case
        if case.source:
            case.source.end()  # its window may cover the new one
            until(lambda: not self.is_seen(), "the window of the last source to go")
        case.source = self
        arguments = []
        if listed:
            path = case.folder / "listed"
            path.write_bytes(b"\0".join(str(name).encode() for name in listed))
            arguments = ["--list", path]
        environment = next(iter(case.applets.values())).environment()
        self.process = subprocess.Popen([binaries() / "dragsource", form, *arguments, *names], env=environment, stdout=subprocess.PIPE, bufsize=0)
        case.addCleanup(self.end)
        self.says("ready")
        until(self.is_seen, "the window from which to drag")

    def end(self):
        self.case.source = None
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def is_seen(self):
        return min(self.case.pixels(10, 10)[0]) > 200

    def says(self, word):
        """Waits until the source says the word. Each movement over a window has an answer, and answers to earlier movements are skipped."""
        said = "would"
        while said.startswith("would") and said != word:
            ready, _, _ = select.select([self.process.stdout], [], [], harness.DEADLINE)
            self.case.assertTrue(ready, f"the source of the drag does not say “{word}”")
            said = self.process.stdout.readline().decode().strip()
        self.case.assertEqual(said, word)

    def begin(self):
        """Begins a drag; the button stays down."""
        self.case.display.point((10, 10))
        self.case.display.hold()
        self.case.display.point((30, 30))
        self.says("begun")

    def move(self, place):
        """Moves to the place from a few pixels beside it, like a hand."""
        x, y = place
        self.case.display.point((x - 8, y), (x - 4, y), (x, y))

    def let_go(self, action):
        self.case.display.let_go()
        if action:
            self.says(action)

    def drop(self, place):
        self.begin()
        self.move(place)
        self.says("would copy")
        self.let_go("copy")

    def hover_in_vain(self, x, y):
        """Moves until the refusal is known, which the source is told with the next movement. On Wayland only answers that change are told,
        so one that stays for a while is the last."""
        answer, since = "would not" if self.case.is_wayland else "", 0
        for step in range(harness.DEADLINE * 10):
            self.case.display.point((x - 8 + step % 8, y))
            ready, _, _ = select.select([self.process.stdout], [], [], 0.1)
            since = 0 if ready else since + 1
            if ready:
                answer = self.process.stdout.readline().decode().strip()
            if answer == "would not" and (since == 10 or not self.case.is_wayland):
                return
        self.case.fail("what is dragged is not refused")

    def drop_in_vain(self, place):
        self.begin()
        self.hover_in_vain(*place)
        self.let_go("none")


class Drops(accessibility.AccessibleCase):
    source = None  # the last one that was made

    def start_droplet(self, name, source=OPENING, **more):
        applet = self.start(name, source, options=["-s"], **more)
        applet.window()
        self.find("Drop zone")
        return applet

    def files(self, *names):
        folder = self.folder / "Documents"
        folder.mkdir(exist_ok=True)
        for name in names:
            (folder / name).write_text("x")
        return [str(folder / name) for name in names]

    # Looking at the screen

    def drop_zone(self):
        """Answers a place in the drop zone without text and pictures."""
        area = self.area(self.find("Drop zone"))
        return area.x + 12, area.y + 12

    def pixels(self, x, y, width=1, height=1):
        drawn = self.display.pixels(x, y, width, height)
        return [tuple(drawn[i:i + 3]) for i in range(0, len(drawn), 3)]

    def color(self, place):
        """Answers the colour beside a place, because the pointer may cover the place itself."""
        x, y = place
        return self.pixels(x - 4, y - 4)[0]

    def becomes(self, color, place):
        until(lambda: self.color(place) == color, f"{color} at {place}, where {self.color(place)} is")

    def artwork(self):
        area = self.area(self.find("Drop files here"))
        return self.pixels(area.x, area.y, area.width, area.height)

    # Looking at the outcome

    def opened(self, applet):
        """Answers the files of each event."""
        return [event.split("\1")[:-1] for event in applet.said("opened").split("\2")[:-1]]

    def test_files_are_taken(self):
        applet = self.start_droplet("Taker")
        files = self.files(*PLAIN_NAMES)
        place = self.drop_zone()
        plain = self.color(place)
        source = DragSource(self, "files", *files)
        source.begin()
        source.move(place)
        self.becomes(GREEN, place)
        applet.picture("dropping-accepted")
        source.let_go("copy")
        until(lambda: self.opened(applet) == [files], f"{files} to be opened, not {self.opened(applet)}")
        self.find("Drop zone")
        self.becomes(plain, place)

    def test_refused_files_stay_where_they_are(self):
        refusing = OPENING + 'on appletfileisacceptable(f)\nreturn POSIX path of f does not end with ".no"\nend appletfileisacceptable\n'
        only_texts = {"CFBundleDocumentTypes": [{"CFBundleTypeExtensions": ["txt"]}]}
        good, bad = self.files("good.txt", "bad.no")
        for name, source, info in (("Hooked", refusing, None), ("Typed", OPENING, only_texts)):
            applet = self.start_droplet(name, source, info=info)
            place = self.drop_zone()
            plain = self.color(place)
            dragged = DragSource(self, "files", bad, good)
            dragged.begin()
            dragged.hover_in_vain(*place)
            self.becomes(RED, place)
            applet.picture("dropping-refused")
            # On Wayland the toolkit does not tell the source that files are refused which it had accepted before.
            dragged.let_go("none" if name == "Typed" or not self.is_wayland else None)
            self.becomes(plain, place)
            dragged.end()
            DragSource(self, "files", good).drop(place)
            until(lambda: self.opened(applet) == [[good]], "the file that is taken, and nothing else")
            (self.folder / "opened").unlink()
            applet.kill()

    def test_files_that_are_taken_away_again(self):
        applet = self.start_droplet("Left")
        file, = self.files("report.txt")
        place = self.drop_zone()
        plain, artwork = self.color(place), self.artwork()
        source = DragSource(self, "files", file)
        source.begin()
        for _ in range(3):
            source.move(place)
            self.becomes(GREEN, place)
            source.move(self.outside())
            self.becomes(plain, place)
            until(lambda: self.artwork() == artwork, "the artwork as it was")
        source.let_go("none")
        source.drop(place)
        until(lambda: self.opened(applet) == [[file]], "the file that was dropped")

    def outside(self):
        return 1000, 620

    def test_what_is_no_file(self):
        applet = self.start_droplet("Picky")
        file, = self.files("report.txt")
        place = self.drop_zone()
        plain, artwork = self.color(place), self.artwork()
        for form, dragged in (("text", [file]), ("addresses", ["https://example.org/report.txt", "mailto:someone@example.org"])):
            source = DragSource(self, form, *dragged)
            source.begin()
            source.move(place)
            until(lambda: self.artwork() != artwork, "the artwork that answers to the drag")
            applet.picture("dropping-" + form)
            self.assertEqual(self.color(place), plain)
            source.let_go("none")
            until(lambda: self.artwork() == artwork, "the artwork as it was")
            source.end()
        # Other programs write such lists of addresses.
        written = ["# a remark", "https://example.org/", "file://" + file, "file://localhost" + file, "file://" + os.uname().nodename + file]
        DragSource(self, "addresses", *written).drop(place)
        until(lambda: self.opened(applet), "the files in the list")
        self.assertEqual(self.opened(applet), [[file] * 3])

    def test_ten_thousand_files_are_one_event(self):
        applet = self.start_droplet("Many")
        files = self.files(*(f"file {number}.txt" for number in range(10000)))
        place = self.drop_zone()
        source = DragSource(self, "files", listed=files)
        source.drop(place)
        until(lambda: self.opened(applet), "the files to be opened", 60)
        self.assertEqual(self.opened(applet), [files])

    def test_nothing_is_dropped_on_a_script_that_runs(self):
        applet = self.start_droplet("Busy", OPENING.replace("on open theFiles", "on open theFiles\n" + WAIT))
        first, second = self.files("first.txt", "second.txt")
        place = self.drop_zone()
        DragSource(self, "files", first).drop(place)
        self.find("Stop", "push button")
        source = DragSource(self, "files", second)
        source.drop_in_vain(place)
        (self.folder / "go").touch()
        self.find("Drop zone")
        source.drop(place)
        until(lambda: self.opened(applet) == [[first], [second]], "both files")

    def test_a_run_that_begins_while_files_hover_keeps_its_pane(self):
        self.needs_x_server()  # the pane of a run comes before a drag can begin there
        applet = self.start_droplet("Idle", OPENING + """
on idle
    do shell script "until [ -e FOLDER/start ]; do sleep 0.02; done"
    set progress total steps to 4
    set progress completed steps to 1
    """ + WAIT + """
    return 1000
end idle
""")
        file, = self.files("report.txt")
        x, y = place = self.drop_zone()
        plain = self.color(place)
        source = DragSource(self, "files", file)
        source.begin()
        source.move(place)
        self.becomes(GREEN, place)
        (self.folder / "start").touch()
        self.find("25% completed", "label")
        source.move((x + 30, y))
        source.says("would not")
        source.move(self.outside())
        source.let_go("none")
        self.find("25% completed", "label")
        self.find("Stop", "push button")
        (self.folder / "go").touch()
        self.find("Drop zone")
        self.becomes(plain, place)
        source.drop(place)
        until(lambda: self.opened(applet) == [[file]], "the file that was dropped")

    def test_a_second_drag_does_not_disturb_a_drop_that_is_being_judged(self):
        slow = """
on appletfileisacceptable(f)
    do shell script "[ -e FOLDER/go ] || sleep 0.05"
    return true
end appletfileisacceptable
"""
        applet = self.start_droplet("Slow", OPENING + slow)
        files = self.files(*(f"file {number}.txt" for number in range(300)))
        place = self.drop_zone()
        DragSource(self, "files", *files).drop(place)
        second = DragSource(self, "files", files[0])
        second.drop_in_vain(place)
        self.find("Checking the files", "progress bar")
        applet.picture("drop-judged")
        (self.folder / "go").touch()
        until(lambda: self.opened(applet), "the files that were dropped first", 60)
        self.assertEqual(self.opened(applet), [files])
        (self.folder / "go").unlink()
        DragSource(self, "files", *files).drop(place)
        self.find("Checking the files", "progress bar")
        applet.press("Escape")
        until(lambda: not self.shown("Checking the files"), "the judging to stop")
        (self.folder / "go").touch()
        DragSource(self, "files", files[1]).drop(place)
        until(lambda: self.opened(applet) == [files, [files[1]]], "the files that were dropped next")

    def test_a_drag_whose_program_has_died_leaves_no_verdict_behind(self):
        refusing = 'on appletfileisacceptable(f)\nreturn POSIX path of f does not end with ".no"\nend appletfileisacceptable\n'
        applet = self.start_droplet("Forsaken", OPENING + refusing)
        good, bad = self.files("good.txt", "bad.no")
        place = self.drop_zone()
        plain = self.color(place)
        for dragged, color in ((good, GREEN), (bad, RED)):
            source = DragSource(self, "files", dragged)
            source.begin()
            source.move(place)
            self.becomes(color, place)
            source.end()
            self.display.let_go()
            self.becomes(plain, place)
        DragSource(self, "files", good).drop(place)
        until(lambda: self.opened(applet) == [[good]], "the file that was dropped")

    def test_a_drag_that_leaves_while_its_first_file_is_judged(self):
        waiting = """
            on appletfileisacceptable(f)
                do shell script "echo asked >> FOLDER/asked"
                if POSIX path of f ends with ".slow" then delay 100
                return true
            end appletfileisacceptable"""
        applet = self.start_droplet("Waiting", OPENING + waiting)
        good, slow = self.files("good.txt", "bad.slow")
        place = self.drop_zone()
        plain = self.color(place)
        source = DragSource(self, "files", slow)
        source.begin()
        source.move(place)
        until(lambda: applet.said("asked"), "the script to be asked")
        source.move(self.outside())
        source.let_go("none")
        self.becomes(plain, place)
        applet.rests()
        self.assertEqual(applet.said("asked"), "asked\n")
        DragSource(self, "files", good).drop(place)
        until(lambda: self.opened(applet) == [[good]], "the file that was dropped")

    def test_what_is_dropped_before_the_first_answer_is_not_lost(self):
        slow = """
            on appletfileisacceptable(f)
                delay 1
                return true
            end appletfileisacceptable"""
        applet = self.start_droplet("Early", OPENING + slow)
        file, = self.files("a.txt")
        DragSource(self, "files", file).drop(self.drop_zone())
        until(lambda: self.opened(applet) == [[file]], "the file that was dropped")

    def test_a_slow_hook_does_not_disturb_the_hand(self):
        slow = """
            on appletfileisacceptable(f)
                do shell script "echo asked >> FOLDER/asked; sleep 2.5"
                return true
            end appletfileisacceptable"""
        applet = self.start_droplet("Patient", OPENING + slow)
        file, = self.files("a.txt")
        x, y = self.drop_zone()
        source = DragSource(self, "files", file)
        source.begin()
        source.move((x, y))
        until(lambda: applet.said("asked"), "the script to be asked")
        time.sleep(1.5)  # longer than a hook may take before the panel comes
        self.assertIsNone(self.shown("Waiting for the script"))
        self.display.point((x + 2, y))
        self.display.let_go()
        source.says("copy")
        until(lambda: self.opened(applet) == [[file]], "the file that was dropped")

    # The two modes

    def test_a_drag_over_the_results_leads_to_the_drop_zone_and_back(self):
        file, = self.files("report.txt")
        applet = self.start_droplet("Finder")
        self.click_on("Find files")
        self.find("Search")
        applet.type("report")
        self.find("1 found", "label")
        area = self.area(self.find("Results"))
        over = area.x + area.width // 2, area.y + area.height // 2
        source = DragSource(self, "files", file)
        source.begin()
        source.move(over)
        self.find("Drop zone")
        source.move(over)
        place = self.drop_zone()
        self.becomes(GREEN, place)
        source.move(self.outside())
        self.find("1 found", "label")
        source.let_go("none")
        source.begin()
        source.move(over)
        self.find("Drop zone")
        source.move(over)
        self.becomes(GREEN, place)
        source.let_go("copy")
        until(lambda: self.opened(applet) == [[file]], "the file")
        self.find("1 found", "label")
        text = DragSource(self, "text", file)
        text.begin()
        text.move(over)
        text.let_go("none")
        self.find("1 found", "label")

    def test_what_is_refused_after_the_drop_is_seen_and_the_search_comes_back(self):
        self.needs_x_server()  # once in a while the compositor does not give the second drag the pointer
        refusing = """
on appletfileisacceptable(f)
    if POSIX path of f ends with "slow.no" then delay 100
    do shell script "sleep 0.05"
    return POSIX path of f does not end with ".no"
end appletfileisacceptable
"""
        *files, slow, bad = self.files(*(f"file {number}.txt" for number in range(20)), "slow.no", "bad.no")
        applet = self.start_droplet("Late", OPENING + refusing)
        self.click_on("Find files")
        self.find("Search")
        area = self.area(self.find("Results"))
        over = area.x + area.width // 2, area.y + area.height // 2
        for last in (bad, slow):
            source = DragSource(self, "files", *files, last)
            source.begin()
            source.move(over)
            self.find("Drop zone")
            source.move(over)
            place = self.drop_zone()
            source.move(place)
            source.says("would copy")
            source.let_go("copy")
            self.find("Checking the files", "progress bar")
            self.assertFalse(self.is_sensitive("Find files"))
            if last == bad:
                self.becomes(RED, place)
                applet.picture("drop-refused-late")
            else:
                applet.press("Escape")
            self.find("Search")
            self.assertTrue(self.is_sensitive("Find files"))
        self.assertEqual(self.opened(applet), [])

    def is_sensitive(self, name):
        return self.find(name).get_state_set().contains(self.atspi.StateType.SENSITIVE)

    def click_on(self, name):
        self.applet = next(iter(self.applets.values()))
        self.click(self.find(name))

    def settings(self):
        path, = (self.folder / "config/quoddle").glob("*.ini")
        return path

    def test_the_mode_is_kept(self):
        applet = self.start_droplet("Moded")

        def relaunched(control):
            applet.key("ctrl+q")
            applet.ends()
            applet.launch()
            applet.window()
            return self.find(control)

        self.click_on("Find files")
        self.find("Search")
        applet.type("re")  # the search field has the keyboard
        self.holds("Search", "re")
        relaunched("Search")
        self.click_on("Drop files")
        relaunched("Drop zone")
        until(lambda: "Drop files" in self.focused(), "the control to have the keyboard")
        applet.key("Right")
        self.find("Search")
        applet.key("Tab")
        until(lambda: "Search" in self.focused(), "the field to have the keyboard")
        relaunched("Search")
        self.assertIn("mode=1", self.settings().read_text())
        for strange in ("7", "-1", "4294967296", "x", ""):
            self.settings().write_text(f"[General]\nmode={strange}\n")
            relaunched("Drop zone")

    def holds(self, name, text):
        def said():
            control = self.shown(name, "text")
            return control and self.atspi.Text.get_text(control, 0, -1) == text

        until(said, f"“{name}” to hold {text!r}")

    def focused(self):
        """Answers the names of the controls that have the keyboard."""
        return [name for control, name, _ in self.showing() if control.get_state_set().contains(self.atspi.StateType.FOCUSED)]

    # Prompts and pictures that a script may ask for

    def test_the_panes_keep_their_size_whatever_the_prompts_say(self):
        prompts = {"Words": "word " * 20000, "Word": "w" * 100000, "Lines": "line\\n" * 20000}
        for name, prompt in prompts.items():
            title = "An applet with a name of many words " * 10
            applet = self.start(name, f'property appletdropname : "{prompt}"\nproperty appletsearchname : "{prompt}"\n' + OPENING, options=["-s"],
                                info={"CFBundleName": title})
            self.find("Drop zone")
            for control in ("Drop files here", "Find files"):
                self.assert_on_screen(control)
            for control in ("Prompt", "Drop files"):
                self.tab_to(applet, control)
            applet.picture("prompt-drop")
            self.find("Find files").do_action(0)
            for control in ("Search", "Results", "Quit", "Open"):
                self.assert_on_screen(control)
            applet.picture("prompt-search")
            applet.kill()

    def tab_to(self, applet, name):
        for _ in range(5):
            before = self.focused()
            if name in before:
                return
            applet.press("Tab")
            until(lambda: self.focused() != before, "the keyboard to go on")
        self.fail(f"“{name}” cannot be reached")

    def assert_on_screen(self, name):
        area = self.area(self.find(name))
        width, height = self.display.size
        self.assertTrue(area.x >= 0 and area.y >= 0 and area.x + area.width <= width and area.y + area.height <= height, f"{name}: {area.x, area.y, area.width, area.height}")
        self.assertGreater(min(area.width, area.height), 15, name)

    def test_the_window_fits_a_small_screen(self):
        self.needs_x_server()
        self.addCleanup(self.display.environment.pop, "QT_SCALE_FACTOR")
        self.display.environment["QT_SCALE_FACTOR"] = "2"
        applet = self.start_droplet("Doubled")
        self.find("Find files").do_action(0)
        area = self.area(self.find("Open"))
        self.assertLessEqual(2 * (area.y + area.height), 640)
        applet.picture("doubled")

    # Scripts that fail

    def test_a_failing_hook_ends_the_applet_with_one_alert(self):
        applet = self.start_droplet("Failing", OPENING + 'on appletfileisacceptable(f)\nerror "Not today." number 7\nend appletfileisacceptable\n')
        source = DragSource(self, "files", *self.files("report.txt", "notes.txt"))
        place = self.drop_zone()
        source.begin()
        source.move(place)
        quit_button = self.find("Quit", "push button")
        applet.picture("hook-error")
        source.move(self.outside())
        source.let_go("none")
        self.assertEqual([name for _, name, role in self.showing() if role == "push button"], ["Quit"])
        applet.press("Return")
        applet.ends()
        self.assertEqual(applet.said("opened"), "")


if __name__ == "__main__":
    harness.main(Drops)
