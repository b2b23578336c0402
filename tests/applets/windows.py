#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: where an applet's windows appear, what they are called, and when they take the keyboard; under a window manager, by real keys.

    windows.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any.
"""
import re
import subprocess

import accessibility
import harness
from harness import binaries, until

# An applet that reports progress with every idle call, so that its window changes or appears each time.
RESTLESS = """
    property turn : 0
    on idle
        set turn to turn + 1
        set progress total steps to 1000
        set progress completed steps to turn
        do shell script "echo 1 >> FOLDER/NAME"
        delay 0.2
        return 0
    end idle
    """

ITEMS = ", ".join(f'"item {number}"' for number in range(300))


class Windows(accessibility.AccessibleCase):
    def named(self, name):
        return self.display.windows(name)

    def goes_to(self, name):
        until(lambda: self.in_front() == name, f"“{name}” to have the keyboard, which {self.in_front()!r} has")

    def calls(self, applet):
        return applet.said(applet.name).count("1")

    def some_calls_of(self, applet):
        """Waits for three more idle calls; answers the windows that had the keyboard meanwhile."""
        since, seen = self.calls(applet), set()

        def look():
            seen.add(self.in_front())
            return self.calls(applet) >= since + 3

        until(look, "idle calls")
        return seen

    def other_window(self):
        """Opens a window of another program, in which somebody works."""
        other = self.start("Other", "delay 1", options=["-u", "-s"])
        other.window()
        self.goes_to("Other")
        return other

    def switch_to(self, applet):
        applet.xdotool("windowactivate", "--sync", applet.window())
        self.goes_to(applet.name)

    def property_of(self, window, name):
        return subprocess.run(["xprop", "-id", window, name], env=self.display.environment, capture_output=True, text=True).stdout

    # The keyboard

    def test_what_changes_by_itself_leaves_the_keyboard_where_it_is(self):
        other = self.other_window()
        applet = self.start("Restless", RESTLESS.replace("NAME", "Restless"), options=["-u", "-s"])
        self.goes_to("Restless")  # a window that was just launched gets the keyboard
        applet.key("Return")
        self.some_calls_of(applet)
        self.switch_to(other)
        self.assertEqual(self.some_calls_of(applet), {"Other"})
        window = applet.window()
        applet.xdotool("windowminimize", "--sync", window)
        self.assertEqual(self.some_calls_of(applet), {"Other"})
        self.assertIn("Iconic", self.property_of(window, "WM_STATE"))
        self.osascript("-e", 'tell application "Restless" to activate')
        self.goes_to("Restless")
        self.assertIn("Normal", self.property_of(window, "WM_STATE"))

    def test_a_window_that_appears_by_itself_does_not_take_the_keyboard(self):
        self.needs_x_server()
        self.other_window()
        applet = self.start("Shy", RESTLESS.replace("NAME", "Shy") + "on quit\ncontinue quit\nend quit", options=["-s"])
        until(lambda: self.named("Shy"), "the window")
        self.assertEqual(self.some_calls_of(applet), {"Other"})

    def test_a_dialog_takes_the_keyboard_from_others(self):
        other = self.other_window()
        for name, dialog, keys in (("Sheet", "set progress total steps to 3\ndelay 1\n", ["Tab"]), ("Alone", "delay 1\n", [])):
            applet = self.ask(name, dialog + f'display dialog "Now, {name}?" with title "Asking {name}"\njot("answered")')
            if keys:
                until(lambda: self.named(name), "the window")
            self.switch_to(other)
            self.goes_to("Asking " + name)
            self.switch_to(other)
            self.osascript("-e", f'tell application "{name}" to activate')
            self.goes_to("Asking " + name)  # the dialog, because its window cannot be used meanwhile
            applet.press("Return")
            self.noted("answered\n")
            (self.folder / "noted").unlink()

    # Titles

    def test_a_window_is_called_what_it_is_called(self):
        for sheet in (True, False):
            name = "Hung" if sheet else "Free"
            applet = self.start(name, ("set progress total steps to 3\n" if sheet else "") + 'display dialog "Well?" with title "Sign in"\n'
                                'display alert "So?"\nchoose from list {1} with title "Which"')
            for title in ("Sign in", name, "Which"):
                until(lambda: self.in_front() == title and self.named(title), f"a dialog called “{title}”")
                applet.press("Return" if title != "Which" else "Escape")
            applet.ends()

    def test_mode_shows_the_applet_under_test_by_its_name(self):
        tested = self.start("Tested", "delay 1", options=["-u"])
        tested.key("ctrl+q")
        tested.ends()
        (self.folder / "~/Desktop").mkdir(parents=True)
        (self.folder / "Tested.app").rename(self.folder / "~/Desktop/KTest.app")
        shell = self.start("Shell", "delay 1", options=["-u"])
        shell.key("ctrl+q")
        shell.ends()
        shell.process = subprocess.Popen([str(self.folder / "Shell.app/Contents/Linux/Shell"), "QUODDLE_DEBUG"], env=shell.environment(), cwd=self.folder,
                                         stderr=subprocess.DEVNULL)
        self.goes_to("Tested")

    # Places

    def frame(self, name):
        return self.find(name, "frame").get_extents(self.atspi.CoordType.SCREEN)

    def test_a_window_comes_back_where_it_was(self):
        applet = self.start("Placed", "delay 1", options=["-u"])
        applet.key("ctrl+q")
        applet.ends()
        words = "\\par ".join(["What this applet does takes a few lines to say."] * 5)
        (self.folder / "Placed.app/Contents/Resources/Description.rtf").write_text("{\\rtf1 " + words + "}")
        places = []
        for _ in range(12):
            applet.process = subprocess.Popen([str(self.folder / "Placed.app/Contents/Linux/Placed")], env=applet.environment(), stderr=subprocess.DEVNULL)
            self.find("Run", "push button")
            self.goes_to("Placed")
            area = self.frame("Placed")
            places.append((area.x, area.y, area.width, area.height))
            applet.key("ctrl+q")
            applet.ends()
        # The first launch had nothing to remember, and only then the window had no description.
        self.assertEqual(places[1:], places[1:2] * 11)

    def is_within(self, window, width, height):
        """Whether the frame around the window is wholly on a screen of the size."""
        left, right, top, bottom = (int(number) for number in self.property_of(window, "_NET_FRAME_EXTENTS").split("=")[1].split(","))
        said = subprocess.run(["xwininfo", "-id", window], env=self.display.environment, capture_output=True, text=True).stdout
        x, y, inner_width, inner_height = (int(re.search(label + r":\s+(-?\d+)", said)[1]) for label in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return x >= left and y >= top and x + inner_width + right <= width and y + inner_height + bottom <= height

    def test_a_dialog_hangs_on_a_window_that_has_only_just_appeared(self):
        self.needs_x_server()
        for number in range(10):
            applet = self.start(f"Early{number}", f"choose from list {{{ITEMS}}}")
            until(lambda: self.shown("OK", "push button") and len(self.named(applet.name)) == 2, "the sheet")
            middles = []
            for window in self.named(applet.name):
                numbers = {key: int(value) for key, value in (line.split("=") for line in self.display.tool("getwindowgeometry", "--shell", window))}
                middles.append(numbers["X"] + numbers["WIDTH"] / 2)
            self.assertAlmostEqual(*middles, delta=6)
            applet.kill()

    def test_a_long_list_leaves_its_buttons_on_the_screen(self):
        self.needs_x_server()
        self.addCleanup(self.display.environment.pop, "QT_SCALE_FACTOR")
        for scale in ("1", "2"):
            self.display.environment["QT_SCALE_FACTOR"] = scale
            for form, before in (("first", ""), ("later", "set progress total steps to 3\ndelay 0.5\n")):
                applet = self.start(f"List{scale}{form}", f"{before}choose from list {{{ITEMS}}}")
                until(lambda: self.shown("OK", "push button") and len(self.named(applet.name)) == 2, "the sheet")
                applet.picture("list")
                self.assertTrue(self.is_within(self.display.tool("getactivewindow")[0], 1024, 640), (scale, form))
                applet.press("Escape")
                applet.ends()

    def test_windows_fit_a_small_screen(self):
        self.needs_x_server()
        self.display = harness.Display((800, 600))
        self.addCleanup(self.display.close)
        self.display.environment["QT_SCALE_FACTOR"] = "2"

        def describe(bundle):
            (bundle / "Contents/Resources/Description.rtf").write_text("{\\rtf1 " + "\\par ".join(["What this applet does takes many lines to say."] * 40) + "}")

        long = "This text says more than it has to. " * 40
        for name, source, more in (("Described", "delay 1", dict(options=["-u"], prepare=describe)),
                                   ("Droplet", "on open files\nend open", dict(options=["-u"], prepare=describe)),
                                   ("Progressing", "set progress total steps to 3\ndelay 60", {}),
                                   ("Asking", f'set progress total steps to 3\ndelay 0.5\ndisplay dialog "{long}" default answer "{"line" + chr(92) + "n" * 30}" with title "Sheet"', {}),
                                   ("Colourful", "choose color", dict(info={"KVBUseStandardOSAXEN": True})),
                                   ("Addressing", "choose URL", dict(info={"KVBUseStandardOSAXEN": True}))):
            applet = self.start(name, source, **more)
            title = {"Asking": "Sheet", "Colourful": "Choose a Color", "Addressing": "Choose a URL"}.get(name, name)
            until(lambda: self.named(title) and self.in_front() == title, f"the window “{title}”")
            applet.rests()
            applet.picture("small-screen")
            for window in self.display.tool("search", "--onlyvisible", "--name", ".*"):
                if self.property_of(window, "WM_STATE").find("Normal") >= 0:
                    self.assertTrue(self.is_within(window, 800, 600), name)
            applet.kill()

    # Controls that can be pressed

    def test_run_cannot_be_pressed_while_a_handler_runs(self):
        applet = self.start("Silent", 'do shell script "echo 1 >> FOLDER/runs"\ndo shell script "until [ -e FOLDER/go ]; do sleep 0.02; done"', options=["-u", "-s"])
        run = self.find("Run", "push button")
        applet.key("Return")
        until(lambda: not self.is_enabled(run), "Run to be out of use")
        applet.press("Return")
        applet.press("space")
        applet.picture("running")
        (self.folder / "go").touch()
        until(lambda: self.is_enabled(run), "Run to be of use again")
        self.assertEqual(applet.said("runs"), "1\n")
        applet.press("space")  # the button has the focus again
        until(lambda: applet.said("runs") == "1\n1\n", "the second run")

    def test_the_progress_of_a_call_goes_with_the_call(self):
        for name, handlers in (("Quitting", "on quit\ncontinue quit\nend quit"), ("Reporting", "")):
            applet = self.start(name, handlers + """
                on work()
                    set progress total steps to 5
                    set progress completed steps to 1
                    do shell script "until [ -e FOLDER/go ]; do sleep 0.02; done"
                end work
                on idle
                    do shell script "touch FOLDER/NAME"
                    return 100
                end idle
                """.replace("NAME", name), options=["-s"])
            until((self.folder / name).exists, "the idle handler")
            applet.rests()
            call = subprocess.Popen([str(binaries() / "osascript"), "-e", f'tell application "{name}" to work()'], env=applet.environment())
            self.addCleanup(call.wait)
            until(lambda: self.named(name), "the progress")
            (self.folder / "go").touch()
            self.assertEqual(call.wait(harness.DEADLINE), 0)
            until(lambda: not self.named(name), "the window to go")
            (self.folder / "go").unlink()

    # Applets without a display

    def test_without_a_display_it_says_so(self):
        applet = self.start("Blind", "return 1")
        applet.ends()
        for display in ("", ":7654"):
            environment = dict(applet.environment(), DISPLAY=display)
            environment.pop("WAYLAND_DISPLAY", None)
            if not display:
                del environment["QT_QPA_PLATFORM"]
            ended = subprocess.run([str(self.folder / "Blind.app/Contents/Linux/Blind")], env=environment, capture_output=True, text=True, timeout=harness.DEADLINE)
            self.assertEqual((display, ended.returncode), (display, 1))
            self.assertIn("no display", ended.stderr)


if __name__ == "__main__":
    harness.main(Windows)
