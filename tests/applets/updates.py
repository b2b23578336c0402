#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: applets that are updated from a server on this machine, by keyboard, with keys made for the test.

    updates.py BIN [PATTERN]
"""
import base64
import http.server
import io
import pathlib
import plistlib
import ssl
import subprocess
import tarfile
import threading
import zipfile

import accessibility
import harness
from harness import binaries, until

# An applet whose hooks for the updater leave a line for each call.
SOURCE = """
on run
	do shell script "echo VERSION >> FOLDER/ran"
end run
on open theFiles
end open
on note(what)
	do shell script "echo " & what & " >> FOLDER/noted"
	return true
end note
on appletmaycheckforupdates()
	return note("may")
end appletmaycheckforupdates
on appletupdatershouldpromptforpermissiontocheckforupdates()
	return note("prompt")
end appletupdatershouldpromptforpermissiontocheckforupdates
on appletupdaterwillinstallupdate()
	note("install")
end appletupdaterwillinstallupdate
on appletupdaterwillrelaunchapplication()
	note("relaunch")
end appletupdaterwillrelaunchapplication
"""
IDENTIFIER = "local.applet.renewed"


class Server(http.server.ThreadingHTTPServer):
    """A server of `files`. A function in place of a content writes the answer itself."""
    daemon_threads = True

    def __init__(self, certificate=None):
        super().__init__(("127.0.0.1", 0), Handler)
        self.scheme = "https" if certificate else "http"
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            self.socket = context.wrap_socket(self.socket, server_side=True)
        self.files, self.asked = {}, []
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def handle_error(self, *_):
        pass  # the client has broken off the connection

    def url(self, path):
        return f"{self.scheme}://127.0.0.1:{self.server_port}{path}"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.asked.append(self.path)
        content = self.server.files.get(self.path)
        self.send_response(200 if content is not None else 404)
        self.end_headers()
        try:
            content(self.wfile) if callable(content) else self.wfile.write(content or b"")
        except OSError:
            pass  # the client has closed the connection

    def log_message(self, *_):
        pass


class KeyPair:
    def __init__(self, folder):
        self.file = folder / "key.pem"
        subprocess.run(["openssl", "genpkey", "-algorithm", "ed25519", "-out", self.file], check=True)
        der = subprocess.run(["openssl", "pkey", "-in", self.file, "-pubout", "-outform", "DER"], check=True, capture_output=True).stdout
        self.public = base64.b64encode(der[-32:]).decode()

    def signature(self, content):
        file = self.file.with_suffix(".content")
        file.write_bytes(content)
        signed = subprocess.run(["openssl", "pkeyutl", "-sign", "-rawin", "-inkey", self.file, "-in", file], check=True, capture_output=True)
        return base64.b64encode(signed.stdout).decode()


def zipped(bundle):
    packed = io.BytesIO()
    with zipfile.ZipFile(packed, "w", zipfile.ZIP_DEFLATED) as archive:
        for file in sorted(bundle.rglob("*")):
            archive.write(file, file.relative_to(bundle.parent))
    return packed.getvalue()


def tarred(bundle, more=()):
    packed = io.BytesIO()
    with tarfile.open(fileobj=packed, mode="w:gz") as archive:
        archive.add(bundle, bundle.name)
        for entry in more:
            archive.addfile(entry)
    return packed.getvalue()


def with_info(bundle, **info):
    file = bundle / "Contents/Info.plist"
    known = plistlib.loads(file.read_bytes())
    known.update(info)
    file.write_bytes(plistlib.dumps({key: value for key, value in known.items() if value is not None}))


def version_of(bundle):
    return plistlib.loads((bundle / "Contents/Info.plist").read_bytes())["CFBundleVersion"]


class Updates(accessibility.AccessibleCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.display.environment["QUODDLE_HTTP_ON_LOOPBACK"] = "1"

    def setUp(self):
        super().setUp()
        self.server = Server()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.keys = KeyPair(self.folder)

    # Making and publishing versions

    def start_updatable(self, name="Renewed", source=SOURCE, settings="", **info):
        """Starts version 1 of an applet, with a file that later versions do not have."""
        info = dict(dict(CFBundleIdentifier=IDENTIFIER, CFBundleVersion="1", SUFeedURL=self.server.url("/feed.xml"), SUPublicEDKey=self.keys.public), **info)
        config = self.folder / "config/quoddle" / (IDENTIFIER + ".ini")
        config.parent.mkdir(parents=True, exist_ok=True)
        config.write_text(settings)

        def prepare(bundle):
            with_info(bundle, **info)
            (bundle / "Contents/Resources/obsolete").write_text("x")

        return self.start(name, source.replace("VERSION", "one"), options=["-s"], prepare=prepare)

    def newer(self, version="2", source=SOURCE, name="Renewed", **info):
        """Answers a bundle in a folder, as its maker packs it, with a launcher for another machine."""
        folder = self.folder / ("made" + version)
        folder.mkdir(exist_ok=True)
        bundle = folder / (name + ".app")
        (folder / "source").write_text(source.replace("VERSION", "two").replace("FOLDER", str(self.folder)))
        subprocess.run([str(binaries() / "osacompile"), "-s", "-o", str(bundle), str(folder / "source")], check=True)
        with_info(bundle, **dict(dict(CFBundleIdentifier=IDENTIFIER, CFBundleVersion=version, SUPublicEDKey=self.keys.public), **info))
        for launcher in (bundle / "Contents/Linux").iterdir():
            launcher.write_text("#!/bin/sh\nexit 1\n")
        return bundle

    def publish(self, archive, version="2", signature=None, length=None, notes="<p>Faster, and <b>bold</b>.</p>"):
        self.server.files["/archive"] = archive
        signature = self.keys.signature(archive) if signature is None else signature
        self.server.files["/feed.xml"] = f"""<?xml version="1.0" encoding="utf-8"?>
            <rss version="2.0" xmlns:s="urn:versions"><channel><link>https://applets.example/</link>
            <item><enclosure url="/archive" s:version="0.9" length="1"/></item>
            <item><description><![CDATA[{notes}]]></description>
              <enclosure url="/archive" s:version="{version}" length="{length or len(archive)}" s:edSignature="{signature}"/></item>
            </channel></rss>""".encode()

    # Using the menu and the panels

    def choose_from_menu(self, applet, title="Check for Updates…"):
        self.find(applet.name, "menu item").do_action(0)
        self.find(title, "menu item").do_action(0)

    def choose_by_mouse(self, applet):
        """Chooses the menu item by mouse. Pressing it by name would wait for a script that is asked."""
        self.applet = applet
        self.click(self.find(applet.name, "menu item"))
        self.click(self.find("Check for Updates…", "menu item"))

    def press(self, key):
        self.display.press(key)

    def alert(self, text, applet):
        """Waits for the alert and dismisses it."""
        self.find(text)
        applet.window()
        self.find("OK", "push button").do_action(0)
        until(lambda: not self.shown(text), "the alert to go")

    def left_behind(self):
        return [file.name for file in self.folder.iterdir() if file.name.startswith(".")]

    # Installing

    def test_an_update_is_installed_and_the_applet_starts_again(self):
        bundle = self.folder / "Renewed.app"
        for version, pack, in [("2", zipped), ("3", tarred)]:
            with self.subTest(version):
                self.publish(pack(self.newer(version)), version)
                for file in ("ran", "noted"):
                    (self.folder / file).unlink(missing_ok=True)
                applet = self.start_updatable(settings="[General]\nSUEnableAutomaticChecks=false\n")
                until(lambda: applet.said("ran") == "one\n", "the old one to run")
                launcher = (bundle / "Contents/Linux/Renewed").read_text()
                self.choose_from_menu(applet)
                self.find("A new version of Renewed is available.", "label")
                notes = self.find("Notes about this version")
                self.assertEqual(self.atspi.Text.get_text(notes, 0, -1), "Faster, and bold.")
                self.find("Install Update", "push button")
                applet.picture("updates-offer")
                self.press("Return")  # the keyboard is in the notes
                until(lambda: applet.said("ran") == "one\ntwo\n", "the new one to run")
                self.assertIsNone(applet.process.poll())
                self.assertEqual(applet.said("noted"), "may\ninstall\nrelaunch\n")
                self.assertEqual(version_of(bundle), version)
                self.assertFalse((bundle / "Contents/Resources/obsolete").exists())
                self.assertEqual((bundle / "Contents/Linux/Renewed").read_text(), launcher)
                self.assertEqual(self.left_behind(), [])
                applet.kill()
                until(lambda: not self.shown("Renewed", "frame"), "its window to go")

    def test_what_is_not_to_be_trusted_is_not_installed(self):
        applet = self.start_updatable()
        bundle = self.folder / "Renewed.app"
        good = zipped(self.newer())
        outside = tarfile.TarInfo("Renewed.app/Contents/../../evil")
        wrong = "The signature is wrong: what was downloaded does not come from the applet's maker."
        other = KeyPair(pathlib.Path(self.newer("other").parent))
        for what, reason, published in [
            ("a changed byte", wrong, dict(archive=good[:-1] + bytes([good[-1] ^ 1]), signature=self.keys.signature(good))),
            ("the key of somebody else", wrong, dict(archive=good, signature=other.signature(good))),
            ("no signature at all", wrong, dict(archive=good, signature="?")),
            ("more than announced", "The server sends more than was announced.", dict(archive=good, length=len(good) - 1)),
            ("less than announced", "The download is shorter than was announced.", dict(archive=good, length=len(good) + 1)),
            ("an older version in new clothes", "What was downloaded is another version.", dict(archive=good, version="9")),
            ("another applet", "What was downloaded is another applet.", dict(archive=zipped(self.newer("3", CFBundleIdentifier="local.other")), version="3")),
            ("a path that leads outside", "The archive is not to be trusted: " + outside.name, dict(archive=tarred(self.newer(), [outside]))),
            ("no archive", None, dict(archive=b"nothing")),
        ]:
            with self.subTest(what):
                self.publish(**published)
                self.choose_from_menu(applet)
                self.find("Install Update", "push button").do_action(0)
                self.find("The update of Renewed could not be installed.")
                if reason:
                    self.find(reason)
                self.alert("The update of Renewed could not be installed.", applet)
                self.assertEqual(version_of(bundle), "1")
                self.assertEqual(self.left_behind(), [])
                self.assertFalse((self.folder / "evil").exists())
        self.assertNotIn("install", applet.said("noted"))
        applet.kill()

    def test_a_handler_that_runs_is_stopped_like_for_a_quit(self):
        self.publish(zipped(self.newer()))
        applet = self.start_updatable(source=SOURCE.replace("end run", "delay 1000\nend run"))
        until(lambda: applet.said("ran"), "it to run")
        self.choose_from_menu(applet)
        self.find("Install Update", "push button").do_action(0)
        until(lambda: applet.said("ran") == "one\ntwo\n", "the new one to run")
        self.assertEqual(version_of(self.folder / "Renewed.app"), "2")
        applet.kill()

    def test_an_applet_that_goes_on_is_renewed_when_it_is_quit(self):
        self.publish(zipped(self.newer()))
        applet = self.start_updatable(source=SOURCE + """
on quit
	try
		do shell script "test -e FOLDER/enough"
		continue quit
	end try
end quit
""")
        bundle = self.folder / "Renewed.app"
        until(lambda: applet.said("ran"), "it to run")
        self.choose_from_menu(applet)
        self.find("Install Update", "push button").do_action(0)
        self.find("It is installed as soon as the applet is quit.")
        applet.picture("updates-busy")
        self.assertEqual(version_of(bundle), "1")
        self.alert("The update of Renewed is ready.", applet)
        (self.folder / "enough").write_text("x")
        applet.process.terminate()
        applet.ends()
        self.assertEqual(version_of(bundle), "2")
        self.assertEqual(applet.said("ran"), "one\n")
        self.assertEqual(self.left_behind(), [])

    # Answers of the script

    def test_the_script_may_refuse(self):
        self.publish(zipped(self.newer()))
        silent = SOURCE.replace('return note("may")', "return false")
        applet = self.start_updatable(source=silent)
        self.choose_from_menu(applet)
        self.alert("Renewed does not look for updates now.", applet)
        self.assertEqual(self.server.asked, [])
        applet.kill()

    def test_a_script_that_fails_in_a_hook_ends_the_applet(self):
        bundle = self.folder / "Renewed.app"
        error = "The applet has stopped because of an error."
        for hook, fails, installed in [('return note("may")', 'error "no idea"', "1"), ('note("install")', 'error "no idea"', "2")]:
            with self.subTest(hook):
                self.publish(zipped(self.newer()))
                (self.folder / "ran").unlink(missing_ok=True)
                applet = self.start_updatable(source=SOURCE.replace(hook, fails))
                until(lambda: applet.said("ran"), "it to run")
                self.choose_from_menu(applet)
                if installed == "2":
                    self.find("Install Update", "push button").do_action(0)
                self.find(error)
                self.find("no idea", "label")
                self.find("Quit", "push button").do_action(0)
                applet.ends()
                self.assertEqual(version_of(bundle), installed)
                self.assertEqual(applet.said("ran"), "one\n")
                self.assertEqual(self.left_behind(), [])
                until(lambda: not self.shown("Renewed", "frame"), "its window to go")

    def waiting_for_leave(self, hook):
        """Answers the source with a hook that waits for a file `leave` and notes its end, too."""
        return SOURCE.replace(f'return note("{hook}")', f'note("{hook}")').replace(f'note("{hook}")', f"""note("{hook}")
	repeat
		try
			do shell script "test -e FOLDER/leave"
			exit repeat
		end try
		delay 0.1
	end repeat
	return note("{hook} ends")""")

    def test_who_gives_up_ends_the_question_of_the_script(self):
        self.publish(zipped(self.newer()))
        applet = self.start_updatable(source=self.waiting_for_leave("may"))
        self.choose_by_mouse(applet)
        until(lambda: applet.said("noted") == "may\n", "the script to be asked")
        self.find("Waiting for the script", "progress bar")  # the panel closes menus when it comes
        self.choose_by_mouse(applet)
        self.find("Looking for updates…", "progress bar")
        self.find("Cancel", "push button").do_action(0)
        until(lambda: not self.shown("Looking for updates…"), "the panel to go")
        applet.rests()
        self.assertEqual(self.server.asked, [])
        # A new check asks the script again.
        self.choose_by_mouse(applet)
        until(lambda: applet.said("noted") == "may\nmay\n", "the script to be asked again")
        (self.folder / "leave").write_text("x")
        self.find("Install Update", "push button")
        applet.rests()
        self.assertEqual(applet.said("noted"), "may\nmay\nmay ends\n")
        self.assertEqual(self.server.asked, ["/feed.xml"])
        applet.kill()

    def test_a_notice_is_heard_to_the_end_or_given_up(self):
        self.publish(zipped(self.newer()))
        applet = self.start_updatable(source=self.waiting_for_leave("install"))
        bundle = self.folder / "Renewed.app"
        for given_up in (True, False):
            until(lambda: applet.said("ran"), "it to run")
            (self.folder / "noted").unlink(missing_ok=True)
            self.choose_by_mouse(applet)
            self.find("Install Update", "push button").do_action(0)
            until(lambda: applet.said("noted") == "may\ninstall\n", "the script to be told")
            self.find("Waiting for the script", "progress bar")
            self.choose_by_mouse(applet)
            self.find("Preparing version 2…", "progress bar")
            if given_up:
                applet.picture("updates-preparing")
                self.find("Cancel", "push button").do_action(0)
                until(lambda: not self.shown("Preparing version 2…"), "the panel to go")
                applet.rests()
                self.assertEqual(applet.said("noted"), "may\ninstall\n")
                self.assertEqual(self.left_behind(), [])
        (self.folder / "leave").write_text("x")
        until(lambda: applet.said("ran") == "one\ntwo\n", "the new one to run")
        self.assertEqual(applet.said("noted"), "may\ninstall\ninstall ends\nrelaunch\n")
        self.assertEqual(version_of(bundle), "2")
        applet.kill()

    # Offers and notes

    def test_without_a_key_an_update_is_only_announced(self):
        self.publish(zipped(self.newer()))
        applet = self.start_updatable(SUPublicEDKey=None)
        self.choose_from_menu(applet)
        self.find("Open Page", "push button")
        self.find("It cannot be installed from here: The applet has no key to tell by whether a download comes from its maker.", "label")
        self.assertIsNone(self.shown("Install Update"))
        applet.picture("updates-announced")
        self.press("Escape")
        until(lambda: not self.shown("Open Page"), "the panel to go")
        self.assertNotIn("/archive", self.server.asked)
        applet.kill()

    # Feeds

    def test_a_feed_without_news_and_feeds_without_end(self):
        released = threading.Event()

        def endless(stream):
            while True:
                stream.write(b"<item><version>1</version></item>" * 1000)

        applet = self.start_updatable()
        self.publish(b"x", version="1.0")
        self.choose_from_menu(applet)
        self.find("Version 1.0 is the newest one.")
        self.alert("Renewed is up to date.", applet)
        for what, feed, reason in [
            ("no end", endless, "The server sends more than was announced."),
            ("no feed", b"<html></html>", "It is no list of versions."),
            ("a bomb", b"<!DOCTYPE rss [<!ENTITY a 'aa'>]><rss><channel><link>&a;</link></channel></rss>", "It is no list of versions."),
            ("nothing there", None, None),
        ]:
            with self.subTest(what):
                self.server.files["/feed.xml"] = feed
                self.choose_from_menu(applet)
                self.find("Renewed could not look for updates.")
                if reason:
                    self.find(reason)
                self.alert("Renewed could not look for updates.", applet)
        # The user gives up a feed that sends nothing.
        self.server.files["/feed.xml"] = lambda stream: released.wait()
        self.addCleanup(released.set)
        self.choose_from_menu(applet)
        self.find("Looking for updates…", "progress bar")
        applet.picture("updates-looking")
        self.press("Escape")
        until(lambda: not self.shown("Looking for updates…"), "the panel to go")
        applet.rests()
        self.assertIsNone(applet.process.poll())
        applet.kill()

    def test_a_server_that_nobody_vouches_for(self):
        certificate = self.folder / "certificate.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ed25519", "-nodes", "-keyout", certificate, "-out", self.folder / "public.pem", "-days", "1",
                        "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1"], check=True, capture_output=True)
        with certificate.open("a") as file:
            file.write((self.folder / "public.pem").read_text())
        secure = Server(certificate)
        self.addCleanup(secure.server_close)
        self.addCleanup(secure.shutdown)
        secure.files["/feed.xml"] = b"secret"
        fetched = subprocess.run([str(binaries() / "quoddle-fetch"), "text", secure.url("/feed.xml"), "1000"], capture_output=True, text=True, env=self.display.environment)
        self.assertEqual((fetched.returncode, fetched.stdout, secure.asked), (1, "", []))
        self.assertIn("SSL", fetched.stderr)
        self.server.files["/feed.xml"] = b"text"
        for environment, outcome in [(self.display.environment, (0, "text")), (dict(self.display.environment, QUODDLE_HTTP_ON_LOOPBACK=None), (1, ""))]:
            environment = {key: value for key, value in environment.items() if value is not None}
            fetched = subprocess.run([str(binaries() / "quoddle-fetch"), "text", self.server.url("/feed.xml"), "1000"], capture_output=True, text=True, env=environment)
            self.assertEqual((fetched.returncode, fetched.stdout), outcome)

    # Checks without the user

    def test_updates_are_looked_for_when_the_user_has_agreed(self):
        self.publish(zipped(self.newer()))
        first = self.start_updatable()
        until(lambda: "SUHasLaunchedBefore=true" in first.said("config/quoddle/" + IDENTIFIER + ".ini"), "the first launch to be noted")
        first.rests()
        self.assertIsNone(self.shown("Check Automatically"))
        first.process.terminate()
        first.ends()
        settings = first.said("config/quoddle/" + IDENTIFIER + ".ini")
        second = self.start_updatable(settings=settings)
        self.find("Should Renewed look for updates by itself?")
        second.picture("updates-permission")
        self.assertEqual(self.server.asked, [])
        self.find("Check Automatically", "push button").do_action(0)
        self.find("Skip This Version", "push button").do_action(0)
        until(lambda: not self.shown("Skip This Version"), "the panel to go")
        self.assertEqual(second.said("noted").split(), ["prompt", "may"])
        second.process.terminate()
        second.ends()
        settings = "".join(line for line in second.said("config/quoddle/" + IDENTIFIER + ".ini").splitlines(True) if "SULastCheckTime" not in line)
        self.assertIn("SUSkippedVersion=2", settings)
        self.server.asked.clear()
        third = self.start_updatable(settings=settings)
        until(lambda: self.server.asked, "the feed to be asked for")
        third.rests()
        self.assertIsNone(self.shown("Skip This Version"))
        # A check by the user offers a version that was skipped.
        self.choose_from_menu(third)
        self.find("Skip This Version", "push button")
        third.kill()

    def test_an_applet_without_updates_loads_nothing_for_them(self):
        for name, feed in (("Without", None), ("With", self.server.url("/feed.xml"))):
            applet = self.start_updatable(name, SUFeedURL=feed)
            until(lambda: applet.said("ran"), "it to run")
            libraries = pathlib.Path(f"/proc/{applet.process.pid}/maps").read_text()
            self.assertIn("libQt6Widgets", libraries)
            self.assertNotRegex(libraries, "libQt6Network|libarchive|libcrypto|libssl")
            self.find(name, "menu item").do_action(0)
            self.find("About " + name, "menu item")
            self.assertEqual(bool(self.shown("Check for Updates…")), bool(feed))
            applet.kill()
            (self.folder / "ran").unlink()
            until(lambda: not self.shown(name, "frame"), "its window to go")


if __name__ == "__main__":
    harness.main(Updates)
