// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Frameworks.h"

#include "platform/applescript/language/References.h"
#include "platform/base/Text.h"

namespace quoddle::language {

using namespace machine;

namespace {

bool isCurrentApplication(Value value) {
    const Application* application = as<Application>(value);
    return application && application->name.empty() && application->identifier.empty();
}

} // namespace

bool isFrameworkName(const Specifier& specifier) {
    const bool isName = specifier.form == Specifier::Form::Property && is<Symbol>(specifier.a);
    if (const Specifier* holder = as<Specifier>(specifier.container))
        return isName && isFrameworkName(*holder);
    const bool isClass =
        specifier.form == Specifier::Form::Element && specifier.a.isCode() && isNamedClass(specifier.a.asCode(), specifier.b);
    return (isName || isClass) && isCurrentApplication(specifier.container);
}

bool isNamedClass(FourCharCode elementClass, Value name) {
    return elementClass == "pcls"_4cc && is<Text>(name);
}

Value frameworkClass(Machine& machine, Value name) {
    const Value application = Value::object(machine.heap().make<Application>());
    const Value operands[] = {application, Value::code("pcls"_4cc), name};
    return makeReference(machine, makeSpecifier(machine, Specifier::Form::Element, operands));
}

Value noFramework(Machine& machine, Value target) {
    const Specifier& specifier = *as<Specifier>(target);
    const Text* text = as<Text>(specifier.b);
    const std::u16string name = text ? std::u16string(text->view()) : utf16FromUTF8(as<Symbol>(specifier.a)->spelling);
    return machine.raise(errAEEventNotHandled, u"“" + name + u"” is part of a framework, and there are no frameworks on this system.",
                         target);
}

} // namespace quoddle::language
