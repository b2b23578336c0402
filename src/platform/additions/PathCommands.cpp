// SPDX-License-Identifier: MIT
// The commands path to, path to resource.
#include "platform/additions/Bundle.h"
#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"
#include "platform/additions/Folders.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/base/Text.h"

#include <filesystem>
#include <utility>

namespace quoddle::additions {

namespace {

namespace fs = std::filesystem;

/// Codes that applications give to folders for which path to has another code.
constexpr std::pair<DescType, DescType> kCodesOfApplications[] = {
    {"dskp"_4cc, "desk"_4cc},
    {"home"_4cc, "cusr"_4cc},
    {"sdsk"_4cc, "boot"_4cc},
    {"cprf"_4cc, "pref"_4cc},
    {"%doc"_4cc, "\xb5"
                 "doc"_4cc},
    {"dtp$"_4cc, "dtp\xc4"_4cc},
    {"scr$"_4cc, "scr\xc4"_4cc},
    {"$scr"_4cc, "\xc4scr"_4cc},
};

/// The code of a folder or a domain, 0 when the parameter is none. Inside a tell the application's own word for a folder makes a property
/// of the application, as "trash" does in Finder: the property's code counts.
DescType folderCode(const AEDesc& event, AEKeyword key) {
    DescType code = codeParameter(event, key);
    const AEDesc* given = event.find(key);
    if (given && given->type() == "obj "_4cc) {
        const AEDesc* form = given->find("form"_4cc);
        const AEDesc* data = given->find("seld"_4cc);
        if (form && data && form->code() == "prop"_4cc)
            code = data->code();
    }
    for (const auto& [application, own] : kCodesOfApplications)
        if (code == application)
            return own;
    return code;
}

OSErr pathToFolder(const AEDesc& event, AEDesc& reply, DescType folder) {
    const auto path = wellKnownFolder(folder, folderCode(event, "from"_4cc));
    if (!path)
        return fail(reply, fnfErr, u"This system has no folder “" + utf16FromMacRoman(bytesOf(folder)) + u"” in that domain.");
    std::error_code error;
    if (!fs::is_directory(*path, error)) {
        if (!booleanParameter(event, "crfl"_4cc).value_or(true))
            return failFile(reply, fnfErr, *path);
        if (!fs::create_directories(*path, error) && error)
            return failFile(reply, -120, *path);
    }
    return answer(reply, fileResult(*path, codeParameter(event, "rtyp"_4cc)));
}

} // namespace

OSErr pathTo(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* what = event.find("----"_4cc);
    const DescType folder = folderCode(event, "----"_4cc);
    if (folder == "egfp"_4cc)
        return fail(reply, errAENoSuchObject, u"Which application is frontmost is not known on this desktop.");
    if (folder && folder != "cura"_4cc)
        return pathToFolder(event, reply, folder);
    if (!what || folder == "cura"_4cc || what->type() == "psn "_4cc || what->type() == "kpid"_4cc || what->type() == "scpt"_4cc)
        return answer(reply, fileResult(applicationPath(), codeParameter(event, "rtyp"_4cc)));
    if (what->type() == "furl"_4cc || what->type() == "alis"_4cc) // the value of "me" in a script that was loaded from a file
        if (const auto path = filePathOf(*what))
            return answer(reply, fileResult(*path, codeParameter(event, "rtyp"_4cc)));
    if (what->type() == "aprl"_4cc || what->type() == "bund"_4cc) {
        const auto application = AEFindApplication(*what);
        if (!application || application->path.empty())
            return procNotFound;
        return answer(reply, fileResult(application->path, codeParameter(event, "rtyp"_4cc)));
    }
    const auto text = what->asText();
    return fail(reply, errAENoSuchObject,
                u"Can’t get the path to " + (text ? u"“" + *text + u"”" : std::u16string(u"this object")) +
                    u": only folders and applications have one.");
}

OSErr pathToResource(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const auto name = textParameter(event, "----"_4cc);
    if (!name)
        return failParameter(event, reply, "----"_4cc, u"resource", "utxt"_4cc);
    const auto bundle = bundleParameter(event);
    if (!bundle)
        return failParameter(event, reply, "in B"_4cc, u"in bundle", "file"_4cc);
    const std::string folder = utf8FromUTF16(textParameter(event, "in D"_4cc).value_or(std::u16string()));
    const auto found = resourceInBundle(*bundle, folder, utf8FromUTF16(*name));
    if (!found)
        return fail(reply, resNotFound, u"The resource “" + *name + u"” wasn’t found.");
    return answer(reply, fileResult(*found, 0));
}

} // namespace quoddle::additions
