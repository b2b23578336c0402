// SPDX-License-Identifier: MIT
// The machine with code that no compiler would write, and the bounds on its time and memory.
#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Opcode.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/machine/Machine.h"
#include "platform/applescript/machine/StoredCode.h"
#include "platform/base/Text.h"

#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace quoddle::machine {
namespace {

std::string code(std::initializer_list<int> bytes) {
    std::string out;
    for (int byte : bytes)
        out += static_cast<char>(byte);
    return out;
}

class MachineTest : public testing::Test {
protected:
    MachineTest()
        : store(std::make_shared<ObjectStore>()),
          machine({[this](Machine&) { return ++actives > limit ? userCanceledErr : noErr; },
                   [this](Machine&, const EventName&, Value, std::span<const Argument>, bool) { return onSend(); }, nullptr}) {}

    Value run(const std::string& bytes, std::vector<Object*> literals = {}, std::vector<Object*> locals = {}) {
        Object* block = store->block(block::Handler, {store->identifier("f"), store->nil(), store->list({}), store->list({}),
                                                      store->vector(locals), store->vector(literals), store->raw(bytes)});
        Script* script = machine.heap().make<Script>();
        script->set(machine.literal(block->children[0], store), machine.literal(block, store));
        return machine.callHandler(script, Value::object(machine.heap().symbol("f")), {});
    }
    /// repeat 300,000 times: {1, 2, 3} & "text"
    Value makeGarbage() {
        const std::string loop =
            code({0x17, 0x00, 0x12, 0xE0, 0x6B, 0x68, 0x18, 0x6B, 0x6C, 0x6D, 0x6D, 0x76, 0xE1, 0x25, 0x5B, 0x4F, 0x59, 0xFF, 0xF5, 0x0F});
        return run(loop, {store->integer(300000), store->text(u"text")});
    }
    std::string shown(Value value) {
        return value.isFailure() ? "error " + std::to_string(machine.error().number) : utf8FromUTF16(language::display(machine, value));
    }

    std::shared_ptr<ObjectStore> store;
    int actives = 0, limit = 1000000;
    std::function<Value()> onSend = [this] { return machine.raise(errAEEventNotHandled, u"?"); };
    Machine machine;
};

TEST_F(MachineTest, RefusesDamagedCode) {
    const int kPush1 = 0x6B, kReturn = 0x0F, kPop = 0x5A, kJump = 0x59, kLiteral = 0xE0, kLocal = 0xA0, kAdd = 0x1E, kNegate = 0x27;
    const struct {
        const char* what;
        std::string bytes;
    } kCases[] = {
        {"unknown instruction", code({0x48})},
        {"nothing to return", code({kReturn})},
        {"too little on the stack", code({kPush1, kAdd, kReturn})},
        {"pop of nothing", code({kPop, kPush1, kReturn})},
        {"literal that is not there", code({kLiteral + 3, kReturn})},
        {"local that is not there", code({kLocal + 1, kReturn})},
        {"jump out of the code", code({kJump, 0x10, 0x00})},
        {"jump into an instruction", code({kJump, 0x00, 0x01, kPush1, kReturn})},
        {"truncated operand", code({kPush1, kJump, 0x00})},
        {"count that is no literal", code({kPush1, 0x29, 0x76, kReturn})},
        {"count larger than the stack", code({0x6D, 0x76, kReturn})},
        {"end of a scope that never began", code({kPush1, 0x55, kReturn})},
        {"ways that meet with different stacks", code({0x65, 0x1D, 0x00, 0x03, kPush1, kPush1, kReturn})},
        {"a loop's instruction without a loop", code({kPush1, kPush1, kPush1, kPush1, 0x1C, 0x00, 0x00})},
        {"more code than any handler has", code({kPush1}) + std::string(kLongestCode, kNegate) + code({kReturn})},
    };
    for (const auto& row : kCases)
        EXPECT_EQ(shown(run(row.bytes)), "error -1702") << row.what;
    run(code({kPush1, 0x48, kReturn}));
    EXPECT_EQ(shown(machine.error().message), "\"Some data could not be read. (Unknown instruction 0x48 at byte 1.)\"");
    EXPECT_EQ(shown(run(code({kPush1, kPush1, kAdd, kReturn}))), "2");
    EXPECT_EQ(shown(run("")), ""); // no code: no result
}

TEST_F(MachineTest, SurvivesAnyCode) {
    std::mt19937 random(7);
    std::vector<std::uint8_t> known;
    for (int byte = 0; byte < 256; ++byte)
        if (infoOf(static_cast<Opcode>(byte)).name)
            known.push_back(static_cast<std::uint8_t>(byte));
    limit = 2; // so that endless loops are stopped
    std::vector<Object*> literals{store->integer(3),       store->text(u"abc"),
                                  store->code("cobj"_4cc), store->identifier("f"),
                                  store->code("bool"_4cc), store->event(std::string("corecnte****\0\0\0\0\0\0\0\0****", 24)),
                                  store->code("pnam"_4cc), store->list({store->constant("cons"_4cc, "case"_4cc)})};
    std::vector<Object*> locals{store->identifier("a"), store->identifier("b"), store->identifier("c")};
    for (int round = 0; round < 30000; ++round) {
        std::string bytes;
        const std::size_t length = 1 + random() % 24;
        while (bytes.size() < length) {
            const std::uint8_t opcode = known[random() % known.size()];
            bytes += static_cast<char>(opcode);
            const Operands operands = infoOf(static_cast<Opcode>(opcode)).operands;
            if (opcode < 0xA0 && operands != Operands::None) {
                bytes += '\0';
                bytes += static_cast<char>(random() % 8);
                if (operands == Operands::Scope || operands == Operands::TwoLiterals) {
                    bytes += '\0';
                    bytes += static_cast<char>(random() % 8);
                }
            }
        }
        bytes += '\x0F';
        actives = 0;
        (void)run(bytes, literals, locals);
    }
}

TEST_F(MachineTest, EndsATightLoopSoon) {
    limit = 1;                               // the second question is answered with a cancel
    const std::clock_t start = std::clock(); // processor time of this process only
    // repeat (LinkRepeat, push undefined, pop, jump back)
    EXPECT_EQ(shown(run(code({0x17, 0x00, 0x0B, 0x68, 0x5A, 0x68, 0x5B, 0x4F, 0x59, 0xFF, 0xFB, 0x00, 0x0F}))), "error -128");
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 20);
}

TEST_F(MachineTest, CollectsWhatALoopDrops) {
    EXPECT_EQ(shown(makeGarbage()), "{1, 2, 3, \"text\"}");
    EXPECT_GT(machine.heap().collections(), 0u);
    EXPECT_LT(machine.heap().allocated(), std::size_t(64) << 20);
}

TEST_F(MachineTest, CollectsWhileACommandWaits) {
    // {{1, 2}, (a command with {1, 2} as its direct parameter)}, the command answered by a script that makes garbage
    const std::string command = code({0x6B, 0x6C, 0x6C, 0x76, 0x6B, 0x6C, 0x6C, 0x76, 0x6A, 0x0C, 0x00, 0x00, 0x6C, 0x76, 0x0F});
    Object* event = store->event(std::string("testwait****\0\0\0\0\0\0\0\0****", 24));
    onSend = [this] {
        // Roots go in any order: another thread's newer root may go before or after an older one.
        auto first = std::make_unique<Heap::Root>(machine.heap(), Value::object(machine.heap().text(u"first")));
        const Heap::Root second(machine.heap(), Value::object(machine.heap().text(u"second")));
        first.reset();
        makeGarbage();
        return second.get();
    };
    EXPECT_EQ(shown(run(command, {event})), "{{1, 2}, \"second\"}");
    EXPECT_GT(machine.heap().collections(), 0u);

    const std::size_t collections = machine.heap().collections();
    const Heap::Hold hold(machine.heap());
    makeGarbage();
    machine.collect();
    EXPECT_EQ(machine.heap().collections(), collections);
}

} // namespace
} // namespace quoddle::machine
