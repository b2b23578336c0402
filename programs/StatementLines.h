// SPDX-License-Identifier: MIT
// Lines that are typed one after the other, until they are a statement.
//
// Decision: the parser alone says whether something is still open, and it reads the headings of the open blocks with the last line, not all
// that came before. So the time that a block takes is in proportion to its lines, however many they are.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quoddle::tool {

class StatementLines {
public:
    /// Takes the next line. True when no more lines belong to the statement: it is complete, or none could make it right.
    bool add(const std::string& line);
    /// All lines, with line ends between them.
    const std::string& text() const { return mText; }

private:
    void shorten(std::size_t openBlocks);

    std::string mText;
    std::u16string mRead;             // what the parser reads: the lines that open blocks, and what came since the last of them
    std::vector<std::size_t> mBlocks; // where in it the line that opened each block begins
    std::size_t mSettled = 0;         // how much of it is nothing but those lines
    bool mIsTextOpen = false;         // a text or a comment goes on
    bool mMayShorten = true, mIsShortened = false;
};

} // namespace quoddle::tool
