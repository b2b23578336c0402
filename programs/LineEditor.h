// SPDX-License-Identifier: MIT
// A line typed on a terminal, with editing, history and completion.
//
// Decision: the library for this (libedit) is loaded when somebody types, because linking to it would cost every run of a script a part of
// its start. Without the library the terminal's own editing is all there is.
#pragma once

#include "Completion.h"

#include <functional>
#include <memory>
#include <string>

namespace quoddle::tool {

class LineEditor {
public:
    /// `phrases` is asked whenever the Tab key is pressed. The history is kept in `historyFile`, or in what a link
    /// there leads to; other lines in it are kept. What is no regular file is left alone, with a message printed.
    LineEditor(std::function<std::vector<std::string>()> phrases, std::string historyFile);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    /// False when the library is not installed, or the terminal cannot be edited on.
    bool isUsable() const { return mState != nullptr; }

    enum class Ending { Entered, Abandoned, EndOfInput };
    /// Reads a line, without its end. Abandoned means that Control-C was pressed. Only for a usable editor.
    Ending read(const std::string& prompt, std::string& line);

private:
    struct State;
    std::unique_ptr<State> mState;
};

/// $XDG_STATE_HOME/quoddle/NAME, by default below ~/.local/state.
std::string stateFile(const std::string& name);

} // namespace quoddle::tool
