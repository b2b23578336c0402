// SPDX-License-Identifier: MIT
// Properties, handlers, information about scripts, errors. Display.cpp has the forms in which values and scripts are shown.
#include "platform/ae/AECoercion.h"
#include "platform/applescript/component/Component.h"
#include "platform/applescript/component/Descriptors.h"
#include "platform/applescript/component/Entry.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/language/Commands.h"
#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/SourceText.h"

#include <algorithm>

namespace quoddle::component {

using namespace machine;

namespace {

AEDesc descriptorOfName(Value name) {
    if (const Symbol* symbol = as<Symbol>(name))
        return AEDesc::ofUTF8(symbol->spelling);
    if (const EventName* event = as<EventName>(name))
        return descriptorOfEventName(event->bytes);
    return AEDesc::ofCode("prop"_4cc, name.asCode());
}

/// The slot of a name. A text with capitals may be an ordinary name, which has small letters as its key, or one that was declared between
/// bars.
Value* slotNamed(Machine& machine, Script* script, Value key, const AEDesc& name) {
    if (Value* slot = machine.findSlot(script, key); slot || !is<Symbol>(key))
        return slot;
    return machine.findSlot(script, Value::object(machine.heap().symbol(name.asUTF8().value_or(std::string()))));
}

/// Removes a handler from the script's own slots; names are found as by slotNamed. Does nothing when there is no such handler.
void removeHandler(Machine& machine, Script* script, Value key, const AEDesc& name) {
    const auto isHandler = [script](Value spelled) {
        const Value* slot = script->find(spelled);
        return slot && is<Handler>(*slot);
    };
    if (!isHandler(key) && is<Symbol>(key))
        key = Value::object(machine.heap().symbol(name.asUTF8().value_or(std::string())));
    if (isHandler(key))
        script->remove(key);
}

AEDesc namesOf(const Script& script, bool ofHandlers) {
    std::vector<AEDesc> names;
    for (std::size_t i = 0; i < script.slots.size(); ++i)
        if (const Value name = script.layout->names[i]; !name.isUndefined() && is<Handler>(script.slots[i]) == ofHandlers)
            names.push_back(descriptorOfName(name));
    return AEDesc::list(std::move(names));
}

/// The innermost node of a tree whose code covers an offset; null when there is none.
const Object* nodeAt(const Object* node, std::uint32_t offset, std::size_t depth) {
    if (depth > 1000)
        return nullptr;
    const bool covers = node->kind == ObjectKind::Node && node->start <= offset && offset < node->end;
    const Object* best = covers ? node : nullptr;
    // The offsets in nodes of inner handlers and scripts belong to other code.
    const bool isOther = node->kind == ObjectKind::Node && depth > 0 && (node->tag == 104 || node->tag == 105);
    if (!isOther)
        for (const Object* child : node->children)
            if (const Object* inner = nodeAt(child, offset, depth + 1))
                if (!best || inner->kind == ObjectKind::Node)
                    return inner;
    return best;
}

} // namespace

// --- Names

/// The key for a property, class or event code, or for a name as a script spells it. -50 for a name that is only possible between bars.
Value Component::keyFrom(const AEDesc& name, OSStatus& status) const {
    auto& machine = const_cast<Machine&>(mMachine);
    status = noErr;
    if (name.type() == "evnt"_4cc && name.data().size() >= 8)
        return Value::object(machine.heap().eventName(eventNameOfDescriptor(name)));
    if (name.type() == "prop"_4cc || name.type() == "type"_4cc || name.type() == "enum"_4cc)
        return Value::code(name.code());
    auto text = name.asText();
    if (!text) {
        status = errOSACantCoerce;
        return {};
    }
    const bool barred = text->size() > 2 && text->starts_with(u'|') && text->ends_with(u'|');
    if (!barred && !syntax::sourcetext::isPlainIdentifier(*text)) {
        status = paramErr;
        return {};
    }
    return symbolFor(machine, *text);
}

OSStatus Component::getProperty(OSAModeFlags, OSAID context, const AEDesc& name, OSAID& result) {
    Entry entry(*this);
    OSStatus status;
    const Value key = keyFrom(name, status);
    if (status != noErr)
        return status;
    if (context == kOSANullScript) {
        const Value value = key == Value::code("rslt"_4cc) ? mLastResult : Value();
        const Value* slot = mMachine.appleScript()->find(key);
        if (value.isUndefined() && !slot)
            return errAENoSuchObject;
        result = keep(value.isUndefined() ? *slot : value);
        return noErr;
    }
    const Slot* slot = find(context);
    if (!slot)
        return errOSAInvalidID;
    if (Record* record = as<Record>(slot->value)) {
        const Record::Entry* field = record->find(key);
        if (!field)
            return errAENoSuchObject;
        result = keep(field->value);
        return noErr;
    }
    Script* script = as<Script>(slot->value);
    const Value* value = script ? slotNamed(mMachine, script, key, name) : nullptr;
    if (key == Value::code("rslt"_4cc) && !value && script) {
        if (mLastResult.isUndefined())
            return errAENoSuchObject;
        result = keep(mLastResult);
        return noErr;
    }
    if (!value && script && key == Value::code("pare"_4cc)) {
        Script* parent = mMachine.parentOf(script);
        result = keep(parent ? Value::object(parent) : script->parent);
        return noErr;
    }
    if (!value || is<Handler>(*value) || value->isUndefined())
        return errAENoSuchObject;
    result = keep(*value);
    return noErr;
}

OSStatus Component::setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID valueID) {
    Entry entry(*this);
    OSStatus status;
    const Value key = keyFrom(name, status);
    if (status != noErr)
        return status;
    const Slot* given = valueID == kOSANullScript ? nullptr : find(valueID);
    if (valueID != kOSANullScript && !given)
        return errOSAInvalidID;
    const Value value = given ? given->value : Value();
    const Slot* slot = find(context);
    if (!slot)
        return context == kOSANullScript ? errOSAInvalidAccess : errOSAInvalidID;
    if (Record* record = as<Record>(slot->value)) {
        Record::Entry* field = record->find(key);
        if (!given)
            std::erase_if(record->entries, [key](const Record::Entry& candidate) { return candidate.key == key; });
        else if (field)
            field->value = value;
        else
            record->entries.push_back({key, value});
        return noErr;
    }
    Script* script = as<Script>(slot->value);
    if (!script)
        return errOSAInvalidAccess;
    if (key == Value::code("rslt"_4cc)) {
        mLastResult = value;
        return noErr;
    }
    if (key == Value::code("pare"_4cc)) {
        if (language::setParent(mMachine, script, value))
            return noErr;
        return failed();
    }
    if (Value* known = slotNamed(mMachine, script, key, name))
        *known = value;
    else if (modeFlags & kOSAModeDontDefine)
        return errAENoSuchObject;
    else
        script->set(key, value);
    if (script->sharedNames && script->find(key))
        share(key, *script->sharedNames);
    return noErr;
}

OSStatus Component::getPropertyNames(OSAModeFlags, OSAID context, AEDesc& names) {
    Entry entry(*this);
    OSStatus status;
    const Script* script = scriptOf(context, status);
    if (!script)
        return status;
    names = namesOf(*script, false);
    return noErr;
}

OSStatus Component::getHandler(OSAModeFlags, OSAID context, const AEDesc& name, OSAID& result) {
    Entry entry(*this);
    OSStatus status;
    const Value key = keyFrom(name, status);
    if (status != noErr)
        return status;
    Script* script = scriptOf(context, status);
    if (!script)
        return status;
    const Value* value = slotNamed(mMachine, script, key, name);
    if (!value || !is<Handler>(*value))
        return errAENoSuchObject;
    result = keep(*value);
    return noErr;
}

OSStatus Component::setHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID handler) {
    Entry entry(*this);
    OSStatus status;
    const Value key = keyFrom(name, status);
    if (status != noErr)
        return status;
    Script* script = scriptOf(context, status);
    if (!script)
        return status;
    if (handler == kOSANullScript) {
        removeHandler(mMachine, script, key, name);
        return noErr;
    }
    const Slot* slot = find(handler);
    if (!slot || !is<Handler>(slot->value))
        return slot ? errOSAInvalidAccess : errOSAInvalidID;
    if (modeFlags & kOSAModeDontDefine && !script->find(key))
        return errAENoSuchObject;
    script->set(key, slot->value);
    return noErr;
}

OSStatus Component::getHandlerNames(OSAModeFlags, OSAID context, AEDesc& names) {
    Entry entry(*this);
    OSStatus status;
    const Script* script = scriptOf(context, status);
    if (!script)
        return status;
    names = namesOf(*script, true);
    return noErr;
}

// --- Information

OSStatus Component::getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) {
    Entry entry(*this);
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    Script* script = as<Script>(slot->value);
    switch (selector) {
    case "hsod"_4cc: {
        const Value* open = script ? mMachine.findSlot(script, Value::object(mMachine.heap().eventName("aevtodoc"))) : nullptr;
        info = open && is<Handler>(*open);
        return noErr;
    }
    case "valu"_4cc:
        info = !script;
        return noErr;
    case "cscr"_4cc:
    case "cntx"_4cc:
        info = script != nullptr;
        return noErr;
    case "gsrc"_4cc: // source can be had
        info = !script || script->tree;
        return noErr;
    case "best"_4cc:
        info = static_cast<std::int32_t>(slot->value.isUndefined() ? "type"_4cc : descriptorTypeOf(mMachine, slot->value));
        return noErr;
    case "modi"_4cc: // whether it has changed since its changes began to be watched
        info = slot->fingerprint && *slot->fingerprint != fingerprintOf(slot->value);
        return noErr;
    default:
        return errOSABadSelector;
    }
}

/// For "modi": begins to watch changes of the script, which counts as unchanged, or as changed when `info` says so.
OSStatus Component::setScriptInfo(OSAID id, FourCharCode selector, std::int32_t info) {
    Entry entry(*this);
    if (!find(id))
        return errOSAInvalidID;
    if (selector != "modi"_4cc)
        return errOSABadSelector;
    Slot& slot = mSlots[id];
    slot.fingerprint = fingerprintOf(slot.value) ^ (info != 0);
    return noErr;
}

OSStatus Component::getScriptFile(OSAID id, FourCharCode selector, std::string& path) {
    Entry entry(*this);
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    if (selector != "fref"_4cc)
        return errOSABadSelector;
    if (slot->location.empty())
        return fnfErr;
    path = slot->location;
    return noErr;
}

OSStatus Component::setScriptFile(OSAID id, FourCharCode selector, const std::string& path) {
    Entry entry(*this);
    if (!find(id))
        return errOSAInvalidID;
    if (selector != "fref"_4cc)
        return errOSABadSelector;
    mSlots[id].location = path;
    return noErr;
}

// --- Errors

/// Sets the range in the source where the error arose, when the source is known.
void Component::locate(LastError& last) const {
    const Object* handler = last.error.handler;
    if (!handler || handler->children.size() < block::kHandlerChildren)
        return;
    const Object* node = nodeAt(handler->children[block::kTree], last.error.offset, 0);
    if (node && node->isNode(syntax::tagOf(syntax::NodeKind::As)) && node->children[1]->kind == ObjectKind::Node)
        node = node->children[1]; // the range of a failed coercion is that of the class
    for (const auto& [store, known] : mSourceMaps) {
        if (known.second.expired() || !node)
            continue;
        if (auto range = known.first->find(node)) {
            last.start = range->start;
            last.end = range->end;
            last.hasRange = true;
            return;
        }
    }
}

OSStatus Component::scriptError(FourCharCode selector, DescType type, AEDesc& result) {
    Entry entry(*this);
    if (!mHasError)
        return errAEDescNotFound;
    const ScriptError& error = mLastError.error;
    std::optional<AEDesc> answer;
    const auto part = [&](Value value) {
        if (!value.isUndefined())
            answer = descriptorFromValue(mMachine, value);
    };
    switch (selector) {
    case "errn"_4cc:
        answer = AEDesc::ofInt32(error.number);
        break;
    case "errs"_4cc:
        part(error.message);
        break;
    case "errb"_4cc:
        part(error.briefMessage.isUndefined() ? error.message : error.briefMessage);
        break;
    case "erng"_4cc:
        if (mLastError.hasRange)
            answer = AEDesc::record({{"srcs"_4cc, AEDesc::ofInt32(static_cast<std::int32_t>(mLastError.start))},
                                     {"srce"_4cc, AEDesc::ofInt32(static_cast<std::int32_t>(mLastError.end))}},
                                    "erng"_4cc);
        break;
    case "erob"_4cc: // not followed, because the error may be that the reference names nothing
        if (!error.offending.isUndefined())
            answer = descriptorFromReference(mMachine, error.offending);
        break;
    case "ptlr"_4cc:
        part(error.partialResult);
        break;
    case "errt"_4cc:
        part(error.expectedType);
        break;
    case "erap"_4cc:
        part(error.application);
        break;
    default:
        return errOSABadSelector;
    }
    if (!answer)
        return errAEDescNotFound;
    return AECoerceDesc(*answer, type, result);
}

OSStatus Component::setDefaultTarget(const AEDesc& target) {
    Entry entry(*this);
    mDefaultTarget = target;
    return noErr;
}

} // namespace quoddle::component
