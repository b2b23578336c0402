// SPDX-License-Identifier: MIT
// The fixture of the bridge's tests: a new component over a fake one, and the logged lines.
#pragma once

#include "engine/NSAppleEventDescriptor+Additions.h"
#include "engine/NSAppleEventDescriptor-QXAdditions.h"
#include "engine/QXOSAException.h"
#include "engine/QXOSAID.h"
#include "platform/foundation/LogCatcher.h"
#include "platform/osa/FakeComponent.h"

#include <gtest/gtest.h>

namespace quoddle {

using Descriptor = NSAppleEventDescriptor;

inline NSAppleEventDescriptorRef ofType(DescType type) {
    return Descriptor::descriptorWithDescriptorType(type, "12345678");
}

/// A specifier of something in the application. As in specifiers of files, the type of the "want" item is the wanted class.
inline NSAppleEventDescriptorRef fileSpecifier(DescType wantType, FourCharCode form, DescType seldType) {
    auto record = Descriptor::recordDescriptor();
    record->setDescriptor(ofType(wantType), "want"_4cc);
    record->setDescriptor(Descriptor::descriptorWithEnumCode(form), "form"_4cc);
    record->setDescriptor(ofType(seldType), "seld"_4cc);
    record->setDescriptor(Descriptor::nullDescriptor(), "from"_4cc);
    return record->coerceToDescriptorType("obj "_4cc);
}

class BridgeTest : public testing::Test {
protected:
    BridgeTest() {
        FakeComponent::registerAs("fake"_4cc);
        component = QXOSAComponent::componentWithLanguageSubType("fake"_4cc);
        fake = FakeComponent::last();
    }

    QXOSAIDRef compiled(const char* source) {
        QXOSAIDRef script = QXOSAID::QXOSAIDWithComponent(component);
        EXPECT_TRUE(script->compile(QString::fromUtf8(source)));
        return script;
    }

    /// The status with which an operation raises; 0 when it does not raise.
    template<class Operation>
    static OSStatus raised(Operation operation, const char* name = "QXOSAID Failure") {
        try {
            operation();
        } catch (const QXOSAException& exception) {
            EXPECT_EQ(exception.name(), QString::fromUtf8(name));
            QString reason = exception.reason();
            return reason.remove(QStringLiteral("Error ")).section(u' ', 0, 0).toInt();
        }
        return noErr;
    }

    std::vector<FakeComponent::Call> callsOf(const std::string& operation) const {
        std::vector<FakeComponent::Call> found;
        std::copy_if(fake->calls.begin(), fake->calls.end(), std::back_inserter(found),
                     [&](const FakeComponent::Call& call) { return call.operation == operation; });
        return found;
    }
    std::size_t callCount(const std::string& operation) const { return callsOf(operation).size(); }

    QXOSAComponentRef component;
    FakeComponent* fake = nullptr;
};

} // namespace quoddle
