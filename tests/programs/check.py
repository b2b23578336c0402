#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""quoddle check: what scripts need that is not here, with the lines.

    check.py BIN
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

BIN = None

SCRIPT = """use framework "Foundation"
use scripting additions
use lib : script "Tools" version "1.0"
-- tell application "Comment"
property known : application "Finder"
on run
	tell application "Finder"
		log "tell application \\"Text\\""
	end tell
	tell application id "com.apple.mail" to activate
	set x to current application's NSString's stringWithString:"a"
	do shell script "sw_vers | cat"
	tell application "Finder" to activate
end run
script inner
	on go()
		do shell script "cat" & " x | " & quoted form of "y" & " | sw_vers"
	end go
end script
"""
NEEDS = [
    ("framework", "Foundation", [1]), ("script library", "Tools", [3]), ("application", "Finder", [5, 7, 13]),
    ("application", "com.apple.mail", [10]), ("framework name", "NSString", [11]), ("command", "sw_vers", [12, 17])]

# A line for the shell, and the commands in it that are missing. Those that begin with "no-" are.
SHELL_LINES = [
    ("no-a", ["no-a"]),
    ("cat x | no-a && no-b; no-c & no-d\nno-e || no-f", ["no-a", "no-b", "no-c", "no-d", "no-e", "no-f"]),
    ("A=1 B='x y' no-a no-b", ["no-a"]),
    ("2>/dev/null >> x no-a 2>&1 < no-b", ["no-a"]),
    ("'no-a' \"no-b\" | \"no-c\" | no\\-d", ["no-a", "no-c", "no-d"]),
    ("echo \"$(no-a \"$(no-b)\")\" `no-c` $((no-d)) $no_e | $no_f", ["no-a", "no-b", "no-c"]),
    ("if no-a; then no-b; else no-c; fi; for no-d in no-e; do no-g; done", ["no-a", "no-b", "no-c", "no-g"]),
    ("env no-a x | nohup -x no-b | exec no-c", ["no-a", "no-b", "no-c"]),
    ("env -u A B=1 no-a x; sudo -u no-b -- no-c; xargs -I {} -n1 no-d {} < no-e; nice -n 5 no-f; time -p no-g", ["no-a", "sudo", "no-c", "xargs", "no-d", "nice", "no-f", "no-g"]),
    ("command -v no-a || exec -a no-b no-c; env --what no-d", ["no-c"]),
    ("env timeout -k 5 10 no-a", ["timeout", "no-a"]),
    ("find . -name no-a -exec no-b {} \\; -o -print | cat", ["find", "no-b"]),
    ("no-a() { cat; }; no-a", []),
    ("(cd /; no-a) # no-b", ["no-a"]),
    ("cat <<END\nno-a\nEND", []),
    ("cat <<END | no-a\nno-b $(no-c)\nEND\nno-d", ["no-a", "no-c", "no-d"]),
    ("cat <<'A B' <<-C; no-a\nno-b $(no-c)\nA B\nno-d `no-e`\n\tC\nno-f", ["no-a", "no-e", "no-f"]),
    ("cat <<END\nno-a", []),
    ("case x in no-a) no-b;; (no-c|'no-d' | no-e ) no-f & ;; *) esac; no-g", ["no-b", "no-f", "no-g"]),
    ("case $x\nin # no-a\n a) case y in no-b) no-c ;; esac; no-d ;; esac\nno-e", ["no-c", "no-d", "no-e"]),
    ("x=$(case y in (no-a) no-b;; no-c) no-d \")\";; esac; no-e) no-f", ["no-b", "no-d", "no-e", "no-f"]),
    ("sh -c 'no-a | cat' no-b; bash -x -o no-c -lc \"no-d \\\"no-e\\\"; no-f\"; sh no-g; sh -- -c no-h", ["no-a", "no-d", "no-f"]),
    ("env -i bash -c 'eval \"no-a $x\"; $no_b' | sh -c \"cat $(no-c)\"", ["no-a", "no-c"]),
    ("no-a () { cat; }; sh -c no-a; (no-b); no-c) no-d", ["no-b", "no-c", "no-d"]),
    ("/no-a/b; ./no-b; ~/no-c; cd /; test x; [ x ]", ["/no-a/b", "~/no-c"]),
    ("true && \\\ncat -l | \\\n  no-a \\\n-x", ["no-a"]),
    ("[[ a == a && no-a < b ]] && no-b; (( no_c++ )); let x=1; source x", ["no-b"]),
    ("x=(no-a no-b); no-c <<< no-d; select no-e in no-f; do no-g; done; time no-h", ["no-c", "no-g", "no-h"]),
    ("function no-a { cat; }; no-a; declare -i x; shopt -s y", []),
    ("$(" * 5000, []),
    ("\"'`$(\\", []),
]


class Check(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp()).resolve()
        self.addCleanup(shutil.rmtree, self.folder)
        libraries = self.folder / "libraries"
        libraries.mkdir()
        (libraries / "Tools.applescript").write_text("property version : \"1.0\"\n")
        tools = self.folder / "tools"
        tools.mkdir()
        for name in ("bash", "cat", "env", "nohup", "sh"):
            os.symlink("/usr/bin/" + name, tools / name)
        self.environment = os.environ | {
            "HOME": str(self.folder), "XDG_DATA_HOME": str(self.folder / "data"), "XDG_RUNTIME_DIR": str(self.folder), "LC_ALL": "C.UTF-8",
            "PATH": str(tools)}
        self.with_library = {"OSA_LIBRARY_PATH": str(libraries)}

    def call(self, *words, program="quoddle", **more):
        done = subprocess.run([str(BIN / program), *map(str, words)], env=self.environment | more, capture_output=True, text=True, timeout=60, cwd=self.folder)
        return done.returncode, done.stdout, done.stderr

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text)
        return path

    def missing(self, path, **more):
        """Answers the rows of the JSON array."""
        status, output, errors = self.call("check", "--json", path, **more)
        self.assertEqual(errors, "")
        rows = json.loads(output)
        self.assertEqual(status, 1 if rows else 0)
        self.assertTrue(all(row["file"] == str(path) for row in rows))
        return [(row["kind"], row["name"], row["lines"]) for row in rows]

    def test_source_and_compiled_scripts_need_the_same(self):
        source = self.write("needs.applescript", SCRIPT)
        self.assertEqual(self.missing(source), NEEDS)
        for name in ("a script.scpt", "b.scptd", "-ü\"'.app"):
            with self.subTest(name):
                path = self.folder / name
                self.assertEqual(self.call("-o", path, source, program="osacompile", **self.with_library)[::2], (0, ""))
                self.assertEqual(self.missing(path), NEEDS)
                self.assertEqual(self.missing(path, **self.with_library), [row for row in NEEDS if row[1] != "Tools"])

    def test_lines_for_people(self):
        source = self.write("needs.applescript", SCRIPT)
        status, output, errors = self.call("check", source.name)
        self.assertEqual((status, errors), (1, ""))
        self.assertEqual(output.splitlines()[1:4], [
            'needs.applescript:3: script library "Tools" is not here',
            'needs.applescript:5: application "Finder" is not here (also in lines 7, 13)',
            'needs.applescript:10: application id "com.apple.mail" is not here'])

    def test_nothing_is_missing(self):
        source = self.write("-e.applescript", 'do shell script "cat /dev/null"\ntell me to log 1\nlog current application\'s name')
        self.assertEqual(self.call("check", "--", source.name), (0, "", ""))
        self.assertEqual(self.call("check", "--json", "--", source.name), (0, "[]\n", ""))

    def test_applets_that_are_here(self):
        applet = self.folder / "Applications/Own.app"
        applet.parent.mkdir()
        code = 'tell application "Own" to quit\ntell application "Other" to quit'
        self.assertEqual(self.call("-o", applet, "-e", code, program="osacompile")[::2], (0, ""))
        self.assertEqual(self.missing(applet), [("application", "Other", [2])])
        self.assertEqual(self.call("-o", applet.parent / "Other.app", "-e", "", program="osacompile")[::2], (0, ""))
        self.assertEqual(self.missing(applet), [])

    def test_commands_of_the_shell(self):
        for line, commands in SHELL_LINES:
            with self.subTest(line[:60]):
                text = line.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")
                self.assertEqual([name for _, name, _ in self.missing(self.write("shell.applescript", f'do shell script "{text}"'))], commands)

    def test_what_cannot_be_read_whole(self):
        source = self.write("needs.applescript", SCRIPT)
        stripped = self.folder / "stripped.scpt"
        self.assertEqual(self.call("-x", "-o", stripped, source, program="osacompile", **self.with_library)[0], 0)
        status, output, errors = self.call("check", stripped)
        self.assertEqual(status, 1)
        self.assertIn(f'{stripped}: application "Finder" is not here\n', output)
        self.assertIn("run-only", errors)
        cases = [
            ("log 1\ntell application \"Ghost\" to quit\n\texit repeat", 3, 2, [("application", "Ghost")], "exit"),
            ("log (", 1, 6, [], "expected expression"),
        ]
        for text, line, column, needs, message in cases:
            with self.subTest(text):
                path = self.write("wrong.applescript", text)
                status, output, errors = self.call("check", path)
                self.assertEqual((status, len(output.splitlines())), (1, len(needs)))
                self.assertIn(f"{path}:{line}:{column}: The source does not compile: ", errors)
                status, output, errors = self.call("check", path, "--json", self.folder / "none")
                *rows, wrong, unread = json.loads(output)
                self.assertEqual((status, errors, [(row["kind"], row["name"]) for row in rows]), (1, "", needs))
                self.assertIn(message, wrong.pop("message").lower())
                self.assertEqual(wrong, {"file": str(path), "kind": "error", "lines": [line], "column": column})
                self.assertEqual((unread["kind"], unread["lines"], unread["message"]), ("error", [], "No such file or directory"))
        unknown = self.write("unknown.applescript", 'log 1\ntell application "Nobody"\n\tplay every track of deck 1\nend tell')
        status, output, errors = self.call("check", unknown)
        self.assertEqual((status, output), (1, f'{unknown}:3: application "Nobody" is not here\n'))
        self.assertIn(":3:7: The source does not compile", errors)
        damaged = self.write("damaged.scpt", "FasdUAS 1.101.10\0\0\0")
        for path in (damaged, self.folder / "none.scpt", self.folder):
            status, output, errors = self.call("check", path)
            self.assertEqual((status, output, errors.count("\n")), (1, "", 1), path)

    def test_lines_are_those_of_the_decompiled_source(self):
        source = self.write("lines.applescript", 'set a to "1\\r2\\n3"\ntell application "Finder" to quit')
        compiled = self.folder / "lines.scpt"
        self.assertEqual(self.call("-o", compiled, source, program="osacompile")[0], 0)
        text = subprocess.run([BIN / "osadecompile", compiled], env=self.environment, stdout=subprocess.PIPE, check=True).stdout
        line = [b"Finder" in line for line in text.split(b"\n")].index(True) + 1
        self.assertEqual(self.missing(source), [("application", "Finder", [2])])
        self.assertEqual(self.missing(compiled), [("application", "Finder", [line])])

    def test_terms_of_an_application(self):
        source = self.write("terms.applescript", 'log 1\nusing terms from application "Finder"\n\tlog 2\nend using terms from')
        self.assertEqual(self.missing(source), [("application", "Finder", [2])])

    def test_pipes_and_devices_are_not_waited_for(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        for program, words in (("quoddle", ["check"]), ("osacompile", ["--check"])):
            for path in (pipe, "/dev/zero"):
                with self.subTest(program, words=words, path=path):
                    status, output, errors = self.call(*words, path, program=program)
                    self.assertEqual(status, 1)
                    self.assertIn("This is a pipe or a device", output + errors)
            line = f'{BIN / program} {" ".join(words)} <(printf "log 1")'
            done = subprocess.run(["bash", "-c", line], env=self.environment, cwd=self.folder, capture_output=True, timeout=60)
            self.assertEqual((done.returncode, done.stderr), (0, b""), line)

    def test_a_script_that_is_a_link_out_of_its_bundle(self):
        source = self.write("needs.applescript", 'tell application "Finder" to quit')
        bundle = self.folder / "a.scptd"
        self.assertEqual(self.call("-o", bundle, source, program="osacompile")[0], 0)
        script = bundle / "Contents/Resources/Scripts/main.scpt"
        inside = script.rename(script.with_name("other.scpt"))
        script.symlink_to(inside.name)
        self.assertEqual(self.missing(bundle), [("application", "Finder", [1])])
        outside = inside.rename(self.folder / "outside.scpt")
        script.unlink()
        script.symlink_to(outside)
        status, output, errors = self.call("check", bundle)
        self.assertEqual((status, output), (1, ""))
        self.assertIn("link to a file elsewhere", errors)

    def test_misuse(self):
        for words in ([], ["--json"], ["--json", "--json", "x"], ["--what", "x"], ["-j", "x"]):
            status, output, errors = self.call("check", *words)
            self.assertEqual((status, output), (2, ""), words)
            self.assertIn("usage: quoddle check [--json] FILE...", errors)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
