#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The command-line programs: what they print, where, and with which exit status.

    programs.py BIN
"""
import os
import pathlib
import plistlib
import resource
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest

BIN = None


def call(program, *arguments, stdin="", cwd=None, **environment):
    """`environment`: variables that are set beside those of the test."""
    done = subprocess.run([str(BIN / program), *map(str, arguments)], input=stdin.encode(), capture_output=True, timeout=60, cwd=cwd,
                          env=dict(os.environ, **environment))
    return done.returncode, done.stdout.decode(), done.stderr.decode()


class Programs(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def test_osascript_prints_results_and_errors(self):
        cases = [
            (["-e", "6 * 7"], 0, "42\n", ""),
            (["-e", "set x to 2", "-e", "x & \"a\""], 0, "2, a\n", ""),
            (["-ss", "-e", "{1, \"a\", {b:2}}"], 0, "{1, \"a\", {b:2}}\n", ""),
            (["-e", "return"], 0, "", ""),
            (["-e", "log {1, \"two\"}"], 0, "", "1, two\n"),
            (["-e", "error \"boom\" number 3"], 1, "", "0:21: execution error: boom (3)\n"),
            (["-so", "-e", "error \"boom\" number 3"], 1, "0:21: execution error: boom (3)\n", ""),
            (["-e", "1 +"], 1, "", None),
            (["-l", "Klingon", "-e", "1"], 2, "", None),
            (["-q"], 2, "", None),
            (["-e return 1 + 1"], 0, "2\n", ""),
            (["/nowhere/x.scpt"], 1, "", "osascript: /nowhere/x.scpt: No such file or directory\n"),
        ]
        for arguments, status, output, errors in cases:
            with self.subTest(arguments):
                got = call("osascript", *arguments)
                self.assertEqual(got[:2], (status, output))
                if errors is not None:
                    self.assertEqual(got[2], errors)

    def test_osascript_reads_files_of_every_encoding_and_arguments(self):
        source = "on run argv\r\nreturn item 2 of argv & \"é\"\r\nend run\r\n"
        for name, content in [("utf8", source.encode()), ("bom", b"\xef\xbb\xbf" + source.encode()), ("utf16", source.encode("utf-16")),
                              ("roman", source.encode("mac_roman")), ("cr", source.replace("\r\n", "\r").encode()),
                              ("shebang", b"#!/usr/bin/osascript\n" + source.encode())]:
            with self.subTest(name):
                self.assertEqual(call("osascript", self.file(name, content), "a", "b"), (0, "bé\n", ""))
        self.assertEqual(call("osascript", "-", "x", "y", stdin=source), (0, "yé\n", ""))
        script = self.file("tool", f"#!{BIN / 'osascript'}\nreturn 5\n")
        script.chmod(0o755)
        self.assertEqual(subprocess.run([str(script)], capture_output=True).stdout, b"5\n")

    def test_compiling_storing_and_reading_back(self):
        source = "property n : 1\n\non double(x)\n\treturn x * 2 -- twice\nend double\n\nreturn double(n + 20)\n"
        path = self.file("s.applescript", source)
        for name in ("s.scpt", "s.scptd", "s.app"):
            self.assertEqual(call("osacompile", "-o", self.folder / name, path), (0, "", ""))
            self.assertEqual(call("osascript", self.folder / name), (0, "42\n", ""))
            self.assertEqual(call("osadecompile", self.folder / name), (0, source, ""))
        self.assertEqual(call("osacompile", "-x", "-o", self.folder / "r.scpt", self.folder / "s.scpt"), (0, "", ""))
        self.assertEqual(call("osascript", self.folder / "r.scpt"), (0, "42\n", ""))
        self.assertEqual(call("osadecompile", self.folder / "r.scpt")[0], 1)
        # Applets with different names get different identifiers.
        identifiers = []
        for name in ("C++", "C#", "Straße", "Stra--e", "日本", "本日", "My Tool", "a b&c"):
            self.assertEqual(call("osacompile", "-o", self.folder / (name + ".app"), path), (0, "", ""))
            identifiers.append(plistlib.loads((self.folder / (name + ".app/Contents/Info.plist")).read_bytes())["CFBundleIdentifier"])
        self.assertEqual(len(set(identifiers)), len(identifiers))
        self.assertEqual(identifiers[6], "local.applet.my-tool")
        for identifier in identifiers:
            self.assertRegex(identifier, r"^local\.applet\.[a-z0-9-]+$")
        # An applet that is compiled again keeps its other files.
        extra = self.folder / "s.app/Contents/Resources/extra.txt"
        extra.write_text("kept")
        self.assertEqual(call("osacompile", "-o", self.folder / "s.app", "-e", "return 7"), (0, "", ""))
        self.assertEqual((call("osascript", self.folder / "s.app")[1], extra.read_text()), ("7\n", "kept"))

    def test_an_applet_is_told_in_the_words_of_its_dictionary(self):
        bundle, script = self.folder / "applets/Garden.app", self.folder / "telling.scpt"
        bundle.parent.mkdir()
        self.assertEqual(call("osacompile", "-o", bundle, "-e", "beep")[0], 0)
        words = bundle / "Contents/Resources/words.sdef"
        words.write_text("""<dictionary><suite name="Garden">
            <class name="garden bed" code="gbed"><property name="soil" code="soil" type="text"/></class>
            <command name="dig over" code="GardDigO"><direct-parameter type="text"/><parameter name="with tool" code="tool" type="text"/></command>
            <enumeration name="seasons" code="seas"><enumerator name="late fall" code="fall"/></enumeration>
            </suite></dictionary>""")
        folders = {"QUODDLE_APPLET_PATH": str(bundle.parent), "XDG_CACHE_HOME": str(self.folder / "cache")}
        source = ('tell application "Garden" to dig over (soil of garden bed 1) with tool (late fall as text)\n'
                  'using terms from application "Garden"\n\ton dig over place with tool x\n\t\treturn x\n\tend dig over\nend using terms from')
        raw = 'tell application "Garden" to «event GardDigO» («class soil» of «class gbed» 1) given «class tool»:(«constant seasfall» as text)'
        for compiled, shown in ((source, source), (raw, source.partition("\n")[0])):
            self.assertEqual(call("osacompile", "-o", script, "-e", compiled, **folders), (0, "", ""))
            for _ in ("read anew", "from the cache"):
                self.assertEqual(call("osadecompile", script, **folders), (0, shown + "\n", ""))
        # What is stored is codes: they are printed where the dictionary has gone.
        words.unlink()
        self.assertEqual(call("osadecompile", script, **folders), (0, raw + "\n", ""))
        status, _, errors = call("osacompile", "-o", script, "-e", source, **folders)
        self.assertEqual(status, 1)
        self.assertIn("There is no dictionary of “Garden”", errors)

    def test_errors_say_where(self):
        wrong = self.file("w.applescript", "set a to 1\nset b to )\n")
        self.assertEqual(call("osascript", wrong)[2], f"{wrong}:20:21: script error: Expected expression but found “)”. (-2741)\n")
        self.assertEqual(call("osascript", "-", stdin="set b to )")[2], "9:10: syntax error: Expected expression but found “)”. (-2741)\n")
        self.assertEqual(call("osacompile", "-o", self.folder / "w.scpt", wrong)[2], f"{wrong}:2: error: Expected expression but found “)”. (-2741)\n")
        self.assertEqual(call("osacompile", "-o", self.folder / "e.scpt", "-e", "error \"x\" number 5")[2], "")
        self.assertEqual(call("osascript", self.folder / "e.scpt")[2], f"{self.folder}/e.scpt: execution error: x (5)\n")

    def test_properties_of_a_compiled_script_last(self):
        for name in ("c.scpt", "c.scptd"):
            call("osacompile", "-o", self.folder / name, "-e", "property n : 0", "-e", "set n to n + 1")
            self.assertEqual([call("osascript", self.folder / name)[1] for _ in range(3)], ["1\n", "2\n", "3\n"])
        self.assertEqual(call("osadecompile", self.folder / "c.scpt")[1], "property n : 0\nset n to n + 1\n")
        # A file stays as it is when its properties are unchanged, when the script fails, and when it belongs to an applet.
        for name, statement in (("same.scpt", "return n"), ("fails.scpt", "set n to 9\nerror 5"), ("a.app", "set n to n + 1")):
            call("osacompile", "-o", self.folder / name, self.file("s.applescript", "property n : 0\n" + statement))
            path = self.folder / name
            file = path / "Contents/Resources/Scripts/main.scpt" if path.is_dir() else path
            before = (file.read_bytes(), file.stat().st_ino)
            call("osascript", path)
            self.assertEqual((file.read_bytes(), file.stat().st_ino), before, name)

    def test_properties_that_cannot_be_stored_are_told(self):
        script = self.folder / "c.scpt"
        call("osacompile", "-o", script, "-e", "property n : 0", "-e", "set n to n + 1")
        before = script.read_bytes()
        def full_disk():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (10, 10))
        done = subprocess.run([str(BIN / "osascript"), str(script)], capture_output=True, text=True, preexec_fn=full_disk)
        self.assertEqual((done.returncode, done.stdout, script.read_bytes()), (1, "1\n", before))
        self.assertRegex(done.stderr, f"^osascript: {script}: the properties could not be stored: .+\n$")
        self.assertEqual(call("osascript", script), (0, "1\n", ""))

    def test_a_script_knows_its_file(self):
        script = self.file("where.applescript", "POSIX path of (path to me)")
        self.assertEqual(call("osascript", "where.applescript", cwd=self.folder), (0, f"{script}\n", ""))
        call("osacompile", "-o", self.folder / "where.scptd", script)
        self.assertEqual(call("osascript", self.folder / "where.scptd"), (0, f"{self.folder}/where.scptd/\n", ""))
        self.assertEqual(call("osascript", "-e", "POSIX path of (path to me)"), (0, f"{BIN}/osascript\n", ""))

    def test_nothing_is_written_when_it_fails(self):
        before = sorted(self.folder.iterdir())
        self.assertEqual(call("osacompile", "-o", self.folder / "x.scpt", "-e", "set set to set")[0], 1)
        self.assertEqual(call("osacompile", "-o", self.folder / "no/such/folder/x.scpt", "-e", "1")[0], 1)
        self.assertEqual(sorted(self.folder.iterdir()), before)

    def test_compiling_replaces_nothing_but_files(self):
        place = self.folder / "place"
        def compiled():
            return call("osacompile", "-o", place, "-e", "return 1")
        place.mkdir()
        self.assertEqual(compiled()[0], 1)
        place.rmdir()
        # A place that is not a file is not replaced: a device gets the bytes, and a pipe that nobody reads is an error.
        os.mkfifo(place)
        self.assertEqual(compiled()[0], 1)
        self.assertTrue(stat.S_ISFIFO(place.lstat().st_mode))
        with open(os.open(place, os.O_RDONLY | os.O_NONBLOCK), "rb") as reader:
            self.assertEqual(compiled()[0], 0)
            self.assertEqual(reader.read(8), b"FasdUAS ")
        self.assertTrue(stat.S_ISFIFO(place.lstat().st_mode))
        place.unlink()
        if os.geteuid() == 0:
            os.mknod(place, 0o666 | stat.S_IFCHR, os.makedev(1, 3))
            self.assertEqual((compiled()[0], stat.S_ISCHR(place.lstat().st_mode)), (0, True))
            place.unlink()
        # A link stays a link and its target gets the script. A link that leads nowhere is an error.
        place.symlink_to("target")
        self.assertEqual(compiled()[0], 1)
        target = self.file("target", "old")
        target.chmod(0o6750)
        self.assertEqual((compiled()[0], place.is_symlink(), call("osascript", target)[1]), (0, True, "1\n"))
        self.assertEqual(stat.S_IMODE(target.stat().st_mode), 0o750)
        place.unlink()
        self.assertEqual(sorted(self.folder.iterdir()), [target])
        # A bundle can be compiled through a link.
        call("osacompile", "-o", self.folder / "Real.app", "-e", "1")
        (self.folder / "Link.app").symlink_to("Real.app")
        self.assertEqual(call("osacompile", "-o", self.folder / "Link.app", "-e", "2"), (0, "", ""))
        self.assertEqual(((self.folder / "Link.app").is_symlink(), call("osascript", self.folder / "Real.app")[1]), (True, "2\n"))

    def test_compiling_into_open_files(self):
        compile_to = f"'{BIN}/osacompile' -e 'return 1' -o"
        for command in (f"{{ echo head; {compile_to} /dev/stdout; echo tail; }} > out", f"echo head > out; {{ {compile_to} /dev/stdout; echo tail; }} >> out",
                        f"{{ echo head; {compile_to} /dev/stdout; echo tail; }} | cat > out", f"{{ echo head; {compile_to} /proc/self/fd/7; echo tail; }} 7>&1 > out"):
            with self.subTest(command):
                done = subprocess.run(command, shell=True, cwd=self.folder, capture_output=True)
                output = done.stdout + (self.folder / "out").read_bytes()
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                self.assertTrue(b"FasdUAS" in output and b"head\n" in output and output.endswith(b"tail\n"), output)
                self.assertEqual([p.name for p in self.folder.iterdir()], ["out"])

    def test_pipes_and_devices_are_read_like_files(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        script = self.folder / "s.scpt"
        call("osacompile", "-o", script, "-e", "property n : 1", "-e", "set n to n + 1")
        before = script.read_bytes()
        for command, output in [(f"echo 'return 2' | '{BIN}/osascript' /dev/stdin", "2\n"), (f"echo 'return 3' >pipe & '{BIN}/osascript' pipe", "3\n"),
                                (f"'{BIN}/osascript' /dev/fd/3 3<s.scpt", "2\n"), (f"cat s.scpt >pipe & '{BIN}/osascript' pipe", "2\n"),
                                (f"cat s.scpt | '{BIN}/osadecompile' /dev/stdin", "property n : 1\nset n to n + 1\n"), (f"'{BIN}/osascript' /dev/null", ""),
                                (f"echo 'return 4' >pipe & '{BIN}/osacompile' -o made.scpt pipe && '{BIN}/osascript' made.scpt", "4\n")]:
            with self.subTest(command):
                done = subprocess.run(command, shell=True, cwd=self.folder, capture_output=True, text=True, timeout=60)
                self.assertEqual((done.returncode, done.stdout, done.stderr), (0, output, ""))
        self.assertEqual(script.read_bytes(), before, "what is read from a stream is not stored")
        # A pipe inside a bundle is refused, because the user has not named it.
        inside = self.folder / "B.scptd/Contents/Resources/Scripts/main.scpt"
        inside.parent.mkdir(parents=True)
        os.mkfifo(inside)
        self.assertIn("not an ordinary file", call("osascript", self.folder / "B.scptd")[2])

    def test_a_bundle_that_is_compiled_again_loses_nothing(self):
        bundle = self.folder / "Tool.app"
        again = lambda: call("osacompile", "-o", bundle, "-e", "return 2")
        self.assertEqual(again()[0], 0)
        # The bundle has neighbours with names like our temporary ones, links, a folder that may not be written to, and a file that runs as
        # its owner.
        for neighbour in ("Tool.app.new", "Tool.app.old"):
            (self.folder / neighbour).mkdir()
        resources = bundle / "Contents/Resources"
        (self.folder / "large").write_bytes(bytes(100_000))
        (resources / "link").symlink_to(self.folder / "large")
        (resources / "broken").symlink_to("nowhere")
        (resources / "around").symlink_to(".")
        (resources / "locked").mkdir()
        (resources / "locked/inside").write_text("kept")
        (resources / "locked").chmod(0o555)
        self.addCleanup(lambda: (resources / "locked").chmod(0o755))  # a locked folder cannot be removed
        (resources / "tool").write_text("#!/bin/sh")
        (resources / "tool").chmod(0o4755)
        (bundle / "Contents/Other").write_text("kept as well")
        self.assertEqual(again(), (0, "", ""))
        self.assertEqual([os.readlink(resources / name) for name in ("link", "broken", "around")], [str(self.folder / "large"), "nowhere", "."])
        self.assertEqual((resources / "locked/inside").read_text() + (bundle / "Contents/Other").read_text(), "keptkept as well")
        self.assertEqual([stat.S_IMODE((resources / name).stat().st_mode) for name in ("locked", "tool")], [0o555, 0o755])
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()), ["Tool.app", "Tool.app.new", "Tool.app.old", "large"])
        # A file that cannot be copied is an error, and everything stays.
        os.mkfifo(resources / "pipe")
        before = sorted(bundle.rglob("*"))
        status, _, errors = call("osacompile", "-o", bundle, "-e", "return 3")
        self.assertEqual((status, sorted(bundle.rglob("*")), call("osascript", bundle)[1]), (1, before, "2\n"))
        self.assertIn("Tool.app", errors)
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()), ["Tool.app", "Tool.app.new", "Tool.app.old", "large"])

    def test_output_that_cannot_be_written_is_an_error(self):
        script = self.folder / "s.scpt"
        call("osacompile", "-o", script, "-e", "return 1")
        commands = [["osascript", "-e", "1"], ["osascript", "--help"], ["osadecompile", script], ["osalang"], ["osacompile", "--help"],
                    ["quoddle", "--help"], ["quoddle-dialogs", "--help"], ["quoddle-fetch", "--help"], ["quoddle-shell", "--help"]]
        for command in commands:
            for where in ("/dev/full", "/dev/null"):
                with self.subTest(command, where=where), open(where, "w") as output:
                    done = subprocess.run([str(BIN / command[0]), *map(str, command[1:])], stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE, text=True)
                    expected = (1, f"{command[0]}: the output could not be written\n") if where == "/dev/full" else (0, "")
                    self.assertEqual((done.returncode, done.stderr), expected)
        # A closed stream is an error like one that cannot be written, and no file that the script opens takes its place.
        data = self.file("data", "before")
        script = f'set f to open for access POSIX file "{data}" with write permission\nlog "to nobody"\nreturn "result"'
        for closed, status in [("<&-", 0), (">&-", 1), ("2>&-", 0), ("<&- >&- 2>&-", 1)]:
            done = subprocess.run(f"exec '{BIN}/osascript' -e '{script}' {closed}", shell=True, capture_output=True)
            self.assertEqual((done.returncode, data.read_text()), (status, "before"), closed)
        self.assertEqual(subprocess.run(f"'{BIN}/osascript' <&-", shell=True, capture_output=True).returncode, 1)

    def test_memory_that_is_not_there(self):
        """With too little memory there is an error of the language, or at least a message, and no crash."""
        if BIN.parent.name in ("asan", "tsan"):
            self.skipTest("a sanitizer takes more than there is")
        def limited(script, *words):  # without a script file the input has no end
            limit = lambda: resource.setrlimit(resource.RLIMIT_AS, (300_000 << 10, 300_000 << 10))
            with open(script) if script else open("/dev/zero") as source:
                done = subprocess.run([str(BIN / "osascript"), *words], stdin=source, capture_output=True, text=True, preexec_fn=limit, timeout=120)
            return done.returncode, done.stderr[-60:]
        for name, source, error in [
            ("growing", "set l to {}\nrepeat\nset end of l to {1, 2, 3}\nend repeat", "Out of memory. (-108)\n"),
            ("nested", "set l to {}\nrepeat\nset l to {l, \"x\" & 3}\nend repeat", "Out of memory. (-108)\n"),
            ("output", "do shell script \"tr '\\\\\\\\0' a </dev/zero\"", "(-108)\n"),
            ("caught", "try\nset l to {}\nrepeat\nset end of l to {a:1}\nend repeat\non error number n\nset l to {}\nerror \"again\" number n\nend try", "again (-108)\n"),
            ("large", "set x to \"" + "a" * 60_000_000 + "\"", "emory"),
            ("long", "".join(f"set x{i} to {{{i}}}\n" for i in range(400_000)), "emory"),
        ]:
            with self.subTest(name):
                status, said = limited(self.file(name, source))
                self.assertEqual(status, 1)
                self.assertIn(error, said)
        self.assertEqual(limited(None)[0], 1)
        self.assertEqual(limited(None, "-i"), (1, "osascript: a line of the input is too long\n"))

    def test_long_sources(self):
        plain = "-- begin\n" + "set x to 1\n\n" * 50_000 + "set x to 6\n" * 50_000 + "x * 7\n"
        source = self.file("plain.applescript", plain)
        compiled = self.folder / "plain.scpt"
        self.assertEqual(call("osacompile", "-o", compiled, source), (0, "", ""))
        for file in (source, compiled):
            self.assertEqual(call("osascript", file), (0, "42\n", ""))
            self.assertEqual(call("osadecompile", file), (0, plain, ""))
        many = "on h(a)\nend h\n" + "".join(f"set x to {i % 9}\nset y to x\nh(y)\n" for i in range(40_000)) + "y & 1 / 0\n"
        at = len(many) - len("1 / 0\n")
        self.assertEqual(call("osascript", self.file("many", many))[2],
                         f"{self.folder}/many:{at}:{at + 5}: execution error: Can’t divide 1.0 by zero. (-2701)\n")
        for name, content, line, message in [
            ("block", "beep\nif true then\n" + "set x to 1\n" * 9000 + "end if", 2, "The code of a block can take 32,767 bytes."),
            ("recovery", "beep\ntry\n" + "set x to 1\n" * 9000 + "on error\nbeep\nend try", 2, "The code of a block can take 32,767 bytes."),
            ("loop", "repeat\n" + "set x to 1\n" * 9000 + "end repeat", 1, "The code of a block can take 32,767 bytes."),
            ("values", "".join(f"set x to {i}\n" for i in range(40_000)), 32772, "has room for 32,768 names, numbers and texts."),
            ("names", "".join(f"set x{i} to 1\n" for i in range(40_000)), 32769, "has room for 32,768 names, numbers and texts."),
            ("handlers", "".join(f"on h{i}()\nend h{i}\n" for i in range(40_000)), 65537, "has room for 32,768 names, numbers and texts."),
        ]:
            status, _, said = call("osacompile", "-o", self.folder / "a.scpt", self.file(name, content))
            self.assertTrue(status == 1 and said.startswith(f"{self.folder}/{name}:{line}: error: ") and message in said, said)
        mixed = self.file("mixed", "property p : 1\n" + "set x to 1\n" * 40_000)
        self.assertIn("a compiled script has room for 32,767 ", call("osacompile", "-o", self.folder / "a.scpt", mixed)[2])
        self.assertFalse((self.folder / "a.scpt").exists())

    def test_options_in_the_first_line(self):
        for options, expected in [("-l AppleScript", b"a\n"), ("-l AppleScript -s s", b'"a"\n'), ("-ss", b'"a"\n'), ("", b"a\n")]:
            script = self.file("tool", f"#!{BIN / 'osascript'} {options}\non run argv\nreturn item 1 of argv\nend run\n")
            script.chmod(0o755)
            self.assertEqual(subprocess.run([str(script), "a", "-b"], capture_output=True).stdout, expected, options)

    def test_many_at_once_lose_nothing(self):
        bundle = self.folder / "Tool.app"
        extras = {f"extra{i}" for i in range(200)}
        for round in range(3):  # the first round finds no bundle
            running = [subprocess.Popen([str(BIN / "osacompile"), "-o", str(bundle), "-e", f"return {i}"]) for i in range(6)]
            self.assertEqual([process.wait() for process in running], [0] * 6)
            for extra in extras:
                (bundle / "Contents/Resources" / extra).touch()
        self.assertEqual({p.name for p in (bundle / "Contents/Resources").iterdir()} - {"Scripts"}, extras)
        self.assertEqual([p.name for p in self.folder.iterdir()], ["Tool.app"])

    def test_names_of_every_kind(self):
        long = "n" * 246
        for name in (long + ".app", long + ".scpt", "line\nbreak\x1b[31m.app", b"not\xffUTF-8.app", "quo'te & <b>\\n.app", "-e.app", " .app", "a.app/"):
            with self.subTest(name):
                path = os.fsencode(self.folder) + b"/" + (name if isinstance(name, bytes) else name.encode())
                done = subprocess.run([os.fsencode(BIN / "osacompile"), b"-o", path, b"-e", b"return 7"], capture_output=True)
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                self.assertEqual(subprocess.run([os.fsencode(BIN / "osascript"), path], capture_output=True).stdout, b"7\n")
                info = pathlib.Path(os.fsdecode(path)) / "Contents/Info.plist"
                if info.exists():
                    self.assertEqual([p.name for p in (info.parent / "Linux").iterdir()], [plistlib.loads(info.read_bytes())["CFBundleExecutable"]])
        for name in (".app", ".scptd", "n" * 260 + ".app", "n" * 260):
            with self.subTest(name):
                before = sorted(self.folder.iterdir())
                status, _, errors = call("osacompile", "-o", self.folder / name, "-e", "1")
                self.assertEqual((status, sorted(self.folder.iterdir())), (1, before))
                self.assertIn("name", errors)

    def test_an_applet_starts_its_shell_from_wherever_it_is_called(self):
        shell = self.file("shell", "#!/bin/sh\necho \"$1\"\n")
        shell.chmod(0o755)
        bundle = self.folder.resolve() / "a b" / "Tool.app"
        bundle.parent.mkdir()
        call("osacompile", "-o", bundle, "-e", "1")
        launcher = bundle / "Contents/Linux/Tool"
        (self.folder / "links").mkdir()
        (self.folder / "links/tool").symlink_to(launcher)
        for words, cwd in [([launcher], "/"), (["Tool.app/Contents/Linux/Tool"], bundle.parent), (["./Tool"], launcher.parent), (["sh", "Tool"], launcher.parent),
                           (["links/tool"], self.folder), (["tool"], "/")]:
            with self.subTest(words):
                environment = os.environ | {"QUODDLE_SHELL": str(shell), "CDPATH": f"/:{bundle.parent}", "PATH": f"{self.folder}/links:{os.environ['PATH']}"}
                done = subprocess.run(["env", *map(str, words)], cwd=cwd, env=environment, capture_output=True, text=True)
                self.assertEqual((done.stdout, done.stderr), (f"{bundle}\n", ""))

    def test_properties_are_kept_where_the_file_cannot_be_written(self):
        folder = pathlib.Path(tempfile.mkdtemp(dir="/tmp"))
        self.addCleanup(shutil.rmtree, folder)
        folder.chmod(0o755)
        home = folder / "home"
        home.mkdir()
        home.chmod(0o777)
        script = folder / "count.scpt"
        nobody = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}

        def run():
            done = subprocess.run([BIN / "osascript", script], env={"HOME": str(home), "PATH": "/usr/bin:/bin"}, capture_output=True, text=True, timeout=60, **nobody)
            return done.stdout.strip() + done.stderr

        def compile_with(step):
            if script.exists():
                script.chmod(0o644)  # a file that may not be written is not replaced
            self.assertEqual(call("osacompile", "-o", script, "-e", f"property n : 0\nset n to n + {step}\nreturn n")[0], 0)
            script.chmod(0o444)
            return script.read_bytes()

        before = compile_with(1)
        if not nobody:
            folder.chmod(0o555)
            self.addCleanup(folder.chmod, 0o755)
        self.assertEqual([run(), run(), run()], ["1", "2", "3"])
        self.assertEqual(script.read_bytes(), before)
        copies = home / ".local/share/quoddle/properties"
        self.assertEqual(len(list(copies.iterdir())), 1)
        folder.chmod(0o755)
        compile_with(10)  # another script in its place starts anew, and what was kept for the first goes
        self.assertEqual([run(), run()], ["10", "20"])
        self.assertEqual(len(list(copies.iterdir())), 1)
        # Once the file can be written it has the properties itself.
        if nobody:
            os.chown(script, 65534, 65534)
            os.chown(folder, 65534, 65534)
        script.chmod(0o644)
        self.assertEqual([run(), run()], ["30", "40"])
        self.assertEqual(list(copies.iterdir()), [])
        # Where nothing can be written at all, the user is told.
        script.chmod(0o444)
        shutil.rmtree(home)
        home.write_text("")
        self.assertIn("the properties could not be stored", run())

    def test_do_shell_script_with_administrator_privileges(self):
        """The system's own program asks the user; root needs nobody's leave. The user here is nobody."""
        folder = pathlib.Path(tempfile.mkdtemp(dir="/tmp"))
        self.addCleanup(shutil.rmtree, folder)
        folder.chmod(0o755)
        fake = folder / "pkexec"

        def run(source, user, path):
            done = subprocess.run([BIN / "osascript", "-e", source], env={"PATH": path, "HOME": str(folder), "LC_ALL": "C.UTF-8"}, capture_output=True,
                                  text=True, timeout=60, **({"user": user, "group": user, "extra_groups": []} if os.geteuid() == 0 else {}))
            return done.stdout.strip() or done.stderr.strip().partition("error: ")[2]

        nobody = 65534
        usual, faked = "/usr/bin:/bin", f"{folder}:/usr/bin:/bin"
        command = "do shell script \"echo \\\"it's $((1 + 1))\\\"\" with administrator privileges"
        bare = folder / "bare"
        bare.mkdir()
        self.assertIn("pkexec", run(command, nobody, str(bare)))
        for program, expected in [('echo asked; exec "$@"', "asked\nit's 2"),
                                  ('echo "Error executing command as another user: Request dismissed" >&2; exit 126', "User canceled. (-128)"),
                                  ('echo "Error executing command as another user: Not authorized" >&2; exit 127',
                                   "Administrator privileges were not given. Error executing command as another user: Not authorized (-10004)"),
                                  ("echo lost >&2; exit 127", "lost (127)")]:
            fake.write_text("#!/bin/sh\n" + program + "\n")
            fake.chmod(0o755)
            self.assertEqual(run(command, nobody, faked).replace("\r", "\n"), expected, program)
        if os.geteuid() == 0:
            self.assertEqual(run(command, 0, faked), "it's 2")
        for named in ('user name "ann"', 'password "x"', 'user name "ann" password "x" with administrator privileges'):
            self.assertIn("the system then asks for the password. (-50)", run(f'do shell script "id" {named}', nobody, usual), named)

    def test_do_shell_script(self):
        self.assertEqual(call("osascript", "-e", "do shell script \"printf 'a\\\\nb\\\\n'\""), (0, "a\rb\n", ""))
        self.assertEqual(call("osascript", "-e", "do shell script \"echo oops >&2; exit 4\"")[2], "0:39: execution error: oops (4)\n")
        self.assertEqual(call("osascript", "-e", "do shell script \"printf 'x\\\\n'\" without altering line endings"), (0, "x\n\n", ""))


        for script in ("do shell script \"echo a\" & character id 0 & \"; echo b\"", "do shell script (character id 0)"):
            self.assertIn("character id 0. (-50)", call("osascript", "-e", script)[2])

    def start(self, command):
        """Starts osascript with a shell command that notes its process number in a file; answers the process and that number."""
        noted = self.folder / "started"
        noted.unlink(missing_ok=True)
        script = f"do shell script \"{command.replace('NOTE', f'echo $$ >{noted}.new; mv {noted}.new {noted}')}\""
        process = subprocess.Popen([str(BIN / "osascript"), "-e", script], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        wait_until(noted.exists)
        return process, int(noted.read_text())

    def test_a_command_ends_with_its_script(self):
        # The commands have closed their streams, ignore signals, or have children.
        for command in ("NOTE; exec >&- 2>&-; sleep 600", "trap '' TERM INT; NOTE; while :; do sleep 600; done", "sleep 600 & NOTE; wait"):
            for how in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGKILL):
                with self.subTest((command, how)):
                    process, group = self.start(command)
                    process.send_signal(how)
                    self.assertEqual(process.wait(10), -how)
                    wait_until(lambda: not lives_in_group(group))
                    process.communicate()
        # A command that was left in the background goes on.
        process, group = self.start("sleep 600 >/dev/null 2>&1 & NOTE")
        self.addCleanup(os.killpg, group, signal.SIGKILL)
        self.assertEqual((process.wait(10), process.communicate()), (0, (b"\n", b"")))
        self.assertTrue(lives_in_group(group))


def lives_in_group(group):
    """Answers whether a process of the group is running and not only waiting to be collected."""
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = stat.read_text().rpartition(")")[2].split()
        except (FileNotFoundError, ProcessLookupError):
            continue
        if int(fields[2]) == group and fields[0] not in "ZX":
            return True
    return False


def wait_until(condition, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < end, "waited in vain"
        time.sleep(0.02)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
