// SPDX-License-Identifier: MIT
// The commands read and write.
#include "platform/additions/Commands.h"
#include "platform/additions/FileAccess.h"
#include "platform/additions/FileData.h"
#include "platform/additions/FileParameter.h"
#include "platform/ae/AEFlatten.h"
#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle::additions {

namespace {

constexpr std::size_t kMaximumRead = std::size_t(128) << 20;
constexpr std::size_t kChunk = std::size_t(1) << 20; // bytes between two checks whether the script was cancelled
constexpr OSStatus kBeforeBeginning = -40, kNotWritable = -61;

struct Range {
    std::int64_t start = 0;
    std::int64_t count = INT64_MAX; ///< the default: up to the end
    OSStatus status = noErr;
};

/// The range that "from", "for" and "to" ask for. It begins at `mark` without "from".
Range rangeOf(const AEDesc& event, std::int64_t mark, std::int64_t size) {
    Range range{.start = mark};
    if (const AEDesc* from = event.find("rdfm"_4cc)) {
        const auto position = filePosition(*from, size);
        if (!position)
            range.status = kBeforeBeginning;
        range.start = position.value_or(0);
    }
    if (const AEDesc* count = event.find("rdfr"_4cc)) {
        const auto number = count->asInt64();
        if (!number || *number < 0)
            range.status = paramErr;
        range.count = number.value_or(0);
    } else if (const AEDesc* to = event.find("rdto"_4cc)) {
        const auto last = filePosition(*to, size);
        const bool isEnd = to->type() == "enum"_4cc || to->type() == "type"_4cc;
        if (!last)
            range.status = kBeforeBeginning;
        else if (!isEnd)
            range.count = std::max<std::int64_t>(*last - range.start + 1, 0);
    }
    return range;
}

/// The text before which or behind which reading stops, as bytes of the file.
struct Delimiter {
    std::string bytes;
    bool isIncluded = false;
};

std::optional<Delimiter> stopOf(const AEDesc& event, DescType asClass) {
    for (AEKeyword key : {"rdut"_4cc, "rbfr"_4cc})
        if (const AEDesc* text = event.find(key))
            return Delimiter{fileBytesOf(*text, isWideText(asClass) ? "utxt"_4cc : "utf8"_4cc).value_or(std::string()), key == "rdut"_4cc};
    return std::nullopt;
}

/// Finds bytes; for UTF-16 only at positions of whole units.
std::size_t findBytes(std::string_view in, std::string_view sought, std::size_t from, bool wide) {
    std::size_t found = in.find(sought, from);
    while (wide && found != std::string_view::npos && found % 2 != 0)
        found = in.find(sought, found + 1);
    return found;
}

struct Bytes {
    std::string bytes;
    std::size_t consumed = 0;
    OSStatus status = noErr;
};

Bytes readRange(const OpenFile& file, const Range& range, const std::optional<Delimiter>& stop, bool wide,
                const AEHandlerContext& context) {
    Bytes result;
    while (static_cast<std::int64_t>(result.bytes.size()) < range.count) {
        if (context.isCancelled())
            result.status = userCanceledErr;
        else if (result.bytes.size() >= kMaximumRead)
            result.status = memFullErr;
        if (result.status != noErr)
            return result;
        const auto rest = range.count - static_cast<std::int64_t>(result.bytes.size());
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(rest, kChunk));
        auto chunk = file.read(range.start + static_cast<std::int64_t>(result.bytes.size()), wanted);
        if (!chunk) {
            result.status = chunk.error();
            return result;
        }
        const std::size_t before = result.bytes.size();
        result.bytes += *chunk;
        if (stop && !stop->bytes.empty()) {
            const std::size_t from = before - std::min(before, stop->bytes.size() - 1);
            const std::size_t found = findBytes(result.bytes, stop->bytes, from, wide);
            if (found != std::string::npos) {
                result.consumed = found + stop->bytes.size();
                result.bytes.resize(stop->isIncluded ? result.consumed : found);
                return result;
            }
        }
        if (chunk->size() < wanted)
            break;
    }
    result.consumed = result.bytes.size();
    return result;
}

std::optional<std::vector<std::string>> separatorsOf(const AEDesc& event, bool wide) {
    const AEDesc* given = event.find("deli"_4cc);
    if (!given)
        return std::nullopt;
    std::vector<std::string> separators;
    const auto add = [&](const AEDesc& text) {
        auto bytes = fileBytesOf(text, wide ? "utxt"_4cc : "utf8"_4cc);
        if (bytes && !bytes->empty())
            separators.push_back(std::move(*bytes));
    };
    if (given->isList())
        std::for_each(given->items().begin(), given->items().end(), add);
    else
        add(*given);
    return separators;
}

/// Splits the bytes into items. A separator ends an item, so one at the very end does not begin another. nullopt also when there are too
/// many items.
std::optional<AEDesc> itemsOf(std::string_view bytes, const std::vector<std::string>& separators, DescType asClass) {
    std::vector<AEDesc> items;
    std::vector<std::size_t> next(separators.size(), 0); // the next place of each separator, kept so that no separator is looked for twice
    for (std::size_t start = 0; start < bytes.size();) {
        std::size_t end = bytes.size(), after = bytes.size();
        for (std::size_t i = 0; i < separators.size(); ++i) {
            if (next[i] != std::string_view::npos && (next[i] < start || start == 0))
                next[i] = findBytes(bytes, separators[i], start, isWideText(asClass));
            if (next[i] < end) {
                end = next[i];
                after = end + separators[i].size();
            }
        }
        auto item = valueOfFileBytes(bytes.substr(start, end - start), asClass);
        if (!item || items.size() >= kAEMaxCount)
            return std::nullopt;
        items.push_back(std::move(*item));
        start = after;
    }
    return AEDesc::list(std::move(items));
}

Range rangeToRead(const AEDesc& event, const FileTarget& target, DescType asClass) {
    const auto size = target.file->size();
    if (!size)
        return Range{.status = size.error()};
    Range range = rangeOf(event, target.isOwn ? 0 : target.file->mark, *size);
    // Without a count one number is read.
    if (fixedSizeOf(asClass) && range.count == INT64_MAX && !event.find("deli"_4cc) && !event.find("rdto"_4cc))
        range.count = static_cast<std::int64_t>(fixedSizeOf(asClass));
    return range;
}

} // namespace

OSErr readFileContents(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const AEDesc* given = event.find("----"_4cc);
    if (!given)
        return failParameter(event, reply, "----"_4cc, u"file", "file"_4cc);
    const DescType asClass = codeParameter(event, "as  "_4cc);
    const FileTarget target = fileTargetOf(*given, false);
    if (!target.file)
        return failTarget(reply, target, *given);
    const auto separators = separatorsOf(event, isWideText(asClass));
    const DescType itemClass = separators && asClass == "list"_4cc ? 0 : asClass;
    std::lock_guard lock(target.file->mutex());
    const Range range = rangeToRead(event, target, itemClass);
    if (range.status != noErr)
        return failFile(reply, range.status, target.path);
    Bytes read = readRange(*target.file, range, stopOf(event, asClass), isWideText(asClass), context);
    if (read.status == userCanceledErr)
        return userCanceledErr;
    if (read.status != noErr)
        return failFile(reply, read.status, target.path);
    if (read.consumed == 0 && range.count > 0)
        return fail(reply, eofErr, u"End of file error.");
    std::size_t used = read.bytes.size();
    const auto value = separators ? itemsOf(read.bytes, *separators, itemClass) : valueOfFileBytes(read.bytes, itemClass, &used);
    if (!value)
        return fail(reply, errAECoercionFail, u"Can’t make some data into the expected type.");
    target.file->mark = range.start + static_cast<std::int64_t>(used < read.bytes.size() ? used : read.consumed);
    return answer(reply, *value);
}

OSErr writeFileContents(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* value = event.find("----"_4cc);
    const AEDesc* given = event.find("refn"_4cc);
    if (!value || !given)
        return failParameter(event, reply, value ? "refn"_4cc : "----"_4cc, value ? u"to" : u"data", "****"_4cc);
    const FileTarget target = fileTargetOf(*given, true);
    if (!target.file)
        return failTarget(reply, target, *given);
    if (!target.file->isWritable())
        return failFile(reply, kNotWritable, target.path);
    auto bytes = fileBytesOf(*value, codeParameter(event, "as  "_4cc));
    if (!bytes)
        return failParameter(event, reply, "----"_4cc, u"data", codeParameter(event, "as  "_4cc));
    if (const AEDesc* count = event.find("nmwr"_4cc)) {
        const auto number = count->asInt64();
        if (!number || *number < 0)
            return failParameter(event, reply, "nmwr"_4cc, u"for", "long"_4cc);
        bytes->resize(std::min(bytes->size(), static_cast<std::size_t>(*number)));
    }
    std::lock_guard lock(target.file->mutex());
    std::int64_t position = target.file->mark;
    if (const AEDesc* start = event.find("wrat"_4cc)) {
        const auto size = target.file->size();
        const auto at = size ? filePosition(*start, *size) : std::nullopt;
        if (!at)
            return failFile(reply, kBeforeBeginning, target.path);
        position = *at;
    }
    const OSStatus status = target.file->write(position, *bytes);
    if (status != noErr)
        return failFile(reply, status, target.path);
    target.file->mark = position + static_cast<std::int64_t>(bytes->size());
    return noErr;
}

} // namespace quoddle::additions
