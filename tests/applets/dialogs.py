#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: display dialog, display alert and choose from list in a real applet, as a sheet and as a window of its own; controls found by accessible name, real keys
and clicks.

    dialogs.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any; QUODDLE_APPEARANCE=dark makes them dark.
"""
import signal
import subprocess
import time

import accessibility
import harness
from harness import binaries, until

# An applet that waits for others to ask; its window is hidden.
WAITING = "on idle\nreturn 100\nend idle"


class Dialogs(accessibility.AccessibleCase):
    def wait_to_be_asked(self, name, more=""):
        self.applet = self.start(name, WAITING + "\n" + more, options=["-s"])
        until(lambda: self.osascript("-e", f'application "{name}" is running').stdout == "true\n", name + " to listen")
        return self.applet

    def from_outside(self, question):
        """Starts a script in a process of its own that asks the applet; its output is the answer."""
        process = subprocess.Popen([str(binaries() / "osascript"), "-s", "s", "-e", f'tell application "{self.applet.name}" to {question}'],
                                   env=self.applet.environment(), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        if process.stdout.closed:
            return
        if process.poll() is None:
            process.kill()
        process.communicate()

    def keys(self, *names, to):
        """Presses real keys when the window of the control has come to the front by itself."""
        until(self.display.front, "a window in front")
        until(lambda: to.get_state_set().contains(self.atspi.StateType.SHOWING), "the dialog to be seen")
        time.sleep(0.2)
        if names:
            self.applet.press(*names)

    def press(self, control):
        """Presses a control like an assistive technology."""
        self.atspi.Action.do_action(control, 0)

    def answer_of(self, process):
        return process.communicate(timeout=harness.DEADLINE)[0].rstrip("\n")

    def gone(self, name):
        until(lambda: not self.shown(name), f"“{name}” to go")

    # Sheets of the applet's window

    def test_a_sheet_takes_an_answer_from_the_keyboard(self):
        applet = self.ask("Name", 'set r to display dialog "What is your <b>name</b>?" default answer "nobody" buttons {"Later", "Cancel", "Go & see"} '
                                  'default button 3 with icon caution with title "unseen"\njot(button returned of r & "/" & text returned of r)')
        self.find("Go & see", "push button")
        self.find("What is your <b>name</b>?", "label")
        field = self.find("Answer", "text")
        self.picture("dialog")
        self.assertIn("<b>name</b>", self.find("What is your <b>name</b>?", "dialog").get_name())
        self.keys("Z", "o", "e", to=field)
        self.keys("Return", to=field)
        self.noted("Go & see/Zoe\n")
        self.assertEqual(applet.process.returncode, 0)

    def test_sheets_hang_below_the_title_of_their_window(self):
        self.needs_x_server()
        applet = self.ask("Hanging", 'display dialog "First?" default answer "" with icon caution\njot("1")\ndisplay dialog "Second?" with icon stop\njot("2")\n'
                                     'display dialog "Third?" default answer "" with icon note\njot("done")')
        for question in ("First?", "Second?", "Third?"):
            label = self.find(question, "label")
            dialog = self.find(question, "dialog")
            top = lambda control: control.get_extents(self.atspi.CoordType.SCREEN).y
            # Up to 60 pixels below, because the applet's title bar and the sheet's own are equally high.
            until(lambda: 5 < top(dialog) - top(self.find("Hanging", "frame")) < 60, "the sheet of “" + question + "” below the title")
            self.keys("Return", to=label)
        self.noted("done\n")

    def test_a_sheet_blocks_its_window_and_refuses_quitting(self):
        applet = self.ask("Blocked", 'jot(button returned of (display dialog "Sure?" buttons {"Fine"}))')
        button = self.find("Fine", "push button")
        area = self.find("Stop").get_extents(self.atspi.CoordType.SCREEN)
        # The click hits the part of the Stop button that is visible beside the sheet.
        applet.xdotool("mousemove", str(area.x + area.width - 3), str(area.y + area.height // 2), "click", "1")
        self.assertIn("-128", self.osascript("-e", 'tell application "Blocked" to quit').stderr)
        time.sleep(0.3)
        self.assertTrue(self.shown("Fine", "push button"))
        self.keys("Return", "Escape", "alt+F4", to=button)  # no button has these keys
        time.sleep(0.3)
        self.assertTrue(self.shown("Fine", "push button"))
        self.assertEqual(applet.said("noted"), "")
        self.click(button)
        self.noted("Fine\n")

    def test_a_signal_takes_a_dialog_away_and_ends_the_applet(self):
        applet = self.ask("Signalled", 'try\ndisplay dialog "Sure?" buttons {"Fine"}\non error number n\njot(n as text)\ndisplay dialog "Really?" buttons {"Yes"}\nend try')
        self.find("Fine", "push button")
        applet.process.send_signal(signal.SIGTERM)
        applet.ends()
        self.assertEqual((applet.process.returncode, applet.said("noted")), (0, "-128\nerror -128\n"))
        applet = self.wait_to_be_asked("Asked")
        questions = [self.from_outside(f'display dialog "Question {number}"') for number in (1, 2)]
        self.find("OK", "push button")
        applet.process.send_signal(signal.SIGINT)
        applet.ends()
        self.assertEqual(applet.process.returncode, 0)
        for question in questions:
            self.assertRegex(self.answer_of(question), r"\((-128|-609)\)")

    def test_a_dialog_that_waits_behind_an_alert(self):
        """A dialog behind an alert gives up and is cancelled like a visible one, and goes with the applet that the alert has ended."""
        for name, question, end in (("GivesUp", 'display dialog "x" giving up after 1', None),
                                    ("Cancelled", 'display dialog "x"', lambda applet: applet.process.send_signal(signal.SIGTERM)),
                                    ("Forgotten", 'display dialog "x"', lambda applet: self.press(self.find("Quit", "push button")))):
            with self.subTest(name):
                applet = self.start(name, "on run\nset progress total steps to 3\ndelay 1\nerror \"boom\"\nend run\n"
                                          f"on go()\n{question}\nreturn 7\nend go\n" + WAITING, options=["-s"])
                self.applet = applet
                until(lambda: self.osascript("-e", f'application "{name}" is running').stdout == "true\n", name + " to listen")
                call = self.from_outside("go()")
                self.find("Quit", "push button")
                if end:
                    end(applet)
                    applet.ends()
                    self.assertRegex(self.answer_of(call), r"User canceled|\(-609\)")
                else:
                    self.assertEqual(self.answer_of(call), "7")
                    applet.kill()

    def test_a_signal_ends_a_script_that_asks_again_and_again(self):
        applet = self.ask("Stubborn", 'repeat\ntry\ndisplay dialog "Sure?" buttons {"Fine"}\nend try\nend repeat')
        self.find("Fine", "push button")
        applet.process.send_signal(signal.SIGTERM)
        applet.ends()
        applet = self.wait_to_be_asked("Asking", 'on quit\ndo shell script "echo quit >> FOLDER/noted"\ndisplay dialog "Really?" buttons {"No"}\nend quit')
        applet.process.send_signal(signal.SIGTERM)
        self.find("No", "push button")
        applet.process.send_signal(signal.SIGTERM)
        applet.ends()
        self.assertEqual(applet.said("noted"), "quit\n")

    def test_a_script_that_does_not_wait_takes_its_sheet_away_and_ends(self):
        applet = self.ask("Stopped", 'display dialog "Sure?"\njot("answered")')
        self.find("OK", "push button")
        self.press(self.find("Stop"))  # only an assistive technology can press a button behind a sheet
        applet.ends()
        self.assertEqual((applet.process.returncode, applet.said("noted")), (0, ""))
        self.ask("Late", 'with timeout of 1 second\ndisplay dialog "Sure?"\nend timeout')
        self.find("OK", "push button")
        self.noted("error -1712\n")

    def test_an_alert_as_a_sheet(self):
        self.ask("Alert", 'display alert "All files will be removed." message "This cannot be undone." as critical '
                          'buttons {"Keep", "Remove"} default button "Keep" cancel button "Keep"\njot("removed")')
        remove = self.find("Remove", "push button")
        self.find("All files will be removed.", "dialog")
        self.picture("alert")
        self.keys("Escape", to=remove)  # the button with that role has Return as its key, so nothing has Escape
        time.sleep(0.2)
        self.assertTrue(self.shown("Remove", "push button"))
        self.keys("Return", to=remove)
        self.noted("error -128\n")

    def test_a_list_as_a_sheet(self):
        self.ask("List", 'set r to choose from list {"pear", 42, {1, "two"}, "Fig"} with prompt "Which ones?" default items {"pear"} OK button name "Take" '
                         'with multiple selections allowed\njot((count of r) as text & (item 1 of r) & (class of item 2 of r))')
        take = self.find("Take", "push button")
        self.find("Which ones?", "dialog")
        self.find("Choices", "table")
        self.find("pear", "table cell")
        self.applet.xdotool("keydown", "ctrl")
        self.click(self.find("1, two", "table cell"))
        self.applet.xdotool("keyup", "ctrl")
        self.picture("list")
        self.click(take)
        self.noted("2pearlist\n")

    def test_a_key_that_is_held_down_answers_one_dialog_only(self):
        applet = self.ask("Held", 'repeat with i from 1 to 3\ndisplay dialog "Number " & i\njot(i as text)\nend repeat')
        self.keys(to=self.find("OK", "push button"))
        applet.xdotool("keydown", "Return")
        time.sleep(1.5)
        applet.xdotool("keyup", "Return")
        self.assertEqual(applet.said("noted"), "1\n")
        for number in (2, 3):
            self.keys("Return", to=self.find(f"Number {number}", "label"))
        self.noted("1\n2\n3\n")

    # Windows of their own

    def test_dialogs_of_a_hidden_applet(self):
        applet = self.wait_to_be_asked("Hidden")
        asking = self.from_outside('display dialog "Password?" default answer "" with hidden answer with title "Sign in"')
        field = self.find("Hidden answer", "password text")
        self.assertIn("Sign", self.display.title(until(self.display.front, "a window in front")).split())
        self.keys("s", "1", "KP_Enter", to=field)
        self.assertEqual(self.answer_of(asking), '{button returned:"OK", text returned:"s1", gave up:false}')

        asking = self.from_outside('display alert "Done" buttons {"One", "Two"} giving up after 1')
        until(lambda: self.shown("Two", "push button") or asking.poll() is not None, "the alert")
        self.picture("alert-window")
        self.assertEqual(self.answer_of(asking), '{button returned:"", gave up:true}')

        asking = self.from_outside('choose from list {"apple", "banana", "cherry"} with title "Fruit"')
        cell = self.find("cherry", "table cell")
        self.assertFalse(self.is_enabled(self.find("OK", "push button")))
        self.keys("c", to=cell)
        self.picture("list-window")
        self.click(self.find("banana", "table cell"), times=2)
        self.assertEqual(self.answer_of(asking), '{"banana"}')

        asking = self.from_outside('choose from list {"apple"}')
        self.keys("Escape", to=self.find("apple", "table cell"))
        self.assertEqual(self.answer_of(asking), "false")

    def test_one_at_a_time_and_gone_with_who_asked(self):
        applet = self.wait_to_be_asked("Queue")
        first = self.from_outside('display dialog "First?" buttons {"A"}')
        self.find("A", "push button")
        second = self.from_outside('display dialog "Second?" buttons {"B"} giving up after 1')
        time.sleep(1.2)  # longer than the second dialog waits once it is shown
        self.assertIsNone(self.shown("B", "push button"))
        third = self.from_outside('display alert "Third?" buttons {"C"}')
        first.kill()
        self.gone("A")
        until(lambda: self.shown("B", "push button") or second.poll() is not None, "the second dialog")
        self.assertEqual(self.answer_of(second), '{button returned:"", text returned:"", gave up:true}')
        self.press(self.find("C", "push button"))
        self.assertEqual(self.answer_of(third), '{button returned:"C", gave up:false}')
        self.assertEqual(self.osascript("-e", 'tell application "Queue" to quit').returncode, 0)
        applet.ends()


if __name__ == "__main__":
    harness.main(Dialogs)
