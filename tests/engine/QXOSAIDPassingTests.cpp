// SPDX-License-Identifier: MIT
// Every operation of a script value passes its mode flags and identifiers to the component, also when that is behind the generic one: one
// row for each operation, run with flags and without.
#include "Fixture.h"

#include <QTemporaryDir>

namespace quoddle {

/// The parameter says whether the generic component is used.
class QXOSAIDPassingTest : public BridgeTest, public testing::WithParamInterface<bool> {
protected:
    QXOSAIDPassingTest() {
        if (!GetParam())
            return;
        FakeComponent::registerAs("ascr"_4cc);
        component = QXOSAComponent::initWithGenericComponent();
        value(AEDesc::ofInt32(0)); // makes the generic component open the real one
        fake = FakeComponent::last();
    }
    /// The real component's identifier.
    OSAID real(OSAID id) const {
        ComponentInstance exact = 0;
        const bool isGeneric = GetParam() && id != 0;
        EXPECT_EQ(isGeneric ? OSAGenericToRealID(component->component(), id, exact) : noErr, noErr);
        return id;
    }
    QXOSAIDRef value(AEDesc desc) { return QXOSAID::QXOSAIDWithComponent(component, std::move(desc)); }

    /// The arguments that the component must get.
    struct Given {
        OSAID id = 0, other = 0;
        OSAModeFlags byDefault = 0; ///< the flags when the caller gives none
        OSAModeFlags always = 0;    ///< added to the caller's flags
    };
    /// Runs an operation with mode flags and without, and checks the flags and identifiers that the component gets.
    template<class Operation>
    void passesOn(const std::string& called, const Given& given, Operation operation) {
        constexpr OSAModeFlags kFlags = 0x12340;
        for (bool withFlags : {true, false}) {
            fake->calls.clear();
            if (withFlags)
                operation(kFlags);
            else
                operation();
            const auto calls = callsOf(called);
            ASSERT_EQ(calls.size(), 1u) << called;
            EXPECT_EQ(calls[0].modeFlags, (withFlags ? kFlags : given.byDefault) | given.always) << called << withFlags;
            EXPECT_EQ(calls[0].id, real(given.id)) << called;
            if (given.other != kAnyValue)
                EXPECT_EQ(calls[0].other, real(given.other)) << called;
            else
                EXPECT_NE(calls[0].other, 0u) << called;
        }
    }
    static constexpr OSAID kAnyValue = 0xFFFFFFFF;
};

TEST_P(QXOSAIDPassingTest, FlagsAndIdentifiersReachTheComponent) {
    QXOSAIDRef script = compiled("handler go\nproperty total 3\nproperty ppgt 9\nreturn 1"), context = compiled(""),
               five = value(AEDesc::ofInt32(5));
    const OSAID id = script->valueID(), kFive = five->valueID();
    const auto event = Descriptor::appleEventWithEventClass("misc"_4cc, "idle"_4cc);
    passesOn("execute", {id}, [&](auto... flags) { script->execute(flags...); });
    passesOn("execute", {id}, [&](auto... flags) { script->executeEvent(nullptr, flags...); });
    passesOn("execute", {id, context->valueID()}, [&](auto... flags) { script->executeInContext(context, flags...); });
    passesOn("executeEvent", {id}, [&](auto... flags) { script->executeEvent(event, flags...); });
    passesOn("executeEvent", {id}, [&](auto... flags) { script->executeSubroutine(QStringLiteral("go"), {}, flags...); });

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.scpt"));
    passesOn("storeFile", {id}, [&](auto... flags) { script->storeFile(path, flags...); });
    passesOn("store", {id}, [&](auto... flags) { script->store(flags...); });
    passesOn("store", {id}, [&](auto... flags) { script->descriptor(flags...); });
    passesOn("copySourceString", {id}, [&](auto... flags) { script->source(flags...); });
    passesOn("copyDisplayString", {kFive}, [&](auto... flags) { five->display(flags...); });
    passesOn("coerceToDesc", {kFive}, [&](auto... flags) { five->descriptor(flags...); });
    QXOSAIDRef text = value(AEDesc::ofUTF8("x"));
    passesOn("display", {.id = text->valueID(), .always = 8}, [&](auto... flags) { text->descriptor(flags...); });

    QXOSAIDRef target = QXOSAID::QXOSAIDWithComponent(component);
    const auto stored = Descriptor::descriptorWithAEDesc(fake->stored(u"return 1")), seven = Descriptor::descriptorWithInt32(7);
    passesOn("load", {}, [&](auto... flags) { target->load(stored, flags...); });
    passesOn("load", {}, [&](auto... flags) { target->setDescriptor(stored, flags...); });
    passesOn("coerceFromDesc", {}, [&](auto... flags) { target->setDescriptor(seven, flags...); });
    passesOn("loadFile", {}, [&](auto... flags) { target->loadFile(path, flags...); });
    passesOn("loadFile", {}, [&](auto... flags) { target->loadFileURL(QUrl::fromLocalFile(path), flags...); });
    const auto source = Descriptor::descriptorWithString("return 1");
    passesOn("compile", {.byDefault = 2}, [&](auto... flags) { QXOSAID(component).compileDescriptor(source, flags...); });
    passesOn("compile", {.byDefault = 2}, [&](auto... flags) { QXOSAID(component).compile(QStringLiteral("return 1"), flags...); });

    const QString go = QStringLiteral("go"), total = QStringLiteral("total");
    const auto handlerName = Descriptor::descriptorWithString("go"), propertyName = Descriptor::descriptorWithString("total");
    passesOn("getHandlerNames", {id}, [&](auto... flags) { script->handlerNames(flags...); });
    passesOn("getPropertyNames", {id}, [&](auto... flags) { script->propertyNames(flags...); });
    passesOn("getHandler", {id}, [&](auto... flags) { script->handlerForDescriptor(handlerName, flags...); });
    passesOn("getHandler", {id}, [&](auto... flags) { script->handlerForName(go, flags...); });
    passesOn("getProperty", {id}, [&](auto... flags) { script->propertyForDescriptor(propertyName, flags...); });
    passesOn("getProperty", {id}, [&](auto... flags) { script->propertyForName(total, flags...); });
    passesOn("getProperty", {id}, [&](auto... flags) { script->propertyForPropertyID("ppgt"_4cc, flags...); });
    passesOn("setProperty", {id, kFive}, [&](auto... flags) { script->setValueForPropertyDescriptor(five, propertyName, flags...); });
    passesOn("setProperty", {id, kFive}, [&](auto... flags) { script->setValueForPropertyName(five, total, flags...); });
    passesOn("setProperty", {id, kFive}, [&](auto... flags) { script->setValueForPropertyID(five, "ppgt"_4cc, flags...); });
    passesOn("setHandler", {id, kFive}, [&](auto... flags) { script->setValueForHandlerDescriptor(five, handlerName, flags...); });
    passesOn("setHandler", {id, kFive}, [&](auto... flags) { script->setValueForHandlerName(five, go, flags...); });
    const Given made{id, kAnyValue};
    passesOn("setProperty", made, [&](auto... flags) { script->setDescriptorForPropertyDescriptor(seven, propertyName, flags...); });
    passesOn("setProperty", made, [&](auto... flags) { script->setDescriptorForPropertyName(seven, total, flags...); });
    passesOn("setProperty", made, [&](auto... flags) { script->setDescriptorForPropertyID(seven, "ppgt"_4cc, flags...); });
    passesOn("setHandler", made, [&](auto... flags) { script->setDescriptorForHandlerDescriptor(seven, handlerName, flags...); });
    passesOn("setHandler", made, [&](auto... flags) { script->setDescriptorForHandlerName(seven, go, flags...); });
}

INSTANTIATE_TEST_SUITE_P(RealAndGeneric, QXOSAIDPassingTest, testing::Bool());

} // namespace quoddle
