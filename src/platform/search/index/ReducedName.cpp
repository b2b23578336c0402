// SPDX-License-Identifier: MIT
#include "platform/search/index/ReducedName.h"

#include "platform/base/Considering.h"
#include "platform/base/Text.h"
#include "platform/base/TextSearch.h"

#include <algorithm>
#include <cstring>
#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace quoddle {

namespace {

constexpr std::uint32_t kConsidering = kDefaultConsiderations & ~kConsiderDiacriticals;

std::string folded(UChar32 character) {
    char16_t units[2];
    std::int32_t count = 0;
    U16_APPEND_UNSAFE(units, count, character);
    return utf8FromUTF16(reduceText({units, static_cast<std::size_t>(count)}, kConsidering).units);
}

/// The ASCII character for a character whose reduced form is one; 0 when there is none of the same class and case.
char plainFor(UChar32 character, std::string_view reduced) {
    if (reduced.size() != 1)
        return 0;
    const UChar32 plain = u_isupper(character) ? u_toupper(reduced.front()) : reduced.front();
    const bool isAlike = u_isalpha(plain) == u_isalpha(character) && u_isdigit(plain) == u_isdigit(character) &&
                         u_islower(plain) == u_islower(character) && u_isupper(plain) == u_isupper(character);
    return isAlike ? static_cast<char>(plain) : '\0';
}

} // namespace

const NameReducer::Character& NameReducer::characterFor(char16_t unit) {
    std::unique_ptr<Block>& block = mBlocks[unit / kBlockSize];
    if (!block) {
        block = std::make_unique<Block>();
        for (std::size_t i = 0; i < kBlockSize; ++i) {
            const auto character = static_cast<UChar32>(unit / kBlockSize * kBlockSize + i);
            if (U_IS_SURROGATE(character))
                continue;
            const std::string reduced = folded(character);
            (*block)[i].isLonger = reduced.size() > 3;
            reduced.copy((*block)[i].folded.data(), 3);
            (*block)[i].plain = plainFor(character, reduced);
        }
    }
    return (*block)[unit % kBlockSize];
}

const NameReducer::Reduced& NameReducer::reduce(std::string_view name) {
    mReduced.text.clear();
    mPlain.clear();
    const auto length = static_cast<std::int32_t>(name.size());
    for (std::int32_t i = 0; i < length;) {
        UChar32 character;
        U8_NEXT_OR_FFFD(name.data(), i, length, character);
        if (character > 0xFFFF) {
            mReduced.text += folded(character);
            continue;
        }
        const Character& known = characterFor(static_cast<char16_t>(character));
        if (known.isLonger)
            mReduced.text += folded(character);
        else
            mReduced.text.append(known.folded.data(), strnlen(known.folded.data(), known.folded.size()));
        if (known.plain)
            mPlain += known.plain;
    }
    // The byte begins a character, rather than continuing one.
    const auto begins = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    mReduced.isPlain = mPlain.size() == static_cast<std::size_t>(std::count_if(name.begin(), name.end(), begins));
    if (mReduced.isPlain)
        mReduced.text = mPlain;
    return mReduced;
}

} // namespace quoddle
