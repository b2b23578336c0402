// SPDX-License-Identifier: MIT
#include "ProgramTables.h"

namespace quoddle::tool {

namespace {

constexpr Option kLanguage = {"l", "LANGUAGE", "the language of source text (default AppleScript)", false, Offer::languages};
constexpr Option kStatement = {"e", "STATEMENT", "a line of the script; may be given more than once", true};

constexpr Option kOsascriptOptions[] = {
    kStatement,
    {"i", "", "interactive: runs every statement as it is typed"},
    kLanguage,
    {"s", "FLAGS",
     "h: print the result for people (default)   s: print it as source\n"
     "e: errors on standard error (default)      o: errors on standard output",
     true, Offer::resultFlags},
};

constexpr Option kOsacompileOptions[] = {
    {"check", "", "write nothing: print the errors of each FILE as FILE:LINE:COLUMN: MESSAGE"},
    kStatement,
    {"json", "", "with --check: print the errors as one JSON array"},
    kLanguage,
    {"o", "NAME", "the file or bundle to write", false, Offer::files},
    {"s", "", "applet: stay open"},
    {"u", "", "applet: show the startup screen"},
    {"x", "", "run-only: leave the source out"},
};

constexpr Option kOsalangOptions[] = {
    {"l", "", "with code and maker"},
    {"L", "", "with the version as well"},
};

constexpr Option kCheckOptions[] = {
    {"json", "", "print what is missing as one JSON array"},
};

constexpr Option kInstallOptions[] = {
    {"default", "", "make it the program that opens its types of files"},
};

constexpr Option kPackOptions[] = {
    {"o", "NAME", "the file to write", false, Offer::files},
};

constexpr Command kQuoddleCommands[] = {
    {"run",
     "APPLET [FILE...]",
     "start an applet",
     "Starts an applet; FILEs are opened with it. One that runs already gets the files. A packed applet is unpacked first,\n"
     "and keeps its place and what its script remembers from one run to the next.\n",
     1,
     SIZE_MAX,
     {},
     false},
    {"open",
     "FILE [ARGUMENT...]",
     "run a script or a packed applet, asking first",
     "Runs a script as a double click on the desktop does: asks first, and shows an error in an alert. About a packed applet\n"
     "it asks once: not when you have packed it or have run it before. An applet is started. Applets get the ARGUMENTs as\n"
     "files to open; scripts take none.\n",
     1,
     SIZE_MAX,
     {},
     false},
    {"list", "", "list the applets that run", "Lists the applets that run: name, process, path; the last one started first.\n", 0, 0},
    {"quit", "APPLET", "ask an applet to quit",
     "Asks an applet that runs to quit, and waits for the answer. One that shows a dialog, or whose script refuses, goes on.\n", 1, 1},
    {"info", "APPLET", "tell about an applet",
     "Prints name, identifier, version, settings, the handlers of the script and the file types of an applet.\n", 1, 1},
    {"check", "[--json] FILE...", "tell what scripts need that is not here",
     "Tells which applications, frameworks, script libraries and shell commands the scripts need that are not on this\n"
     "system, with the lines of their sources. FILE is an applet, a script bundle, a compiled script or source text. What a\n"
     "script names only while it runs is not seen. The exit status is 0 when nothing is missing, 1 otherwise, also when a\n"
     "script does not compile or cannot be read.\n",
     1, SIZE_MAX, kCheckOptions},
    {"adopt", "APPLET", "make an applet of a Mac start here by itself",
     "Adds a start script and our settings, taken from those of Macs, to an applet that a Mac has saved, and tells what its\n"
     "script needs that is not here, as check does. Nothing else of the bundle changes, least of all its script. APPLET\n"
     "cannot be a packed one here.\n",
     1, 1},
    {"pack", "APPLET [-o NAME.appletz]", "make one file of an applet, to give away",
     "Writes NAME.appletz, by default the applet's own name, in the current folder. A file of this name is replaced. A double\n"
     "click on it runs the applet. The same applet makes the same file, byte for byte. Links that lead out of the applet are\n"
     "an error. APPLET cannot be a packed one here.\n",
     1, 1, kPackOptions},
    {"install", "[--default] APPLET", "put an applet into the desktop's menu",
     "Makes a launcher, an icon and a service of the session bus below ~/.local/share, so that the desktop starts the\n"
     "applet and offers it for its types of files. Extensions that no program knows become types of the applet's own. What has\n"
     "opened a type before goes on to do so. The bundle stays where it is. Installing again renews it.\n",
     1, 1, kInstallOptions},
    {"uninstall", "APPLET", "take it out again",
     "Removes what install has made; the bundle stays. APPLET may also be a path where no bundle is any more, or the name\n"
     "in the menu. Of a packed applet the unpacked copy is removed too, with what its script remembers; the file stays.\n",
     1, 1},
};

} // namespace

const Program kOsascript = {.name = "osascript",
                            .synopsis = "[-l LANGUAGE] [-i] [-s FLAGS] [-e STATEMENT]... [FILE|-] [ARGUMENT...]",
                            .about =
                                "Runs a script and prints its result. FILE is source text, a compiled script or a script bundle; "
                                "without FILE\nand -e the script is read from standard input. ARGUMENTs are handed to \"on run argv\".\n",
                            .options = kOsascriptOptions,
                            .hasOptionsAnywhere = false};

const Program kOsacompile = {
    .name = "osacompile",
    .synopsis = "[-l LANGUAGE] [-e STATEMENT]... [-o NAME] [-x] [-s] [-u] [FILE...]\n"
                "       osacompile --check [--json] [-l LANGUAGE] [-e STATEMENT]... [FILE...]",
    .about = "Compiles source text, or stores compiled scripts anew. The ending of NAME says what is made: a script (.scpt,\n"
             "default a.scpt), a script bundle (.scptd) or an applet (.app; a droplet when the script has an open handler).\n"
             "Several FILEs are one script; without FILE and -e it is read from standard input, as for \"-\".\n",
    .options = kOsacompileOptions};

const Program kOsadecompile = {.name = "osadecompile",
                               .synopsis = "FILE",
                               .about = "Prints the source of a compiled script (.scpt), a script bundle (.scptd) or an applet (.app).\n",
                               .fewest = 1,
                               .most = 1};

const Program kOsalang = {
    .name = "osalang", .synopsis = "[-l|-L]", .about = "Lists the scripting languages by name.\n", .options = kOsalangOptions, .most = 0};

const Program kQuoddle = {
    .name = "quoddle",
    .synopsis = "COMMAND [ARGUMENT...]",
    .about = "Starts applets, tells which run, and makes them known to the desktop.\n",
    .note = "APPLET is the path of a bundle (.app) or of a packed applet (.appletz), or the name of an applet that runs, has run before\n"
            "or lies in ~/Applications.\n",
    .commands = kQuoddleCommands};

} // namespace quoddle::tool
