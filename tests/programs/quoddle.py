#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The program quoddle: its output about applets, and the files by which the desktop knows them. What a bus does with these files is tested
by applets/desktop.py.

    quoddle.py BIN
"""
import configparser
import itertools
import os
import pathlib
import plistlib
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

BIN = None


def png(extent, width=None):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    header = struct.pack(">IIBBBBB", width or extent, extent, 8, 0, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes((extent + 1) * extent))) + chunk(b"IEND", b"")


def icns(*pictures):
    body = b"".join(kind + struct.pack(">I", len(data) + 8) + data for kind, data in pictures)
    return b"icns" + struct.pack(">I", len(body) + 8) + body


class Quoddle(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp()).resolve()
        self.addCleanup(shutil.rmtree, self.folder)
        self.addCleanup(self.wait_for_applets)
        self.data = self.folder / "data"
        (self.folder / "run").mkdir(mode=0o700)
        self.environment = {k: v for k, v in os.environ.items() if k != "DBUS_SESSION_BUS_ADDRESS"} | {
            "HOME": str(self.folder), "XDG_DATA_HOME": str(self.data), "XDG_RUNTIME_DIR": str(self.folder / "run"), "QUODDLE_SHELL": str(BIN / "quoddle-shell"), "LC_ALL": "C.UTF-8"}

    def wait_for_applets(self):
        """Waits until the applets of a test have ended. Each removes its socket then."""
        deadline = time.monotonic() + 30
        while any((self.folder / "run").rglob("*.sock")):
            self.assertLess(time.monotonic(), deadline, "an applet goes on after the test")
            time.sleep(0.02)

    def call(self, *words, program="quoddle", **more):
        done = subprocess.run([str(BIN / program), *map(str, words)], env=self.environment | more, capture_output=True, text=True, timeout=60, cwd=self.folder)
        return done.returncode, done.stdout, done.stderr

    def make(self, name="Tool", source="on run\nend run", options=(), info=None, icon=None):
        bundle = self.folder / (name + ".app")
        self.assertEqual(self.call(*options, "-o", bundle, "-e", source, program="osacompile")[0], 0)
        plist = bundle / "Contents/Info.plist"
        if info is not None:
            plist.write_bytes(plistlib.dumps(plistlib.loads(plist.read_bytes()) | info))
        if icon is not None:
            (bundle / "Contents/Resources/applet.icns").write_bytes(icon)
        return bundle

    def made_on_a_mac(self, source, **settings):
        """A bundle as a Mac saves it, with a binary property list and a file that we know nothing of."""
        bundle = self.make("Old One", source)
        shutil.rmtree(bundle / "Contents/Linux")
        (bundle / "Contents/MacOS").mkdir()
        (bundle / "Contents/MacOS/applet").write_bytes(b"\xca\xfe\xba\xbe")
        info = {"CFBundleExecutable": "applet", "CFBundleName": "Old One", "LSMinimumSystemVersion": "10.6", "Blob": b"\0\1", **settings}
        (bundle / "Contents/Info.plist").write_bytes(plistlib.dumps(info, fmt=plistlib.FMT_BINARY))
        return bundle, info

    def test_adopt_adds_what_a_mac_does_not_write(self):
        mark = self.folder / "ran"
        for stays, given in ((True, {"OSAAppletStayOpen": True}), (False, {}), (False, {"OSAAppletStayOpen": False, "KVBStayOpen": False})):
            with self.subTest(given):
                bundle, info = self.made_on_a_mac(f'do shell script "sw_vers || touch {mark}"', **given)
                before = {p: p.read_bytes() for p in bundle.rglob("*") if p.is_file() and p.name != "Info.plist"}
                status, output, errors = self.call("adopt", bundle)
                self.assertEqual((status, errors), (0, ""))
                self.assertIn("KVBShowStartupScreen = false", output)
                self.assertIn("start script Contents/Linux/applet", output)
                self.assertIn("sw_vers", output)
                self.assertEqual(plistlib.loads((bundle / "Contents/Info.plist").read_bytes()), info | {"KVBStayOpen": stays, "KVBShowStartupScreen": False})
                self.assertEqual({p: p.read_bytes() for p in before}, before)
                after = {p: (p.read_bytes(), p.stat().st_mtime_ns) for p in bundle.rglob("*") if p.is_file()}
                self.assertIn("Nothing was to be done", self.call("adopt", bundle)[1])
                self.assertEqual({p: (p.read_bytes(), p.stat().st_mtime_ns) for p in bundle.rglob("*") if p.is_file()}, after)
                shutil.rmtree(bundle)

    def test_adopt_refuses_what_is_no_applet(self):
        bundle, _ = self.made_on_a_mac("1")
        (bundle / "Contents/Info.plist").write_bytes(b"bplist00 torn")
        self.assertEqual(self.call("adopt", bundle), (1, "", f"quoddle: {bundle}: its property list (Contents/Info.plist) cannot be read\n"))
        (bundle / "Contents/Resources/Scripts/main.scpt").unlink()
        self.assertEqual(self.call("adopt", bundle)[0], 1)
        self.assertFalse((bundle / "Contents/Linux").exists())

    def test_adopt_replaces_nothing_of_others(self):
        outside = self.folder / "outside"
        outside.mkdir()

        def moved(part):
            def make(bundle):
                os.rename(bundle / part, outside / "real")
                (bundle / part).symlink_to(outside / "real")
            return make

        def own_script(bundle):
            (bundle / "Contents/Linux").mkdir()
            (bundle / "Contents/Linux/applet").write_text("#!/bin/sh\necho mine\n")

        cases = {"Contents": moved("Contents"), "Contents/Info.plist": moved("Contents/Info.plist"), "Contents/Linux/applet": own_script,
                 "Contents/Linux": lambda bundle: (bundle / "Contents/Linux").write_text("a file")}
        for part, spoil in cases.items():
            with self.subTest(part):
                bundle, _ = self.made_on_a_mac("1")
                spoil(bundle)
                before = subprocess.run(["ls", "-lR", bundle, outside], capture_output=True).stdout
                status, output, errors = self.call("adopt", bundle)
                self.assertEqual((status, output), (1, ""))
                self.assertIn(f"{part} is a link or somebody else's", errors)
                self.assertEqual(subprocess.run(["ls", "-lR", bundle, outside], capture_output=True).stdout, before)
                shutil.rmtree(bundle)
                shutil.rmtree(outside)
                outside.mkdir()

    def test_an_adopted_applet_starts_by_its_own_script(self):
        bundle, _ = self.made_on_a_mac("1")
        self.assertEqual(self.call("adopt", bundle)[0], 0)
        shell = self.folder / "shell"
        shell.write_text('#!/bin/sh\nprintf "%s|" "$@"\n')
        shell.chmod(0o755)
        done = subprocess.run([bundle / "Contents/Linux/applet", "a b"], env=self.environment | {"QUODDLE_SHELL": str(shell)}, capture_output=True, text=True)
        self.assertEqual(done.stdout, f"{bundle}|a b|")

    def info(self, bundle):
        status, output, _ = self.call("info", bundle)
        return status, {line.partition(":")[0]: line.partition(":")[2].strip() for line in output.splitlines()}

    def install(self, bundle):
        """Installs a bundle; answers the entries of its desktop entry."""
        status, output, errors = self.call("install", bundle)
        self.assertEqual((status, errors), (0, ""))
        path = output.splitlines()[0].removeprefix("Installed: ")
        if shutil.which("desktop-file-validate"):
            checked = subprocess.run(["desktop-file-validate", "--no-hints", path], capture_output=True, text=True)
            self.assertEqual((checked.returncode, checked.stdout), (0, ""))
        entry = configparser.RawConfigParser(delimiters="=", strict=True)
        entry.optionxform = str
        entry.read(path, encoding="utf-8")
        self.assertEqual({key: value for key, value in entry["Desktop Action quit"].items() if key != "Exec"},
                         {"Name": "Quit", "Name[de]": "Beenden", "Name[es]": "Salir", "Name[fr]": "Quitter", "Name[ja]": "終了"})
        return dict(entry["Desktop Entry"])

    def files(self):
        """Answers the files in the data folder, except the cache of another program."""
        made = {"mimeinfo.cache"} | {str(p.relative_to(self.data)) for p in (self.data / "mime").rglob("*") if p.parent.name != "packages"}
        return sorted(str(p.relative_to(self.data)) for p in self.data.rglob("*") if p.is_file() and not {p.name, str(p.relative_to(self.data))} & made)

    def test_help_and_misuse(self):
        for command in ([], ["run"], ["list"], ["quit"], ["info"], ["install"], ["uninstall"]):
            status, output, _ = self.call(*command, "--help")
            self.assertEqual(status, 0)
            self.assertTrue(output.startswith("usage: quoddle " + " ".join(command)), output)
        for words, status, error in [
            ([], 2, ""),
            (["fly"], 2, "unknown command fly"),
            (["info"], 2, "info needs APPLET"),
            (["info", "a", "b"], 2, "too many"),
            (["info", "--deep", "a"], 2, "unknown option --deep"), (["quit", "a", "-x"], 2, "unknown option -x"),
            (["info", "Nobody"], 1, "no such applet; give the path"),
            (["install", self.folder], 1, "not an applet bundle"),
            (["uninstall", "Nobody"], 1, "not installed"),
        ]:
            got = self.call(*words)
            self.assertEqual(got[0], status, words)
            self.assertIn(error, got[2])
        self.assertEqual(self.call("list"), (0, "", "No applet is running.\n"))
        for words, status, output, error in [(["--help"], 0, "usage: quoddle-shell", ""), ([], 2, "", "usage: quoddle-shell"), (["Nobody.app"], 2, "", "Nobody.app: no such applet")]:
            got = self.call(*words, program="quoddle-shell")
            self.assertEqual(got[0], status, words)
            self.assertIn(output, got[1])
            self.assertIn(error, got[2])
        (self.folder / "run/quoddle").chmod(0o755)
        for words in (["list"], ["quit", "Nobody"]):
            status, output, error = self.call(*words)
            self.assertEqual((status, output), (1, ""))
            self.assertIn("chmod 700", error)
        bundle = self.make()
        for command in ("install", "run"):
            self.assertIn("set QUODDLE_SHELL", self.call(command, bundle, QUODDLE_SHELL="/nowhere/shell")[2])
        self.assertEqual(self.files(), [])

    def test_info(self):
        source = "on open f\nend open\non idle\nend idle\non quit\nend quit\non helper(x)\nend helper"
        bundle = self.make("Some Tool", source, ["-s"], {"CFBundleIdentifier": "com.example.tool", "CFBundleShortVersionString": "2.1\u009b[31m",
                           "CFBundleDocumentTypes": [{"CFBundleTypeExtensions": ["png", "txt"], "LSItemContentTypes": ["public.folder", "com.adobe.pdf"]}]})
        status, told = self.info(bundle)
        self.assertEqual(status, 0)
        handlers = set(told.pop("Handlers").split(", "))
        self.assertEqual(handlers, {"open", "idle", "quit", "helper"})
        self.assertEqual(told, {"Name": "Some Tool", "Identifier": "com.example.tool", "Version": "2.1?[31m", "Path": str(bundle), "Stays open": "yes",
                                "Startup screen": "no", "File types": "folders; png, txt; com.adobe.pdf", "Installed": "no"})
        (bundle / "Contents/Resources/Scripts/main.scpt").write_bytes(b"FasdUAS 1.101.10" + bytes(100))
        status, told = self.info(bundle)
        self.assertEqual((status, told["Handlers"][:7], told["Name"]), (1, "unknown", "Some Tool"))
        (bundle / "Contents/Info.plist").write_bytes(b"<plist><dict><key>CFBundleDocumentTypes</key>")
        self.assertEqual(self.info(bundle)[1]["File types"], "none")

    def test_install_and_uninstall(self):
        bundle = self.make("Some Tool", icon=icns((b"ic07", png(128))), info={"CFBundleIdentifier": "com.example.tool", "CFBundleIconFile": "applet"})
        (self.data / "applications").mkdir(parents=True)
        other = self.data / "applications" / "other.desktop"
        other.write_text("[Desktop Entry]\nType=Application\nName=Some Tool\nExec=true\n")
        before = self.files()
        entry = self.install(bundle)
        name = "applet-com.example.tool"
        made = sorted([f"applications/{name}.desktop", f"dbus-1/services/{name}.service", f"quoddle/icons/{name}.png", "applications/other.desktop"])
        self.assertEqual(self.files(), made)
        self.assertEqual(entry["Name"], "Some Tool")
        self.assertEqual(entry["Exec"], f'{BIN}/quoddle-shell "{bundle}" %F')
        self.assertEqual(entry["Icon"], str(self.data / f"quoddle/icons/{name}.png"))
        self.assertEqual(entry["X-Quoddle-Bundle"], str(bundle))
        self.assertEqual(self.info(bundle)[1]["Installed"], "yes")
        # Installed again without the icon, the applet has no icon any more. Then a copy takes its place, and the program says so.
        (bundle / "Contents/Resources/applet.icns").unlink()
        self.assertNotIn("Icon", self.install(bundle))
        self.assertNotIn(f"quoddle/icons/{name}.png", self.files())
        copy = self.folder / "copies" / "Some Tool.app"
        shutil.copytree(bundle, copy)
        self.assertIn("takes the place of " + str(bundle), self.call("install", copy)[1])
        self.assertEqual(self.call("uninstall", bundle)[0], 1)
        # The bundle may be gone when the applet is uninstalled, and its path lead through a link.
        shutil.rmtree(copy)
        (self.folder / "link").symlink_to("copies")
        self.assertEqual(self.call("uninstall", "link/Some Tool.app")[0], 0)
        self.assertEqual(self.files(), before)
        for word in ("Some Tool", name):
            self.install(bundle)
            self.assertEqual(self.call("uninstall", word)[0], 0)
            self.assertEqual(self.files(), before)

    def test_what_is_not_ours_stays(self):
        bundle = self.make(info={"CFBundleIdentifier": "com.example.tool"})
        foreign = self.data / "applications/applet-com.example.tool.desktop"
        foreign.parent.mkdir(parents=True)
        foreign.write_text("[Desktop Entry]\nName=Tool\n")
        self.assertIn("has not made", self.call("install", bundle)[2])
        self.assertEqual(self.call("uninstall", "Tool")[0], 1)
        self.assertEqual(self.files(), ["applications/applet-com.example.tool.desktop"])
        foreign.unlink()
        # An icon or a service of the name that somebody else has made stays as well.
        others = [self.data / "dbus-1/services/applet-com.example.tool.service", self.data / "icons/applet-com.example.tool.png"]
        for other in others:
            other.parent.mkdir(parents=True)
            other.write_text("[D-BUS Service]\nName=applet-com.example.tool\nExec=/bin/true\n")
        self.assertIn("has not made", self.call("install", bundle)[2])
        others[0].rename(self.folder / "service")
        self.install(bundle)
        (self.folder / "service").rename(others[0])
        self.assertEqual(self.call("uninstall", "Tool")[0], 0)
        self.assertEqual(self.files(), sorted(str(other.relative_to(self.data)) for other in others))
        shutil.rmtree(self.data)
        self.data.mkdir()
        # Links of others that lead nowhere are not overwritten.
        for place in (foreign, others[0]):
            place.parent.mkdir(parents=True)
            place.symlink_to("/nowhere/at/all")
            self.assertIn("has not made", self.call("install", bundle)[2])
            self.assertEqual((os.readlink(place), self.files()), ("/nowhere/at/all", []))
            place.unlink()
        shutil.rmtree(self.data)
        self.data.mkdir()
        # When one part cannot be written, none is left behind, and all of those that were there stay.
        own = {"CFBundleIdentifier": "com.example.tool", "CFBundleIconFile": "applet", "CFBundleDocumentTypes": [{"CFBundleTypeExtensions": ["wombat"]}]}
        bundle = self.make(icon=icns((b"ic07", png(128))), info=own)
        for part in ("mime/packages", "dbus-1"):
            (self.data / part).parent.mkdir(exist_ok=True)
            (self.data / part).write_text("a file in the way")
            self.assertEqual(self.call("install", bundle)[0], 1)
            self.assertEqual([file for file in self.files() if file != part], [])
            (self.data / part).unlink()
        self.install(bundle)
        before = self.files()
        shutil.rmtree(self.data / "dbus-1")
        (self.data / "dbus-1").write_text("a file in the way")
        self.assertEqual(self.call("install", bundle)[0], 1)
        self.assertEqual([file for file in self.files() if file != "dbus-1"], [file for file in before if not file.startswith("dbus-1")])
        # When one part cannot be removed, that is said, and it can be tried again.
        icon = self.data / "quoddle/icons/applet-com.example.tool.png"
        icon.unlink()
        (icon / "full").mkdir(parents=True)
        done = self.call("uninstall", "Tool")
        self.assertEqual((done[0], done[1]), (1, ""))
        self.assertIn(f"{icon}: cannot be removed", done[2])
        shutil.rmtree(icon)
        self.assertEqual(self.call("uninstall", "Tool")[0], 0)
        self.assertEqual(self.files(), ["dbus-1"])

    def test_names_from_outside_write_no_lines_of_their_own(self):
        entry = self.install(self.make("Evil", info={"CFBundleName": "Nice\nExec=false\r\n[x]\\n", "CFBundleIdentifier": "../../com.evil\nExec=false"}))
        self.assertEqual(entry["Name"], "Nice Exec=false [x]\\\\n")
        self.assertNotIn("false", entry["Exec"])
        self.assertTrue(all(".." not in file for file in self.files()))
        for title, shown in [("\u202egpj.exe\u202c\u2066", "gpj.exe"), ("a\u2028b\u200f", "a b"), ("\u200e \u061c", "Applet"), ("👩\u200d🔬", "👩\u200d🔬"), ("n" * 5000, "n" * 120)]:
            self.assertEqual(self.install(self.make("Evil", info={"CFBundleName": title, "CFBundleIdentifier": "com.evil"}))["Name"], shown)
        bell = self.folder / "bell\a.app"
        shutil.copytree(self.folder / "Evil.app", bell)
        self.assertIn("rename", self.call("install", bell)[2])
        strange = os.fsencode(self.folder) + b"/strange\xff.app"
        shutil.copytree(os.fsencode(self.folder / "Evil.app"), strange)
        for program in ("quoddle install", "quoddle run", "quoddle-shell"):
            words = [os.fsencode(BIN / program.split()[0]), *map(os.fsencode, program.split()[1:]), strange]
            done = subprocess.run(words, env=self.environment, capture_output=True, text=True)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn("the path is not UTF-8; rename it", done.stderr)

    def test_file_types(self):
        def types(*documents, **more):
            return self.install(self.make(info={"CFBundleDocumentTypes": list(documents)} | more)).get("MimeType")
        self.assertEqual(types({"CFBundleTypeExtensions": ["png", "TXT", "no/such", "a;b"]}), "image/png;text/plain;")
        self.assertEqual(types({"CFBundleTypeExtensions": ["*"]}), "application/octet-stream;")
        self.assertEqual(types({"LSItemContentTypes": ["com.adobe.pdf", "public.folder"], "CFBundleTypeMIMETypes": ["image/gif", "inode/directory", "x-scheme-handler/http", "x-content/unix-software", "image/*", "a;b"]}),
                         "application/pdf;image/gif;")
        self.assertEqual(types({"LSItemContentTypes": ["com.example.odd"]}, UTExportedTypeDeclarations=[
            {"UTTypeIdentifier": "com.example.odd", "UTTypeTagSpecification": {"public.mime-type": ["text/x-odd", "x-scheme-handler/https"], "public.filename-extension": ["html"]}}]), "text/html;text/x-odd;")
        self.assertEqual(types({"CFBundleTypeOSTypes": ["fold"]}, 7, {"CFBundleTypeExtensions": {"a": 1}}), None)
        self.assertIn("image/png", types({"LSItemContentTypes": ["public.image"]}))

    def asked(self, *words):
        """Answers what a tool of the desktop says, in the environment of the applets."""
        environment = self.environment | {"XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_DATA_DIRS": f"{self.folder}/system:/usr/share", "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
        return subprocess.run([*map(str, words)], env=environment, capture_output=True, text=True).stdout.strip()

    def default(self, mime_type):
        """Answers which program a type is opened with; all readers of the lists that are here say the same."""
        said = {self.asked("gio", "mime", mime_type).splitlines()[0].rpartition(" ")[2]}
        if shutil.which("xdg-mime"):
            said.add(self.asked("xdg-mime", "query", "default", mime_type))
        self.assertEqual(len(said), 1, said)
        return said.pop()

    def test_types_of_its_own(self):
        info = {"CFBundleIdentifier": "com.example.tool", "CFBundleIconFile": "applet", "CFBundleDocumentTypes": [
            {"CFBundleTypeExtensions": ["wombat", "txt"], "CFBundleTypeName": "Wombat <&> list"}, {"LSItemContentTypes": ["com.example.numbat"]}],
            "UTExportedTypeDeclarations": [{"UTTypeIdentifier": "com.example.numbat", "UTTypeTagSpecification": {"public.filename-extension": "numbat"}}]}
        file = self.folder / "list.wombat"
        file.write_text("x")
        for _ in range(2):  # installed again, the types are still its own
            entry = self.install(self.make("Some Tool", icon=icns((b"ic07", png(128))), info=info))
            self.assertEqual(entry["MimeType"], "text/plain;application/x-applet-wombat;application/x-applet-numbat;")
        self.assertIn("application/x-applet-wombat", self.asked("gio", "info", "-a", "standard::content-type", file))
        package = (self.data / "mime/packages/applet-com.example.tool.xml").read_text()
        self.assertIn("<comment>Wombat &lt;&amp;&gt; list</comment>", package)
        self.assertIn("<comment>Some Tool document</comment>", package)
        self.assertIn("icons/hicolor/256x256/mimetypes/applet-com.example.tool.png", self.files())
        self.assertEqual(self.default("application/x-applet-wombat"), "applet-com.example.tool.desktop")
        # Another applet may have the same type, and keeps it when the first one goes.
        other = self.make("Other", info={"CFBundleIdentifier": "com.example.other", "CFBundleDocumentTypes": [{"CFBundleTypeExtensions": ["WOMBAT"]}]})
        self.install(other)
        self.assertEqual(self.call("uninstall", "Some Tool")[0], 0)
        self.assertEqual(self.default("application/x-applet-wombat"), "applet-com.example.other.desktop")
        self.assertEqual(self.call("uninstall", "Other")[0], 0)
        self.assertEqual(self.files(), [])
        self.assertIn("text/plain", self.asked("gio", "info", "-a", "standard::content-type", file))
        foreign = self.data / "mime/packages/applet-com.example.other.xml"
        foreign.write_text("<mime-info/>")
        self.assertIn("has not made", self.call("install", other)[2])
        self.assertEqual(self.files(), ["mime/packages/applet-com.example.other.xml"])

    def test_an_applet_does_not_become_the_default(self):
        system = self.folder / "system/applications"
        system.mkdir(parents=True)
        (system / "zz-viewer.desktop").write_text("[Desktop Entry]\nType=Application\nName=Viewer\nExec=true %f\nMimeType=text/plain;image/png;\n")
        (system / "mimeinfo.cache").write_text("[MIME Cache]\ntext/plain=zz-viewer.desktop;\nimage/png=zz-viewer.desktop;\n")
        self.environment |= {"XDG_DATA_DIRS": f"{self.folder}/system:/usr/share", "XDG_CONFIG_HOME": str(self.folder / "config")}
        viewer, types = "zz-viewer.desktop", ["png", "txt", "py"]
        own, choices = self.data / "applications/mimeapps.list", self.folder / "config/mimeapps.list"
        others = b"# mine\n[Default Applications]\nimage/gif=a.desktop\n\n[Added Associations]\nimage/png=b.desktop;\n"
        lists = {"nothing": None, "an empty list": b"", "a heading": b"[Default Applications]\n", "other lines": others, "another group": b"# mine\n\n" + others[others.index(b"[Added"):],
                 "line ends of another system": others.replace(b"\n", b"\r\n"), "no end of the last line": others[:-1] + b"\n[Default Applications]",
                 "a choice": b"[Default Applications]\n text/plain =  zz-viewer.desktop\nimage/png=zz-viewer.desktop;no.desktop;;\n",
                 "lines of a type twice": b"[Default Applications]\nimage/png=gone.desktop\nimage/png=zz-viewer.desktop\ntext/plain=\ntext/plain=zz-viewer.desktop\n",
                 "blanks at the end": b"[Default Applications]\nimage/png=gone.desktop  \ntext/plain=gone.desktop; \t\r\n",
                 "programs that have gone": b"[Default Applications]\nimage/png=gone.desktop\ntext/plain=gone.desktop;lost.desktop;\r\n",
                 "a line without programs": b"[Default Applications]\nimage/png=\n", "a line like ours": b"[Default Applications]\n#image/png=applet-com.example.Second.desktop\n"}
        for (what, before), isLink in itertools.product(lists.items(), (False, True)):
            if isLink and before is None:
                continue
            with self.subTest(what, link=isLink):
                for number, path in enumerate((own, choices)):
                    path.parent.mkdir(parents=True, exist_ok=True)
                    path.unlink(missing_ok=True)
                    if isLink:
                        path.symlink_to(self.folder / f"list{number}")
                    if before is not None:
                        path.write_bytes(before)
                for name in ("First", "Second"):
                    info = {"CFBundleIdentifier": "com.example." + name, "CFBundleDocumentTypes": [{"CFBundleTypeExtensions": types}]}
                    self.assertEqual(self.call("install", self.make(name, info=info))[0], 0)
                for kind in ("image/png", "text/plain", "text/x-python"):
                    self.assertEqual(self.default(kind), viewer, kind)
                self.assertEqual(self.call("uninstall", "First")[0], 0)
                self.assertEqual(self.default("image/png"), viewer)
                # When the user asks for it, the applet is the default until it goes.
                self.assertEqual(self.call("install", "Second.app", "--default")[0], 0)
                self.assertEqual(self.default("image/png"), "applet-com.example.Second.desktop")
                self.assertEqual(self.call("uninstall", "Second")[0], 0)
                self.assertEqual(self.default("image/png"), viewer)
                for path in (own, choices):
                    self.assertEqual((path.read_bytes() if path.exists() else None, path.is_symlink()), (before, isLink))

    def test_lines_of_the_user_stay_when_they_name_an_applet(self):
        self.environment |= {"XDG_CONFIG_HOME": str(self.folder / "config")}
        bundle = self.make("Own", info={"CFBundleIdentifier": "com.example.own", "CFBundleDocumentTypes": [{"CFBundleTypeExtensions": ["txt"]}]})
        own, choices = self.data / "applications/mimeapps.list", self.folder / "config/mimeapps.list"
        for path in (own, choices):
            path.parent.mkdir(parents=True, exist_ok=True)
        applet, head = "applet-com.example.own.desktop", "[Default Applications]\n"
        for before, after in ((f"{applet};gedit.desktop;", "gedit.desktop;"), (f"gedit.desktop;vim.desktop;{applet}", "gedit.desktop;vim.desktop"),
                              (f"{applet}\ntext/plain=", "")):
            own.write_text(f"{head}text/plain={before}\n")
            self.assertEqual([self.call(*words)[0] for words in (("install", bundle), ("uninstall", "Own"))], [0, 0])
            self.assertEqual(own.read_text(), f"{head}text/plain={after}\n")
        # Installed again with fewer types, the applet is the default for these alone. An installation that was killed has left a record by
        # which all can be taken away.
        own.unlink()
        self.assertEqual(self.call("install", "--default", bundle)[0], 0)
        bundle = self.make("Own", info={"CFBundleIdentifier": "com.example.own", "CFBundleDocumentTypes": [{"CFBundleTypeExtensions": ["py"]}]})
        self.assertEqual(self.call("install", "--default", bundle)[0], 0)
        self.assertEqual([line for line in choices.read_text().splitlines() if "=" in line], [f"text/x-python={applet}"])
        entry = self.data / f"applications/{applet}"
        entry.write_text(f"[Desktop Entry]\nName=Own\nHidden=true\nX-Quoddle-Bundle={bundle}\n")
        self.assertEqual(self.call("uninstall", "Own")[0], 0)
        self.assertEqual((self.files(), choices.exists()), ([], False))
        # One list may stand for both.
        own.parent.mkdir(parents=True, exist_ok=True)
        own.symlink_to(choices)
        choices.write_text(f"{head}text/plain=vim.desktop\n")
        self.assertEqual([self.call(*words)[0] for words in (("install", "--default", bundle), ("uninstall", "Own"))], [0, 0])
        self.assertEqual(choices.read_text(), f"{head}text/plain=vim.desktop\n")
        # Installed again, the applet stays the default that the user has made it since.
        self.assertEqual(self.call("install", bundle)[0], 0)
        choices.write_text(f"{head}text/x-python={applet};vim.desktop;\n")
        self.assertEqual(self.call("install", bundle)[0], 0)
        self.assertEqual(choices.read_text(), f"{head}text/x-python={applet};vim.desktop;\n")

    def test_icons(self):
        small, good, large, oblong, huge = png(64), png(256), png(512), png(256, 128), png(2048)
        for icon, chosen in [
            (icns((b"ic12", small), (b"ic09", large), (b"ic08", good)), good),
            (icns((b"ic12", small), (b"ic09", large)), large),
            (icns((b"is32", bytes(100)), (b"ic12", small), (b"ic08", b"\0\0\0\x0cjP  " + bytes(99))), small),
            (icns((b"ic08", oblong), (b"ic10", huge)), None),
            (good, good),
            (icns((b"ic08", good))[:40], None),
            (b"icns" + struct.pack(">I", 16) + b"ic08" + struct.pack(">I", 0), None),
            (b"", None),
            (b"<html/>", None),
            (b"<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>", None),
        ]:
            self.install(self.make(icon=icon, info={"CFBundleIconFile": "applet.icns"}))
            found = list((self.data / "quoddle/icons").glob("*")) if (self.data / "quoddle/icons").exists() else []
            self.assertEqual([p.read_bytes() for p in found], [chosen] if chosen else [])
        bundle = self.make(info={"CFBundleIconFile": "drawn"})
        drawing = bundle / "Contents/Resources/drawn.svg"
        for text, ending in (("<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>", ".svg"), ("<html/>", None)):
            drawing.write_text(text)
            icon = self.install(bundle).get("Icon")
            self.assertEqual(icon and (pathlib.Path(icon).suffix, pathlib.Path(icon).read_text()), ending and (ending, text))
            self.assertEqual(len([file for file in self.files() if "icons" in file]), 1 if ending else 0)

    def test_run_hands_on_the_files(self):
        shell = self.folder / "shell"
        shell.write_text('#!/bin/sh\nprintf "%s\\n" "$@"\nexit 7\n')
        shell.chmod(0o755)
        bundle = self.make()
        self.assertEqual(self.call("run", "Tool.app", "a b", "-c", QUODDLE_SHELL=str(shell)), (7, f"{bundle}\na b\n-c\n", ""))
        (self.folder / "Applications").mkdir()
        shutil.move(bundle, self.folder / "Applications/Tool.app")
        self.assertEqual(self.call("run", "tool", QUODDLE_SHELL=str(shell))[1], f"{self.folder}/Applications/Tool.app\n")

    def test_applets_are_told_by_names_of_every_kind(self):
        for name in ("n" * 246, "日本 ü", "d" * 200 + "/" + "e" * 200 + "/Tool", 'quo\'te "x"'):
            (self.folder / name).parent.mkdir(parents=True, exist_ok=True)
            bundle = self.make(name, "on hello(x)\nreturn x & \"!\"\nend hello")
            path = str(bundle).replace('"', '\\"')
            with self.subTest(path):
                told = self.call("-e", f'tell application "{path}" to hello("a")', program="osascript", QT_QPA_PLATFORM="offscreen")
                self.assertEqual(told, (0, "a!\n", ""))

    def test_names_of_every_kind(self):
        """Each command finds the applet, and what the desktop is told leads to it."""
        shell = self.folder / "shell"
        shell.write_text('#!/bin/sh\nprintf "%s\\0" "$@"\n')
        shell.chmod(0o755)
        for name in ("two\nlines", "-e", "--help", " blanks  ", "quo'te \"x\"", "$HOME `id` \\n %f %%", "*?[x]", "tab\there", "日本 é 𝄞", "#x;y=z"):
            with self.subTest(name):
                bundle, file = self.make(name), self.folder / (name + ".txt")
                self.assertEqual(self.info(bundle)[1]["Handlers"], "run")
                ran = self.call("run", "--", bundle.name, file, QUODDLE_SHELL=str(shell))
                self.assertEqual((ran[0], ran[1].split("\0")), (0, [str(bundle), str(file), ""]), ran)
                self.assertEqual(self.call("install", "--", bundle.name, QUODDLE_SHELL=str(shell))[0], 0)
                launcher = next((self.data / "applications").glob("applet-*.desktop"))
                launched = subprocess.run(["gio", "launch", str(launcher), str(file)], env=self.environment | {"DBUS_SESSION_BUS_ADDRESS": "disabled:"}, capture_output=True, text=True)
                self.assertEqual(launched.stdout.split("\0"), [str(bundle), str(file), ""], launched)
                # The path leads to the applet also when the bundle has gone.
                shutil.rmtree(bundle)
                self.assertEqual(self.call("uninstall", "--", bundle.name)[0], 0)
                self.assertEqual(self.files(), [])

    def test_an_applet_says_what_its_script_says(self):
        bundle = self.make(source="set progress total steps to 3\nrepeat with i from 1 to 3\nset progress completed steps to i\ndelay 0.1\nend repeat\nlog \"said\"")
        for debug, said in [({}, False), ({"QUODDLE_DEBUG": "1"}, True)]:
            status, output, errors = self.call("run", bundle, QT_QPA_PLATFORM="offscreen", **debug)
            self.assertEqual((status, output), (0, ""))
            self.assertIn("said\n", errors)
            self.assertEqual("_progressDidChange" in errors, said, errors)


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
