// SPDX-License-Identifier: MIT
// The commands path to, path to resource.
#include "platform/additions/Bundle.h"
#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"
#include "platform/additions/Folders.h"
#include "platform/base/Text.h"

#include <filesystem>

namespace quoddle::additions {

namespace {

namespace fs = std::filesystem;

OSErr pathToFolder(const AEDesc& event, AEDesc& reply, DescType folder) {
    const auto path = wellKnownFolder(folder, codeParameter(event, "from"_4cc));
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
    const DescType folder = codeParameter(event, "----"_4cc);
    if (folder == "egfp"_4cc)
        return fail(reply, errAENoSuchObject, u"Which application is frontmost is not known on this desktop.");
    if (folder && folder != "cura"_4cc)
        return pathToFolder(event, reply, folder);
    if (!what || folder == "cura"_4cc || what->type() == "psn "_4cc || what->type() == "kpid"_4cc || what->type() == "scpt"_4cc)
        return answer(reply, fileResult(applicationPath(), codeParameter(event, "rtyp"_4cc)));
    if (what->type() == "furl"_4cc || what->type() == "alis"_4cc) // the value of "me" in a script that was loaded from a file
        if (const auto path = filePathOf(*what))
            return answer(reply, fileResult(*path, codeParameter(event, "rtyp"_4cc)));
    const auto text = what->asText();
    return fail(reply, errAENoSuchObject,
                u"Can’t get the path to " + (text ? u"“" + *text + u"”" : std::u16string(u"this object")) +
                    u": only folders and the current application have one.");
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
