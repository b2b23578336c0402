// SPDX-License-Identifier: MIT
// The instructions that the compiler writes: those of the same source in compiled scripts made on Macs.
#include "platform/applescript/compiler/Compiler.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/machine/StoredCode.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quoddle::compiler {
namespace {

/// The last handler of a script; null, with a failure, when there is none.
const Object* lastHandler(const char* source, ObjectStore& store) {
    auto tree = syntax::parse(utf16FromUTF8(source), store);
    auto script = tree ? compileScript(*tree, store) : Failure{CompileError{tree.error().number, tree.error().message}};
    if (!script) {
        ADD_FAILURE() << utf8FromUTF16(script.error().message);
        return nullptr;
    }
    const auto literals = (*script)->children[block::kLiterals]->children;
    const auto handler = std::find_if(literals.rbegin(), literals.rend(), [](const Object* literal) {
        return literal->isBlock(block::Handler) || literal->isBlock(block::Closure);
    });
    EXPECT_NE(handler, literals.rend());
    return handler == literals.rend() ? nullptr : *handler;
}

/// The names of the instructions of a script's last handler, parted by spaces; those that load a value are left out.
std::string instructions(const char* source) {
    ObjectStore store;
    const Object* handler = lastHandler(source, store);
    if (!handler)
        return {};
    const auto children = handler->children;
    const auto code = machine::decodeStored(children[block::kCode]->bytes, children[block::kLiterals]->children.size(),
                                            children[block::kLocals]->children.size());
    std::string names;
    for (const machine::StoredInstruction& instruction : code.value()) {
        const std::string name = machine::infoOf(instruction.opcode).name;
        if (name == "PushIt" || name == "PushMe" || !name.starts_with("Push"))
            names += names.empty() ? name : " " + name;
    }
    return names;
}

TEST(Instructions, SpecifiersAreGotWhereMacsGetThem) {
    const struct {
        const char* source;
        const char* instructions;
    } kCases[] = {
        {"on f(x)\n{a of x, 1}\nend f", "MakeProperty MakeVector Return"},
        {"on f(x)\n{b:a of x}\nend f", "MakeProperty MakeRecord Return"},
        {"on f(x)\nif a of x then\nend if\nend f", "MakeProperty GetData TestIf Jump Return"},
        {"on f(x)\nif (contents of x) then\nend if\nend f", "MakeProperty GetData TestIf Jump Return"},
        {"on f(x)\nrepeat with i from 1 to length of x\nexit repeat\nend repeat\nend f",
         "LinkRepeat MakeProperty GetData RepeatInRange Exit Dup StoreResult Jump Return"},
        {"on f(x)\na of x = 1\nend f", "MakeProperty Equal Return"},
        {"on f(x)\nset a of x to b of x\nend f", "MakeProperty MakeProperty SetData Return"},
        {"on f(x)\nset x to b of x\nend f", "MakeProperty GetData PopVariable Return"},
    };
    for (const auto& each : kCases)
        EXPECT_EQ(instructions(each.source), each.instructions) << each.source;
}

TEST(Instructions, ContainersAreThoseOfMacs) {
    const struct {
        const char* source;
        const char* instructions;
    } kCases[] = {
        {"on f(x)\napplication id x\nend f", "PushIt MakeElementByKey GetData Return"},
        {"on f(x)\napplication x\nend f", "PushIt MakeElement GetData Return"},
        {"on f()\nPOSIX file \"/tmp\"\nend f", "PushMe MakeElement GetData Return"},
        {"on f(x)\nPOSIX file x\nend f", "PushIt MakeElement GetData Return"},
        {"property p : 1\non f()\nset r to my g(1) of q of p\nend f",
         "PushMe MakeProperty MakeProperty PositionalMessageSend GetData PopVariable Return"},
        {"on f(p)\nset r to my g(1) of q of p\nend f", "PushMe Pop MakeProperty PositionalMessageSend GetData PopVariable Return"},
    };
    for (const auto& each : kCases)
        EXPECT_EQ(instructions(each.source), each.instructions) << each.source;
}

TEST(Instructions, TheTreeOfARunHandlerHasItsStatementsAlone) {
    const std::pair<const char*, std::size_t> cases[] = {
        {"beep\nbeep", 2}, {"-- a\nbeep\n\nbeep\n", 2}, {"property p : 1\nbeep\nbeep\nbeep", 3}};
    for (const auto& [source, count] : cases) {
        ObjectStore store;
        const Object* handler = lastHandler(source, store);
        ASSERT_TRUE(handler) << source;
        EXPECT_EQ(handler->children[block::kTree]->children[0]->children.size(), count) << source;
    }
}

} // namespace
} // namespace quoddle::compiler
