// SPDX-License-Identifier: MIT
// quoddle: starts applets, lists running ones, and makes applets known to the desktop. Its commands are rows of a table; the work is done
// in the files beside this one.
#include "AppletAdoption.h"
#include "AppletInfo.h"
#include "AppletInstallation.h"
#include "Applets.h"
#include "InstallationLock.h"
#include "MissingParts.h"
#include "PackedApplets.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/base/ProgramMain.h"
#include "ProgramTables.h"
#include "ScriptOpening.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace quoddle;

namespace {

using Words = std::vector<std::string>;

const tool::Command& commandNamed(std::string_view name) {
    return *std::ranges::find(tool::kQuoddle.commands, name, &tool::Command::name);
}

int fail(const std::string& message) {
    std::cerr << "quoddle: " << tool::printable(QString::fromStdString(message)) << "\n";
    return EXIT_FAILURE;
}

struct FoundApplet {
    std::shared_ptr<NSBundle> bundle;
    std::optional<tool::PackedApplet> firstKept; ///< the packed applet, when this user has neither packed nor run it before
};

/// The applet that a word means. A packed one is unpacked, and kept.
Result<FoundApplet, std::string> findOrKeepApplet(const std::string& word) {
    std::string path = word;
    std::optional<tool::PackedApplet> firstKept;
    if (tool::isPackedApplet(word)) {
        const auto packed = tool::PackedApplet::read(word);
        if (!packed)
            return Failure{packed.error().toStdString()};
        if (!packed->isKnown())
            firstKept = *packed;
        const auto kept = packed->keep();
        if (!kept)
            return Failure{kept.error().toStdString()};
        path = *kept;
    }
    auto bundle = tool::findApplet(path);
    if (!bundle)
        return Failure{std::move(bundle.error())};
    return FoundApplet{std::move(*bundle), std::move(firstKept)};
}

int run(const tool::Arguments& arguments) {
    const Words& words = arguments.rest;
    const auto shell = tool::findShell();
    if (!shell)
        return fail(shell.error());
    const auto found = findOrKeepApplet(words[0]);
    if (!found)
        return fail(found.error());
    Words line = words;
    line[0] = found->bundle->bundlePath().toStdString();
    line.insert(line.begin(), *shell);
    std::vector<char*> raw;
    for (std::string& argument : line)
        raw.push_back(argument.data());
    raw.push_back(nullptr);
    ::execv(shell->c_str(), raw.data());
    return fail(*shell + ": cannot be started: " + std::strerror(errno));
}

int openFile(const tool::Arguments& arguments) {
    const Words& words = arguments.rest;
    std::error_code error;
    if (std::filesystem::is_directory(words[0], error))
        return run(arguments);
    if (tool::isPackedApplet(words[0])) {
        const auto bundle = tool::openPackedApplet(words[0]);
        if (!bundle)
            return fail(bundle.error());
        tool::Arguments unpacked = arguments;
        unpacked.rest[0] = *bundle;
        return bundle->empty() ? EXIT_SUCCESS : run(unpacked);
    }
    return words.size() == 1 ? fail(tool::openScript(words[0])) : fail(words[0] + ": only applets are opened with files");
}

/// Why the folder in which running applets are found cannot be used; empty when it can. Without it no applet would seem to run.
std::string whatIsWrongWithRuntimeDirectory() {
    const auto directory = AERuntimeDirectory();
    return directory ? "" : AERuntimeDirectoryAdvice(directory.error());
}

int list(const tool::Arguments&) {
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
    if (tool::isPackedApplet(word)) {
        const auto packed = tool::PackedApplet::read(word);
        const auto kept = packed ? packed->keptBundle() : std::nullopt;
        return kept ? AEFindRunningApplicationAtPath(*kept) : std::nullopt;
    }
    if (const auto bundle = tool::findApplet(word))
        return AEFindRunningApplicationAtPath((*bundle)->bundlePath().toStdString());
    for (const AERunningApplication& application : AEListRunningApplications())
        if (application.name == word)
            return application;
    return std::nullopt;
}

int quit(const tool::Arguments& arguments) {
    const Words& words = arguments.rest;
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

/// The bundles that packed applets hold, unpacked for as long as this lives.
class ReadableApplets {
public:
    /// The path of the bundle in a packed applet, or the word itself. The error is a sentence.
    Result<std::string, std::string> pathFor(const std::string& word) {
        if (!tool::isPackedApplet(word))
            return word;
        mFolders.push_back(std::make_unique<QTemporaryDir>());
        const auto packed = tool::PackedApplet::read(word);
        auto bundle = packed ? packed->bundleToRead(*mFolders.back()) : Result<std::string, QString>(Failure{packed.error()});
        if (!bundle)
            return Failure{bundle.error().toStdString()};
        return std::move(*bundle);
    }

private:
    std::vector<std::unique_ptr<QTemporaryDir>> mFolders;
};

int info(const tool::Arguments& arguments) {
    const std::string& word = arguments.rest[0];
    ReadableApplets readable;
    const auto path = readable.pathFor(word);
    const auto bundle = path ? tool::findApplet(*path) : Failure{path.error()};
    if (!bundle)
        return fail(bundle.error());
    bool isComplete = true;
    auto lines = tool::infoOf(**bundle, isComplete);
    for (tool::InfoLine& line : lines)
        if (line.label == "Path" && *path != word)
            line.value = tool::printable(QFileInfo(QFile::decodeName(word.c_str())).absoluteFilePath());
    for (const auto& [label, value] : lines)
        std::cout << label << ":" << std::string(16 - label.size(), ' ') << value << "\n";
    return isComplete ? EXIT_SUCCESS : EXIT_FAILURE;
}

int adopt(const tool::Arguments& arguments) {
    const auto bundle = tool::findApplet(arguments.rest[0]);
    if (!bundle)
        return fail(bundle.error());
    const auto shell = tool::findShell();
    if (!shell)
        return fail(shell.error());
    const auto added = tool::adopt(**bundle, *shell);
    if (!added)
        return fail(added.error());
    if (added->empty())
        std::cout << "Nothing was to be done: the applet has all it needs to start here.\n";
    for (const std::string& part : *added)
        std::cout << "Added: " << part << "\n";
    std::cout << std::flush;
    const std::string path = (*bundle)->bundlePath().toStdString();
    (void)tool::tellMissingParts({{path, path, ""}}, false);
    return EXIT_SUCCESS;
}

int pack(const tool::Arguments& arguments) {
    const auto bundle = tool::findApplet(arguments.rest[0]);
    if (!bundle)
        return fail(bundle.error());
    const std::string output = arguments.valueOr("o", "");
    if (arguments.has("o") && !tool::isPackedAppletName(output))
        return tool::misuse(tool::kQuoddle, commandNamed("pack"), output + ": the name of a packed applet ends in .appletz");
    const auto packed = tool::packApplet((*bundle)->bundlePath().toStdString(), output);
    if (!packed)
        return fail(packed.error());
    std::cout << "Packed: " << tool::printable(QString::fromStdString(*packed)) << "\n";
    return EXIT_SUCCESS;
}

int install(const tool::Arguments& arguments) {
    const tool::InstallationLock lock;
    const auto shell = tool::findShell();
    if (!shell)
        return fail(shell.error());
    const auto found = findOrKeepApplet(arguments.rest[0]);
    if (!found)
        return fail(found.error());
    const auto installed =
        tool::install(*found->bundle, *shell, arguments.has("default") ? tool::DefaultProgram::applet : tool::DefaultProgram::before);
    if (!installed && found->firstKept)
        (void)tool::removeKeptFolder(found->firstKept->folder()); // so that the user is asked before it is opened
    if (!installed)
        return fail(installed.error());
    std::cout << "Installed: " << tool::printable(installed->entry) << "\n";
    if (!installed->replaced.isEmpty())
        std::cout << "It takes the place of " << tool::printable(installed->replaced) << ", which has the same identifier"
                  << (tool::isKeptBundle(installed->replaced) ? "; quoddle uninstall and this path remove that copy.\n" : ".\n");
    return EXIT_SUCCESS;
}

/// The parts of an applet that uninstall takes away.
struct Removal {
    std::optional<tool::InstalledApplet> installed;
    QString bundle;     ///< its path; empty when a packed applet was never unpacked
    QString keptFolder; ///< the folder that goes with the bundle of a packed applet; empty for any other
};

Result<Removal, std::string> removalOfPacked(const std::string& word) {
    const auto packed = tool::PackedApplet::read(word);
    if (!packed)
        return Failure{packed.error().toStdString()};
    auto installed = tool::findInstalledFrom(packed->folder());
    if (!installed && !packed->isKnown())
        return Failure{word + ": not installed, and never opened here"};
    const QString bundle = installed ? installed->bundle : QFile::decodeName(packed->keptBundle().value_or("").c_str());
    return Removal{std::move(installed), bundle, packed->folder()};
}

Result<Removal, std::string> removalFor(const std::string& word) {
    if (tool::isPackedApplet(word))
        return removalOfPacked(word);
    auto installed = tool::findInstalled(word);
    const QString bundle = installed ? installed->bundle : QFileInfo(QFile::decodeName(word.c_str())).canonicalFilePath();
    const QString keptFolder = tool::isKeptBundle(bundle) ? QFileInfo(bundle).path() : QString();
    if (!installed && keptFolder.isEmpty())
        return Failure{std::move(installed.error())};
    return Removal{installed ? std::optional(std::move(*installed)) : std::nullopt, bundle, keptFolder};
}

/// Takes an applet out of the menu, and removes a bundle that was kept for a packed one.
int uninstall(const tool::Arguments& arguments) {
    const tool::InstallationLock lock;
    const auto removal = removalFor(arguments.rest[0]);
    if (!removal)
        return fail(removal.error());
    const bool isKept = !removal->keptFolder.isEmpty();
    if (isKept && AEFindRunningApplicationAtPath(removal->bundle.toStdString()))
        return fail(tool::printable(removal->bundle) + ": the applet runs, and its copy is to be removed; quit it first");
    const bool hadCopy = isKept && QFileInfo::exists(removal->bundle);
    if (const std::string error = removal->installed ? tool::uninstall(*removal->installed) : ""; !error.empty())
        return fail(error);
    if (const QString error = isKept ? tool::removeKeptFolder(removal->keptFolder) : QString(); !error.isEmpty())
        return fail(tool::printable(error));
    for (const QString& removed : {removal->installed ? removal->installed->entry : QString(), hadCopy ? removal->bundle : QString()})
        if (!removed.isEmpty())
            std::cout << "Removed: " << tool::printable(removed) << "\n";
    return EXIT_SUCCESS;
}

int check(const tool::Arguments& arguments) {
    ReadableApplets readable;
    std::vector<tool::CheckedFile> files;
    for (const std::string& word : arguments.rest) {
        const auto path = readable.pathFor(word);
        files.push_back(path ? tool::CheckedFile{word, *path, ""} : tool::CheckedFile{word, "", path.error()});
    }
    return tool::tellMissingParts(files, arguments.has("json"));
}

constexpr struct {
    std::string_view name;
    int (*perform)(const tool::Arguments& arguments);
} kFunctions[] = {{"run", run},     {"open", openFile}, {"list", list}, {"quit", quit},       {"info", info},
                  {"check", check}, {"adopt", adopt},   {"pack", pack}, {"install", install}, {"uninstall", uninstall}};

/// The words behind a command; an exit status when the program is to end at once. Help may be asked for behind the arguments.
Result<tool::Arguments, int> argumentsFor(const tool::Command& command, const Words& words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    if (std::find(words.begin(), end, "--help") == end)
        return tool::parseArguments(tool::kQuoddle, command, words);
    std::cout << tool::helpOf(tool::kQuoddle, command);
    return Failure{EXIT_SUCCESS};
}

int perform(const tool::Command& command, const Words& words) {
    const auto arguments = argumentsFor(command, words);
    if (!arguments)
        return arguments.error();
    return std::find_if(std::begin(kFunctions), std::end(kFunctions), [&](const auto& f) { return f.name == command.name; })
        ->perform(*arguments);
}

int performCommandLine(int argc, char** argv) {
    Words words(argv + 1, argv + argc);
    if (!words.empty() && words[0] == "--help") {
        std::cout << tool::helpOf(tool::kQuoddle);
        return EXIT_SUCCESS;
    }
    if (words.empty())
        return tool::misuse(tool::kQuoddle, "a command is missing");
    const auto commands = tool::kQuoddle.commands;
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const tool::Command& c) { return c.name == words[0]; });
    if (command == commands.end())
        return tool::misuse(tool::kQuoddle, "unknown command " + words[0]);
    words.erase(words.begin());
    QCoreApplication application(argc, argv);
    return perform(*command, words);
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle", argc, argv, &performCommandLine);
}
