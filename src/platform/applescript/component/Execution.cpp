// SPDX-License-Identifier: MIT
// Running scripts, and the requests of running scripts to the outside.
#include "platform/ae/AEMainThread.h"
#include "platform/ae/AESendMessage.h"
#include "platform/ae/NSAppleEventManager.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/applescript/component/Component.h"
#include "platform/applescript/component/Entry.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/References.h"
#include "platform/base/Text.h"

namespace quoddle::component {

using namespace machine;

namespace {

constexpr double kTicksPerSecond = 60;
constexpr std::uint32_t kAllConsiderations = 0xFF;
constexpr int kIgnoredShift = 16; // the ignored considerations have the upper 16 bits, the considered ones the lower
constexpr std::chrono::milliseconds kMainThreadPause(8);

/// Whether a parameter of an event is an attribute or the direct parameter, and not a label of a user's handler, which is a code as well
/// when it is a preposition.
bool isAttributeOrDirect(AEKeyword key) {
    return key == "----"_4cc || key == "snam"_4cc || key == "usrf"_4cc || key == "subj"_4cc || key == "csig"_4cc || key == "cons"_4cc;
}

/// A script that runs in another one, its context. Properties that both have are the context's, and so are the variables that the run
/// makes. Handlers address the slots of their own script by place, so the run uses a script with just these places. At the end the context
/// gets the values, and its own handlers see them then.
class BoundScript {
public:
    BoundScript(Heap& heap, Script* script, Script* context)
        : mScript(script), mContext(context), mBound(heap.make<Script>()), mRoot(heap, Value::object(mBound)) {
        mBound->layout = script->layout;
        mBound->slots = script->slots;
        mBound->name = script->name;
        mBound->tree = script->tree;
        mBound->store = script->store;
        mBound->outer = script->outer;
        mBound->parent = script->parent.isUndefined() ? Value::object(context) : script->parent;
        for (std::size_t i = 0; i < mBound->slots.size(); ++i)
            if (const Value* shared = sharedSlot(i))
                mBound->slots[i] = *shared;
    }
    Script* script() const { return mBound; }
    /// Ends the run: copies the values to the context and the script.
    void copyValuesBack() {
        for (std::size_t i = 0; i < mBound->slots.size(); ++i)
            if (Value* shared = sharedSlot(i))
                *shared = mBound->slots[i];
            else if (i < mScript->slots.size())
                mScript->slots[i] = mBound->slots[i];
            else
                mContext->set(mBound->layout->names[i], mBound->slots[i]);
    }

private:
    /// The context's slot of the same name; null when there is none or one of the two holds a handler, in which case the script keeps its
    /// own.
    Value* sharedSlot(std::size_t place) const {
        const bool isHandler = place < mScript->slots.size() && is<Handler>(mScript->slots[place]);
        Value* slot = isHandler ? nullptr : mContext->find(mBound->layout->names[place]);
        return slot && !is<Handler>(*slot) ? slot : nullptr;
    }

    Script* const mScript;
    Script* const mContext;
    Script* const mBound;
    Heap::Root mRoot;
};

} // namespace

// --- Running

OSStatus Component::finish(Value result, OSAID& id) {
    mLastResult = result;
    id = result.isUndefined() ? kOSANullScript : keep(result);
    return noErr;
}

OSStatus Component::execute(OSAID scriptID, OSAID context, OSAModeFlags, OSAID& result) {
    Entry entry(*this);
    OSStatus status;
    Script* script = scriptOf(scriptID, status);
    if (!script)
        return status;
    Script* holder = script;
    if (context != kOSANullScript && !(holder = scriptOf(context, status)))
        return status;
    Script* owner = nullptr;
    const Value* slot = mMachine.findSlot(script, Value::object(mMachine.heap().eventName("aevtoapp")), &owner);
    Handler* run = slot ? as<Handler>(*slot) : nullptr;
    if (!run) // a script without a run handler does nothing
        return finish(Value(), result);
    Heap::Root root(mMachine.heap(), Value::object(script));
    Running running(*this, find(scriptID)->location);
    if (holder == script) {
        const Value value = mMachine.callHandler(owner, Value::object(script), run, {}, Value(), {});
        return value.isFailure() ? failed() : finish(value, result);
    }
    Heap::Root contextRoot(mMachine.heap(), Value::object(holder));
    BoundScript bound(mMachine.heap(), script, holder);
    Script* const me = bound.script();
    const Value value = mMachine.callHandler(owner == script ? me : owner, Value::object(me), run, {}, Value(), {});
    bound.copyValuesBack();
    return value.isFailure() ? failed() : finish(value, result);
}

Value Component::runSubroutine(Script* script, const AEDesc& event) {
    const AEDesc* nameParameter = event.find("snam"_4cc);
    const std::u16string name = nameParameter ? nameParameter->asText().value_or(std::u16string()) : std::u16string();
    Script* owner = nullptr;
    const Value key = symbolFor(mMachine, name);
    const Value* slot = mMachine.findSlot(script, key, &owner);
    if (!slot || !is<Handler>(*slot)) // a name that was declared between bars keeps its capitals
        slot = mMachine.findSlot(script, Value::object(mMachine.heap().symbol(utf8FromUTF16(name))), &owner);
    Handler* handler = slot ? as<Handler>(*slot) : nullptr;
    if (!handler)
        return mMachine.raise(errAEEventNotHandled,
                              language::display(mMachine, Value::object(script)) + u" doesn’t understand the “" + name + u"” message.",
                              Value::object(script));
    std::vector<Argument> labels;
    for (const AEItem& item : event.fields())
        if (!isAttributeOrDirect(item.key))
            labels.push_back({Value::code(item.key), valueFromDescriptor(mMachine, item.value)});
    if (const AEDesc* user = event.find("usrf"_4cc)) {
        auto items = user->items();
        for (std::size_t i = 0; i + 1 < items.size(); i += 2)
            labels.push_back(
                {symbolFor(mMachine, items[i].asText().value_or(std::u16string())), valueFromDescriptor(mMachine, items[i + 1])});
    }
    const AEDesc* direct = event.find("----"_4cc);
    const Value value = direct ? valueFromDescriptor(mMachine, *direct) : Value();
    const Object* parameters =
        handler->source->children.size() > block::kParameters ? handler->source->children[block::kParameters] : nullptr;
    const bool isPositional = parameters && (parameters->isBlock(block::List) || parameters->kind == ObjectKind::List) && labels.empty();
    const List* arguments = as<List>(value);
    if (isPositional && arguments)
        return mMachine.callHandler(owner, Value::object(script), handler, {arguments->items, arguments->count}, Value(), {});
    return mMachine.callHandler(owner, Value::object(script), handler, {}, value, labels);
}

Value Component::runEvent(Script* script, const AEDesc& event, bool& handled) {
    handled = true;
    if (event.eventClass() == "ascr"_4cc && event.eventID() == "psbr"_4cc)
        return runSubroutine(script, event);
    Script* owner = nullptr;
    const EventName* name = mMachine.heap().eventName(bytesOf(event.eventClass()) + bytesOf(event.eventID()));
    const Value* slot = mMachine.findSlot(script, Value::object(name), &owner);
    Handler* handler = slot ? as<Handler>(*slot) : nullptr;
    if (!handler) {
        handled = event.eventClass() == "aevt"_4cc && event.eventID() == "oapp"_4cc; // running a script without a run handler does nothing
        return {};
    }
    std::vector<Argument> labels;
    for (const AEItem& item : event.fields())
        if (!isAttributeOrDirect(item.key))
            labels.push_back({Value::code(item.key), valueFromDescriptor(mMachine, item.value)});
    const AEDesc* direct = event.find("----"_4cc);
    return mMachine.callHandler(owner, Value::object(script), handler, {}, direct ? valueFromDescriptor(mMachine, *direct) : Value(),
                                labels);
}

OSStatus Component::executeEvent(const AEDesc& event, OSAID context, OSAModeFlags, OSAID& result) {
    Entry entry(*this);
    OSStatus status;
    Script* script = scriptOf(context, status);
    if (!script)
        return status;
    if (!event.isAppleEvent())
        return errAENotAppleEvent;
    Heap::Root root(mMachine.heap(), Value::object(script));
    bool handled = false;
    Running running(*this, find(context)->location);
    const Value value = runEvent(script, event, handled);
    if (!handled)
        return errAEEventNotHandled;
    return value.isFailure() ? failed() : finish(value, result);
}

OSStatus Component::doEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, AEDesc& reply) {
    Entry entry(*this);
    OSAID id = kOSANullScript;
    const OSStatus status = executeEvent(event, context, modeFlags, id);
    if (status == noErr && id != kOSANullScript) {
        auto result = descriptorFromValue(mMachine, find(id)->value);
        dispose(id);
        if (result)
            (void)reply.put("----"_4cc, std::move(*result));
    } else if (status == errOSAScriptError) {
        for (AEKeyword key : {"errn"_4cc, "errs"_4cc, "erob"_4cc, "ptlr"_4cc, "errt"_4cc}) {
            AEDesc part;
            if (scriptError(key, "****"_4cc, part) == noErr)
                (void)reply.put(key, std::move(part));
        }
    } else if (status != noErr) {
        (void)reply.put("errn"_4cc, AEDesc::ofInt32(status));
    }
    return status;
}

// --- Callbacks

OSStatus Component::active() {
    if (!mCallbacks.active.proc) {
        if (mLock.isWanted())
            Callback callback(*this);
        return noErr;
    }
    const OSACallback<OSAActiveProc> active = mCallbacks.active;
    Callback callback(*this);
    return active.proc(active.refCon);
}

void Component::pause(Wait& wait, std::chrono::steady_clock::time_point until) {
    if (AEHasMainThreadEvents()) // those events are handled when the script yields
        until = std::min(until, std::chrono::steady_clock::now() + kMainThreadPause);
    Callback callback(*this);
    wait.pause(until);
}

std::optional<AEDesc> Component::eventFor(const EventName& command, Value direct, std::span<const Argument> arguments) {
    const Application* application = applicationOf(direct);
    if (!application)
        application = applicationOf(mMachine.it());
    const AEDesc target = application ? addressOf(*application) : mDefaultTarget.isNull() ? AEDesc::ofCurrentProcess() : mDefaultTarget;
    AEDesc event = AEDesc::appleEvent(command.eventClass, command.eventID, target);
    AEDesc userFields = AEDesc::list();
    const auto put = [&](Value label, Value value) {
        auto descriptor = descriptorFromValue(mMachine, value);
        if (!descriptor) {
            if (mMachine.error().number == noErr)
                mMachine.raise(errAECoercionFail, u"Can’t make " + language::display(mMachine, value) + u" into the expected type.", value);
            return false;
        }
        if (const Symbol* symbol = as<Symbol>(label)) {
            (void)userFields.insertItem(0, AEDesc::ofUTF8(symbol->spelling));
            (void)userFields.insertItem(0, std::move(*descriptor));
        } else {
            (void)event.put(label.asCode(), std::move(*descriptor));
        }
        return true;
    };
    mMachine.error() = ScriptError();
    // `me` and the application of a `tell` tell where a command goes and are no direct parameter. The same goes for an object that is told
    // to make something: "make" has no direct parameter, and its receiver finds the object as the subject.
    const bool makes = command.eventClass == "core"_4cc && command.eventID == "crel"_4cc && direct == mMachine.it();
    // "path to application X" asks for X instead of telling X something.
    const bool asksForPath = command.eventClass == "ears"_4cc && command.eventID == "ffdr"_4cc && is<Application>(direct);
    const bool isTarget = direct.isUndefined() || is<Script>(direct) || (is<Application>(direct) && !asksForPath) || makes;
    if (!isTarget && !put(Value::code("----"_4cc), direct))
        return std::nullopt;
    for (const Argument& argument : arguments)
        if (!put(argument.label, argument.value))
            return std::nullopt;
    if (userFields.count() > 0)
        (void)event.put("usrf"_4cc, std::move(userFields));
    const std::uint32_t considering = mMachine.considering();
    const std::uint32_t mask = considering | (kAllConsiderations & ~considering) << kIgnoredShift;
    (void)event.setAttribute("csig"_4cc, AEDesc::ofInt32(static_cast<std::int32_t>(mask)));
    if (const Value subject = mMachine.it(); is<Specifier>(subject) && !language::isLocal(subject))
        if (auto described = descriptorFromValue(mMachine, subject))
            (void)event.setAttribute("subj"_4cc, std::move(*described));
    addLocation(event, direct);
    return event;
}

Value Component::replyValue(OSStatus status, const AEDesc& reply, const EventName& command, Value direct) {
    const AEDesc* number = reply.find("errn"_4cc);
    if (status == noErr && number)
        status = number->asInt32().value_or(errOSAGeneralError);
    const Application* application = applicationOf(direct);
    if (!application)
        application = applicationOf(mMachine.it());
    const Value owner = application ? Value::object(application) : Value();
    if (status == noErr) {
        const AEDesc* result = reply.find("----"_4cc);
        return result ? valueFromDescriptor(mMachine, *result, owner) : Value();
    }
    if (status == procNotFound && application && !AEFindApplication(addressOf(*application))) {
        const Value unknown = Value::object(application);
        return mMachine.raise(errAENoSuchObject, u"Can’t get " + language::inMessage(mMachine, unknown) + u".", unknown);
    }
    const AEDesc* text = reply.find("errs"_4cc);
    if (!text && number && !number->asInt32())
        text = number; // QUIRK: an error number that is a text counts as the message; applets reply so and rely on the message being shown
    std::u16string message = text ? text->asText().value_or(std::u16string()) : std::u16string();
    if (message.empty() && status == errAEEventNotHandled)
        message = language::display(mMachine, direct.isUndefined() ? mMachine.me() : direct) + u" doesn’t understand the “" +
                  language::termFor(Value::object(&command)) + u"” message.";
    if (message.empty())
        message = language::messageFor(status);
    const std::u16string name = application ? application->name.empty() ? application->identifier : application->name : std::u16string();
    const Value brief = Value::object(mMachine.heap().text(message));
    mMachine.raise(status, name.empty() ? message : name + u" got an error: " + message);
    mMachine.error().briefMessage = brief;
    const auto part = [&](AEKeyword key) {
        const AEDesc* descriptor = reply.find(key);
        return descriptor ? valueFromDescriptor(mMachine, *descriptor, owner) : Value();
    };
    ScriptError& error = mMachine.error();
    error.offending = part("erob"_4cc);
    error.partialResult = part("ptlr"_4cc);
    error.expectedType = part("errt"_4cc);
    error.application = part("erap"_4cc);
    return Value::failure();
}

/// Whether a command that a scripting addition of this process knows was sent to an application that does not know the command, or that is
/// not there.
/// QUIRK: "tell application "Finder" to display dialog …" shows the dialog although there is no Finder; many scripts ask that way.
static bool isLeftToAdditions(const AEDesc& event, OSStatus status, const AEDesc& reply) {
    const AEDesc* number = reply.find("errn"_4cc);
    const bool isUnknown = status == errAEEventNotHandled || (status == noErr && number && number->asInt32() == errAEEventNotHandled);
    return (isUnknown || (status == procNotFound && !number)) && !AEIsCurrentProcess(event.attribute("addr"_4cc).value_or(AEDesc())) &&
           NSAppleEventManager::sharedAppleEventManager().hasAdditionHandlerForEventClass(event.eventClass(), event.eventID());
}

Value Component::send(const EventName& command, Value direct, std::span<const Argument> arguments, bool continues) {
    auto event = eventFor(command, direct, arguments);
    if (!event)
        return Value::failure();
    const double seconds = mMachine.timeout();
    const std::int32_t ticks =
        seconds == kDefaultTimeout ? kAEDefaultTimeout : static_cast<std::int32_t>(std::min(seconds * kTicksPerSecond, 1e9));
    const bool wantsReply = mMachine.considering() & kConsiderReplies;
    const AESendMode mode = (wantsReply ? kAEWaitReply : kAENoReply) | kAECanInteract | kAECanSwitchLayer;
    const AEDesc emptyReply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    AEDesc reply = emptyReply;
    OSStatus status;
    const OSACallback<OSASendProc> proc = mCallbacks.send;
    const OSACallback<OSAResumeDispatchProc> resume = mCallbacks.resumeDispatch;
    const auto sendEvent = [&] {
        return proc.proc ? proc.proc(*event, &reply, mode, 0, ticks, nullptr, nullptr, proc.refCon)
                         : AESendMessage(*event, &reply, mode, ticks);
    };
    {
        Callback callback(*this);
        status = continues && resume.proc ? resume.proc(*event, &reply, resume.refCon) : sendEvent();
        if (!continues && isLeftToAdditions(*event, status, reply)) {
            (void)event->setAttribute("addr"_4cc, AEDesc::ofCurrentProcess());
            reply = emptyReply;
            status = sendEvent();
        }
    }
    return replyValue(status, reply, command, direct);
}

} // namespace quoddle::component
