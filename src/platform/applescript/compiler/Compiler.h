// SPDX-License-Identifier: MIT
// Compiles a syntax tree to the code of compiled scripts.
//
// The result of compiling a script is its *initialiser*: a handler whose locals are the slots of the script object, in order, and whose
// code gives the properties their first values and binds the handlers. Running the initialiser makes the script object; only then is there
// something to store. Script objects inside handlers have initialisers of their own, which are literals of the handlers around them.
//
// The compiler writes the start and end offsets of the code into the nodes of the tree. It knows no terminology, because the tree holds
// codes.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>
#include <unordered_set>

namespace quoddle::compiler {

struct CompileError {
    OSStatus number = noErr;
    std::u16string message;
    const Object* node = nullptr; // the offending node; never null
};

/// Compiles a script to its initialiser, a Closure or Handler block named "ascrinit". `tree` is a Block, a Line or a statement. New objects
/// go to `store`, which must outlive the result.
Result<Object*, CompileError> compileScript(Object* tree, ObjectStore& store);

/// The names by which statements that are added to a script one after the other know each other's properties, handlers and globals; made by
/// nameKey().
using SharedNames = std::unordered_set<std::string>;

/// The key by which names are compared: the comparison key of an identifier, or the bytes of a code.
std::string nameKey(const Object& name);

/// Compiles a script whose definitions will be moved to another one, where their slots have other places: its handlers find its own names
/// and those of the other one, `names`, by name. `added` gets the names that it defines or declares itself.
Result<Object*, CompileError> compileAddition(Object* tree, ObjectStore& store, const SharedNames& names, SharedNames& added);

} // namespace quoddle::compiler
