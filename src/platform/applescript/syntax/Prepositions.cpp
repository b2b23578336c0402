// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/Keyword.h"

namespace quoddle::syntax {

namespace {

constexpr Preposition kPrepositions[] = {
    {{Keyword::About}, "abou"_4cc, "about"},
    {{Keyword::Above}, "abve"_4cc, "above"},
    {{Keyword::Against}, "agst"_4cc, "against"},
    {{Keyword::Apart, Keyword::From}, "aprt"_4cc, "apart from"},
    {{Keyword::Around}, "arnd"_4cc, "around"},
    {{Keyword::Aside, Keyword::From}, "asdf"_4cc, "aside from"},
    {{Keyword::At}, "at  "_4cc, "at"},
    {{Keyword::Below}, "belw"_4cc, "below"},
    {{Keyword::Beneath}, "bnth"_4cc, "beneath"},
    {{Keyword::Beside}, "bsid"_4cc, "beside"},
    {{Keyword::Between}, "btwn"_4cc, "between"},
    {{Keyword::By}, "by  "_4cc, "by"},
    {{Keyword::For}, "for "_4cc, "for"},
    {{Keyword::From}, "from"_4cc, "from"},
    {{Keyword::Instead, Keyword::Of}, "isto"_4cc, "instead of"},
    {{Keyword::Into}, "into"_4cc, "into"},
    {{Keyword::On}, "on  "_4cc, "on"},
    {{Keyword::Onto}, "onto"_4cc, "onto"},
    {{Keyword::Out, Keyword::Of}, "outo"_4cc, "out of"},
    {{Keyword::Over}, "over"_4cc, "over"},
    {{Keyword::Since}, "snce"_4cc, "since"},
    {{Keyword::Through}, "thgh"_4cc, "through"},
    {{Keyword::Thru}, "thru"_4cc, "thru"},
    {{Keyword::To}, "to  "_4cc, "to"},
    {{Keyword::Under}, "undr"_4cc, "under"},
    {{Keyword::In}, "in  "_4cc, "in"},
};

} // namespace

std::span<const Preposition> prepositions() {
    return kPrepositions;
}

std::string_view prepositionOf(FourCharCode code) {
    for (const Preposition& row : kPrepositions) {
        if (row.code == code)
            return row.spelling;
    }
    return {};
}

} // namespace quoddle::syntax
