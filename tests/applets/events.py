#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: applets that other processes send events to, with real processes on both sides.

    events.py BIN [PATTERN]
"""
import os
import plistlib
import select
import shutil
import signal
import socket
import subprocess
import time

import harness
from harness import binaries, until, until_at_rest

SERVER = """
property counter : 5
on add(a, b)
	set counter to counter + 1
	return a + b
end add
on slow(n)
	do shell script "echo slow > FOLDER/started"
	delay n
	return "slept"
end slow
on fail()
	error "no good" number 42
end fail
on run
	return "ran"
end run
on idle
	return 100
end idle
on quit
	continue quit
end quit
"""


class Events(harness.AppletCase):
    def serve(self, name="Server", source=SERVER, **more):
        applet = self.start(name, source, options=["-s"], **more)
        until(lambda: self.tell("is running", name) == "true", name + " to be found")
        applet.rests()
        return applet

    def tell(self, what, name="Server"):
        """Answers the result of a statement that is sent to the applet, or its error."""
        statement = f'application "{name}" {what}' if what.startswith("is ") else f'tell application "{name}" to {what}'
        done = self.osascript("-s", "s", "-e", statement)
        return done.stdout.strip() or done.stderr.partition("error: ")[2].strip()

    def test_properties_from_outside(self):
        self.serve(source="property greeting : \"hello\"\nproperty other : 1\nproperty |my prop| : 1\non note(t)\nreturn t & 1\nend note\n" + SERVER)
        for value, result in [('"text"', '"text"'), ('""', '""'), ('"ü😀"', '"ü😀"'), ("5", "5"), ("2.5", "2.5"), ("true", "true"), ("{}", "{}"),
                              ('{1, "a", {}}', '{1, "a", {}}'), ('{name:"x", y:""}', '{name:"x", y:""}'), ("missing value", "missing value"),
                              ('date "Saturday, February 3, 2001 at 12:00:00 AM"', 'date "Saturday, February 3, 2001 at 12:00:00 AM"')]:
            for way in ("set its greeting to ", "set greeting to "):
                self.assertIn(self.tell(way + value) or result, (result, ""), value)
                self.assertEqual(self.tell("get its greeting"), result, way + value)
        self.assertEqual(self.tell("get its other"), "1")
        self.tell("set its |my prop| to 7")
        self.assertEqual(self.tell("get its |my prop|"), "7")
        # The name belongs to the applet itself, and its script cannot change it.
        self.assertIn("(-10003)", self.tell('set its name to "x"'))
        self.assertEqual(self.tell("note(5)"), "{5, 1}")

    def test_scripting_additions_inside_a_tell(self):
        """The script itself carries out commands that the application does not know."""
        self.serve()
        for command, result in (('do shell script "echo " & (add(1, 2))', '"3"'), ("round 2.6", "3"), ('offset of "b" in "ab"', "2"),
                                ("class of (current date)", "date"), ('add((random number from 2 to 2), 1)', "3")):
            self.assertEqual(self.tell(command), result)
        for name in ("nothing", "nowhere"):
            self.assertIn("(-1728)", self.tell(f"set its {name} to 1"))
            self.assertIn("(-1728)", self.tell(f"get its {name}"))
        # A handler is no property: nobody can remove or replace it.
        self.assertIn("(-1728)", self.tell("set its add to 1"))
        self.assertIn("(-1728)", self.tell("get its add"))
        self.assertEqual(self.tell("add(1, 2)"), "3")

    def test_a_bundle_is_started_with_the_program_that_it_names(self):
        alone = self.folder / "alone"
        alone.mkdir()
        shutil.copy(binaries() / "osascript", alone)  # the folder has no shell
        for named, expected in ((True, "named"), (False, "Tool")):
            bundle = self.folder / "Tool.app"
            programs = bundle / "Contents/Linux"
            programs.mkdir(parents=True, exist_ok=True)
            for name in ("Aaa", "named", "Tool"):
                (programs / name).write_text(f"#!/bin/sh\necho {name} >> '{self.folder}/started'\n")
                (programs / name).chmod(0o755)
            (bundle / "Contents/Info.plist").write_bytes(plistlib.dumps({"CFBundleName": "Tool", "Nested": {"CFBundleExecutable": "Aaa"}} |
                                                                        ({"CFBundleExecutable": "named"} if named else {})))
            environment = dict(self.display.environment, HOME=str(self.folder), XDG_RUNTIME_DIR=str(self.folder), PATH="/usr/bin:/bin")
            subprocess.run([str(alone / "osascript"), "-e", f'tell application "{bundle}" to add(1, 2)'], env=environment, capture_output=True, timeout=60)
            self.assertEqual(set((self.folder / "started").read_text().split()), {expected})
            (self.folder / "started").unlink()

    def test_labelled_calls(self):
        self.serve(source="""
            on greet given name:n, |class|:c
                return n & c
            end greet
            on search of x for y given title:t
                return x & y & t
            end search
            """ + SERVER)
        for call, result in [('greet given name:"Ann", |class|:1', '"Ann1"'), ('search of "x" for "y" given title:"T"', '"xyT"'),
                             ('greet given name:"Ann"', "Server got an error: The class parameter is missing for greet. (-2700)")]:
            self.assertEqual(self.tell(call), result, call)

    def test_commands_of_the_applets_dictionary(self):
        """What the applet's script has a handler for can be sent to it, by the words of its dictionary or by code."""
        applet = self.serve("Garden", """
            on «event GardRest» p given «class forX»:n, «class loud»:l
                return {p, n, l}
            end «event GardRest»
            on «event GardFail» p
                error "too wet" number 77 from p
            end «event GardFail»
            on «event GardSelf»
                try
                    continue «event GardSelf»
                on error number n
                    set kept to n
                end try
                try
                    tell application "Garden" to «event GardRest»
                on error number n
                    return {kept, n}
                end try
            end «event GardSelf»
            on «event sysobeep» n
                return "beeped"
            end «event sysobeep»
            on run
            end run
            """)
        words = applet.folder / "Garden.app/Contents/Resources/words.sdef"
        words.write_text("""<dictionary><suite name="Garden">
            <command name="rest" code="GardRest"><direct-parameter type="text"/><parameter name="lasting" code="forX" type="integer"/>
            <parameter name="loudly" code="loud" type="boolean"/><result type="any"/></command>
            <command name="fail" code="GardFail"><direct-parameter type="any"/></command></suite></dictionary>""")
        for what, expected in [
            ('rest "here" lasting 5 with loudly', '{"here", 5, true}'),
            ('rest {1, "b"} lasting 5 without loudly', '{{1, "b"}, 5, false}'),
            ('«event GardRest» "x" given «class forX»:2, «class loud»:missing value', '{"x", 2, missing value}'),
            ("fail 3", "Garden got an error: too wet (-2700)"),
            ("«event GardSelf»", "{-1708, -1708}"),
            ("«event GardNone»", "Garden got an error: application \"Garden\" doesn’t understand the “«event GardNone»” message. (-1708)"),
        ]:
            self.assertEqual(self.tell(what, "Garden"), expected, what)

    def test_properties_last(self):
        """What a run has changed is there in the next one."""
        applet = self.start("Counter", "property n : 0\non run\n\tset n to n + 1\n\tdo shell script \"echo \" & n & \" >> FOLDER/counted\"\nend run")
        applet.ends()
        for expected in ("1\n2\n", "1\n2\n3\n"):
            subprocess.run([str(applet.folder / "Counter.app/Contents/Linux/Counter")], env=applet.environment(), timeout=60, check=True)
            self.assertEqual(applet.said("counted"), expected)

    def test_what_can_be_asked_of_an_applet(self):
        applet = self.serve()
        for what, expected in [
            ("add(1, 2)", "3"),
            ("get its counter", "6"),
            ("set its counter to 9", "9"),
            ("add(4, 1)", "5"),
            ("slow(0.1)", '"slept"'),
            ("fail()", "Server got an error: no good (-2700)"),
            ("nothing()", "Server got an error: «script» doesn’t understand the “nothing” message. (-2700)"),
            ("get its nothing", "Server got an error: The applet has no such property. (-1728)"),
            ("run", '"ran"'),
            ("get name", '"Server"'),
            ("get version", '"1.0"'),
            ("activate", ""),
            ("reopen", ""),
            ("launch", ""),
        ]:
            self.assertEqual(self.tell(what), expected, what)
        self.assertEqual(self.tell("is running", "Nobody"), "false")
        self.assertEqual(self.tell("add(1, 2)", "Nobody"), "Can’t get application \"Nobody\". (-1728)")
        self.assertEqual(self.tell("quit"), "")
        applet.ends()
        self.assertEqual(self.tell("quit"), "", "quit does not launch")
        self.assertEqual(self.tell("is running"), "false")

    def test_a_call_launches_an_applet_that_has_run_before(self):
        applet = self.serve()
        self.tell("quit")
        applet.ends()
        # The applet keeps no descriptor of the caller open: a reader at the other end of a pipe sees the end when the caller has gone.
        reading, writing = os.pipe()
        called = self.osascript("-e", 'tell application "Server" to add(2, 3)', pass_fds=(writing,))
        os.close(writing)
        self.assertEqual(called.stdout, "5\n")
        self.assertEqual(self.tell("is running"), "true")
        self.assertEqual(select.select([reading], [], [], harness.DEADLINE)[0], [reading])
        os.close(reading)
        self.assertEqual(self.tell("quit"), "")

    def test_an_event_that_starts_an_applet_is_answered_by_it(self):
        source = """
            on jot(what)
                do shell script "echo " & what & " >> FOLDER/jotted"
            end jot
            on run
                my jot("run")
                return "ran"
            end run
            on add(a, b)
                delay 0.3
                return a + b
            end add
            on large()
                set s to "0123456789"
                repeat 18 times
                    set s to s & s
                end repeat
                return s
            end large
            """
        applet = self.start("Brief", source)
        applet.ends()
        (applet.folder / "jotted").unlink()
        self.start("Silent", "on greet()\nreturn \"hello\"\nend greet").ends()
        for name, what, expected, runs in [
            ("Brief", "add(1, 2)", "3", "run\n"),
            ("Brief", "count large()", "2621440", "run\n"),
            ("Brief", "run", '"ran"', "run\n"),
            ("Silent", "greet()", '"hello"', ""),
            ("Silent", "launch", "", ""),
        ]:
            self.assertEqual(self.tell(what, name), expected, what)
            until(lambda: self.tell("is running", name) == "false", name + " to end after " + what)
            self.assertEqual(applet.said("jotted"), runs, what)
            (applet.folder / "jotted").unlink(missing_ok=True)
        # An applet that was launched for nothing waits with its run until somebody asks for it, and then ends as usual.
        for ask in ("run", "launched by hand"):
            self.assertEqual(self.tell("launch", "Brief"), "")
            self.assertEqual(self.tell("add(3, 4)", "Brief"), "7")
            self.assertEqual((self.tell("is running", "Brief"), applet.said("jotted")), ("true", ""))
            if ask == "run":
                self.assertEqual(self.tell("run", "Brief"), '"ran"')
            else:
                subprocess.run([str(applet.folder / "Brief.app/Contents/Linux/Brief")], env=applet.environment(), timeout=30, check=True)
            until(lambda: self.tell("is running", "Brief") == "false", "the applet to end")
            self.assertEqual(applet.said("jotted"), "run\n")
            (applet.folder / "jotted").unlink()
        until(lambda: not os.listdir(applet.folder / "run/quoddle"), "what an applet is found by to go")

    def test_an_applet_does_not_wait_for_ever_for_the_event_that_starts_it(self):
        applet = self.start("Forgotten", "on greet()\nreturn \"hello\"\nend greet")
        applet.ends()
        began = time.monotonic()
        program = applet.folder / "Forgotten.app/Contents/Linux/Forgotten"
        applet.process = subprocess.Popen([str(program)], env=dict(applet.environment(), QUODDLE_LAUNCHED_FOR="event"))
        applet.ends()
        self.assertGreater(time.monotonic() - began, 4)

    def test_a_quit_during_a_call_ends_both(self):
        for number, quit_handler in enumerate(("", "on quit\ncontinue quit\nend quit")):
            name = f"Server{number}"
            applet = self.serve(name, "on slow()\ndo shell script \"echo slow > FOLDER/" + name + "\"\ndelay 60\nend slow\non run\nend run\n" + quit_handler)
            call = subprocess.Popen([str(binaries() / "osascript"), "-e", f'tell application "{name}" to slow()'], env=applet.environment(), stderr=subprocess.PIPE, text=True)
            until(lambda: applet.said(name), "the call to begin")
            self.assertEqual(self.tell("quit", name), "")
            applet.ends()
            self.assertIn("User canceled", call.communicate(timeout=10)[1])

    def test_what_a_sender_leaves_behind_is_handled(self):
        applet = self.serve("Jotter", """
            on jot(x)
                do shell script "echo " & x & " >> FOLDER/jotted"
            end jot
            on idle
                return 100
            end idle
            """)
        done = self.osascript("-e", "ignoring application responses", "-e", "repeat with i from 1 to 150", "-e", 'tell application "Jotter" to jot(i as integer)', "-e", "end repeat", "-e", "end ignoring")
        self.assertEqual(done.returncode, 0, done.stderr)
        until(lambda: len(applet.said("jotted").split()) >= 150, "all calls")
        self.assertEqual(applet.said("jotted").split(), [str(i) for i in range(1, 151)])

    def test_a_refused_quit_is_told_so(self):
        self.serve("Refuser", "on idle\nreturn 50\nend idle\non quit\ndelay 0.1\nend quit")
        self.assertEqual(self.tell("quit", "Refuser"), "Refuser got an error: User canceled. (-128)")
        self.assertEqual(self.tell("is running", "Refuser"), "true")

    def test_calls_wait_for_the_handler_that_runs_and_keep_their_order(self):
        applet = self.start("Busy", """
            on run
                do shell script "echo run > FOLDER/began"
                repeat
                    try
                        do shell script "test -e FOLDER/go"
                        exit repeat
                    end try
                    delay 0.05
                end repeat
                do shell script "echo end of run >> FOLDER/order"
            end run
            on jot(x)
                do shell script "echo " & x & " >> FOLDER/order"
            end jot
            on idle
                return 100
            end idle
            """, options=["-s"])
        until(lambda: self.tell("is running", "Busy") == "true", "the applet to be found")
        until(lambda: applet.said("began"), "the run to begin")
        calls = []
        for number in range(3):
            calls.append(subprocess.Popen([str(binaries() / "osascript"), "-e", f'tell application "Busy" to jot({number})'], env=applet.environment()))
            until_at_rest(calls[-1].pid)  # the script has sent its event and waits
        (applet.folder / "go").touch()
        for call in calls:
            self.assertEqual(call.wait(timeout=30), 0)
        self.assertEqual(applet.said("order"), "end of run\n0\n1\n2\n")

    def test_every_caller_is_answered_when_the_applet_dies(self):
        applet = self.serve()
        call = subprocess.Popen([str(binaries() / "osascript"), "-e", 'tell application "Server" to slow(60)'], env=applet.environment(), stderr=subprocess.PIPE, text=True)
        until(lambda: applet.said("started"), "the call to begin")
        applet.process.kill()
        self.assertIn("(-609)", call.communicate(timeout=10)[1])
        # The files that the applet has left behind are no obstacle.
        self.assertEqual(self.tell("is running"), "false")
        self.assertEqual(self.tell("add(1, 1)"), "2")
        self.tell("quit")

    def test_an_applet_outlives_callers_that_die_stall_or_talk_nonsense(self):
        applet = self.serve()
        call = subprocess.Popen([str(binaries() / "osascript"), "-e", 'tell application "Server" to slow(0.3)'], env=applet.environment())
        until(lambda: applet.said("started"), "the call to begin")
        call.kill()
        call.wait()
        path = str(applet.folder / "run" / "quoddle" / (str(applet.process.pid) + ".sock"))
        strangers = []
        for message in (b"GET / HTTP/1.0\r\n\r\n", b"QAE2\x01\x01\0\0", b"QAE2\x01\x01\0\0\0\0\0\1\0\0\0\0\x07\xff\xff\xff" + bytes(1000)):
            stranger = socket.socket(socket.AF_UNIX)
            strangers.append(stranger)
            stranger.connect(path)
            stranger.send(message)
        self.assertEqual(self.tell("add(20, 22)"), "42")
        if os.geteuid() == 0:
            other = subprocess.run(["python3", "-c", f"import os, socket; os.setuid(65534); socket.socket(socket.AF_UNIX).connect({path!r})"], capture_output=True, text=True)
            self.assertIn("PermissionError", other.stderr, "another user is let in")
        for stranger in strangers:
            stranger.close()

    def test_a_second_launch_hands_its_files_over(self):
        applet = self.serve("Drop", """
            on open these
                if (count these) > 1 then error "too many" number -128
                do shell script "echo " & quoted form of POSIX path of (item 1 of these) & " >> FOLDER/opened"
            end open
            on idle
                return 100
            end idle
            """)
        shell = str(applet.folder / "Drop.app/Contents/Linux/Drop")
        for files, status in (["/etc/passwd"], 0), ([], 0), (["/etc/passwd", "/etc/group"], 1):
            done = subprocess.run([shell, *files], env=applet.environment(), timeout=30, capture_output=True, text=True)
            self.assertEqual(done.returncode, status, done.stderr)
        self.assertEqual(applet.said("opened"), "/etc/passwd\n")
        self.assertIn("was stopped", done.stderr)
        # Of several launches at the same moment one starts the applet, and the others hand over to it.
        self.tell("quit", "Drop")
        applet.ends()
        launches = [subprocess.Popen([shell], env=applet.environment(), stderr=subprocess.DEVNULL) for _ in range(5)]
        until(lambda: sum(launch.poll() is None for launch in launches) == 1, "all but one to end")
        self.assertEqual(self.tell("quit", "Drop"), "")
        until(lambda: all(launch.poll() == 0 for launch in launches), "the applet to end")

    def test_stop_ends_a_wait_for_a_reply(self):
        self.serve()
        caller = self.start("Caller", 'tell application "Server" to slow(60)')
        until(lambda: caller.said("started"), "the call to begin")
        began = time.monotonic()
        caller.process.send_signal(signal.SIGTERM)
        caller.ends()
        self.assertLess(time.monotonic() - began, 5)


if __name__ == "__main__":
    harness.main(Events)
