// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/Code.h"

#include "platform/applescript/image/Block.h"
#include "platform/applescript/machine/translator/HandlerTranslator.h"

#include <algorithm>

namespace quoddle::machine {

namespace {

bool isComplete(const Object& block) {
    return block.children.size() >= block::kHandlerChildren && block.children[block::kCode]->kind == ObjectKind::Raw;
}

std::unique_ptr<Code> corruptCode(const void* const* labels) {
    auto code = std::make_unique<Code>();
    code->isPositional = true;
    code->instructions.emplace_back();
    code->instructions.back().go = labels[static_cast<std::size_t>(Op::Corrupt)];
    return code;
}

} // namespace

std::uint32_t Code::offsetOf(std::size_t instruction) const {
    auto after = std::upper_bound(positions.begin(), positions.end(), instruction,
                                  [](std::size_t at, const Position& position) { return at < position.instruction; });
    return after == positions.begin() ? 0 : std::prev(after)->offset;
}

std::unique_ptr<Code> translate(const Handler& handler, Heap& heap, LiteralLoader load, void* context, const void* const* labels) {
    if (!isComplete(*handler.source))
        return corruptCode(labels);
    try {
        auto code = std::make_unique<Code>();
        HandlerTranslator translator(handler, heap, load, context, *code);
        translator.run();
        translator.link(labels);
        return code;
    } catch (const Corruption&) {
        return corruptCode(labels);
    }
}

} // namespace quoddle::machine
