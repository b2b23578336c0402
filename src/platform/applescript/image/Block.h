// SPDX-License-Identifier: MIT
// Tags of the Block objects of a compiled script, and the order of their children.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quoddle::block {

enum Tag : std::uint8_t {
    Storage = 0,             // items of a constant list
    List = 4,                // count, storage
    Script = 15,             // empty: the AppleScript object; else name, tree, parent, table
    Handler = 16,            // name, tree … as in HandlerChild
    Closure = 17,            // like Handler, with locals that a script object inside it uses
    Examined = 19,           // the object that a `whose` test examines
    Reference = 20,          // specifier
    Property = 21,           // container, property
    Every = 22,              // container, class
    Some = 23,               // container, class
    Element = 24,            // container, class, index or name
    ElementByKey = 25,       // container, class, key, form
    Filter = 26,             // container, test
    Range = 27,              // container, class, from, to
    SourcedTerm = 122,       // code, node or constant that names the application or library which defines it
    OptionalParameter = 123, // variable, class or nil, default value
    OptionalParameterNode = 124,
    Text = 177, // raw UTF-16; the reader and the writer turn it into a Text object and back, so no such block is in memory
};

enum HandlerChild : std::size_t { kName, kTree, kParameters, kLabels, kLocals, kLiterals, kCode, kHandlerChildren };
enum ScriptChild : std::size_t { kScriptName, kScriptTree, kScriptParent, kScriptTable, kScriptChildren };

} // namespace quoddle::block
