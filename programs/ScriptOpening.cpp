// SPDX-License-Identifier: MIT
#include "ScriptOpening.h"

#include "Applets.h"
#include "PackedApplets.h"
#include "platform/foundation/Translations.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

namespace fs = std::filesystem;

constexpr char kOpening[] = R"script(on run {question, cancelName, runName, windowTitle, failure, program, scriptFile}
	try
		display dialog question buttons {cancelName, runName} default button cancelName cancel button cancelName with icon caution with title windowTitle
	on error number -128
		return
	end try
	try
		do shell script quoted form of program & " -- " & quoted form of scriptFile
	on error message
		if message does not end with "(-128)" then display alert failure message message as critical
	end try
	return
end run
)script";

constexpr char kAsking[] = R"script(on run {question, cancelName, runName, windowTitle}
	try
		display dialog question buttons {cancelName, runName} default button cancelName cancel button cancelName with icon caution with title windowTitle
	on error number -128
		return "no"
	end try
	return "yes"
end run
)script";

constexpr char kTelling[] = R"script(on run {heading, explanation}
	display alert heading message explanation as critical
	return
end run
)script";

constexpr qsizetype kLongestName = 80;

QString shownName(const fs::path& file) {
    return QString::fromStdString(printable(QFile::decodeName(file.filename().c_str()).right(kLongestName)));
}

/// The first arguments of the two scripts that ask.
QStringList textsOf(const QString& question, const QString& title) {
    return {question, QCoreApplication::translate("ScriptOpening", "Cancel"), QCoreApplication::translate("ScriptOpening", "Run"), title};
}

std::string osascript() {
    std::error_code error;
    return (fs::read_symlink("/proc/self/exe", error).parent_path() / "osascript").string();
}

/// The output of one of the scripts above; the error is what osascript complains about.
Result<QString, std::string> runScript(const char* script, const QStringList& arguments) {
    QProcess process;
    process.start(QFile::decodeName(osascript().c_str()), QStringList{u"-e"_s, QString::fromUtf8(script), u"--"_s} + arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return Failure{osascript() + ": " + process.errorString().toStdString()};
    if (process.exitCode() != 0)
        return Failure{process.readAllStandardError().trimmed().toStdString()};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace

std::string openScript(const std::string& path) {
    std::error_code error;
    const fs::path file = fs::absolute(path, error);
    if (!fs::is_regular_file(file, error))
        return path + ": there is no such script";
    installTranslations();
    const QString name = shownName(file);
    QStringList texts =
        textsOf(QCoreApplication::translate("ScriptOpening",
                                            "Do you want to run the script “%1”?\n\nA script can do whatever you can do, with all of "
                                            "your files. Run it only if you know where it comes from.")
                    .arg(name),
                QCoreApplication::translate("ScriptOpening", "Run Script"));
    texts << QCoreApplication::translate("ScriptOpening", "“%1” could not finish.").arg(name);
    const std::string program = osascript();
    std::vector<std::string> words = {"osascript", "-e", kOpening, "--"};
    for (const QString& text : texts)
        words.push_back(text.toStdString());
    words.insert(words.end(), {program, file.string()});
    std::vector<char*> raw;
    for (std::string& word : words)
        raw.push_back(word.data());
    raw.push_back(nullptr);
    ::execv(program.c_str(), raw.data());
    return program + ": cannot be started: " + std::strerror(errno);
}

Result<std::string, std::string> openPackedApplet(const std::string& path) {
    installTranslations();
    const QString name = shownName(path);
    const auto tell = [&](const QString& error) {
        (void)runScript(kTelling, {QCoreApplication::translate("ScriptOpening", "“%1” could not be opened.").arg(name), error});
        return Failure{printable(error)};
    };
    const auto packed = PackedApplet::read(path, Speech::users);
    if (!packed)
        return tell(packed.error());
    if (!packed->isKnown()) {
        const QString question = QCoreApplication::translate(
            "ScriptOpening",
            "Do you want to run the applet “%1”?\n\nYou have not opened it before. An applet can do whatever you can do, with "
            "all of your files. Run it only if you know where it comes from.");
        const auto answer = runScript(kAsking, textsOf(question.arg(name), QCoreApplication::translate("ScriptOpening", "Run Applet")));
        if (!answer)
            return Failure{"the question whether to run " + name.toStdString() + " could not be asked; quoddle run runs it without (" +
                           answer.error() + ")"};
        if (*answer != "yes"_L1)
            return std::string();
    }
    auto bundle = packed->keep();
    if (!bundle)
        return tell(bundle.error());
    return std::move(*bundle);
}

} // namespace quoddle::tool
