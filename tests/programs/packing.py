#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Applets in a single file: what quoddle makes of them, what it refuses, and the question on the desktop.

    packing.py BIN [PATTERN]
"""
import os
import pathlib
import plistlib
import shutil
import stat
import struct
import subprocess
import sys
import unicodedata
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "applets"))
import harness
from harness import binaries, until

COUNTING = 'property n : 0\non run\nset n to n + 1\ndo shell script "echo run " & n & " >> NOTED"\nend run\n' \
           'on open these\nrepeat with f in these\ndo shell script "echo " & quoted form of POSIX path of f & " >> NOTED"\nend repeat\nquit\nend open'
TITLES = {"en": ("Run Applet", "could not be opened"), "de": ("Applet ausführen", "konnte nicht geöffnet werden")}


class Packing(harness.AppletCase):
    def setUp(self):
        super().setUp()
        self.data, self.noted = self.folder / "data", self.folder / "noted"
        (self.folder / "link").symlink_to(self.folder)  # the home of some users is one
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700, exist_ok=True)
        self.environment = self.display.environment | {"HOME": str(self.folder), "XDG_DATA_HOME": str(self.folder / "link/data"), "XDG_RUNTIME_DIR": str(runtime),
                                                       "QUODDLE_SHELL": str(binaries() / "quoddle-shell")}

    def call(self, *words, program="quoddle", **more):
        done = subprocess.run([str(binaries() / program), *map(str, words)], env=self.environment | more, capture_output=True, text=True, timeout=20, cwd=self.folder)
        return done.returncode, done.stdout, done.stderr

    def make(self, name="Counter", source=COUNTING):
        bundle = self.folder / (name + ".app")
        made = self.call("-o", bundle, "-e", source.replace("NOTED", str(self.noted)), program="osacompile")
        self.assertEqual(made[0], 0, made)
        return bundle

    def pack(self, name="Counter", source=COUNTING):
        """Answers a file that this user has packed, its bundle gone."""
        bundle = self.make(name, source)
        shown = name.replace("\n", "?")
        self.assertEqual(self.call("pack", "--", bundle.name), (0, f"Packed: {shown}.appletz\n", ""))
        shutil.rmtree(bundle)
        return self.folder / (name + ".appletz")

    def forget(self):
        shutil.rmtree(self.data / "quoddle", ignore_errors=True)

    def kept(self):
        """Answers the folders of packed applets, by the number of files in each."""
        packed = self.data / "quoddle/packed"
        return sorted(sum(p.is_file() for p in folder.rglob("*")) for folder in packed.iterdir()) if packed.exists() else []

    def tool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True).stdout.strip()

    def press(self, title, *keys):
        until(lambda: self.tool("getactivewindow", "getwindowname") == title, f"“{title}” in front")
        harness.until_at_rest(int(until(lambda: self.tool("getactivewindow", "getwindowpid"), "its process")))
        if folder := os.environ.get("QUODDLE_ARTEFACTS"):
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
            subprocess.run(["import", "-window", "root", f"{folder}/packing-{len(os.listdir(folder))}-{keys[-1]}.png"], env=self.environment)
        self.tool("key", *keys)

    def opening(self, *words, **more):
        process = subprocess.Popen([str(binaries() / "quoddle"), "open", *map(str, words)], env=self.environment | more, cwd="/", stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def lines(self, count):
        until(lambda: self.noted.exists() and len(self.noted.read_text().splitlines()) >= count, f"line {count}")
        return self.noted.read_text().splitlines()

    def test_misuse_writes_nothing(self):
        bundle = self.make()
        (self.folder / "folder.appletz").mkdir()
        (self.folder / "run/quoddle").mkdir(mode=0o700)
        before = sorted(self.folder.rglob("*"))
        for words, status, error in [([], 2, "pack needs APPLET"), ([bundle, "-o"], 2, "needs a value"), ([bundle, "-o", "a", "-o", "b"], 2, "twice"), ([bundle, "x"], 2, "too many"),
                                     (["-x", bundle], 2, "unknown option -x"), ([bundle, "-o", "x.zip"], 2, "ends in .appletz"), ([bundle, "-o", ".appletz"], 2, "ends in .appletz"),
                                     ([bundle, "-o", "folder.appletz"], 1, "no file"), (["a\nb.appletz"], 1, "a?b.appletz: there is no such file"), ([bundle, "-o", "no/such.appletz"], 1, "cannot be written"), (["nothing.app"], 1, "no such applet")]:
            got = self.call("pack", *words)
            self.assertEqual((got[0], got[1]), (status, ""), words)
            self.assertIn(error, got[2])
        self.assertEqual(sorted(self.folder.rglob("*")), before)

    def test_runs_from_one_file_and_remembers(self):
        file = self.pack()
        more = self.folder / "it's \"ünusual\".txt"
        more.touch()
        self.assertEqual(self.opening(file, more).wait(30), 0)  # no question: this user has packed it
        self.assertEqual(self.lines(1), [str(more)])
        copy = shutil.copy(file, self.folder / "another name.APPLETZ")
        before = self.kept()
        self.assertEqual(self.call("run", copy, more)[0], 0)
        self.assertEqual((self.lines(2), self.kept()), ([str(more)] * 2, before))

    def test_properties_last_and_versions_are_apart(self):
        source = COUNTING.split("on open")[0]
        first, second = self.pack("First", source), self.pack("Second", source + "\n-- changed")
        for file, line in [(first, "run 1"), (first, "run 2"), (second, "run 1"), (first, "run 3"), (second, "run 2")]:
            self.assertEqual(self.call("run", file)[0], 0)
            self.assertEqual(self.lines(1)[-1], line)
        self.assertEqual(len(self.kept()), 2)
        self.assertEqual(self.call("install", first)[0], 0)
        self.assertIn("Installed:       yes", self.call("info", first)[1])
        self.assertEqual(self.call("uninstall", "First")[0], 0)
        # An applet can be taken out of the menu by either word when its copy has gone.
        for word in ("First", first):
            self.assertEqual(self.call("install", first)[0], 0)
            for folder in (self.data / "quoddle/packed").iterdir():
                if (folder / "First.app").exists():
                    shutil.rmtree(folder)
            self.assertEqual(self.call("uninstall", word)[0], 0)
        self.assertEqual((len(self.kept()), list((self.data / "applications").glob("applet-*"))), (1, []))
        # A version that has taken the place of another tells how the copy of that is removed.
        self.assertEqual(self.call("install", second)[0], 0)
        third = self.pack("Second", source + "\n-- changed again")
        replaced = self.call("install", third)[1].split("place of ")[1].split(", which")[0]
        self.assertEqual((self.call("uninstall", replaced)[0], self.call("uninstall", replaced)[0]), (0, 1))
        self.assertEqual(self.call("uninstall", third)[0], 0)
        self.assertEqual(self.kept(), [])
        self.assertEqual(self.call("uninstall", third)[0], 1)
        self.assertTrue(third.exists())

    def test_reading_keeps_nothing(self):
        file = self.pack(source='do shell script "no-such-tool"')
        self.forget()
        temporary = self.folder / "tmp"
        temporary.mkdir()
        for command, said in (("info", f"Path:            {file}\n"), ("check", f"{file}:1: command \"no-such-tool\"")):
            self.assertIn(said, self.call(command, file, TMPDIR=str(temporary))[1])
        self.assertEqual((self.kept(), list(temporary.iterdir())), ([], []))

    def test_names_of_every_kind(self):
        for name in ("two words", "-o", "quo'te \"x\"", "$HOME `id` %f", "日本 é", ".hidden", "two\nlines"):
            with self.subTest(name):
                file = self.pack(name, COUNTING.split("on open")[0])
                for command in ("run", "open"):
                    self.assertEqual(self.call(command, "--", file.name), (0, "", ""))
                self.assertEqual(self.lines(2)[-2:], ["run 1", "run 2"])
                self.assertEqual(self.call("uninstall", "--", file.name)[0], 0)

    def test_a_link_in_place_of_the_copy_loses_nothing(self):
        file = self.pack()
        record, precious = next((self.data / "quoddle/packed").iterdir()), self.folder / "precious"
        record.rmdir()
        (precious / "Counter.app/Contents").mkdir(parents=True)
        record.symlink_to(precious)
        for command in ("install", "run", "uninstall"):
            self.assertEqual(self.call(command, file)[0], 1, command)
        self.assertIn("Handlers", self.call("info", file)[1])
        self.call("uninstall", record / "Counter.app")
        self.assertTrue((precious / "Counter.app/Contents").is_dir())

    def test_what_could_not_be_installed_is_asked_about(self):
        file = self.pack()
        self.forget()
        self.data.mkdir(exist_ok=True)
        (self.data / "applications").write_text("no folder")
        self.assertEqual((self.call("install", file)[0], self.kept()), (1, []))

    def test_installing_and_removing_at_the_same_moment(self):
        file = self.pack()
        for _ in range(8):
            started = [subprocess.Popen([str(binaries() / "quoddle"), command, str(file)], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                       for command in ("install", "uninstall", "install", "uninstall")]
            for process in started:
                process.wait(60)
            launchers = list((self.data / "applications").glob("applet-*"))
            self.assertEqual(len(launchers), sum(count > 0 for count in self.kept()))
            self.assertEqual(len(launchers), len(list((self.data / "dbus-1/services").glob("*"))))
            self.call("install", file)

    def test_what_is_unpacked_is_what_was_agreed_to(self):
        file, place = self.pack(), self.folder / "place"
        place.mkdir()
        status, output, error = self.call("unpack", file, "0" * 64, place, program="quoddle-fetch")
        self.assertEqual((status, output, error), (1, "", "The file has changed meanwhile. Try again.\n"))
        self.assertEqual([p.name for p in place.iterdir()], ["archive"])

    def test_what_was_left_half_unpacked_goes(self):
        file = self.pack(source=COUNTING.split("on open")[0])
        left = [self.data / "quoddle/packed" / name for name in (".old.a1b2c3", ".new.a1b2c3")]
        for folder in left:
            (folder / "new/Counter.app").mkdir(parents=True)
        os.utime(left[0], (0, 0))
        self.assertEqual(self.call("run", file)[0], 0)
        self.assertEqual([folder.exists() for folder in left], [False, True])

    def test_two_at_the_same_moment(self):
        file = self.pack(source=COUNTING.split("on open")[0])
        for _ in range(5):
            started = [subprocess.Popen([str(binaries() / "quoddle"), "info", str(file)], env=self.environment, stdout=subprocess.DEVNULL) for _ in range(2)]
            started += [subprocess.Popen([str(binaries() / "quoddle"), "run", str(file)], env=self.environment) for _ in range(4)]
            self.assertEqual([process.wait(60) for process in started], [0] * 6)
            packed = self.data / "quoddle/packed"
            self.assertEqual([len(list(folder.iterdir())) for folder in packed.iterdir()], [1])
            shutil.rmtree(packed)

    def hostile(self, file):
        """Yields pairs of what is wrong with an archive, and the archive."""
        bytes_of = file.read_bytes()
        with zipfile.ZipFile(file) as archive:
            entries = [(info, archive.read(info)) for info in archive.infolist()]

        def with_entry(name, data=b"x", mode=stat.S_IFREG | 0o644):
            with zipfile.ZipFile(self.folder / "made.zip", "w", zipfile.ZIP_DEFLATED) as out:
                for info, content in entries:
                    out.writestr(info, content)
                info = zipfile.ZipInfo(name)
                info.external_attr = mode << 16
                info.create_system = 3
                info.compress_type = zipfile.ZIP_DEFLATED
                out.writestr(info, data)
            return (self.folder / "made.zip").read_bytes()

        top = "Counter.app/"
        for name in ("../evil", top + "../../evil", "/tmp/evil", top + "a\x1bb", top + "contents/info.plist", top + "Contents/Info.plist/x", "Other.app/x", top + "n" * 300, top + "d/" * 70 + "x"):
            yield f"the name {name[:30]!r}", with_entry(name)
        with_entry(top + unicodedata.normalize("NFC", "é"))
        with zipfile.ZipFile(self.folder / "made.zip", "a") as out:
            out.writestr(top + unicodedata.normalize("NFD", "é"), b"y")
        yield "one name in two forms", (self.folder / "made.zip").read_bytes()
        for target in (b"/etc/passwd", b"../../x", b"Contents/../../x", b""):
            yield f"a link to {target}", with_entry(top + "l", target, stat.S_IFLNK | 0o777)
        for kind in (stat.S_IFCHR, stat.S_IFBLK, stat.S_IFSOCK):
            yield f"kind {kind:o}", with_entry(top + "k", b"", kind | 0o644)
        yield "a bomb", with_entry(top + "bomb", bytes(80 << 20))
        encrypted = bytearray(with_entry(top + "secret"))
        for mark, at in ((b"PK\1\2", 8), (b"PK\3\4", 6)):
            encrypted[encrypted.rindex(mark) + at] |= 1
        yield "encryption", bytes(encrypted)
        for size in (0, 10, len(bytes_of) // 3, len(bytes_of) - 30):
            yield f"an end after {size} bytes", bytes_of[:size]
        flipped = bytearray(bytes_of)
        flipped[bytes_of.index(b"main.scpt") + 60] ^= 0xFF
        yield "damage", bytes(flipped)
        for lie in (struct.pack("<HHQQ", 1, 16, 1 << 62, 1 << 62), struct.pack("<HHQQ", 1, 16, (1 << 64) - 1, 3)):
            yield "sizes that are none", self.with_zip64(lie)
        yield "a tar archive", subprocess.run(["tar", "-C", self.folder, "-cf", "-", "Counter.app"], capture_output=True, check=True).stdout
        yield "no applet", self.zip_of({"README": b"x"})
        yield "an applet without contents", self.zip_of({"A.app/x": b"x"})

    def with_zip64(self, extra):
        """One file whose sizes are given by a field of 64 bits."""
        name, data = b"A.app/Contents/Info.plist", b"xyz"
        fields = struct.pack("<HHHHHIIIHH", 45, 0, 0, 0, 0, 0, 0xFFFFFFFF, 0xFFFFFFFF, len(name), len(extra))
        local = b"PK\3\4" + fields + name + extra + data
        central = b"PK\1\2" + struct.pack("<H", 45) + fields + bytes(6) + struct.pack("<II", 0o100644 << 16, 0) + name + extra
        return local + central + b"PK\5\6" + struct.pack("<HHHHIIH", 0, 0, 1, 1, len(central), len(local), 0)

    def zip_of(self, files):
        with zipfile.ZipFile(self.folder / "made.zip", "w") as out:
            for name, data in files.items():
                out.writestr(name, data)
        return (self.folder / "made.zip").read_bytes()

    def test_hostile_files_are_refused_whole(self):
        file = self.pack()
        self.make()
        archives = list(self.hostile(file))
        self.forget()
        evil, temporary = self.folder / "evil.appletz", self.folder / "tmp"
        temporary.mkdir()
        for what, archive in archives:
            with self.subTest(what):
                self.forget()
                evil.write_bytes(archive)
                for command in ("run", "install", "info", "check"):
                    status, output, error = self.call(command, evil, TMPDIR=str(temporary))
                    self.assertEqual((status, output, error.count("\n")), (1, "", 1), error)
                    self.assertIn("cannot be read", error)
                self.assertEqual((self.kept(), list(temporary.iterdir())), ([], []))
                left = [p for p in self.folder.rglob("*") if "evil" in p.name or p.name.startswith(".")] + list(pathlib.Path("/tmp").glob("evil"))
                self.assertEqual(left, [evil])

    def test_the_desktop_asks_once(self):
        file = self.pack("Cöunter", COUNTING.split("on open")[0])
        self.forget()
        for language, (title, failed) in TITLES.items():
            with self.subTest(language):
                self.environment |= {"LC_ALL": "", "LANG": "C.UTF-8", "LANGUAGE": language}
                refused = self.opening(file)
                self.press(title, "Escape")
                self.assertEqual(refused.wait(30), 0)
                self.assertEqual((self.noted.exists(), self.kept()), (False, []))
                agreed = self.opening(file)
                self.press(title, "Tab", "space")
                self.assertEqual(self.lines(1), ["run 1"])
                self.assertEqual(agreed.wait(30), 0)
                self.assertEqual(self.opening(file).wait(30), 0)
                self.assertEqual(self.lines(2), ["run 1", "run 2"])
                self.noted.unlink()
                self.forget()
                broken = self.folder / "broken.appletz"
                broken.write_bytes(file.read_bytes()[:200] + language.encode())
                opening = self.opening(broken)
                self.press(title, "Tab", "space")
                self.press("osascript", "Return")
                self.assertEqual((opening.wait(30), self.kept()), (1, []))
        for variable in ("DISPLAY", "QT_QPA_PLATFORM"):
            self.environment.pop(variable)
        opening = self.opening(file)
        self.assertEqual(opening.wait(30), 1)
        self.assertIn("quoddle run", opening.stderr.read())


if __name__ == "__main__":
    harness.main(Packing)
