// SPDX-License-Identifier: MIT
// The events of other applications besides calls of the script's handlers by name: a run, getting and setting the values of properties, and
// every other command that the script has a handler for.
#include "runtime/AppDelegate.h"

#include "engine/NSAppleEventDescriptor-QXAdditions.h"
#include "engine/QXOSAException.h"
#include "platform/ae/AEReply.h"

#include <cstring>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr struct {
    AEEventClass eventClass;
    AEEventID eventID;
} kOutsideEvents[] = {{"aevt"_4cc, "oapp"_4cc}, {"core"_4cc, "getd"_4cc}, {"core"_4cc, "setd"_4cc}};

/// A property of the application, given by its code or by the name that its script has given it.
struct PropertyName {
    FourCharCode code = 0;
    QString name;
    bool isValid() const { return code != 0 || !name.isEmpty(); }
};

PropertyName propertyIn(const NSAppleEventDescriptorRef& event) {
    PropertyName property;
    const AEDesc* object = event->aeDesc().find("----"_4cc);
    const AEDesc* form = object ? object->find("form"_4cc) : nullptr;
    const AEDesc* container = object ? object->find("from"_4cc) : nullptr;
    const AEDesc* selector = object ? object->find("seld"_4cc) : nullptr;
    if (!form || !selector || (container && !container->isNull()))
        return property;
    if (form->code() == "prop"_4cc)
        property.code = selector->code();
    else if (form->code() == "usrp"_4cc)
        property.name = QString::fromStdString(selector->asUTF8().value_or(""));
    return property;
}

/// Whether the applet answers the property itself, even when its script has one with that code.
bool isOfApplication(FourCharCode code) {
    return code == "pnam"_4cc || code == "vers"_4cc || code == "ID  "_4cc || code == "prun"_4cc || code == "pisf"_4cc;
}

NSAppleEventDescriptorRef text(const QString& text) {
    return NSAppleEventDescriptor::descriptorWithString(text.toStdString());
}

bool hasProperty(const QXOSAIDRef& script, FourCharCode code, const QString& name) {
    return name.isEmpty() ? script->hasPropertyForID(code) : script->hasPropertyNamed(name);
}

} // namespace

void AppDelegate::registerOutsideEvents() {
    for (const auto& outside : kOutsideEvents)
        NSAppleEventManager::sharedAppleEventManager().setEventHandler(
            [this](const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) { handleOutsideEvent(event, reply); },
            outside.eventClass, outside.eventID);
}

/// Commands reach the script under their codes, so it does not matter whether the applet has a dictionary with words for them. What the
/// runtime, the framework, the dialog commands or a scripting addition handles stays with them.
void AppDelegate::registerScriptEvents() {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    const QXOSAIDRef script = mainScript();
    const auto names = script ? script->handlerNames() : std::nullopt;
    if (!names)
        return;
    for (const NSAppleEventDescriptorRef& name : *names) {
        FourCharCode codes[2];
        const std::string_view data = name->aeDesc().data();
        if (name->descriptorType() != "evnt"_4cc || data.size() != sizeof codes)
            continue;
        std::memcpy(codes, data.data(), sizeof codes);
        const auto [eventClass, eventID] = codes;
        const bool isAnyEvent = eventClass == "****"_4cc || eventID == "****"_4cc;
        if (isAnyEvent || manager.hasEventHandlerForEventClass(eventClass, eventID) ||
            manager.hasAdditionHandlerForEventClass(eventClass, eventID))
            continue;
        manager.setEventHandler(
            [this](const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) { handleScriptEvent(event, reply); },
            eventClass, eventID);
        mScriptEvents.emplace_back(eventClass, eventID);
    }
}

/// The script's own commands come here when it continues them, or sends them to its application: it must not wait for itself.
void AppDelegate::handleScriptEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
    if (!event->aeDesc().attribute("esrc"_4cc))
        return AEPutError(reply, errAEEventNotHandled);
    _handleSubroutineCallEvent(event, reply);
}

void AppDelegate::removeOutsideEvents() {
    for (const auto& [eventClass, eventID] : mScriptEvents)
        NSAppleEventManager::sharedAppleEventManager().removeEventHandlerForEventClass(eventClass, eventID);
    for (const auto& outside : kOutsideEvents)
        NSAppleEventManager::sharedAppleEventManager().removeEventHandlerForEventClass(outside.eventClass, outside.eventID);
}

void AppDelegate::handleOutsideEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
    mWasAsked = true;
    if (event->eventID() == "oapp"_4cc) {
        // A run that the script itself continues has no further effect.
        if (AEIsContinued(reply) || !hasRunHandler())
            return;
        setScriptStarted(true);
        _respondToEventInBackground(nullptr, std::exchange(mRunIsDue, false) ? afterLaunchRun() : Completion(),
                                    NSAppleEventManager::sharedAppleEventManager().suspendCurrentAppleEvent());
        return;
    }
    const PropertyName property = propertyIn(event);
    try {
        if (event->eventID() == "getd"_4cc) {
            if (const auto value = property.isValid() ? valueOfProperty(property.code, property.name) : nullptr)
                return reply->setParamDescriptor(value, "----"_4cc);
        } else if (isOfApplication(property.code)) {
            return AEPutError(reply, OSAIllegalAssign, "This property of an applet cannot be changed.");
        } else if (property.isValid()) {
            if (setProperty(property.code, property.name, event->paramDescriptorForKeyword("data"_4cc)))
                return;
        }
        AEPutError(reply, errAENoSuchObject, "The applet has no such property.");
    } catch (const QXOSAException& exception) {
        AEPutError(reply, errAEEventFailed, exception.what());
    }
}

NSAppleEventDescriptorRef AppDelegate::valueOfProperty(FourCharCode code, const QString& name) {
    const QVariantMap info = mainBundle()->infoDictionary();
    switch (code) {
    case "pnam"_4cc:
        return text(mainBundle()->name());
    case "vers"_4cc:
        return text(info.value(u"CFBundleShortVersionString"_s).toString());
    case "ID  "_4cc:
        return text(mainBundle()->bundleIdentifier());
    case "prun"_4cc:
        return NSAppleEventDescriptor::descriptorWithBoolean(true);
    case "pisf"_4cc:
        return NSAppleEventDescriptor::descriptorWithBoolean(mParts.application->isActive());
    default:
        break;
    }
    const QXOSAIDRef script = mainScript();
    if (!script || !hasProperty(script, code, name))
        return nullptr;
    const QXOSAIDRef value = name.isEmpty() ? script->propertyForPropertyID(code) : script->propertyForName(name);
    return value ? value->descriptor() : nullptr;
}

bool AppDelegate::setProperty(FourCharCode code, const QString& name, const NSAppleEventDescriptorRef& value) {
    const QXOSAIDRef script = mainScript();
    // Other applications can change properties but not make new ones.
    if (!script || !value || !hasProperty(script, code, name))
        return false;
    if (name.isEmpty())
        script->setValueForPropertyID(valueOf(value, script), code);
    else
        script->setValueForPropertyName(valueOf(value, script), name);
    return true;
}

} // namespace quoddle
