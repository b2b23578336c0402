#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes an applet from a folder with its parts: script.applescript, and, where they are there, description.rtf, icon.svg and info.plist with
further entries of the Info.plist.

    make-example.py OSACOMPILE MAKE-ICON FOLDER BUNDLE [OPTION of osacompile…]
"""
import pathlib
import plistlib
import shutil
import subprocess
import sys

ICON_EXTENT = "256"

osacompile, make_icon, folder, bundle = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3]), pathlib.Path(sys.argv[4])
bundle.parent.mkdir(parents=True, exist_ok=True)
shutil.rmtree(bundle, ignore_errors=True)
subprocess.run([osacompile, *sys.argv[5:], "-o", bundle, folder / "script.applescript"], check=True)

contents = bundle / "Contents"
information = plistlib.loads((contents / "Info.plist").read_bytes())
if (folder / "info.plist").exists():
    information |= plistlib.loads((folder / "info.plist").read_bytes())
if (folder / "description.rtf").exists():
    shutil.copyfile(folder / "description.rtf", contents / "Resources/description.rtf")
if (folder / "icon.svg").exists():
    subprocess.run([make_icon, folder / "icon.svg", ICON_EXTENT, contents / "Resources/applet.png"], check=True)
    information["CFBundleIconFile"] = "applet"
(contents / "Info.plist").write_bytes(plistlib.dumps(information, sort_keys=False))
