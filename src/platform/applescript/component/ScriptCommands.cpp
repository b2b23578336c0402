// SPDX-License-Identifier: MIT
// The commands load script, store script and run script. They work on script objects, which live in this machine only, so they never travel
// as events.
//
// Decision: where a command may have to ask the user (which file, whether to replace it), it sends the command that asks, which is error
// -1713 when nobody can be asked.
#include "platform/applescript/component/Component.h"
#include "platform/applescript/component/Entry.h"
#include "platform/applescript/component/ScriptLibraries.h"
#include "platform/applescript/image/Image.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/syntax/NodeKind.h"
#include "platform/base/File.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/osa/ComponentRegistry.h"
#include "platform/osa/ScriptBundle.h"

#include <filesystem>

namespace quoddle::component {

using namespace machine;
using syntax::NodeKind;
using syntax::tagOf;

namespace {

constexpr OSStatus kDuplicateName = -48;

Value argumentOf(std::span<const Argument> arguments, FourCharCode label) {
    for (const Argument& argument : arguments)
        if (argument.label == Value::code(label))
            return argument.value;
    return {};
}

bool isLanguage(std::u16string_view name) {
    std::string ascii = utf8FromUTF16(name);
    std::transform(ascii.begin(), ascii.end(), ascii.begin(), [](unsigned char c) { return std::tolower(c); });
    return ascii == "applescript";
}

} // namespace

bool Component::perform(const EventName& command, Value direct, std::span<const Argument> arguments, Value& result) {
    static constexpr struct {
        FourCharCode eventID;
        Value (Component::*perform)(Value, std::span<const Argument>);
    } kCommands[] = {
        {"load"_4cc, &Component::loadScript},
        {"stor"_4cc, &Component::storeScript},
        {"dsct"_4cc, &Component::runScript},
    };
    if (command.eventClass != "syso"_4cc)
        return false;
    for (const auto& row : kCommands)
        if (row.eventID == command.eventID) {
            result = (this->*row.perform)(direct, arguments);
            return true;
        }
    return false;
}

// --- Files

/// The absolute path of a file, without a slash at the end. nullopt, with an error raised, for a value that is not a file.
std::optional<std::string> Component::pathOf(Value file) {
    file = language::follow(mMachine, file);
    if (file.isFailure())
        return std::nullopt;
    const Text* text = as<Text>(file);
    const bool isRelative = text && text->view().find(u':') == std::u16string_view::npos;
    const Value made = isRelative ? language::fileFromPath(mMachine, utf8FromUTF16(text->view()), "furl"_4cc)
                                  : language::makeFile(mMachine, file, "furl"_4cc);
    std::string path = made.isFailure() ? std::string() : language::posixPath(*as<Data>(made));
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    if (!path.empty() && path.find('\0') == std::string::npos)
        return path;
    mMachine.raise(errAECoercionFail, u"Can’t make " + language::display(mMachine, file) + u" into type file.", file,
                   Value::code("file"_4cc));
    return std::nullopt;
}

Value Component::fileFailed(OSStatus status, const std::string& path) {
    const Value file = language::fileFromPath(mMachine, path, "furl"_4cc);
    const std::u16string name = u"file " + language::hfsPath(*as<Data>(file));
    switch (status) {
    case fnfErr:
        return mMachine.raise(status, u"File " + name + u" wasn’t found.", file);
    case -120:
        return mMachine.raise(status, u"The folder of " + name + u" wasn’t found.", file);
    case kDuplicateName:
        return mMachine.raise(status, u"Duplicate file name " + name + u".", file);
    case paramErr:
        return mMachine.raise(status, name + u" is not an ordinary file.", file);
    default:
        return mMachine.raise(status, language::messageFor(status), file);
    }
}

/// Reads a compiled script, the script of a bundle, or source text. Failure with an error raised.
Value Component::scriptFromFile(const std::string& path) {
    const std::string file = scriptFileOf(path);
    auto bytes = readFile(file, kMaximumFileSize);
    if (!bytes)
        return fileFailed(bytes.error(), file);
    if (!looksLikeImage(*bytes)) {
        CompileFailure wrong;
        const Value script = scriptFromSource(utf16FromSourceBytes(*bytes), wrong);
        return wrong.number ? mMachine.raise(wrong.number, wrong.message) : script;
    }
    OSStatus status = noErr;
    const Value script = scriptFromImage(mMachine, *bytes, status);
    if (script.isFailure())
        return fileFailed(status ? status : errOSACorruptData, file);
    return is<Script>(script) ? script : fileFailed(errOSABadStorageType, file);
}

Value Component::library(std::u16string_view name) {
    const auto file = fileOfLibrary(utf8FromUTF16(name), bundleOfScriptFile(mLocation));
    if (!file)
        return {};
    if (const auto [known, isNew] = mLibraries.try_emplace(*file); !isNew)
        return known->second;
    const Value script = scriptFromFile(*file);
    if (script.isFailure())
        mLibraries.erase(*file);
    else
        mLibraries[*file] = script;
    return script;
}

bool Component::hasLibrary(const syntax::UsedLibrary& used) {
    const auto file = fileOfLibrary(utf8FromUTF16(used.name), bundleOfScriptFile(mLocation));
    if (const auto known = file ? mLibraries.find(*file) : mLibraries.end(); known != mLibraries.end() && known->second.isUndefined())
        return true; // libraries may use each other: this one is being compiled
    const Value script = library(used.name);
    mMachine.error() = ScriptError();
    if (used.version.empty() || !is<Script>(script))
        return is<Script>(script);
    const Value* version = mMachine.findSlot(as<Script>(script), Value::code("vers"_4cc));
    const Text* text = version ? as<Text>(*version) : nullptr;
    return text && isVersionAtLeast(utf8FromUTF16(text->view()), utf8FromUTF16(used.version));
}

// --- Loading and running

Value Component::loadScript(Value direct, std::span<const Argument>) {
    const auto path = pathOf(direct);
    return path ? scriptFromFile(*path) : Value::failure();
}

/// The result of running a source that consists of definitions and ends with a script object: that object. Undefined for other sources.
Value Component::scriptDefinedLast(Script& script) {
    const Object* last = script.tree;
    const auto isEmptyLine = [](const Object* node) { return node->isNode(tagOf(NodeKind::Line)) && node->children[0]->isNil(); };
    while (last && (last->isNode(tagOf(NodeKind::Block)) || last->isNode(tagOf(NodeKind::Line)))) {
        auto lines = last->isNode(tagOf(NodeKind::Block)) ? last->children[0]->children : last->children.first(1);
        while (lines.size() > 1 && isEmptyLine(lines.back()))
            lines = lines.first(lines.size() - 1);
        last = lines.empty() ? nullptr : lines.back();
    }
    if (!last || !last->isNode(tagOf(NodeKind::Script)) || last->children[0]->isNil())
        return {};
    const Value* slot = script.find(mMachine.literal(last->children[0], script.store));
    return slot ? *slot : Value();
}

Value Component::runScript(Value direct, std::span<const Argument> arguments) {
    direct = language::follow(mMachine, direct);
    if (direct.isFailure())
        return direct;
    if (const Text* name = as<Text>(argumentOf(arguments, "scsy"_4cc)); name && !isLanguage(name->view()))
        return mMachine.raise(errOSACantOpenComponent, u"There is no scripting language “" + std::u16string(name->view()) + u"”.");
    Value script = direct;
    if (const Text* source = as<Text>(direct)) {
        CompileFailure wrong;
        script = scriptFromSource(source->view(), wrong);
        if (wrong.number)
            return mMachine.raise(wrong.number, wrong.message);
    } else if (!is<Script>(direct)) {
        const auto path = pathOf(direct);
        script = path ? scriptFromFile(*path) : Value::failure();
    }
    if (script.isFailure())
        return script;
    Script* owner = nullptr;
    Handler* handler = mMachine.findHandler(as<Script>(script), Value::object(mMachine.heap().eventName("aevtoapp")), &owner);
    if (!handler) // a script without a run handler does nothing
        return is<Text>(direct) ? scriptDefinedLast(*as<Script>(script)) : Value();
    Value parameters = argumentOf(arguments, "plst"_4cc);
    if (!parameters.isUndefined() && !is<List>(parameters)) {
        List* one = mMachine.heap().list(1);
        one->items[one->count++] = parameters;
        parameters = Value::object(one);
    }
    Heap::Root scriptRoot(mMachine.heap(), script), parametersRoot(mMachine.heap(), parameters);
    return mMachine.callHandler(owner, script, handler, {}, parameters, {});
}

// --- Storing

/// Whether a file may be replaced. `replacing` is yes, no or ask; ask is the default.
bool Component::mayReplace(const std::string& path, Value replacing) {
    std::error_code error;
    const FourCharCode how = replacing.isConstant() || replacing.isCode() ? replacing.asCode() : "ask "_4cc;
    if (how == "yes "_4cc || !std::filesystem::exists(path, error))
        return true;
    if (how == "no  "_4cc) {
        fileFailed(kDuplicateName, path);
        return false;
    }
    const auto text = [this](std::u16string_view characters) { return Value::object(mMachine.heap().text(characters)); };
    List* buttons = mMachine.heap().list(2);
    buttons->items[buttons->count++] = text(u"Cancel");
    buttons->items[buttons->count++] = text(u"Replace");
    const Argument parameters[] = {{Value::code("btns"_4cc), Value::object(buttons)},
                                   {Value::code("cbtn"_4cc), Value::integer(1)},
                                   {Value::code("dflt"_4cc), Value::integer(2)},
                                   {Value::code("disp"_4cc), Value::integer(2)}};
    const std::u16string question =
        u"“" + utf16FromUTF8(std::filesystem::path(path).filename().string()) + u"” exists already. Do you want to replace it?";
    const Value answer = mMachine.send(*mMachine.heap().eventName("sysodlog"), text(question), parameters, false);
    if (answer.isFailure() && mMachine.error().number == errAEEventNotHandled)
        mMachine.raise(errAENoUserInteraction, language::messageFor(errAENoUserInteraction));
    return !answer.isFailure();
}

/// Writes a script in compiled form, as a bundle when the path has the name of one.
Value Component::writeScript(Script* script, const std::string& path) {
    OSStatus status = noErr;
    const auto bytes = imageFromScript(mMachine, Value::object(script), false, status);
    if (!bytes)
        return mMachine.raise(status, language::messageFor(status), Value::object(script));
    std::error_code error;
    if (isBundleName(path) && !std::filesystem::is_regular_file(path, error)) {
        BundleOptions bundle;
        bundle.path = path;
        const Value* open = mMachine.findSlot(script, Value::object(mMachine.heap().eventName("aevtodoc")));
        bundle.isDroplet = open && is<Handler>(*open);
        status = writeBundle(bundle, *bytes);
    } else {
        status = std::filesystem::is_directory(path, error) ? paramErr : writeFile(path, *bytes);
    }
    return status == noErr ? Value() : fileFailed(status, path);
}

Value Component::storeScript(Value direct, std::span<const Argument> arguments) {
    direct = language::follow(mMachine, direct);
    if (direct.isFailure())
        return direct;
    const Value given = is<Script>(direct) ? direct : mMachine.me();
    if (!is<Script>(given) || (!is<Script>(direct) && !direct.isUndefined() && !is<Application>(direct)))
        return mMachine.raise(errAECoercionFail, u"Can’t make " + language::display(mMachine, direct) + u" into type script.", direct,
                              Value::code("scpt"_4cc));
    Value place = argumentOf(arguments, "fpth"_4cc);
    const bool asks = place.isUndefined();
    if (asks) {
        place = mMachine.send(*mMachine.heap().eventName("sysonwfl"), Value(), {}, false);
        if (place.isFailure() && mMachine.error().number == errAEEventNotHandled)
            mMachine.raise(errAENoUserInteraction, language::messageFor(errAENoUserInteraction));
        if (place.isFailure())
            return place;
    }
    const auto path = pathOf(place);
    if (!path)
        return Value::failure();
    if (!asks && !mayReplace(*path, argumentOf(arguments, "savo"_4cc))) // the dialog that asked for the name has asked about replacing, too
        return Value::failure();
    return writeScript(as<Script>(given), *path);
}

// --- Where the running script is

void Component::addLocation(AEDesc& event, Value direct) {
    if (mLocation.empty())
        return;
    const std::string bundle = bundleOfScriptFile(mLocation);
    const bool isPathTo = event.eventClass() == "ears"_4cc && event.eventID() == "ffdr"_4cc;
    if (isPathTo && is<Script>(direct))
        (void)event.put("----"_4cc, AEDesc::ofFilePath(bundle.empty() ? mLocation : bundle));
    const bool isResource = event.eventClass() == "syso"_4cc && (event.eventID() == "rpth"_4cc || event.eventID() == "locS"_4cc);
    if (isResource && !bundle.empty() && !event.find("in B"_4cc))
        (void)event.put("in B"_4cc, AEDesc::ofFilePath(bundle));
}

} // namespace quoddle::component
