// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/translator/HandlerTranslator.h"

#include <algorithm>
#include <array>

namespace quoddle::machine {

HandlerTranslator::Method HandlerTranslator::methodFor(Opcode opcode) {
    using T = HandlerTranslator;
    static const std::array<Method, 256> methods = [] {
        std::array<Method, 256> table;
        table.fill(&T::corrupt);
        const auto set = [&table](Method method, std::initializer_list<Opcode> opcodes) {
            for (Opcode each : opcodes)
                table[static_cast<std::size_t>(each)] = method;
        };
        set(&T::compare,
            {Opcode::Equal, Opcode::NotEqual, Opcode::GreaterThan, Opcode::GreaterThanOrEqual, Opcode::LessThan, Opcode::LessThanOrEqual});
        set(&T::binary, {Opcode::StartsWith, Opcode::EndsWith, Opcode::Contains, Opcode::Add, Opcode::Subtract, Opcode::Multiply,
                         Opcode::Divide, Opcode::Quotient, Opcode::Remainder, Opcode::Power, Opcode::Concatenate});
        set(&T::coerce, {Opcode::Coerce});
        set(&T::unary, {Opcode::Negate, Opcode::Not});
        set(&T::shortCircuit, {Opcode::And, Opcode::Or});
        set(&T::testIf, {Opcode::TestIf});
        set(&T::jump, {Opcode::Jump});

        set(&T::send, {Opcode::MessageSend});
        set(&T::call, {Opcode::PositionalMessageSend});
        set(&T::continueCall, {Opcode::PositionalContinue});
        set(&T::continueSend, {Opcode::Continue});
        set(&T::raise, {Opcode::Error});
        set(&T::returnValue, {Opcode::Return});
        set(&T::defineScript, {Opcode::DefineActor});
        set(&T::nothing, {Opcode::EndDefineActor});
        set(&T::defineHandler, {Opcode::DefineProcedure});
        set(&T::defineParent, {Opcode::DefineProperty});

        set(&T::makeCollection, {Opcode::MakeVector, Opcode::MakeList, Opcode::MakeRecord});
        set(&T::makeReference, {Opcode::MakeReference});
        set(&T::clone, {Opcode::Clone});

        set(&T::beginTell, {Opcode::Tell});
        set(&T::endTell, {Opcode::EndTell});
        set(&T::beginTimeout, {Opcode::BeginTimeout});
        set(&T::endTimeout, {Opcode::EndTimeout});
        set(&T::beginTransaction, {Opcode::BeginTransaction});
        set(&T::endTransaction, {Opcode::EndTransaction});
        set(&T::beginConsider, {Opcode::Consider});
        set(&T::endConsider, {Opcode::EndConsider});
        set(&T::beginTry, {Opcode::ErrorHandler});
        set(&T::endTry, {Opcode::EndErrorHandler});
        set(&T::catchError, {Opcode::HandleError});

        set(&T::linkRepeat, {Opcode::LinkRepeat});
        set(&T::exitLoop, {Opcode::Exit});
        set(&T::repeat, {Opcode::RepeatNTimes, Opcode::RepeatInCollection, Opcode::RepeatInRange});
        set(&T::repeatWhile, {Opcode::RepeatWhile, Opcode::RepeatUntil});

        set(&T::makeProperty, {Opcode::MakeProperty});
        set(&T::makeElement, {Opcode::MakeElement});
        set(&T::makeSpecifier, {Opcode::MakeEvery, Opcode::MakeSome, Opcode::MakeElementByKey, Opcode::MakeFilter, Opcode::MakeRange,
                                Opcode::MakeBefore, Opcode::MakeAfter, Opcode::MakeBeginning, Opcode::MakeEnd, Opcode::MakeMiddle});
        set(&T::makeTest, {Opcode::TestEqual, Opcode::TestNotEqual, Opcode::TestGreater, Opcode::TestGreaterOrEqual, Opcode::TestLess,
                           Opcode::TestLessOrEqual, Opcode::TestStartsWith, Opcode::TestEndsWith, Opcode::TestContains, Opcode::TestAnd,
                           Opcode::TestOr, Opcode::TestNot});
        set(&T::getData, {Opcode::GetData});
        set(&T::setData, {Opcode::SetData});
        set(&T::copyData, {Opcode::CopyData});

        set(&T::storeResult, {Opcode::StoreResult});
        set(&T::getResult, {Opcode::GetResult});
        set(&T::pop, {Opcode::Pop});
        set(&T::duplicate, {Opcode::Dup});
        set(&T::swap, {Opcode::Swap});
        set(&T::pushLocal, {Opcode::PushVariable, Opcode::PushVariableLong});
        set(&T::popLocal, {Opcode::PopVariable, Opcode::PopVariableLong});
        set(&T::pushGlobal, {Opcode::PushGlobal, Opcode::PushGlobalLong});
        set(&T::popGlobal, {Opcode::PopGlobal, Opcode::PopGlobalLong});
        set(&T::pushLiteral, {Opcode::PushLiteral, Opcode::PushLiteralLong});
        set(&T::pushOuter, {Opcode::PushParentVariable});
        set(&T::popOuter, {Opcode::PopParentVariable});
        set(&T::pushValue, {Opcode::PushMe, Opcode::PushIt, Opcode::PushNext, Opcode::PushTrue, Opcode::PushFalse, Opcode::PushEmpty,
                            Opcode::PushUndefined, Opcode::PushMinus1, Opcode::Push0, Opcode::Push1, Opcode::Push2, Opcode::Push3});
        return table;
    }();
    return methods[static_cast<std::size_t>(opcode)];
}

HandlerTranslator::HandlerTranslator(const Handler& handler, Heap& heap, LiteralLoader load, void* context, Code& code)
    : mHandler(handler), mHeap(heap), mLoad(load), mContext(context), mCode(code), mOut(code), mStack(mOut), mStored(*handler.source),
      mLabels(mStored.size() + 2) {}

Value HandlerTranslator::literal(std::int32_t index) const {
    return mLoad(mContext, mStored.literal(index), mHandler.store);
}

void HandlerTranslator::readHandler() {
    const Object& block = *mHandler.source;
    auto locals = block.children[block::kLocals]->children;
    for (const Object* name : locals)
        mCode.localNames.push_back(mLoad(mContext, name, mHandler.store));
    const Object& name = *block.children[block::kName];
    mCode.isInitialiser = name.isCode(CodeTag::Event) && name.bytes.starts_with("ascrinit");
    mCode.hasScope = mCode.isInitialiser || block.tag == block::Closure;
    mCode.localCount = static_cast<std::uint32_t>(locals.size());
    mStack.setBase(mCode.hasScope ? 0 : locals.size());
    if (mCode.hasScope && !mCode.isInitialiser)
        mCode.scopeNames = std::make_shared<const std::vector<Value>>(mCode.localNames);

    const Object& parameters = *block.children[block::kParameters];
    const bool noLabels = block.children[block::kLabels]->children.empty();
    if (parameters.isBlock(block::List) && parameters.children.size() == 2 && noLabels) {
        auto items = parameters.children[1]->children;
        bool simple = items.size() <= locals.size();
        for (std::size_t i = 0; simple && i < items.size(); ++i)
            simple = items[i]->kind == ObjectKind::Identifier && items[i]->bytes == locals[i]->bytes;
        mCode.isPositional = simple;
        mCode.positionalCount = simple ? static_cast<std::uint32_t>(items.size()) : 0;
    } else {
        mCode.isPositional = noLabels && parameters.kind == ObjectKind::List && parameters.children.empty();
    }
}

void HandlerTranslator::translateAll() {
    mDefined = LocalSet(mCode.localCount, false);
    for (std::size_t local = 0; local < mCode.positionalCount; ++local) // positional parameters always have values
        mDefined.put(local, true);
    for (mAt = 0; mAt < mStored.size(); ++mAt) {
        place(mAt);
        if (mSkip > 0) {
            --mSkip;
            continue;
        }
        if (!mReachable)
            continue;
        const auto position = static_cast<std::uint32_t>(mOut.size());
        if (!mCode.positions.empty() && mCode.positions.back().instruction == position)
            mCode.positions.back().offset = here().offset;
        else
            mCode.positions.push_back({position, here().offset});
        (this->*methodFor(here().opcode))();
    }
    place(mStored.size());
}

void HandlerTranslator::fallOffEnd() {
    mStack.reserve(1);
    const std::size_t last = mOut.emit(Op::LoadConstant, mStack.slot(0), mOut.constant(Value::undefined()));
    mOut.emit(Op::Return, mOut.at(last).a);
}

void HandlerTranslator::resolveBranches() {
    for (const Detour& detour : mDetours) {
        mOut.at(detour.branch).setTarget(mOut.size());
        mOut.emit(detour.work, detour.a, detour.b);
        emitBranch(Op::Jump, 0, 0, detour.target);
    }
    for (const Label& label : mLabels)
        for (std::size_t use : label.uses) {
            if (label.position < 0)
                throw Corruption();
            mOut.at(use).setTarget(static_cast<std::size_t>(label.position));
        }
}

void HandlerTranslator::run() {
    readHandler();
    translateAll();
    if (mReachable)
        fallOffEnd();
    resolveBranches();
    mCode.frameSize = static_cast<std::uint32_t>(mStack.frameSize());
}

} // namespace quoddle::machine
