// SPDX-License-Identifier: MIT
#include "platform/osa/FakeComponent.h"

#include "platform/ae/AECoercion.h"
#include "platform/base/Text.h"

#include <fstream>
#include <sstream>

namespace quoddle {

namespace {

std::pair<std::u16string, std::u16string> firstWord(const std::u16string& line) {
    std::size_t blank = line.find(u' ');
    return {line.substr(0, blank), blank == std::u16string::npos ? u"" : line.substr(blank + 1)};
}

std::int32_t numberIn(const std::u16string& text) {
    return AEDesc::ofText(text).asInt32().value_or(0);
}

AEDesc valueIn(const std::u16string& text) {
    auto number = AEDesc::ofText(text).asInt32();
    return number ? AEDesc::ofInt32(*number) : AEDesc::ofText(text);
}

// The name of eight characters for an event's class and ID in eight bytes.
std::u16string nameOfEvent(std::string_view bytes) {
    std::string_view id = bytes.size() == 8 ? bytes.substr(4) : std::string_view();
    return utf16FromMacRoman(bytesOf(AEDesc("type"_4cc, bytes.substr(0, 4)).code()) + bytesOf(AEDesc("type"_4cc, id).code()));
}

} // namespace

std::vector<std::u16string> FakeComponent::Value::lines() const {
    std::vector<std::u16string> result;
    std::u16string rest = source.value_or(u"");
    while (!rest.empty()) {
        std::size_t end = rest.find(u'\n');
        result.push_back(rest.substr(0, end));
        rest = end == std::u16string::npos ? u"" : rest.substr(end + 1);
    }
    return result;
}

FakeComponent::~FakeComponent() {
    if (sLast == this)
        sLast = nullptr;
}

void FakeComponent::registerAs(OSType subType, OSAID firstID) {
    RegisterComponent({.subType = subType, .name = "Fake", .open = [=] { return std::make_shared<FakeComponent>(subType, firstID); }});
}

AEDesc FakeComponent::stored(const std::u16string& source) const {
    return {"scpt"_4cc, utf8FromUTF16(source) + bytesOf(mSubType) + std::string("\0\x01\0\x0C\xFA\xDE\xDE\xAD", 8)};
}

OSAID FakeComponent::add(Value value) {
    std::lock_guard lock(mutex);
    values.emplace(++mLastID, std::move(value));
    return mLastID;
}

OSStatus FakeComponent::called(const std::string& operation, OSAModeFlags modeFlags, OSAID id, OSAID other, DescType type) {
    std::lock_guard lock(mutex);
    calls.push_back({operation, modeFlags, id, other, type});
    auto failure = failures.find(operation);
    return failure == failures.end() ? noErr : failure->second;
}

FakeComponent::Value* FakeComponent::find(OSAID id) {
    auto found = values.find(id);
    return found == values.end() ? nullptr : &found->second;
}

std::u16string FakeComponent::keyOf(const AEDesc& name) const {
    if (name.type() == "evnt"_4cc)
        return nameOfEvent(name.data());
    if (name.type() == "prop"_4cc)
        return utf16FromMacRoman(bytesOf(name.code()));
    return name.asText().value_or(u"");
}

OSStatus FakeComponent::scriptFailed(std::int32_t number, std::u16string message) {
    error = {{"errn"_4cc, AEDesc::ofInt32(number)}, {"errs"_4cc, AEDesc::ofText(message)}, {"errb"_4cc, AEDesc::ofText(message)}};
    return errOSAScriptError;
}

OSStatus FakeComponent::load(const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& id) {
    if (OSStatus status = called("load", modeFlags))
        return status;
    std::string_view bytes = scriptData.data();
    if (bytes.size() < 12)
        return errOSABadStorageType;
    id = add(scriptFrom(utf16FromUTF8(bytes.substr(0, bytes.size() - 12))));
    return noErr;
}

OSStatus FakeComponent::loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& id) {
    if (OSStatus status = called("loadFile", modeFlags))
        return status;
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    if (!file)
        return fnfErr;
    if (storable)
        *storable = isStorable;
    return load({"scpt"_4cc, bytes.str()}, modeFlags, id);
}

OSStatus FakeComponent::store(OSAID id, DescType, OSAModeFlags modeFlags, AEDesc& data) {
    if (OSStatus status = called("store", modeFlags, id))
        return status;
    if (!find(id))
        return errOSAInvalidID;
    data = stored(find(id)->source.value_or(u""));
    return noErr;
}

OSStatus FakeComponent::storeFile(OSAID id, DescType type, OSAModeFlags modeFlags, const std::string& path) {
    AEDesc data;
    if (OSStatus status = store(id, type, modeFlags, data))
        return status;
    std::ofstream(path, std::ios::binary) << data.data();
    return called("storeFile", modeFlags, id);
}

OSStatus FakeComponent::dispose(OSAID id) {
    std::lock_guard lock(mutex);
    called("dispose", 0, id);
    return values.erase(id) ? noErr : errOSAInvalidID;
}

OSStatus FakeComponent::copyID(OSAID from, OSAID& to) {
    called("copyID", 0, from);
    return copied(from, to);
}

OSStatus FakeComponent::copyScript(OSAID from, OSAID& to) {
    called("copyScript", 0, from);
    return copied(from, to);
}

OSStatus FakeComponent::copied(OSAID from, OSAID& to) {
    if (!find(from))
        return errOSAInvalidID;
    to = add(Value(*find(from)));
    return noErr;
}

OSStatus FakeComponent::compile(const AEDesc& source, OSAModeFlags modeFlags, OSAID& id) {
    if (OSStatus status = called("compile", modeFlags, id))
        return status;
    if (id != 0 && !values.erase(id))
        return errOSAInvalidID;
    id = add(scriptFrom(source.asText().value_or(u""))); // a real component may return another identifier than it was given
    return noErr;
}

FakeComponent::Value FakeComponent::scriptFrom(std::u16string source) {
    Value script;
    script.source = std::move(source);
    for (const std::u16string& line : script.lines()) {
        auto [verb, rest] = firstWord(line);
        if (verb == u"handler")
            script.handlers.insert(rest);
        if (verb == u"property")
            script.properties[firstWord(rest).first] = add({.desc = valueIn(firstWord(rest).second)});
    }
    return script;
}

OSStatus FakeComponent::execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& id) {
    if (OSStatus status = called("execute", modeFlags, script, context))
        return status;
    return find(script) ? run(Value(*find(script)), id) : errOSAInvalidID;
}

OSStatus FakeComponent::executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& id) {
    lastEvent = event;
    called("executeEvent", modeFlags, context);
    return execute(context, 0, modeFlags, id);
}

OSStatus FakeComponent::run(const Value& script, OSAID& id) {
    for (const std::u16string& line : script.lines()) {
        auto [verb, rest] = firstWord(line);
        if (OSStatus status = runLine(verb, rest, id))
            return status;
    }
    return noErr;
}

OSStatus FakeComponent::runLine(const std::u16string& verb, const std::u16string& rest, OSAID& id) {
    auto [first, second] = firstWord(rest);
    if (verb == u"return" && rest != u"nothing")
        id = add({.desc = result.isNull() ? valueIn(rest) : result});
    if (verb == u"error")
        return scriptFailed(numberIn(first), second);
    if (verb == u"status")
        return numberIn(first);
    if (verb == u"loop") {
        OSErr status = noErr;
        while ((status = callbacks.active.proc(callbacks.active.refCon)) == noErr) {
        }
        return scriptFailed(status, u"stopped");
    }
    AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    if (verb == u"send") {
        AEDesc event = AEDesc::appleEvent(fourCharCode(utf8FromUTF16(first)), fourCharCode(utf8FromUTF16(second)));
        OSErr status = callbacks.send.proc(event, &reply, sendMode, 0, sendTimeout, nullptr, nullptr, callbacks.send.refCon);
        if (status != noErr)
            return scriptFailed(status, u"not sent");
        if (const AEDesc* value = reply.find("----"_4cc))
            id = add({.desc = *value});
    }
    if (verb == u"continue")
        return callbacks.resumeDispatch.proc(lastEvent, &reply, callbacks.resumeDispatch.refCon);
    return noErr;
}

OSStatus FakeComponent::display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("display", modeFlags, id, 0, type))
        return status;
    return find(id) ? AECoerceDesc(find(id)->desc, type, text) : errOSAInvalidID;
}

OSStatus FakeComponent::copyDisplayString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
    called("copyDisplayString", modeFlags, id);
    if (!find(id))
        return errOSAInvalidID;
    text.text = find(id)->desc.asText().value_or(u"?");
    return noErr;
}

OSStatus FakeComponent::copySourceString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
    called("copySourceString", modeFlags, id);
    if (!find(id))
        return errOSAInvalidID;
    if (!find(id)->source)
        return errOSASourceNotAvailable;
    text.text = *find(id)->source;
    return noErr;
}

OSStatus FakeComponent::coerceFromDesc(const AEDesc& desc, OSAModeFlags modeFlags, OSAID& id) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("coerceFromDesc", modeFlags))
        return status;
    id = add({.desc = desc});
    return noErr;
}

OSStatus FakeComponent::coerceToDesc(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& desc) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("coerceToDesc", modeFlags, id, 0, type))
        return status;
    Value* value = find(id);
    if (!value)
        return errOSAInvalidID;
    // A record with a class cannot be coerced to a plain record.
    if (refusedTypes.count(type) || (type == "reco"_4cc && value->properties.count(u"pcls")))
        return errAECoercionFail;
    return AECoerceDesc(value->desc, type, desc);
}

OSStatus FakeComponent::getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& id) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("getProperty", modeFlags, context))
        return status;
    Value* value = find(context);
    if (!value && context != kOSANullScript)
        return errOSAInvalidID;
    std::u16string key = keyOf(name);
    if (barred.count(key))
        return paramErr;
    OSAID* property = value && value->properties.count(key) ? &value->properties[key] : nullptr;
    if (!property)
        return OSAIllegalAssign;
    id = add({.desc = find(*property) ? find(*property)->desc : AEDesc()});
    return noErr;
}

OSStatus FakeComponent::setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID value) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("setProperty", modeFlags, context, value))
        return status;
    if (!find(context))
        return errOSAInvalidID;
    std::u16string key = keyOf(name);
    if (value == 0)
        find(context)->properties.erase(key);
    else
        find(context)->properties[key] = add(Value(*find(value)));
    return noErr;
}

OSStatus FakeComponent::getPropertyNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) {
    called("getPropertyNames", modeFlags, context);
    if (!find(context))
        return errOSAInvalidID;
    names = AEDesc::list();
    for (const auto& [name, value] : find(context)->properties)
        names.insertItem(0, AEDesc::ofText(name));
    return noErr;
}

OSStatus FakeComponent::getHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& id) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("getHandler", modeFlags, context))
        return status;
    Value* value = find(context);
    if (!value)
        return errOSAInvalidID;
    std::u16string key = keyOf(name);
    if (barred.count(key))
        return paramErr;
    if (!value->handlers.count(key))
        return errAEHandlerNotFound;
    id = add({.desc = AEDesc::ofText(key)});
    return noErr;
}

OSStatus FakeComponent::setHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID handler) {
    called("setHandler", modeFlags, context, handler);
    if (!find(context))
        return errOSAInvalidID;
    if (handler)
        find(context)->handlers.insert(keyOf(name));
    else
        find(context)->handlers.erase(keyOf(name));
    return noErr;
}

OSStatus FakeComponent::getHandlerNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) {
    called("getHandlerNames", modeFlags, context);
    if (!find(context))
        return errOSAInvalidID;
    names = AEDesc::list();
    for (const std::u16string& name : find(context)->handlers)
        names.insertItem(0, AEDesc::ofText(name));
    return noErr;
}

OSStatus FakeComponent::getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) {
    std::lock_guard lock(mutex);
    Value* value = find(id);
    if (!value)
        return errOSAInvalidID;
    auto set = mInfo.find({id, selector});
    if (set != mInfo.end())
        info = set->second;
    else if (selector == "valu"_4cc)
        info = !value->source;
    else if (selector == "cscr"_4cc || selector == "cntx"_4cc)
        info = value->source.has_value();
    else if (selector == "best"_4cc)
        info = static_cast<std::int32_t>(value->desc.type());
    else if (selector == "hsod"_4cc)
        info = static_cast<std::int32_t>(value->handlers.count(u"aevtodoc"));
    else
        return errOSABadSelector;
    return noErr;
}

OSStatus FakeComponent::setScriptInfo(OSAID id, FourCharCode selector, std::int32_t info) {
    if (!find(id))
        return errOSAInvalidID;
    mInfo[{id, selector}] = info;
    return noErr;
}

OSStatus FakeComponent::getScriptFile(OSAID id, FourCharCode, std::string& path) {
    std::lock_guard lock(mutex);
    if (!find(id) || find(id)->file.empty())
        return errOSAInvalidID;
    path = find(id)->file;
    return noErr;
}

OSStatus FakeComponent::setScriptFile(OSAID id, FourCharCode, const std::string& path) {
    std::lock_guard lock(mutex);
    if (OSStatus status = called("setScriptFile"))
        return status;
    find(id)->file = path;
    return noErr;
}

OSStatus FakeComponent::scriptError(FourCharCode selector, DescType type, AEDesc& desc) {
    std::lock_guard lock(mutex);
    auto found = error.find(selector);
    return found == error.end() ? errOSABadSelector : AECoerceDesc(found->second, type, desc);
}

OSStatus FakeComponent::startRecording(OSAID& id) {
    if (id == 0)
        id = add({.source = u"recorded"});
    return called("startRecording", 0, id);
}

OSStatus FakeComponent::stopRecording(OSAID id) {
    return called("stopRecording", 0, id);
}

OSStatus FakeComponent::setDefaultTarget(const AEDesc& target) {
    if (OSStatus status = called("setDefaultTarget"))
        return status;
    defaultTarget = target;
    return noErr;
}

OSStatus FakeComponent::getCallbacks(OSACallbacks& all) {
    std::lock_guard lock(mutex);
    all = callbacks;
    return noErr;
}

OSStatus FakeComponent::changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) {
    std::lock_guard lock(mutex);
    change(callbacks);
    return noErr;
}

OSStatus FakeComponent::copySourceAttributes(std::vector<OSASourceStyle>& attributes) {
    attributes = styles;
    return noErr;
}

OSStatus FakeComponent::setSourceAttributes(const std::vector<OSASourceStyle>& attributes) {
    styles = attributes;
    return noErr;
}

OSStatus FakeComponent::getSourceStyleNames(OSAModeFlags, AEDesc& names) {
    if (OSStatus status = called("getSourceStyleNames"))
        return status;
    names = AEDesc::list();
    for (const OSASourceStyle& style : styles)
        names.insertItem(0, AEDesc::ofText(style.name));
    return noErr;
}

} // namespace quoddle
