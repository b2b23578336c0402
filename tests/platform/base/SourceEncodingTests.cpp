// SPDX-License-Identifier: MIT
#include "platform/base/SourceEncoding.h"

#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle {
namespace {

using namespace std::string_view_literals;

TEST(SourceEncoding, IsTakenFromTheBytes) {
    for (const auto& [bytes, text] : std::initializer_list<std::pair<std::string_view, std::u16string_view>>{
             {"caf\xC3\xA9"sv, u"café"},                        // UTF-8
             {"\xEF\xBB\xBFx\0y"sv, u"x\0y"sv},                 //
             {"\xFE\xFF\0a\0b"sv, u"ab"},                       // UTF-16 with a mark
             {"\xFF\xFE\x61\0\xE9\0"sv, u"aé"},                 //
             {"\0l\0o\0g\0 \0\"\x30\x42\0\""sv, u"log \"あ\""}, // and without
             {"l\0o\0g\0 \0\"\0\x42\x30\"\0"sv, u"log \"あ\""}, //
             {"a\0b"sv, u"a\0b"sv},                             // zeros alone make no UTF-16
             {"if x \xAD 1 \xC2\r\xC7"
              "class cobj\xC8"sv,
              u"if x ≠ 1 ¬\r«class cobj»"},                                    // Mac Roman
             {"\x81ngstr\x9Am, caf\x8E, \x83t\x8E"sv, u"Ångström, café, Été"}, // pairs that Japanese could be
             {"\x83\x65\x83\x58\x83\x67 \x82\xA0 \x80\" \x81\x82 \xB1\xFD"sv, u"テスト あ \\\" ≠ ｱ©"},
             {"\x82\xA0\x80"sv, u"あ\\"},
             {"\x82\xA0\x81"sv, u"Ç†Å"}, // half a character at the end
             {""sv, u""},
         })
        EXPECT_EQ(utf16FromSourceBytes(bytes), text) << utf8FromUTF16(text);
}

} // namespace
} // namespace quoddle
