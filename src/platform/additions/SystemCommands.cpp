// SPDX-License-Identifier: MIT
// The commands time to GMT, system attribute, system info, scripting components, open location, mount volume, summarize, localized string.
#include "platform/additions/Bundle.h"
#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"
#include "platform/additions/Program.h"
#include "platform/additions/SystemInformation.h"
#include "platform/base/Text.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <unistd.h>

namespace quoddle::additions {

namespace {

using namespace std::chrono_literals;

constexpr auto kMountingTime = 60s;
constexpr auto kAskingTime = 5s;
constexpr auto kOpeningTime = 3s; // opening may start a browser that runs for hours

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

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~";
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (char c : text) {
        if (kPlain.find(c) != std::string_view::npos)
            out += c;
        else
            out += {'%', kHex[static_cast<unsigned char>(c) >> 4], kHex[static_cast<unsigned char>(c) & 15]};
    }
    return out;
}

/// The URL of a volume. A name of a volume on a server is taken for a share of Windows file sharing. The user name is put in front of the
/// server.
std::string volumeLocation(const std::string& volume, const std::string& server, const std::string& user) {
    std::string url = volume;
    if (!hasScheme(url) && !server.empty())
        url = "smb://" + percentEncoded(server) + "/" + percentEncoded(volume);
    const std::size_t authority = url.find("://");
    if (user.empty() || authority == std::string::npos || url.substr(0, url.find('/', authority + 3)).find('@') != std::string::npos)
        return url;
    return url.insert(authority + 3, percentEncoded(user) + "@");
}

std::string lineBehind(std::string_view text, std::string_view label) {
    const std::size_t at = text.find(label);
    if (at == std::string_view::npos)
        return {};
    text.remove_prefix(at + label.size());
    return std::string(text.substr(0, text.find('\n')));
}

} // namespace

OSErr timeToGMT(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return answer(reply, AEDesc::ofInt32(static_cast<std::int32_t>(local.tm_gmtoff)));
}

/// Gives one variable of the environment, or the names of all. The selectors of older systems have no meaning here.
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
    return answer(reply, AEDesc::list({AEDesc::ofText(u"AppleScript")})); // the only language
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

OSErr mountVolume(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const auto volume = textParameter(event, "----"_4cc);
    if (!volume)
        return failParameter(event, reply, "----"_4cc, u"volume", "utxt"_4cc);
    if (event.find("PASS"_4cc))
        return fail(reply, errAEEventFailed, u"A password can’t be handed on to the desktop. Leave it out and keep it in the keyring.");
    const auto server = textParameter(event, "SRVR"_4cc), user = textParameter(event, "USER"_4cc);
    const std::string url = volumeLocation(utf8FromUTF16(*volume), utf8FromUTF16(server.value_or(u"")), utf8FromUTF16(user.value_or(u"")));
    if (!hasScheme(url))
        return fail(reply, paramErr, u"“" + *volume + u"” is not a URL, and no server is named.");
    const auto mounted = runProgram({"gio", "mount", url}, kMountingTime, context);
    if (!mounted)
        return fail(reply, errAEEventFailed, u"Volumes can’t be mounted: gio (package libglib2.0-bin) was not found.");
    if (mounted->wasCancelled)
        return userCanceledErr;
    // A volume that is mounted already is a success, whatever the first program reported. LC_ALL=C makes the output English.
    const auto info = runProgram({"/usr/bin/env", "LC_ALL=C", "gio", "info", url}, kAskingTime, context);
    const std::string place = info && info->exitStatus == 0 ? lineBehind(info->output, "local path: ") : std::string();
    if (!place.starts_with('/') && (mounted->exitStatus != 0 || mounted->isRunning))
        return fail(reply, -35, u"Disk " + *volume + u" wasn’t found.");
    return place.starts_with('/') ? answer(reply, fileResult(place, "furl"_4cc)) : OSErr(noErr);
}

OSErr summarize(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    return fail(reply, errAEEventFailed, u"There is nothing on this system that summarizes texts.");
}

/// A key without an entry gives the key itself.
OSErr localizedString(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const auto key = textParameter(event, "----"_4cc);
    if (!key)
        return failParameter(event, reply, "----"_4cc, u"text", "utxt"_4cc);
    const auto bundle = bundleParameter(event);
    if (!bundle)
        return failParameter(event, reply, "in B"_4cc, u"in bundle", "file"_4cc);
    std::error_code error;
    if (event.find("in B"_4cc) && !std::filesystem::is_directory(*bundle, error))
        return failFile(reply, fnfErr, *bundle);
    const std::string table = utf8FromUTF16(textParameter(event, "froT"_4cc).value_or(u"Localizable"));
    return answer(reply, AEDesc::ofText(localizedText(*bundle, table, *key).value_or(*key)));
}

} // namespace quoddle::additions
