// SPDX-License-Identifier: MIT
// What scripts ask the system: time to GMT, system attribute, system info, scripting components; and open location, mount volume,
// summarize, localized string.
#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"
#include "platform/additions/Program.h"
#include "platform/additions/SystemInformation.h"
#include "platform/base/Text.h"

#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace quoddle::additions {

namespace {

using namespace std::chrono_literals;

constexpr auto kOpeningTime = 3s; // a browser that is started by this may run for hours

bool hasScheme(std::string_view url) {
    const std::size_t colon = url.find(':');
    if (colon == std::string_view::npos || colon == 0)
        return false;
    for (std::size_t i = 0; i < colon; ++i) {
        const char c = url[i];
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (!isLetter && (i == 0 || !((c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.')))
            return false;
    }
    return url.find('\0') == std::string_view::npos;
}

} // namespace

OSErr timeToGMT(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return answer(reply, AEDesc::ofInt32(static_cast<std::int32_t>(local.tm_gmtoff)));
}

/// The environment: one variable, or the names of all. The selectors of older systems have no meaning here.
OSErr systemAttribute(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    if (event.find("has "_4cc))
        return fail(reply, errAEEventFailed, u"System attributes are environment variables here; they have no bits to test.");
    if (event.find("----"_4cc)) {
        const auto name = textParameter(event, "----"_4cc);
        if (!name)
            return failParameter(event, reply, "----"_4cc, u"attribute", "utxt"_4cc);
        const char* value = std::getenv(utf8FromUTF16(*name).c_str());
        return answer(reply, AEDesc::ofUTF8(value ? value : ""));
    }
    AEDesc names = AEDesc::list();
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view entry = *variable;
        (void)names.insertItem(0, AEDesc::ofUTF8(entry.substr(0, entry.find('='))));
    }
    return answer(reply, std::move(names));
}

OSErr systemInfo(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    return answer(reply, systemInformation());
}

OSErr scriptingComponents(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    return answer(reply, AEDesc::list({AEDesc::ofText(u"AppleScript")})); // the one language of this system
}

OSErr openLocation(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const auto text = textParameter(event, "----"_4cc);
    if (!text)
        return failParameter(event, reply, "----"_4cc, u"URL", "utxt"_4cc);
    const std::string url = utf8FromUTF16(*text);
    if (!hasScheme(url))
        return fail(reply, paramErr, u"“" + *text + u"” is not a URL.");
    const auto outcome = runProgram({"xdg-open", url}, kOpeningTime, context);
    if (!outcome)
        return fail(reply, errAEEventFailed, u"The location can’t be opened: xdg-open (package xdg-utils) was not found.");
    if (outcome->wasCancelled)
        return userCanceledErr;
    if (outcome->exitStatus != 0)
        return fail(reply, errAEEventFailed, u"The location “" + *text + u"” could not be opened: no application takes it.");
    return noErr;
}

OSErr mountVolume(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    return fail(reply, errAEEventFailed,
                u"Volumes are not mounted by scripts on this system. Use gio mount or udisksctl in a do shell script command.");
}

OSErr summarize(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    return fail(reply, errAEEventFailed, u"There is nothing on this system that summarizes texts.");
}

/// Without a bundle there is no table to look into, and a key without an entry stands for itself.
OSErr localizedString(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const auto key = textParameter(event, "----"_4cc);
    if (!key)
        return failParameter(event, reply, "----"_4cc, u"text", "utxt"_4cc);
    if (event.find("in B"_4cc))
        return fail(reply, errAEEventFailed, u"The tables of other bundles can’t be read here; leave “in bundle” out.");
    return answer(reply, AEDesc::ofText(*key));
}

} // namespace quoddle::additions
