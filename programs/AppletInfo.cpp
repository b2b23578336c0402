// SPDX-License-Identifier: MIT
#include "AppletInfo.h"

#include "Applets.h"
#include "DocumentTypes.h"
#include "platform/base/File.h"
#include "platform/base/FourCharCode.h"
#include "platform/base/Text.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/osa/ScriptBundle.h"

#include "ScriptTool.h"
#include <cstring>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

/// The name of a handler, which is given as the event that it handles or as a word.
QString handlerName(const AEDesc& name) {
    static constexpr struct {
        AEEventClass eventClass;
        AEEventID eventID;
        const char* name;
    } kEvents[] = {{"aevt"_4cc, "oapp"_4cc, "run"},    {"aevt"_4cc, "odoc"_4cc, "open"}, {"aevt"_4cc, "quit"_4cc, "quit"},
                   {"aevt"_4cc, "rapp"_4cc, "reopen"}, {"misc"_4cc, "idle"_4cc, "idle"}, {"misc"_4cc, "actv"_4cc, "activate"}};
    FourCharCode codes[2] = {};
    if (name.type() != "evnt"_4cc || name.data().size() != sizeof codes)
        return QString::fromStdString(name.asUTF8().value_or("?"));
    std::memcpy(codes, name.data().data(), sizeof codes);
    for (const auto& row : kEvents)
        if (codes[0] == row.eventClass && codes[1] == row.eventID)
            return QString::fromLatin1(row.name);
    return u"«event "_s + QString::fromStdString(utf8FromUTF16(utf16FromMacRoman(bytesOf(codes[0]) + bytesOf(codes[1])))) + u"»"_s;
}

Result<QStringList, OSStatus> handlersOf(const NSBundle& bundle) {
    const auto bytes = readFile(scriptFileOf(bundle.bundlePath().toStdString()), kLargestScript);
    if (!bytes)
        return Failure{bytes.error()};
    setUp();
    const ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, "ascr"_4cc);
    OSAID script = kOSANullScript;
    AEDesc names;
    OSStatus status = OSALoad(instance, AEDesc("scpt"_4cc, *bytes), kOSAModeNull, script);
    if (status == noErr)
        status = OSAGetHandlerNames(instance, kOSAModeNull, script, names);
    QStringList handlers;
    for (const AEDesc& name : names.items())
        handlers << handlerName(name);
    CloseComponent(instance);
    if (status != noErr)
        return Failure{status};
    return handlers;
}

std::string yesOrNo(bool value) {
    return value ? "yes" : "no";
}

std::string orNone(const QString& text) {
    return text.isEmpty() ? "none" : printable(text);
}

} // namespace

std::vector<InfoLine> infoOf(const NSBundle& bundle, bool& isComplete) {
    const QVariantMap info = bundle.infoDictionary();
    QString version = info.value(u"CFBundleShortVersionString"_s).toString();
    if (version.isEmpty())
        version = info.value(u"CFBundleVersion"_s).toString();
    const QVariant startup = info.value(u"KVBShowStartupScreen"_s);
    const auto handlers = handlersOf(bundle);
    isComplete = bool(handlers);
    return {
        {"Name", printable(bundle.name())},
        {"Identifier", orNone(bundle.bundleIdentifier())},
        {"Version", orNone(version)},
        {"Path", printable(bundle.bundlePath())},
        {"Stays open", yesOrNo(boolValue(info.value(u"KVBStayOpen"_s)))},
        {"Startup screen", yesOrNo(!startup.isValid() || boolValue(startup))},
        {"Handlers",
         handlers ? orNone(handlers->join(u", "_s)) : "unknown: the script could not be read (" + std::to_string(handlers.error()) + ")"},
        {"File types", printable(describe(documentTypesIn(info)))},
        {"Installed", yesOrNo(isInstalledOnDesktop(bundle))},
    };
}

} // namespace quoddle::tool
