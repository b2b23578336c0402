// SPDX-License-Identifier: MIT
// offset, ASCII character, ASCII number.
#include "platform/additions/Commands.h"
#include "platform/base/SequenceSearch.h"
#include "platform/base/Text.h"

#include <functional>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace quoddle::additions {

namespace {

constexpr std::int32_t kConsiderCase = 0x1;

/// Case-folded, every character as long as it was, so that positions stay the same.
std::u16string folded(std::u16string_view text) {
    std::u16string result(text);
    const auto size = static_cast<std::int32_t>(text.size());
    for (std::int32_t at = 0; at < size;) {
        const std::int32_t start = at;
        if (result[static_cast<std::size_t>(start)] < 0x80) {
            char16_t& letter = result[static_cast<std::size_t>(at++)];
            letter = foldedASCII(letter);
            continue;
        }
        UChar32 character;
        U16_NEXT(text.data(), at, size, character);
        const UChar32 simple = u_foldCase(character, U_FOLD_CASE_DEFAULT);
        if (U16_LENGTH(simple) != at - start)
            continue;
        std::int32_t write = start;
        U16_APPEND_UNSAFE(result.data(), write, simple);
    }
    return result;
}

bool hasOnlySimpleCharacters(std::u16string_view text) {
    char16_t before = 0;
    for (char16_t unit : text) {
        if (unit >= 0x300 || (unit == u'\n' && before == u'\r'))
            return false;
        before = unit;
    }
    return true;
}

/// How many characters of the language, in which a letter with its marks is one, end at or before a position.
std::int32_t charactersBefore(std::size_t position, std::u16string_view text) {
    const std::u16string_view seen = text.substr(0, position + 2); // what follows may belong to the last one
    const auto limit = static_cast<std::int32_t>(position);
    if (hasOnlySimpleCharacters(seen))
        return limit;
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
    if (U_FAILURE(error))
        return limit;
    const icu::UnicodeString view(false, seen.data(), static_cast<std::int32_t>(seen.size())); // no copy
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
    const auto considerations = event.attribute("csig"_4cc);
    const bool considersCase = considerations && considerations->asInt32().value_or(0) & kConsiderCase;
    const std::size_t found =
        considersCase ? findSequence(*text, *sought, 0, std::equal_to()) : findSequence(folded(*text), folded(*sought), 0, std::equal_to());
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
