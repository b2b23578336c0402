// SPDX-License-Identifier: MIT
// The commands offset, ASCII character, ASCII number.
#include "platform/additions/Commands.h"
#include "platform/base/Considering.h"
#include "platform/base/Text.h"
#include "platform/base/TextSearch.h"

#include <memory>
#include <unicode/brkiter.h>

namespace quoddle::additions {

namespace {

bool hasOnlySimpleCharacters(std::u16string_view text) {
    char16_t before = 0;
    for (char16_t unit : text) {
        if (unit >= 0x300 || (unit == u'\n' && before == u'\r'))
            return false;
        before = unit;
    }
    return true;
}

/// The number of the language's characters, each a letter with its marks, that end at or before a position.
std::int32_t charactersBefore(std::size_t position, std::u16string_view text) {
    const std::u16string_view seen = text.substr(0, position + 2); // the units behind the position may be marks of the last character
    const auto limit = static_cast<std::int32_t>(position);
    if (hasOnlySimpleCharacters(seen))
        return limit;
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
    if (U_FAILURE(error))
        return limit;
    const icu::UnicodeString view(false, seen.data(), static_cast<std::int32_t>(seen.size())); // an alias of `seen`, not a copy
    characters->setText(view);
    std::int32_t count = 0;
    for (std::int32_t end = characters->next(); end != icu::BreakIterator::DONE && end <= limit; end = characters->next())
        ++count;
    return count;
}

} // namespace

OSErr offsetOf(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const auto sought = textParameter(event, "psof"_4cc), text = textParameter(event, "psin"_4cc);
    if (!sought)
        return failParameter(event, reply, "psof"_4cc, u"of", "utxt"_4cc);
    if (!text)
        return failParameter(event, reply, "psin"_4cc, u"in", "utxt"_4cc);
    const auto mask = event.attribute("csig"_4cc);
    std::size_t length;
    TextSearch search(*text, consideringOfMask(static_cast<std::uint32_t>(mask ? mask->asInt32().value_or(0) : 0)));
    const std::size_t found = search.find(*sought, 0, length);
    const bool isThere = found != kNotFound && !sought->empty();
    return answer(reply, AEDesc::ofInt32(isThere ? charactersBefore(found, *text) + 1 : 0));
}

OSErr asciiCharacter(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* given = event.find("----"_4cc);
    const auto number = given ? given->asInt32() : std::nullopt;
    if (!number)
        return failParameter(event, reply, "----"_4cc, u"number", "long"_4cc);
    if (*number < 0 || *number > 255)
        return fail(reply, paramErr, u"ASCII character takes a number from 0 to 255.");
    const char byte = static_cast<char>(*number);
    return answer(reply, AEDesc::ofText(utf16FromMacRoman({&byte, 1})));
}

OSErr asciiNumber(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const auto text = textParameter(event, "----"_4cc);
    if (!text)
        return failParameter(event, reply, "----"_4cc, u"text", "utxt"_4cc);
    const std::string byte = macRomanFromUTF16(std::u16string_view(*text).substr(0, 1));
    return answer(reply, AEDesc::ofInt32(byte.empty() ? 0 : static_cast<unsigned char>(byte.front())));
}

} // namespace quoddle::additions
