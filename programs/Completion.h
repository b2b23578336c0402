// SPDX-License-Identifier: MIT
// Completion of the words before the cursor, for a line editor.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle::tool {

struct Completion {
    /// The characters that all choices go on with; behind a single choice a blank too.
    std::string inserted;
    /// The phrases that begin with what is typed, sorted; none of them twice. Empty inside a text.
    std::vector<std::string> choices;
};

/// `line` is the line up to the cursor. The longest run of words at its end that some phrase begins with counts, without regard to case: in
/// "beep display d" that is "display d".
Completion completionOf(std::string_view line, const std::vector<std::string>& phrases);

/// The words of the language and of the Standard Additions, terms of several words whole.
std::vector<std::string> phrasesOfLanguage();

} // namespace quoddle::tool
