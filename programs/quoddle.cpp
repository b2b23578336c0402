// SPDX-License-Identifier: MIT
// quoddle: starts applets, lists running ones, and makes applets known to the desktop. There is one row for each command; the work is done
// in the files beside this one.
#include "AppletInfo.h"
#include "AppletInstallation.h"
#include "Applets.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/base/ProgramMain.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <unistd.h>

#include <QCoreApplication>

using namespace quoddle;

namespace {

using Words = std::vector<std::string>;
constexpr int kUsageError = 2;

struct Command {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
    std::string_view help;
    std::size_t fewest;
    std::size_t most;
    int (*perform)(const Words& words);
};

int fail(const std::string& message) {
    std::cerr << "quoddle: " << message << "\n";
    return EXIT_FAILURE;
}

int run(const Words& words) {
    const auto bundle = tool::findApplet(words[0]);
    if (!bundle)
        return fail(bundle.error());
    const auto shell = tool::findShell();
    if (!shell)
        return fail(shell.error());
    Words arguments = words;
    arguments[0] = (*bundle)->bundlePath().toStdString();
    arguments.insert(arguments.begin(), *shell);
    std::vector<char*> raw;
    for (std::string& argument : arguments)
        raw.push_back(argument.data());
    raw.push_back(nullptr);
    ::execv(shell->c_str(), raw.data());
    return fail(*shell + ": cannot be started: " + std::strerror(errno));
}

/// Why the folder in which running applets are found cannot be used; empty when it can. Without it no applet would seem to run.
std::string whatIsWrongWithRuntimeDirectory() {
    const auto directory = AERuntimeDirectory();
    return directory ? "" : AERuntimeDirectoryAdvice(directory.error());
}

int list(const Words&) {
    if (const std::string advice = whatIsWrongWithRuntimeDirectory(); !advice.empty())
        return fail(advice);
    const auto applications = AEListRunningApplications();
    if (applications.empty()) {
        std::cerr << "No applet is running.\n";
        return EXIT_SUCCESS;
    }
    std::vector<std::array<std::string, 3>> rows = {{"NAME", "PROCESS", "PATH"}};
    for (const AERunningApplication& application : applications)
        rows.push_back({tool::printable(QString::fromStdString(application.name)), std::to_string(application.processID),
                        tool::printable(QString::fromStdString(application.path))});
    // Column widths are counted in characters; the last column needs none.
    std::array<qsizetype, 2> widths = {0, 0};
    for (const auto& row : rows)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], QString::fromStdString(row[i]).size());
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i)
            std::cout << row[i] << std::string(std::size_t(widths[i] - QString::fromStdString(row[i]).size() + 2), ' ');
        std::cout << row[2] << "\n";
    }
    return EXIT_SUCCESS;
}

/// The running applet that a word means. When its bundle has gone meanwhile, the applet is found by its name.
std::optional<AERunningApplication> findRunning(const std::string& word) {
    if (const auto bundle = tool::findApplet(word))
        return AEFindRunningApplicationAtPath((*bundle)->bundlePath().toStdString());
    for (const AERunningApplication& application : AEListRunningApplications())
        if (application.name == word)
            return application;
    return std::nullopt;
}

int quit(const Words& words) {
    if (const std::string advice = whatIsWrongWithRuntimeDirectory(); !advice.empty())
        return fail(advice);
    const auto running = findRunning(words[0]);
    if (!running)
        return fail(words[0] + ": no such applet is running; quoddle list tells which are");
    const std::string name = tool::printable(QString::fromStdString(running->name));
    AEDesc reply;
    const AEDesc event = AEDesc::appleEvent("aevt"_4cc, "quit"_4cc, AEDesc::ofProcess(running->processID));
    const OSStatus sent = AESendToProcess(running->processID, event, &reply, kAEWaitReply, kNoTimeOut, {});
    const AEDesc* number = reply.find("errn"_4cc);
    const OSStatus status = sent != noErr || !number ? sent : number->asInt32().value_or(errAEEventFailed);
    if (status == userCanceledErr)
        return fail(name + " goes on: it has refused, or asks something first");
    // An applet that ends before it can answer has done what it was asked.
    return status == noErr || status == connectionInvalid ? EXIT_SUCCESS : fail(name + ": error " + std::to_string(status));
}

int info(const Words& words) {
    const auto bundle = tool::findApplet(words[0]);
    if (!bundle)
        return fail(bundle.error());
    bool isComplete = true;
    for (const auto& [label, value] : tool::infoOf(**bundle, isComplete))
        std::cout << label << ":" << std::string(16 - label.size(), ' ') << value << "\n";
    return isComplete ? EXIT_SUCCESS : EXIT_FAILURE;
}

int install(const Words& words) {
    const auto bundle = tool::findApplet(words[0]);
    if (!bundle)
        return fail(bundle.error());
    const auto shell = tool::findShell();
    if (!shell)
        return fail(shell.error());
    const auto installed = tool::install(**bundle, *shell);
    if (!installed)
        return fail(installed.error());
    std::cout << "Installed: " << tool::printable(installed->entry) << "\n";
    if (!installed->replaced.isEmpty())
        std::cout << "It takes the place of " << tool::printable(installed->replaced) << ", which has the same identifier.\n";
    return EXIT_SUCCESS;
}

int uninstall(const Words& words) {
    const auto removed = tool::uninstall(words[0]);
    if (!removed)
        return fail(removed.error());
    std::cout << "Removed: " << tool::printable(*removed) << "\n";
    return EXIT_SUCCESS;
}

constexpr std::string_view kAppletHelp =
    "APPLET is the path of a bundle (.app), or the name of an applet that runs, has run before or lies in ~/Applications.\n";

constexpr Command kCommands[] = {
    {"run", "APPLET [FILE...]", "start an applet", "Starts an applet; FILEs are opened with it. One that runs already gets the files.\n", 1,
     SIZE_MAX, run},
    {"list", "", "list the applets that run", "Lists the applets that run: name, process, path; the last one started first.\n", 0, 0, list},
    {"quit", "APPLET", "ask an applet to quit",
     "Asks an applet that runs to quit, and waits for the answer. One that shows a dialog, or whose script refuses, goes on.\n", 1, 1,
     quit},
    {"info", "APPLET", "tell about an applet",
     "Prints name, identifier, version, settings, the handlers of the script and the file types of an applet.\n", 1, 1, info},
    {"install", "APPLET", "put an applet into the desktop's menu",
     "Makes a launcher, an icon and a service of the session bus below ~/.local/share, so that the desktop starts the\n"
     "applet and opens its types of files with it. The bundle stays where it is. Installing again renews it.\n",
     1, 1, install},
    {"uninstall", "APPLET", "take it out again",
     "Removes what install has made; the bundle stays. APPLET may also be a path where no bundle is any more, or the name\n"
     "in the menu.\n",
     1, 1, uninstall},
};

void printHelp() {
    std::cout << "usage: quoddle COMMAND [ARGUMENT...]\n\n";
    for (const Command& command : kCommands) {
        const std::string form = std::string(command.name) + " " + std::string(command.arguments);
        std::cout << "  " << form << std::string(24 - form.size(), ' ') << command.summary << "\n";
    }
    std::cout << "\nquoddle COMMAND --help tells more. " << kAppletHelp;
}

int misuse(const std::string& message) {
    std::cerr << "quoddle: " << message << "\nTry 'quoddle --help'.\n";
    return kUsageError;
}

int perform(const Command& command, Words words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    if (std::find(words.begin(), end, "--help") != end) {
        std::cout << "usage: quoddle " << command.name << (command.arguments.empty() ? "" : " ") << command.arguments << "\n\n"
                  << command.help << (command.most > 0 ? kAppletHelp : "");
        return EXIT_SUCCESS;
    }
    if (end != words.end())
        words.erase(end);
    else if (!words.empty() && words[0].starts_with("-"))
        return misuse("unknown option " + words[0]);
    if (words.size() < command.fewest)
        return misuse(std::string(command.name) + " needs the path or name of an applet");
    if (words.size() > command.most)
        return misuse(std::string(command.name) + ": too many arguments");
    return command.perform(words);
}

int performCommandLine(int argc, char** argv) {
    Words words(argv + 1, argv + argc);
    if (words.empty() || words[0] == "--help") {
        printHelp();
        return words.empty() ? kUsageError : EXIT_SUCCESS;
    }
    const auto* command = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command& c) { return c.name == words[0]; });
    if (command == std::end(kCommands))
        return misuse("unknown command " + words[0]);
    words.erase(words.begin());
    QCoreApplication application(argc, argv);
    return perform(*command, std::move(words));
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle", argc, argv, &performCommandLine);
}
