// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/NodeKind.h"

#include "platform/applescript/image/Object.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace quoddle::syntax {

namespace {

constexpr std::uint64_t kMaxSize = 20'000'000; // objects; a shared one counts each time it is used
constexpr std::uint32_t kMaxHeight = 10'000;
constexpr std::uint8_t kUnknown = 0xFF;

/// The least number of children by node tag; kUnknown for tags that are no kind.
constexpr auto kChildren = [] {
    std::array<std::uint8_t, 256> counts{};
    counts.fill(kUnknown);
    auto set = [&counts](std::uint8_t count, std::initializer_list<NodeKind> kinds) {
        for (NodeKind kind : kinds)
            counts[tagOf(kind)] = count;
    };
    using enum NodeKind;
    set(0, {Beginning, End, Me, It, Exit});
    set(1, {Term,   Every,      Some,   Middle,   Before, After, Not,     Negate,   Get,    ReferenceTo, List,
            Record, LinkedList, Return, Continue, Repeat, Block, Literal, Variable, Global, Local});
    set(2, {Element,   Filter,   Equal,       NotEqual, Greater, GreaterOrEqual, Less,        LessOrEqual, StartsWith,
            EndsWith,  Contains, And,         Or,       Add,     Subtract,       Multiply,    Divide,      Quotient,
            Remainder, Power,    Concatenate, As,       Tell,    RepeatTimes,    RepeatWhile, RepeatUntil, Script,
            Handler,   Property, Line,        Of,       Set,     Copy,           Timeout,     Transaction, UsingTerms});
    set(3, {ElementByKey, Range, Call, Considering, Try, Error, RepeatIn, Use});
    set(4, {If});
    set(5, {RepeatFrom});
    return counts;
}();

bool hasShape(const Object* object) {
    if (object->kind != ObjectKind::Node)
        return true;
    std::uint8_t wanted = kChildren[object->tag];
    if (wanted == kUnknown || object->children.size() < wanted)
        return false;
    return !object->isNode(tagOf(NodeKind::Handler)) || object->children[0]->isNode(tagOf(NodeKind::Call));
}

struct Measure {
    std::uint64_t size = 1;
    std::uint32_t height = 1;
    bool open = true; // the walk is still among its children
};

} // namespace

bool isWellFormed(const Object* tree) {
    std::unordered_map<const Object*, Measure> seen;
    struct Step {
        const Object* object;
        std::size_t next = 0;
    };
    std::vector<Step> path{{tree}};
    if (!hasShape(tree))
        return false;
    seen.try_emplace(tree);
    while (!path.empty()) {
        Step& step = path.back();
        if (step.next < step.object->children.size()) {
            const Object* child = step.object->children[step.next++];
            if (child->children.empty() && hasShape(child)) {
                seen[step.object].size += 1;
                continue;
            }
            auto [at, isNew] = seen.try_emplace(child);
            if (isNew) {
                if (!hasShape(child) || path.size() > kMaxHeight)
                    return false;
                path.push_back({child});
                continue;
            }
            if (at->second.open) // the node contains itself
                return false;
            Measure known = at->second;
            Measure& parent = seen[step.object];
            parent.size += known.size;
            parent.height = std::max(parent.height, known.height + 1);
            if (parent.size > kMaxSize || parent.height > kMaxHeight)
                return false;
            continue;
        }
        Measure& done = seen[step.object];
        done.open = false;
        Measure measured = done;
        path.pop_back();
        if (path.empty())
            break;
        Measure& parent = seen[path.back().object];
        parent.size += measured.size;
        parent.height = std::max(parent.height, measured.height + 1);
        if (parent.size > kMaxSize || parent.height > kMaxHeight)
            return false;
    }
    return true;
}

} // namespace quoddle::syntax
