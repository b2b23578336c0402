// SPDX-License-Identifier: MIT
// Values as text and as descriptors, scripts as source and its styles, and the callbacks.
#include "platform/applescript/language/Display.h"
#include "platform/ae/AECoercion.h"
#include "platform/applescript/component/ApplicationDictionaries.h"
#include "platform/applescript/component/Component.h"
#include "platform/applescript/component/Entry.h"
#include "platform/base/Text.h"

namespace quoddle::component {

using namespace machine;

namespace {

constexpr std::string_view kStyleNames[] = {"New text", "Language keywords", "Application keywords", "Variables", "Operators",
                                            "Values",   "Comments"};

} // namespace

// --- Display and source

std::u16string Component::displayed(Value value, OSAModeFlags modeFlags) {
    return modeFlags & kOSAModeDisplayForHumans ? language::humanDisplay(mMachine, value) : language::display(mMachine, value);
}

OSStatus Component::display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) {
    Entry entry(*this);
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    return AECoerceDesc(AEDesc::ofText(displayed(slot->value, modeFlags)), type, text);
}

OSStatus Component::copyDisplayString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
    Entry entry(*this);
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    text = {displayed(slot->value, modeFlags), {}};
    return noErr;
}

OSStatus Component::sourceOf(OSAID id, std::u16string& source, std::vector<syntax::PrintedRun>* runs) {
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    const Script* script = as<Script>(slot->value);
    if (!script) {
        source = language::display(mMachine, slot->value);
        return noErr;
    }
    if (!script->tree && script->slots.empty()) { // compiled from nothing
        source.clear();
        return noErr;
    }
    if (!script->tree)
        return errOSASourceNotAvailable;
    syntax::PrintOptions options;
    options.applicationTerms = termsOfApplication;
    options.runs = runs;
    source = syntax::printTree(script->tree, options);
    return noErr;
}

OSStatus Component::getSource(OSAID id, DescType type, AEDesc& source) {
    Entry entry(*this);
    std::u16string text;
    const OSStatus status = sourceOf(id, text, nullptr);
    return status == noErr ? AECoerceDesc(AEDesc::ofText(text), type, source) : status;
}

OSStatus Component::copySourceString(OSAID id, OSAModeFlags, OSAAttributedText& text) {
    Entry entry(*this);
    std::vector<syntax::PrintedRun> runs;
    OSAAttributedText copy;
    const OSStatus status = sourceOf(id, copy.text, &runs);
    if (status != noErr)
        return status;
    for (const syntax::PrintedRun& run : runs)
        copy.runs.push_back({run.start, run.length, static_cast<std::size_t>(run.kind)});
    text = std::move(copy);
    return noErr;
}

OSStatus Component::coerceFromDesc(const AEDesc& desc, OSAModeFlags, OSAID& result) {
    Entry entry(*this);
    result = keep(valueFromDescriptor(mMachine, desc));
    return noErr;
}

OSStatus Component::coerceToDesc(OSAID id, DescType type, OSAModeFlags, AEDesc& result) {
    Entry entry(*this);
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    if (slot->value.isUndefined()) // by itself "no value" has a descriptor of its own; inside other values it is "missing value"
        return AECoerceDesc(AEDesc::ofType("undf"_4cc), type, result);
    mMachine.error() = ScriptError();
    auto descriptor = descriptorFromValue(mMachine, slot->value);
    if (!descriptor)
        return mMachine.error().number ? failed() : errOSACantCoerce;
    return AECoerceDesc(*descriptor, type, result);
}

// --- Callbacks and styles

OSStatus Component::getCallbacks(OSACallbacks& callbacks) {
    Entry entry(*this);
    callbacks = mCallbacks;
    return noErr;
}

OSStatus Component::changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) {
    Entry entry(*this);
    change(mCallbacks);
    return noErr;
}

OSStatus Component::copySourceAttributes(std::vector<OSASourceStyle>& styles) {
    Entry entry(*this);
    if (mStyles.empty())
        for (std::string_view name : kStyleNames) {
            OSASourceStyle style;
            style.name = utf16FromUTF8(name);
            mStyles.push_back(std::move(style));
        }
    styles = mStyles;
    return noErr;
}

OSStatus Component::setSourceAttributes(const std::vector<OSASourceStyle>& styles) {
    Entry entry(*this);
    if (styles.size() != std::size(kStyleNames))
        return paramErr;
    mStyles = styles;
    return noErr;
}

OSStatus Component::getSourceStyleNames(OSAModeFlags, AEDesc& names) {
    AEDesc list = AEDesc::list();
    for (std::string_view name : kStyleNames)
        (void)list.insertItem(0, AEDesc::ofUTF8(name));
    names = std::move(list);
    return noErr;
}

} // namespace quoddle::component
