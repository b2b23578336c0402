// SPDX-License-Identifier: MIT
// Scope: whose a name is. Scopes alternate between the frame of a handler and the slots of the script object around it, as the depth
// operand of the parent-variable instructions counts them.
#pragma once

#include "platform/applescript/compiler/Compiler.h"

#include <unordered_map>

namespace quoddle::compiler {

class Scope {
public:
    enum class Kind { Frame, Script };

    Scope(Kind kind, Scope* outer) : mKind(kind), mOuter(outer) {}

    Kind kind() const { return mKind; }
    Scope* outer() const { return mOuter; }
    const std::vector<Object*>& names() const { return mNames; }

    /// The index of a name in this scope. Adds the name when it is new.
    std::size_t add(Object* name);
    /// Whether the handler of this scope, or a handler around it, has a variable of the name.
    bool isVariable(const Object& name) const;
    bool contains(const Object& name) const { return mIndexes.contains(nameKey(name)); }

    void declareGlobal(const Object& name) { mGlobals.insert(nameKey(name)); }
    bool isGlobal(const Object& name) const { return mGlobals.contains(nameKey(name)); }

    /// For the scope of a script that is added to another one, whose names these are: they are globals here, and so are to handlers the
    /// names that this scope gets, because the places of slots will be others. The names must outlive the scope.
    void shareNames(const SharedNames& names) { mShared = &names; }
    /// All names that this scope has or declares global, without those of the other script.
    SharedNames ownNames() const;

    enum class Found { Nowhere, Here, Outside, Global };
    struct Place {
        Found found = Found::Nowhere;
        std::size_t depth = 0;
        std::size_t index = 0;
        Kind kind = Kind::Frame; // of the scope that has the name
    };
    /// Finds the nearest scope that has the name or declares it global. A frame that is found further out is marked as captured.
    Place find(const Object& name);

    bool isCaptured() const { return mCaptured; }
    void capture() { mCaptured = true; }

private:
    Kind mKind;
    Scope* mOuter;
    bool mCaptured = false;
    const SharedNames* mShared = nullptr; // null for a script that stands alone
    std::vector<Object*> mNames;
    std::unordered_map<std::string, std::size_t> mIndexes;
    SharedNames mGlobals;
};

} // namespace quoddle::compiler
