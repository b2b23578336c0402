// SPDX-License-Identifier: MIT
// Calls, commands, errors, and the definitions that run when a script is made.
#include "platform/applescript/machine/translator/HandlerTranslator.h"

#include <algorithm>

namespace quoddle::machine {

/// Prepares arguments of handlers and commands and items of collections: they are values, except references into applications.
void HandlerTranslator::prepareArguments(std::size_t from, Evaluate how) {
    for (std::size_t depth = from; depth < mStack.size(); ++depth) {
        mStack.follow(depth, how);
        mStack.requireResult(depth);
    }
}

/// Puts the result in place of the arguments. A handler may return without a value, so uses of the result check that.
void HandlerTranslator::replaceByResult(std::size_t count, std::size_t producer) {
    mOut.barrier();
    mStack.truncate(mStack.size() - count);
    mStack.pushRegister(producer);
    mStack.back().maybeUndefined = true;
}

void HandlerTranslator::continueCall() {
    mStack.need(3);
    mStack.pop(); // `it`
    if (mStack.pop().kind != Entry::Kind::Next)
        throw Corruption();
    emitCall(true);
}

/// Stack: target a1 … an n
void HandlerTranslator::emitCall(bool continues) {
    const std::size_t count = mStack.popCount();
    mStack.need(count + 1);
    const std::size_t target = mStack.size() - count - 1;
    prepareArguments(target, Evaluate::Locally);
    const Entry::Kind kind = mStack[target].kind;
    const bool isMine = kind == Entry::Kind::Me || (kind == Entry::Kind::It && !mStack.inTell());
    mStack.materialiseFrom(isMine ? target + 1 : target);
    // Register windows overlap: the arguments become the first locals of the callee. So nothing that the callee could change may wait as a
    // symbol below them.
    const Op op = continues ? Op::ContinueCall : isMine ? Op::CallMine : Op::Call;
    const std::uint16_t name = literalConstant();
    const std::size_t cache = op == Op::CallMine ? mOut.cache(op, name) : 0;
    replaceByResult(count + 1, mOut.emit(op, mStack.slot(target), count, name, cache));
}

/// Stack: direct k1 v1 … n
void HandlerTranslator::send() {
    const std::size_t count = mStack.popCount();
    mStack.need(count + 1);
    const std::size_t direct = mStack.size() - count - 1;
    const Value command = literal(here().first);
    const EventName* event = as<EventName>(command);
    if (event && event->eventClass == "core"_4cc && event->eventID == "cnte"_4cc && emitCount(direct, count))
        return;
    prepareArguments(direct, Evaluate::Locally);
    mStack.materialiseFrom(direct);
    replaceByResult(count + 1, mOut.emit(Op::Send, mStack.slot(direct), count, mOut.constant(command)));
}

/// Emits an instruction for "count x" and "count each item of x", which need no event. False for other commands.
bool HandlerTranslator::emitCount(std::size_t direct, std::size_t parameters) {
    const bool eachItem = parameters == 2 && mStack.isConstant(direct + 1) && mStack.isConstant(direct + 2) &&
                          mStack.constantOf(mStack[direct + 1]) == Value::code("kocl"_4cc) &&
                          mStack.constantOf(mStack[direct + 2]) == Value::code("cobj"_4cc);
    if (parameters != 0 && !eachItem)
        return false;
    mStack.pop(parameters);
    prepareArguments(direct, Evaluate::Locally);
    replaceTop(Op::Count);
    return true;
}

/// Stack: me k1 v1 … n next direct. The direct parameter is moved to the place of the count.
void HandlerTranslator::continueSend() {
    mStack.need(3);
    const std::size_t directDepth = mStack.top();
    const Entry direct = mStack.pop();
    if (mStack.pop().kind != Entry::Kind::Next)
        throw Corruption();
    const std::size_t count = mStack.popCount();
    mStack.need(count + 1);
    mStack.pushMoved(direct, directDepth);
    const std::size_t base = mStack.size() - count - 2;
    prepareArguments(base, Evaluate::Locally);
    mStack.materialiseFrom(base);
    replaceByResult(count + 2, mOut.emit(Op::ContinueSend, mStack.slot(base), count, literalConstant()));
}

/// Stack: me k1 v1 … n message
void HandlerTranslator::raise() {
    mStack.need(3);
    const std::size_t messageDepth = mStack.top();
    const Entry message = mStack.pop();
    const std::size_t count = mStack.popCount();
    mStack.need(count + 1);
    mStack.pushMoved(message, messageDepth);
    const std::size_t first = mStack.size() - count - 1;
    prepareArguments(first, Evaluate::Fully);
    mStack.materialiseFrom(first);
    // Execution never gets past here, but the following code expects a value on the stack.
    replaceByResult(count + 2, mOut.emit(Op::Raise, mStack.slot(first), count));
    mStack.back() = Entry();
}

void HandlerTranslator::returnValue() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    mOut.emit(Op::Return, mStack.reg(mStack.top()));
    mReachable = false;
}

void HandlerTranslator::defineScript() {
    mStack.need(2);
    const Entry tree = mStack.pop();
    const Value initialiser = literal(here().first);
    if (tree.kind != Entry::Kind::Constant || !is<Handler>(initialiser))
        throw Corruption();
    const std::size_t depth = mStack.top();
    mStack.materialise(depth);
    mStack.pop();
    const std::size_t producer = mOut.emit(Op::DefineScript, mStack.slot(depth), tree.index, mOut.constant(initialiser));
    mOut.barrier();
    mStack.pushRegister(producer);
}

void HandlerTranslator::defineHandler() {
    const Value handler = literal(here().first);
    const Handler* object = as<Handler>(handler);
    if (!object || object->source->children.size() < block::kHandlerChildren)
        throw Corruption();
    const Value name = mLoad(mContext, object->source->children[block::kName], mHandler.store);
    mStack.pushRegister(mOut.emit(Op::DefineHandler, mStack.nextSlot(), mOut.constant(handler)));
    auto local = std::find(mCode.localNames.begin(), mCode.localNames.end(), name);
    if (local != mCode.localNames.end())
        storeLocal(static_cast<std::size_t>(local - mCode.localNames.begin()));
}

void HandlerTranslator::defineParent() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    mOut.emit(Op::DefineParent, mStack.reg(mStack.top()), 0, literalConstant());
}

} // namespace quoddle::machine
