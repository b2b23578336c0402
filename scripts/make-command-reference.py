#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the reference of the commands, docs/commands.md, from the dictionary of the commands that every script has and from the table of the
language's own; what each does is told here.

    make-command-reference.py [OUTPUT]      "-" is standard output
"""
import pathlib
import re
import sys
import textwrap
import xml.etree.ElementTree

SOURCE = pathlib.Path(__file__).resolve().parents[1]
DICTIONARY = SOURCE / "resources/dictionaries/StandardAdditions.sdef"
LANGUAGE = SOURCE / "src/platform/applescript/terminology/LanguageTerms.cpp"

START = """# The commands

Made by `scripts/make-command-reference.py` from the tables that the compiler has; do not change it by hand. Square
brackets mean that something may be left out. A parameter that is `true` or `false` may also be written with `with` or
`without`: `choose file with invisibles`."""

PERFORMED_BY_THE_LANGUAGE = ("log", "delay", "count", "run", "idle", "error", "use")
LANGUAGE_HEADINGS = {True: ("The language's own", "Every script has them."),
                     False: ("For applications and applets", "They are sent to the application that a `tell` names, or come from others to the handlers of the "
                             "script. A script that has no handler for one and tells it to nobody gets error -1708.")}
SUITES = {
    "User Interaction": "Without a display they fail with -1713. Who cancels gives the script error -128.",
    "File Commands": "A file is an alias, a file, or its path as a text.",
    "String Commands": "",
    "Clipboard Commands": "Without a display the clipboard belongs to the process alone.",
    "File Reading and Writing": "A file is named by itself or by the number that `open for access` has given.",
    "Scripting Commands": "",
    "Miscellaneous Commands": "",
    "Folder Actions": "They compile, for handlers that have these names. Nothing calls them here.",
    "Internet": "",
}
TEXTS = {
    "run": "Runs a script or an application; as a handler it is what an applet does when it is started without files.",
    "open": "Hands files to an application; as a handler it makes an applet a droplet.",
    "print": "Asks an application to print files.",
    "quit": "Ends an application; as a handler it is asked first, and `continue quit` goes on.",
    "reopen": "Asks an application that runs to show a window.",
    "activate": "Brings an application to the front.",
    "idle": "The handler of an applet that stays open: called again after the seconds that it returns.",
    "launch": "Starts an application without running its script.",
    "delay": "Waits as many seconds. Stop ends the wait.",
    "log": "Says a value on standard error.",
    "start log": "Turns on what a script editor notes of events.",
    "stop log": "Turns off what a script editor notes of events.",
    "error": "Raises an error, which a `try` can catch.",
    "use": "Names what a script needs: a version of the language, additions, a framework, a library.",
    "count": "Answers how many items, characters or elements there are.",
    "exists": "Answers whether an application has an object.",
    "make": "Makes a new object in an application.",
    "delete": "Deletes an object of an application.",
    "duplicate": "Copies an object of an application.",
    "move": "Moves an object of an application.",
    "close": "Closes a document or a window of an application.",
    "save": "Saves a document of an application.",
    "data size": "Answers how many bytes an object of an application has.",
    "select": "Selects an object of an application.",
    "suite info": "Asks an application for a suite of its dictionary.",
    "event info": "Asks an application for the events of a suite.",
    "class info": "Asks an application for a class.",
    "call soap": "Calls a service over the network by SOAP.",
    "call xmlrpc": "Calls a service over the network by XML-RPC.",
    "beep": "Sounds the bell, once or as often as is said.",
    "choose application": "Lets the user choose one of the installed applications.",
    "choose color": "Lets the user choose a colour: a list of red, green and blue, each from 0 to 65535.",
    "choose file": "Lets the user choose a file that exists, or several.",
    "choose file name": "Lets the user name a file to be written. Asks before one that exists is chosen.",
    "choose folder": "Lets the user choose a folder, or several.",
    "choose from list": "Lets the user choose from a list. Answers a list, or `false` when the user cancels.",
    "choose remote application": "Compiles. There are no applications on other computers here: error -10000.",
    "choose URL": "Lets the user type or choose an address.",
    "display alert": "Shows an alert and answers which button was pressed.",
    "display dialog": "Shows a text with buttons, with `default answer` a field as well, and answers the button and the text.",
    "display notification": "Shows a notification of the desktop. Where there is no service for them the text goes to standard error.",
    "say": "Speaks a text. Needs the package `speech-dispatcher` or `espeak-ng`.",
    "info for": "Answers what is known of a file: its name, kind, size, dates.",
    "list disks": "Answers the names of the volumes.",
    "list folder": "Answers the names of what is in a folder.",
    "mount volume": "Mounts the volume of a server.",
    "path to": "Answers where one of the user's or the system's folders is, or the script's own file with `path to me`.",
    "path to resource": "Answers where a file of the bundle of the script is.",
    "ASCII character": "Answers the character that has a number; better is `character id`.",
    "ASCII number": "Answers the number of a character; better is `id of`.",
    "localized string": "Answers a text of the bundle in the user's language.",
    "offset": "Answers where a text begins in another; 0 when it is not there.",
    "summarize": "Compiles. Nothing summarizes texts here: error -10000.",
    "set the clipboard to": "Puts a value on the clipboard, where it stays when the script has ended.",
    "the clipboard": "Answers what is on the clipboard, as a text or as what is asked for.",
    "clipboard info": "Answers the forms in which the clipboard has its contents, and their sizes.",
    "open for access": "Opens a file and answers its number. It is made when it is not there and may be written.",
    "close access": "Closes a file.",
    "read": "Reads from a file: all of it, a part, or up to a character. Text in UTF-8 is read `as «class utf8»`.",
    "write": "Writes to a file, at its end or where it is told. Text in UTF-8 is written `as «class utf8»`.",
    "get eof": "Answers how many bytes a file has.",
    "set eof": "Makes a file as long as is said.",
    "load script": "Reads a compiled script or a source as a script object.",
    "store script": "Stores a script object as a compiled script.",
    "run script": "Runs a text or a file as a script and answers its result.",
    "scripting components": "Answers the scripting languages that there are.",
    "current date": "Answers the date and the time.",
    "do shell script": "Runs a command by `/bin/sh` and answers what it says. A status other than 0 is an error with that number.",
    "get volume settings": "Answers how loud the sound is. Needs `pactl` or `amixer`.",
    "random number": "Answers a number by chance: from 0 to 1, up to a number, or between two.",
    "round": "Rounds a number; halves go to the even number unless something else is said.",
    "set volume": "Changes how loud the sound is. Needs `pactl` or `amixer`.",
    "system attribute": "Answers a variable of the environment.",
    "system info": "Answers what is known of the system, the user and the computer.",
    "time to GMT": "Answers by how many seconds the local time is ahead.",
    "opening folder": "A folder's window was opened.",
    "closing folder window for": "A folder's window was closed.",
    "moving folder window for": "A folder's window was moved.",
    "adding folder items to": "Something came into a folder.",
    "removing folder items from": "Something left a folder.",
    "open location": "Opens an address with the program that the desktop has for it. Needs `xdg-utils`.",
    "handle CGI request": "Compiles, for the handler of that name. Nothing calls it here.",
}
PLAIN = {"any": "any value", "string": "text", "boolean": "`true` or `false`", "small integer": "integer", "double integer": "integer", "type": "class", "list": "list"}


def plain(kind, words_of):
    return ", ".join(f"`{word}`" for word in words_of[kind]) if kind in words_of else PLAIN.get(kind, kind)


def kind_of(element, words_of):
    kinds = [(element.get("type"), element.get("list"))] if element.get("type") else [(kind.get("type"), kind.get("list")) for kind in element.iter("type")]
    return " or ".join(("list of " if is_list and kind != "list" else "") + plain(kind, words_of) for kind, is_list in kinds)


def entry(name, direct, parameters, result):
    """`direct` is None or (what it is, whether it may be left out), a parameter (label, what it is, whether it may be left out)."""
    if name not in TEXTS:
        sys.exit(f"make-command-reference.py: what does “{name}” do?")
    lines = [f"### {name}", "", *textwrap.wrap(TEXTS.pop(name), 118), ""]
    if direct:
        lines += [f"- what it is about: {direct[0]}{' (may be left out)' if direct[1] else ''}"]
    for label, kind, optional in parameters:
        lines += textwrap.wrap(f"- {'[' if optional else ''}`{label}`{']' if optional else ''}{': ' if kind else ''}{kind}", 118, subsequent_indent="  ")
    if result:
        lines += [f"- answers: {result}"]
    return "\n".join(lines).rstrip()


def of_the_language():
    text = LANGUAGE.read_text()
    parameters = {table: [row[0] for row in re.findall(r'\{"([^"]+)", "([^"]*)"_4cc', rows)]
                  for table, rows in re.findall(r"constexpr ParameterTerm (\w+)\[\] = \{(.*?)\};", text, re.S)}
    commands = re.findall(r'^        \{"([^"]+)", "[^"]+"_4cc, "[^"]+"_4cc, \{.*?, (\w+|\{\})\}\}', text[text.index("std::to_array<EventRow>"):], re.M)
    parts = []
    for own in (True, False):
        heading, about = LANGUAGE_HEADINGS[own]
        parts.append("\n".join([f"## {heading}", "", *textwrap.wrap(about, 118)]))
        for name, table in sorted(commands):
            if (name in PERFORMED_BY_THE_LANGUAGE) is own:
                parts.append(entry(name, None, [(label, "", True) for label in parameters.get(table, [])], ""))
    return parts


def of_the_additions():
    suites = xml.etree.ElementTree.parse(DICTIONARY).getroot().findall("suite")
    words_of = {enumeration.get("name"): [word.get("name") for word in enumeration] for suite in suites for enumeration in suite.findall("enumeration") if 0 < len(enumeration) <= 8}
    parts = []
    for suite in suites:
        about = textwrap.wrap(SUITES[suite.get("name")], 118)
        parts.append("\n".join([f"## {suite.get('name')}", "", *about]).rstrip())
        for command in sorted(suite.findall("command"), key=lambda each: each.get("name").lower()):
            direct, result = command.find("direct-parameter"), command.find("result")
            parts.append(entry(command.get("name"), None if direct is None else (kind_of(direct, words_of), direct.get("optional") == "yes"),
                               [(each.get("name"), kind_of(each, words_of), each.get("optional") == "yes") for each in command.findall("parameter")],
                               "" if result is None else kind_of(result, words_of)))
    return parts


text = "\n\n".join([START, *of_the_language(), *of_the_additions()]) + "\n"
if TEXTS:
    sys.exit(f"make-command-reference.py: there is no “{next(iter(TEXTS))}”")
output = sys.argv[1] if len(sys.argv) > 1 else SOURCE / "docs/commands.md"
if output == "-":
    sys.stdout.write(text)
else:
    pathlib.Path(output).write_text(text)
