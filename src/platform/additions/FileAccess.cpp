// SPDX-License-Identifier: MIT
// The commands open for access, close access, get eof, set eof.
#include "platform/additions/FileAccess.h"

#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"

#include <algorithm>

namespace quoddle::additions {

namespace {

constexpr OSStatus kNotOpen = -38, kBeforeBeginning = -40, kNotWritable = -61;

std::optional<std::int32_t> fileNumber(const AEDesc& file) {
    const DescType type = file.type();
    const bool isNumber = type == "long"_4cc || type == "shor"_4cc || type == "comp"_4cc || type == "doub"_4cc;
    return isNumber ? file.asInt32() : std::nullopt;
}

} // namespace

FileTarget fileTargetOf(const AEDesc& given, bool writable) {
    FileTarget target;
    if (const auto number = fileNumber(given)) {
        target.file = OpenFiles::shared().find(*number);
        target.status = target.file ? noErr : kNotOpen;
        if (target.file)
            target.path = target.file->path();
        return target;
    }
    const auto path = filePathOf(given);
    if (!path) {
        target.status = errAECoercionFail;
        return target;
    }
    target.path = *path;
    target.file = OpenFiles::shared().find(*path);
    if (target.file)
        return target;
    auto opened = OpenFile::open(*path, writable, false);
    target.isOwn = true;
    if (opened)
        target.file = *opened;
    else
        target.status = opened.error();
    return target;
}

OSErr failTarget(AEDesc& reply, const FileTarget& target, const AEDesc& given) {
    if (!target.path.empty())
        return failFile(reply, target.status, target.path);
    (void)reply.put("erob"_4cc, given);
    if (target.status == kNotOpen)
        return fail(reply, kNotOpen, u"File number " + given.asText().value_or(u"?") + u" wasn’t open.");
    return fail(reply, target.status, u"Can’t make some data into the expected type: a file or a file number.");
}

std::optional<std::int64_t> filePosition(const AEDesc& position, std::int64_t size) {
    if ((position.type() == "enum"_4cc || position.type() == "type"_4cc) && position.code() == "eof "_4cc)
        return size;
    const auto number = position.asInt64();
    if (!number)
        return std::nullopt;
    if (*number >= 0)
        return std::max<std::int64_t>(*number - 1, 0);
    return *number >= -size ? std::optional(size + *number) : std::nullopt;
}

OSErr openForAccess(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const auto path = fileParameter(event, "----"_4cc);
    if (!path)
        return failParameter(event, reply, "----"_4cc, u"file", "file"_4cc);
    const auto number = OpenFiles::shared().open(*path, booleanParameter(event, "perm"_4cc).value_or(false));
    return number ? answer(reply, AEDesc::ofInt32(*number)) : failFile(reply, number.error(), *path);
}

OSErr closeAccess(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* given = event.find("----"_4cc);
    if (!given)
        return failParameter(event, reply, "----"_4cc, u"file", "file"_4cc);
    FileTarget target;
    if (const auto number = fileNumber(*given)) {
        target.status = OpenFiles::shared().close(*number);
    } else if (const auto path = filePathOf(*given)) {
        target.path = *path;
        target.status = OpenFiles::shared().close(*path);
    } else {
        target.status = errAECoercionFail;
    }
    return target.status == noErr ? static_cast<OSErr>(noErr) : failTarget(reply, target, *given);
}

OSErr getEOF(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* given = event.find("----"_4cc);
    if (!given)
        return failParameter(event, reply, "----"_4cc, u"file", "file"_4cc);
    const FileTarget target = fileTargetOf(*given, false);
    if (!target.file)
        return failTarget(reply, target, *given);
    const auto size = target.file->size();
    return size ? answer(reply, AEDesc::ofInt64(*size)) : failFile(reply, size.error(), target.path);
}

OSErr setEOF(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* given = event.find("----"_4cc);
    if (!given)
        return failParameter(event, reply, "----"_4cc, u"file", "file"_4cc);
    const AEDesc* wanted = event.find("set2"_4cc);
    const auto size = wanted ? wanted->asInt64() : std::nullopt;
    if (!size)
        return failParameter(event, reply, "set2"_4cc, u"to", "long"_4cc);
    const FileTarget target = fileTargetOf(*given, true);
    if (!target.file)
        return failTarget(reply, target, *given);
    if (!target.file->isWritable())
        return failFile(reply, kNotWritable, target.path);
    if (*size < 0)
        return failFile(reply, kBeforeBeginning, target.path);
    std::lock_guard lock(target.file->mutex());
    const OSStatus status = target.file->setSize(*size);
    if (status != noErr)
        return failFile(reply, status, target.path);
    target.file->mark = std::min(target.file->mark, *size);
    return noErr;
}

} // namespace quoddle::additions
