// SPDX-License-Identifier: MIT
// Identifiers, loading, storing, compiling, recording. Running is in Execution.cpp, properties and information in Inquiries.cpp, display in
// Display.cpp.
#include "platform/applescript/component/Component.h"

#include "platform/applescript/AppleScriptComponent.h"
#include "platform/applescript/compiler/Compiler.h"
#include "platform/applescript/component/ApplicationDictionaries.h"
#include "platform/applescript/component/Entry.h"
#include "platform/applescript/component/ScriptLibraries.h"
#include "platform/applescript/image/Image.h"
#include "platform/applescript/language/Commands.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/References.h"
#include "platform/base/DateText.h"
#include "platform/base/File.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/osa/ComponentRegistry.h"
#include "platform/osa/ScriptBundle.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace quoddle::component {

using namespace machine;

namespace {

/// A sentence for the end of a message about a word that may be an application's.
std::u16string missingDictionary(const syntax::ApplicationName& application) {
    const std::string fault = dictionaryFault(application);
    if (!fault.empty())
        return u" (The dictionary of “" + application.text + u"” can’t be read: " + utf16FromUTF8(fault) + u".)";
    return u" (There is no dictionary of “" + application.text + u"”, so its words are unknown.)";
}

} // namespace

Component::Component()
    : mMachine({[this](Machine&) { return active(); },
                [this](Machine&, const EventName& command, Value direct, std::span<const Argument> arguments, bool continues) {
                    return send(command, direct, arguments, continues);
                },
                [this](Machine&, const EventName& command, Value direct, std::span<const Argument> arguments, Value& result) {
                    return perform(command, direct, arguments, result);
                },
                [this](Machine&, std::u16string_view name) { return library(name); },
                [](const machine::Application& application) {
                    const bool byIdentifier = !application.identifier.empty();
                    return termsOfApplication({byIdentifier ? application.identifier : application.name, byIdentifier});
                },
                [](Machine& machine, Value value) {
                    const std::string line = utf8FromUTF16(language::humanDisplay(machine, value)) + "\n";
                    std::fwrite(line.data(), 1, line.size(), stderr);
                },
                [this](Machine&, Wait& wait, std::chrono::steady_clock::time_point until) { pause(wait, until); }}) {
    mMachine.setRootMarker([this](Heap& heap) {
        for (const auto& [id, slot] : mSlots)
            heap.mark(slot.value);
        for (const auto& [file, library] : mLibraries)
            heap.mark(library);
        heap.mark(mLastResult);
        const ScriptError& error = mLastError.error;
        for (Value value : {error.message, error.briefMessage, error.offending, error.partialResult, error.expectedType, error.application})
            heap.mark(value);
    });
    mIdleContexts.push_back(mMachine.use(nullptr));
}

Component::~Component() = default;

OSStatus Component::scriptingComponentName(AEDesc& name) {
    name = AEDesc::ofUTF8("AppleScript");
    return noErr;
}

// --- Identifiers

OSAID Component::keep(Value value, std::string location) {
    do
        ++mLastID;
    while (mLastID == 0 || mSlots.contains(mLastID));
    mSlots[mLastID] = {value, std::move(location)};
    return mLastID;
}

const Component::Slot* Component::find(OSAID id) const {
    auto slot = mSlots.find(id);
    return slot == mSlots.end() ? nullptr : &slot->second;
}

Script* Component::scriptOf(OSAID id, OSStatus& status) const {
    const Slot* slot = find(id);
    Script* script = slot ? as<Script>(slot->value) : nullptr;
    status = !slot ? errOSAInvalidID : script ? noErr : errOSAInvalidAccess;
    return script;
}

OSStatus Component::dispose(OSAID id) {
    Entry entry(*this);
    if (id == kOSANullScript)
        return noErr;
    return mSlots.erase(id) ? noErr : errOSAInvalidID;
}

OSStatus Component::copyID(OSAID from, OSAID& to) {
    Entry entry(*this);
    const Slot* slot = find(from);
    if (!slot)
        return errOSAInvalidID;
    to = keep(slot->value, slot->location);
    return noErr;
}

OSStatus Component::copyScript(OSAID from, OSAID& to) {
    Entry entry(*this);
    const Slot* slot = find(from);
    if (!slot)
        return errOSAInvalidID;
    const Value copy = language::deepCopy(mMachine, slot->value);
    if (copy.isFailure())
        return failed();
    to = keep(copy, slot->location);
    return noErr;
}

// --- Loading and storing

OSStatus Component::load(const AEDesc& scriptData, OSAModeFlags, OSAID& result) {
    Entry entry(*this);
    if (scriptData.type() != "scpt"_4cc && scriptData.type() != "ascr"_4cc)
        return errOSABadStorageType;
    OSStatus status = noErr;
    const Value script = scriptFromImage(mMachine, scriptData.data(), status);
    if (script.isFailure())
        return status;
    result = keep(script);
    return noErr;
}

OSStatus Component::loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& result) {
    auto bytes = readFile(scriptFileOf(path), kMaximumFileSize);
    if (!bytes)
        return bytes.error();
    Entry entry(*this);
    OSStatus status = noErr;
    OSAID id = 0;
    if (looksLikeImage(*bytes)) {
        const Value script = scriptFromImage(mMachine, *bytes, status);
        if (!script.isFailure())
            id = keep(script);
    } else {
        status = compileSource(utf16FromSourceBytes(*bytes), modeFlags | kOSAModeCompileIntoContext, id);
    }
    if (status != noErr)
        return status;
    mSlots[id].location = scriptFileOf(path);
    if (storable)
        *storable = true;
    result = id;
    return noErr;
}

OSStatus Component::store(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) {
    Entry entry(*this);
    const Slot* slot = find(id);
    if (!slot)
        return errOSAInvalidID;
    if (type != "scpt"_4cc && type != "ascr"_4cc)
        return errOSABadStorageType;
    OSStatus status = noErr;
    auto bytes = imageFromScript(mMachine, slot->value, modeFlags & kOSAModePreventGetSource, status);
    if (!bytes)
        return status;
    result = AEDesc(type, *bytes);
    return noErr;
}

OSStatus Component::storeFile(OSAID id, DescType type, OSAModeFlags modeFlags, const std::string& path) {
    AEDesc stored;
    const OSStatus status = store(id, type, modeFlags, stored);
    return status == noErr ? writeFile(path, stored.data()) : status;
}

// --- Compiling

OSStatus Component::compile(const AEDesc& source, OSAModeFlags modeFlags, OSAID& id) {
    Entry entry(*this);
    auto text = source.asText();
    if (!text)
        return errOSACantCoerce;
    if (id != kOSANullScript && !find(id))
        return errOSAInvalidID;
    return compileSource(*text, modeFlags, id);
}

compiler::SharedNames& Component::sharedNamesOf(Script& script) {
    if (!script.sharedNames) {
        script.sharedNames = std::make_unique<compiler::SharedNames>();
        for (std::size_t i = 0; i < script.slots.size(); ++i)
            if (!is<Handler>(script.slots[i]))
                share(script.layout->names[i], *script.sharedNames);
    }
    return *script.sharedNames;
}

void Component::share(Value name, compiler::SharedNames& names) {
    ObjectStore store;
    if (const Symbol* symbol = as<Symbol>(name))
        names.insert(compiler::nameKey(*store.identifier(symbol->key)));
}

Value Component::scriptFromSource(std::u16string_view source, CompileFailure& wrong, Script* context) {
    auto store = std::make_shared<ObjectStore>();
    auto map = std::make_shared<syntax::SourceMap>();
    syntax::ParseOptions options;
    options.applicationTerms = termsOfApplication;
    options.now = currentSeconds();
    options.sourceMap = map.get();
    auto tree = syntax::parse(source, *store, options);
    if (!tree) {
        wrong = {tree.error().number, tree.error().message, tree.error().start, tree.error().end};
        if (tree.error().withoutDictionary)
            wrong.message += missingDictionary(*tree.error().withoutDictionary);
        return Value::failure();
    }
    compiler::SharedNames added;
    auto initialiser =
        context ? compiler::compileAddition(*tree, *store, sharedNamesOf(*context), added) : compiler::compileScript(*tree, *store);
    if (!initialiser) {
        const auto range = map->find(initialiser.error().node).value_or(syntax::SourceRange());
        wrong = {initialiser.error().number, initialiser.error().message, range.start, range.end};
        return Value::failure();
    }
    for (const syntax::UsedLibrary& used : syntax::usedLanguages(*tree)) {
        const std::string version = utf8FromUTF16(used.version);
        if (isVersion(version) && isVersionAtLeast(language::kVersion, version))
            continue;
        const auto range = map->find(used.node).value_or(syntax::SourceRange());
        wrong = {errAENoSuchObject, u"Can’t get AppleScript version " + std::u16string(used.version) + u".", range.start, range.end};
        return Value::failure();
    }
    for (const syntax::UsedLibrary& used : syntax::usedLibraries(*tree)) {
        if (hasLibrary(used))
            continue;
        const auto range = map->find(used.node).value_or(syntax::SourceRange());
        const std::u16string version = used.version.empty() ? std::u16string() : u" version " + std::u16string(used.version);
        wrong = {errAENoSuchObject, u"Can’t get script \"" + std::u16string(used.name) + u"\"" + version + u".", range.start, range.end};
        return Value::failure();
    }
    // Maps of scripts that are gone are dropped, each time that there are twice as many as were left the last time.
    if (mSourceMaps.size() >= mMostSourceMaps) {
        std::erase_if(mSourceMaps, [](const auto& known) { return known.second.second.expired(); });
        mMostSourceMaps = std::max(kFewSourceMaps, 2 * mSourceMaps.size());
    }
    mSourceMaps[store.get()] = {map, store};

    const Value handler = mMachine.literal(*initialiser, store);
    Heap::Root root(mMachine.heap(), handler);
    const Value script = mMachine.makeScript(as<Handler>(handler), Value(), (*tree)->isNil() ? nullptr : *tree, store, context);
    if (context && !script.isFailure())
        sharedNamesOf(*context).merge(added);
    return script;
}

bool Component::addDefinitions(Script& context, Script& added) {
    if (added.parent != Value::object(&context) && !language::setParent(mMachine, &context, added.parent))
        return false;
    for (std::size_t i = 0; i < added.slots.size(); ++i) {
        if (Script* inner = as<Script>(added.slots[i]); inner && inner->outer == &added) {
            inner->outer = &context;
            if (inner->parent == Value::object(&added))
                inner->parent = Value::object(&context);
        }
        context.set(added.layout->names[i], added.slots[i]);
    }
    context.tree = added.tree;
    context.store = added.store;
    return true;
}

OSStatus Component::compileSource(std::u16string_view source, OSAModeFlags modeFlags, OSAID& id) {
    CompileFailure wrong;
    if (id != kOSANullScript && modeFlags & kOSAModeAugmentContext && is<Script>(mSlots[id].value))
        return addSource(source, id);
    const Value script = scriptFromSource(source, wrong);
    if (script.isFailure())
        return wrong.number == noErr ? failed() : failedCompile(wrong);
    if (id == kOSANullScript)
        id = keep(script);
    else if (!find(id)) // disposed of while the initialiser ran
        return errOSAInvalidID;
    else
        mSlots[id].value = script;
    return noErr;
}

OSStatus Component::addSource(std::u16string_view source, OSAID id) {
    CompileFailure wrong;
    // The initialiser runs in between, and others may make or dispose of scripts then.
    const Value context = mSlots[id].value;
    Heap::Root contextRoot(mMachine.heap(), context);
    const Value script = scriptFromSource(source, wrong, as<Script>(context));
    if (script.isFailure())
        return wrong.number == noErr ? failed() : failedCompile(wrong);
    Heap::Root root(mMachine.heap(), script);
    return addDefinitions(*as<Script>(context), *as<Script>(script)) ? OSStatus(noErr) : failed();
}

OSStatus Component::makeContext(const AEDesc&, OSAID parent, OSAID& result) {
    Entry entry(*this);
    Script* script = mMachine.heap().make<Script>();
    if (parent != kOSANullScript) {
        OSStatus status;
        Script* above = scriptOf(parent, status);
        if (!above)
            return status;
        script->parent = Value::object(above);
    }
    result = keep(Value::object(script));
    return noErr;
}

// --- Recording

/// Recording needs applications that tell what their users do, and there are none, so it is not supported.
OSStatus Component::startRecording(OSAID& id) {
    Entry entry(*this);
    if (id != kOSANullScript && !find(id))
        return errOSAInvalidID;
    return refused(errAEEventNotHandled, u"Recording isn’t possible: no application tells AppleScript what its user does.");
}

OSStatus Component::stopRecording(OSAID id) {
    Entry entry(*this);
    if (!find(id))
        return errOSAInvalidID;
    return refused(errAEEventNotHandled, u"No script is being recorded.");
}

// --- Errors

OSStatus Component::failed() {
    mLastError = LastError();
    mLastError.error = mMachine.error();
    locate(mLastError);
    mHasError = true;
    mMachine.error() = ScriptError();
    return errOSAScriptError;
}

OSStatus Component::failedCompile(const CompileFailure& wrong) {
    const OSStatus status = refused(wrong.number, wrong.message);
    mLastError.start = wrong.start;
    mLastError.end = wrong.end;
    mLastError.hasRange = true;
    return status;
}

OSStatus Component::refused(OSStatus number, std::u16string_view message) {
    mLastError = LastError();
    mLastError.error.number = number;
    mLastError.error.message = Value::object(mMachine.heap().text(message));
    mHasError = true;
    return errOSAScriptError;
}

} // namespace quoddle::component

namespace quoddle {

void registerAppleScriptComponent() {
    ComponentDescription description;
    description.subType = kAppleScriptSubtype;
    description.name = "AppleScript";
    description.manufacturer = "quod";
    description.open = [] { return std::make_shared<component::Component>(); };
    RegisterComponent(std::move(description));
}

} // namespace quoddle
