// SPDX-License-Identifier: MIT
// Expressions and calls.
#include "platform/applescript/compiler/HandlerCompiler.h"

#include <algorithm>

namespace quoddle::compiler {

using namespace syntax;

namespace {

constexpr FourCharCode kBooleanClass = "bool"_4cc;
constexpr std::size_t kMaximumDepth = 1000; // for trees from files; the parser stops earlier

struct OperatorRow {
    NodeKind kind;
    Opcode opcode;
};
constexpr OperatorRow kBinaryOperators[] = {
    {NodeKind::Equal, Opcode::Equal},
    {NodeKind::NotEqual, Opcode::NotEqual},
    {NodeKind::Greater, Opcode::GreaterThan},
    {NodeKind::GreaterOrEqual, Opcode::GreaterThanOrEqual},
    {NodeKind::Less, Opcode::LessThan},
    {NodeKind::LessOrEqual, Opcode::LessThanOrEqual},
    {NodeKind::StartsWith, Opcode::StartsWith},
    {NodeKind::EndsWith, Opcode::EndsWith},
    {NodeKind::Contains, Opcode::Contains},
    {NodeKind::Add, Opcode::Add},
    {NodeKind::Subtract, Opcode::Subtract},
    {NodeKind::Multiply, Opcode::Multiply},
    {NodeKind::Divide, Opcode::Divide},
    {NodeKind::Quotient, Opcode::Quotient},
    {NodeKind::Remainder, Opcode::Remainder},
    {NodeKind::Power, Opcode::Power},
    {NodeKind::Concatenate, Opcode::Concatenate},
    {NodeKind::As, Opcode::Coerce},
};

/// Properties of the AppleScript object that scripts may use everywhere without "of AppleScript".
bool isLanguageProperty(FourCharCode code) {
    constexpr FourCharCode kCodes[] = {"ascr"_4cc, "rslt"_4cc, "ret "_4cc, "tab "_4cc, "spac"_4cc, "lnfd"_4cc,
                                       "quot"_4cc, "pi  "_4cc, "min "_4cc, "hour"_4cc, "days"_4cc, "week"_4cc};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

const OperatorRow* binaryOperator(std::uint8_t tag) {
    for (const OperatorRow& row : kBinaryOperators)
        if (tagOf(row.kind) == tag)
            return &row;
    return nullptr;
}

} // namespace

void HandlerCompiler::fail(OSStatus number, std::u16string message, const Object* node) {
    if (!failed())
        mError = {number, std::move(message), node};
}

void HandlerCompiler::checkBounds(const Object* node) {
    if (!mCode.overflow().empty())
        fail(errOSAInternalTableOverflow, std::u16string(mCode.overflow()), node);
}

const Object* HandlerCompiler::unwrapped(const Object* node) {
    while (node->isNode(tagOf(NodeKind::Line)) && !node->children.empty())
        node = node->children[0];
    return node;
}

void HandlerCompiler::expression(Object* node) {
    if (failed())
        return;
    if (++mDepth > kMaximumDepth) {
        fail(errOSAStackOverflow, u"Stack overflow.", node);
    } else if (node->kind != ObjectKind::Node) {
        literal(node);
    } else {
        const std::size_t start = mCode.size();
        expressionBody(node);
        node->start = static_cast<std::uint32_t>(start);
        node->end = static_cast<std::uint32_t>(mCode.size());
    }
    --mDepth;
}

void HandlerCompiler::expressionBody(Object* node) {
    if (const OperatorRow* row = binaryOperator(node->tag))
        return binary(node, row->opcode);
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Literal:
        return literal(node->children[0]);
    case NodeKind::Variable:
        return variable(node->children[0]);
    case NodeKind::Line:
        return expression(node->children[0]);
    case NodeKind::Me:
        return mCode.emit(Opcode::PushMe);
    case NodeKind::It:
        return mCode.emit(Opcode::PushIt);
    case NodeKind::List:
        return makeList(node);
    case NodeKind::LinkedList:
        for (Object* item : node->children[0]->children)
            expression(item);
        mCode.pushInteger(static_cast<std::int32_t>(node->children[0]->children.size()));
        return mCode.emit(Opcode::MakeList);
    case NodeKind::Record:
        return makeRecord(node);
    case NodeKind::And:
        return shortCircuit(node, Opcode::And);
    case NodeKind::Or:
        return shortCircuit(node, Opcode::Or);
    case NodeKind::Not:
        expression(node->children[0]);
        return mCode.emit(Opcode::Not);
    case NodeKind::Negate:
        expression(node->children[0]);
        return mCode.emit(Opcode::Negate);
    case NodeKind::Get:
        return valueOf(node->children[0]);
    case NodeKind::ReferenceTo:
        return referenceTo(node->children[0]);
    case NodeKind::Call:
        return call(node, Target::Implicit);
    case NodeKind::Continue:
        return continueCall(node);
    case NodeKind::Of:
        expression(node->children[1]);
        return unwrapped(node->children[1])->isNode(tagOf(NodeKind::Me)) ? partOfMe(node->children[0]) : part(node->children[0]);
    default:
        if (node->isNode(tagOf(NodeKind::Term)) && isLanguageProperty(node->children[0]->code()))
            return variable(node->children[0]);
        if (node->isNode(tagOf(NodeKind::Filter)) && !startsFromContainer(node)) {
            expression(node->children[0]);
            return examine(node);
        }
        if (isReference(node)) {
            // An application by a known identifier and a file by a known path never are elements of the target of a `tell`.
            const bool isApplication = node->isNode(tagOf(NodeKind::ElementByKey)) && node->children[0]->code() == "capp"_4cc;
            const bool isFile = node->isNode(tagOf(NodeKind::Element)) && node->children[0]->code() == "psxf"_4cc;
            const bool isKnown = (isApplication || isFile) && unwrapped(node->children[1])->isNode(tagOf(NodeKind::Literal));
            mCode.emit(isKnown ? Opcode::PushMe : Opcode::PushIt);
            return part(node);
        }
        fail(OSASyntaxError, u"Expected an expression.", node);
    }
}

void HandlerCompiler::literal(Object* value) {
    if (value->kind == ObjectKind::Integer)
        return mCode.pushInteger(value->integer);
    if (value->kind == ObjectKind::Boolean)
        return mCode.emit(value->boolean ? Opcode::PushTrue : Opcode::PushFalse);
    if (value->isCode(CodeTag::Constant) && value->code() == "boov"_4cc)
        return mCode.emit(value->code(1) == "true"_4cc ? Opcode::PushTrue : Opcode::PushFalse);
    if (value->isNil())
        return mCode.emit(Opcode::PushUndefined);
    mCode.pushLiteral(value);
}

/// A name that nothing declares is a local of the handler, or a global in the outermost run handler. A code is a property of the
/// AppleScript object unless a handler around has a variable by that word.
Scope::Place HandlerCompiler::placeOf(Object* name) {
    Scope::Place place;
    if (name->kind != ObjectKind::Code || mScope.isVariable(*name))
        place = mScope.find(*name);
    else
        place.found = Scope::Found::Global;
    if (place.found == Scope::Found::Nowhere) {
        const bool isGlobal = mPlainNamesAreGlobal || mScope.kind() == Scope::Kind::Script;
        place = isGlobal ? Scope::Place{Scope::Found::Global} : Scope::Place{Scope::Found::Here, 0, mScope.add(name)};
    }
    return place;
}

void HandlerCompiler::variable(Object* name) {
    const Scope::Place place = placeOf(name);
    if (place.found == Scope::Found::Global)
        mCode.emitLiteral(Opcode::PushGlobal, Opcode::PushGlobalLong, name);
    else if (place.found == Scope::Found::Outside)
        mCode.emitScope(Opcode::PushParentVariable, place.depth, place.index);
    else
        mCode.emitLocal(Opcode::PushVariable, Opcode::PushVariableLong, place.index);
}

/// Whether an expression is the name of a property or global of the script.
bool HandlerCompiler::isScriptVariable(const Object* node) {
    if (!node->isNode(tagOf(NodeKind::Variable)) || node->children[0]->kind != ObjectKind::Identifier)
        return false;
    const Scope::Place place = placeOf(node->children[0]);
    return place.found == Scope::Found::Global || (place.found == Scope::Found::Outside && place.kind == Scope::Kind::Script);
}

/// A variable of the script is a property, to which there can be a reference. A variable of the handler gives only its value.
void HandlerCompiler::referenceTo(Object* node) {
    const Object* inner = unwrapped(node);
    if (inner->isNode(tagOf(NodeKind::Literal))) // QUIRK: "a reference to 5" is 5; scripts spell constants of frameworks that way
        return expression(node);
    if (isScriptVariable(inner)) {
        mCode.emit(Opcode::PushMe);
        mCode.pushLiteral(inner->children[0]);
        mCode.emit(Opcode::MakeProperty);
        return mCode.emit(Opcode::MakeReference);
    }
    expression(node);
    mCode.emit(Opcode::MakeReference);
}

void HandlerCompiler::makeList(Object* node) {
    auto items = node->children[0]->children;
    for (Object* item : items)
        expression(item);
    mCode.pushInteger(static_cast<std::int32_t>(items.size()));
    mCode.emit(Opcode::MakeVector);
}

void HandlerCompiler::makeRecord(Object* node) {
    auto entries = node->children[0]->children;
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        mCode.pushLiteral(entries[i]);
        expression(entries[i + 1]);
    }
    mCode.pushInteger(static_cast<std::int32_t>(entries.size()));
    mCode.emit(Opcode::MakeRecord);
}

void HandlerCompiler::binary(Object* node, Opcode opcode) {
    // The tree has "b is in a" as "a contains b", with the operands in that order.
    expression(node->children[0]);
    expression(node->children[1]);
    mCode.emit(opcode);
}

void HandlerCompiler::shortCircuit(Object* node, Opcode opcode) {
    Label end;
    expression(node->children[0]);
    mCode.branch(opcode, end);
    expression(node->children[1]);
    mCode.pushLiteral(mStore.code(kBooleanClass));
    mCode.emit(Opcode::Coerce);
    mCode.place(end);
}

std::int32_t HandlerCompiler::labelledArguments(Object* labels) {
    auto entries = labels->children;
    if (labels->kind != ObjectKind::Record)
        return 0;
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        mCode.pushLiteral(entries[i]);
        expression(entries[i + 1]);
    }
    return static_cast<std::int32_t>(entries.size());
}

void HandlerCompiler::positionalCall(Object* node, Target target) {
    if (target == Target::Implicit)
        mCode.emit(Opcode::PushIt);
    auto arguments = node->children[1]->children;
    for (Object* argument : arguments)
        expression(argument);
    mCode.pushInteger(static_cast<std::int32_t>(arguments.size()));
    mCode.emitWithLiteral(Opcode::PositionalMessageSend, node->children[0]);
}

void HandlerCompiler::call(Object* node, Target target) {
    Object* message = node->children[0];
    Object* direct = node->children[1];
    Object* labels = node->children[2];
    const bool hasLabels = labels->kind == ObjectKind::Record && !labels->children.empty();
    if (message->kind == ObjectKind::Identifier && direct->kind == ObjectKind::List && !hasLabels)
        return positionalCall(node, target);
    if (target == Target::Implicit) {
        if (direct->kind == ObjectKind::Node)
            expression(direct);
        else
            mCode.emit(Opcode::PushIt);
    }
    mCode.pushInteger(labelledArguments(labels));
    mCode.emitWithLiteral(Opcode::MessageSend, message);
}

/// A `continue` sends the message to the parent of the script that is running: its target is `me`, and the PushNext marker says that the
/// search begins at the parent.
void HandlerCompiler::continueCall(Object* node) {
    Object* message = node->children[0]->children[0];
    Object* direct = node->children[0]->children[1];
    Object* labels = node->children[0]->children[2];
    mCode.emit(Opcode::PushMe);
    if (message->kind == ObjectKind::Identifier && direct->kind == ObjectKind::List && !direct->children.empty()) {
        for (Object* argument : direct->children)
            expression(argument);
        mCode.pushInteger(static_cast<std::int32_t>(direct->children.size()));
        mCode.emit(Opcode::PushNext);
        mCode.emit(Opcode::PushIt);
        return mCode.emitWithLiteral(Opcode::PositionalContinue, message);
    }
    mCode.pushInteger(labelledArguments(labels));
    mCode.emit(Opcode::PushNext);
    if (direct->kind == ObjectKind::Node)
        expression(direct);
    else
        mCode.emit(Opcode::PushIt);
    mCode.emitWithLiteral(Opcode::Continue, message);
}

void HandlerCompiler::raise(Object* node) {
    Object* message = node->children[1];
    mCode.emit(Opcode::PushMe);
    mCode.pushInteger(labelledArguments(node->children[2]));
    if (message->kind == ObjectKind::Node)
        expression(message);
    else
        mCode.emit(Opcode::PushUndefined);
    mCode.emit(Opcode::Error);
}

} // namespace quoddle::compiler
