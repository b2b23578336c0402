// SPDX-License-Identifier: MIT
// Tells what a script takes from its surroundings: applications, frameworks, libraries and programs of the shell.
//
// Decision: read from the syntax tree, of a source as of a compiled script, so that comments and texts are never mistaken for uses. Names
// that are made while the script runs are not seen. Whether a thing is here is asked of the same functions that a running script asks.
#pragma once

#include "platform/base/Result.h"
#include "SourcePlace.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quoddle::tool {

struct ScriptNeed {
    enum class Kind { application, framework, frameworkName, library, command };
    Kind kind;
    std::string name;
    bool isIdentifier = false; // of an application
    std::vector<std::size_t>
        lines; // of the source, as it is or as it would be printed, from 1, rising; empty for a script without its source
};

/// "application", "framework" and so on.
std::string wordFor(ScriptNeed::Kind kind);

struct ScriptNeeds {
    std::vector<ScriptNeed> needs;        // in the order in which the script comes to them; each once
    std::string note;                     // sentences when the script does not compile or not all of it could be read, otherwise empty
    std::optional<SourcePlace> notePlace; // nullopt when the note is about the whole
};

/// The needs of a script from its bytes, source text or compiled. The error is a sentence.
Result<ScriptNeeds, std::string> needsOf(const std::string& bytes);

/// Whether the thing is on this system. `bundle`: the script's own bundle, or empty.
bool isHere(const ScriptNeed& need, const std::string& bundle);

} // namespace quoddle::tool
