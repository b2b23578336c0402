// SPDX-License-Identifier: MIT
// The bridge with the AppleScript component: behaviour that needs a real language.
#include "Fixture.h"

#include "platform/ae/NSAppleEventManager.h"
#include "platform/applescript/AppleScriptComponent.h"

#include <thread>

namespace quoddle {

namespace {

struct Listener : QXOSAComponentDelegate {
    void willSendAppleEvent(const AEDesc& event, AESendMode, std::int32_t, std::int32_t) override { sent.push_back(event.eventID()); }
    std::vector<AEEventID> sent;
};

class AppleScriptTest : public testing::Test {
protected:
    AppleScriptTest() {
        registerAppleScriptComponent();
        component = QXOSAComponent::initWithAppleScriptComponent();
    }

    static QXOSAIDRef compiled(const QXOSAComponentRef& component, const char* source) {
        QXOSAIDRef script = QXOSAID::QXOSAIDWithComponent(component);
        EXPECT_TRUE(script->compile(QString::fromUtf8(source))) << component->lastErrorMessage().toStdString();
        return script;
    }
    QXOSAIDRef compiled(const char* source) const { return compiled(component, source); }
    /// The result of a handler, or the message of its error.
    QString called(const QXOSAIDRef& script, const char* handler) const {
        QXOSAIDRef result = script->executeSubroutine(QString::fromUtf8(handler), {});
        return result ? result->stringValue() : component->lastErrorMessage();
    }

    QXOSAComponentRef component;
};

} // namespace

TEST_F(AppleScriptTest, ModesAndContexts) {
    QXOSAIDRef script = compiled("property total : 1\non run\nreturn total\nend run");
    QXOSAIDRef context = compiled("property total : 2");
    EXPECT_EQ(script->execute()->int32Value(), 1);
    QXOSAIDRef runOnly = QXOSAID::QXOSAIDWithComponent(component, script->store(kOSAModePreventGetSource));
    EXPECT_EQ(runOnly->execute()->int32Value(), 1);
    LogCatcher log;
    EXPECT_THROW(runOnly->source(), QXOSAException);
    const OSAID before = context->valueID();
    EXPECT_TRUE(context->compile(QStringLiteral("property more : 3"), kOSAModeAugmentContext));
    EXPECT_EQ(context->valueID(), before);
    EXPECT_EQ(context->integerForPropertyName(QStringLiteral("total")), 2);
    EXPECT_EQ(context->integerForPropertyName(QStringLiteral("more")), 3);
    const auto both = QStringLiteral("property most : more + 1\non both()\nset more to more * 2\nreturn (more as text) & most\nend both");
    EXPECT_TRUE(context->compile(both, kOSAModeAugmentContext));
    EXPECT_EQ(called(context, "both"), QStringLiteral("64"));
    EXPECT_EQ(context->integerForPropertyName(QStringLiteral("more")), 6);
    const QString fresh = QStringLiteral("fresh");
    EXPECT_THROW(script->setDescriptorForPropertyName(Descriptor::descriptorWithInt32(4), fresh, kOSAModeDontDefine), QXOSAException);
    script->setDescriptorForPropertyName(Descriptor::descriptorWithInt32(4), fresh);
    EXPECT_EQ(script->integerForPropertyName(fresh), 4);
    script->setDescriptorForPropertyName(nullptr, fresh);
    EXPECT_FALSE(script->hasPropertyNamed(fresh));
}

TEST_F(AppleScriptTest, AWaitEndsAtTheDeadline) {
    QXOSAIDRef script = compiled("delay 3600");
    for (const bool isLate : {false, true}) {
        component->setTimeout({});
        if (!isLate)
            component->setTimeoutInterval(0.05);
        std::thread run([&] { EXPECT_FALSE(script->execute()); });
        if (isLate)
            component->setTimeoutInterval(0.05);
        run.join();
        EXPECT_EQ(component->lastErrorInfo()->error(), errAETimeout);
    }
}

TEST_F(AppleScriptTest, ScriptsRunInContexts) {
    QXOSAIDRef script = compiled("property own : 1\nproperty total : 2\n"
                                 "on twice(n)\nreturn 2 * n\nend twice\n"
                                 "on run\nset own to own + 1\nset total to total + 1\nset my extra to 7\nset my fresh to 8\n"
                                 "return {own, total, twice(total), aid()}\nend run");
    QXOSAIDRef context = compiled("property extra : 5\nproperty total : 30\non aid()\nreturn \"aided\"\nend aid\n"
                                  "on twice(n)\nreturn 0\nend twice\non own()\nend own");
    context->setDescriptorForPropertyName(Descriptor::descriptorWithInt32(0), QStringLiteral("fresh"));
    EXPECT_FALSE(script->executeInContext(QXOSAID::QXOSAIDContextWithComponent(component))) << "no aid there";
    ASSERT_TRUE(script->executeInContext(context)) << component->lastErrorMessage().toStdString();
    EXPECT_EQ(component->lastResult()->display()->text, u"{3, 31, 62, \"aided\"}");
    const std::tuple<QXOSAIDRef, const char*, int> kRows[] = {
        {script, "own", 3}, {script, "total", 3}, {context, "total", 31}, {context, "extra", 7}, {context, "fresh", 8},
    };
    for (const auto& [holder, name, value] : kRows)
        EXPECT_EQ(holder->integerForPropertyName(QString::fromUtf8(name)), value) << name;
}

TEST_F(AppleScriptTest, CopiesOfScriptsAreScriptsOfTheirOwn) {
    QXOSAIDRef script = compiled("property total : 1\non run\nset total to total + 1\nend run");
    QXOSAIDRef copy = script->copyScript(), same = script->copyID();
    script->execute();
    EXPECT_EQ(same->integerForPropertyName(QStringLiteral("total")), 2);
    EXPECT_EQ(copy->integerForPropertyName(QStringLiteral("total")), 1);
    const OSAID id = script->valueID();
    script.reset();
    OSAID none = 0;
    EXPECT_EQ(OSACopyID(component->component(), id, none), errOSAInvalidID);
    EXPECT_EQ(same->integerForPropertyName(QStringLiteral("total")), 2);
}

TEST_F(AppleScriptTest, TheLastResult) {
    EXPECT_FALSE(component->lastResult());
    compiled("6 * 7")->execute();
    EXPECT_EQ(component->lastResult()->int32Value(), 42);
    const OSAID id = component->lastResult()->valueID();
    OSAID none = 0;
    EXPECT_EQ(OSACopyID(component->component(), id, none), errOSAInvalidID) << "disposed of with the object";
    component->setLastResult(QXOSAID::QXOSAIDWithComponent(component, Descriptor::descriptorWithInt32(5)));
    EXPECT_EQ(component->lastResult()->int32Value(), 5);
    component->setLastResult(nullptr);
    EXPECT_FALSE(component->lastResult());
}

TEST_F(AppleScriptTest, ErrorsOfScripts) {
    const char* const kSource = "error \"boom\" number 42 from {7} partial result {1, 2} to integer";
    EXPECT_FALSE(compiled(kSource)->execute());
    const QXOSAErrorInfoRef info = component->lastErrorInfo();
    EXPECT_EQ(info->error(), 42);
    EXPECT_EQ(info->message(), QStringLiteral("boom"));
    EXPECT_EQ(info->errorRange(), (QXRange{0, std::strlen(kSource)}));
    EXPECT_EQ(info->offendingObject()->aeDesc(), AEDesc::list({AEDesc::ofInt32(7)}));
    EXPECT_EQ(info->partialResult()->numberOfItems(), 2u);
    EXPECT_EQ(info->expectedType()->typeCodeValue(), "long"_4cc);
}

TEST_F(AppleScriptTest, EventsPassThroughTheBridge) {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    manager.setEventHandler([](const auto&, const auto& answer) { answer->setDescriptor(Descriptor::descriptorWithInt32(5), "----"_4cc); },
                            "test"_4cc, "work"_4cc);
    // The generic component opens the real one only after the procedures were installed.
    for (const auto& owner : {component, QXOSAComponent::initWithGenericComponent()}) {
        Listener listener;
        owner->setDelegate(&listener);
        QXOSAIDRef script = compiled(owner, "\u00ABevent testwork\u00BB");
        EXPECT_EQ(script->execute()->int32Value(), 5);
        EXPECT_EQ(listener.sent, std::vector{"work"_4cc});
        owner->setPreventDestructiveEvents(true);
        EXPECT_FALSE(script->execute());
        EXPECT_EQ(owner->lastErrorInfo()->error(), errAEEventFailed);
        owner->setDelegate(nullptr);
    }
    manager.removeEventHandlerForEventClass("test"_4cc, "work"_4cc);
}

TEST_F(AppleScriptTest, HandlersAreTakenAway) {
    const char* const kSource = "property go2 : 1\n"
                                "on go()\nreturn \"mine\"\nend go\n"
                                "on |Stop|()\nreturn \"stopped\"\nend |Stop|\n"
                                "on caller()\nreturn go()\nend caller\n"
                                "on idle\nreturn 5\nend idle";
    QXOSAIDRef script = compiled(kSource), other = script->copyScript();
    EXPECT_EQ(called(script, "caller"), QStringLiteral("mine")) << "and its call is kept ready from now on";
    struct Row {
        const char* name;
        const char* error;
    };
    for (const Row& row :
         {Row{"go", "«script» doesn’t understand the “go” message."}, Row{"Stop", "«script» doesn’t understand the “Stop” message."}}) {
        const QString name = QString::fromUtf8(row.name);
        const std::size_t count = script->handlerNames()->size();
        EXPECT_TRUE(script->hasHandlerNamed(name));
        script->setDescriptorForHandlerName(nullptr, name);
        EXPECT_FALSE(script->hasHandlerNamed(name));
        EXPECT_THROW(script->handlerForName(name), QXOSAException);
        EXPECT_EQ(script->handlerNames()->size(), count - 1);
        EXPECT_EQ(script->propertyNames()->size(), 1u);
        EXPECT_EQ(called(script, row.name), QString::fromUtf8(row.error));
        script->setDescriptorForHandlerName(nullptr, name); // removing it again has no effect
    }
    EXPECT_EQ(called(script, "caller"), QStringLiteral("«script» doesn’t understand the “go” message."));
    script->setDescriptorForHandlerName(nullptr, QStringLiteral("go2"));
    EXPECT_TRUE(script->hasPropertyNamed(QStringLiteral("go2"))) << "a property is no handler";
    EXPECT_TRUE(script->hasIdleHandler());
    script->setValueForHandlerDescriptor(nullptr, Descriptor::descriptorWithDescriptorType("evnt"_4cc, std::string("csimeldi")));
    EXPECT_FALSE(script->hasIdleHandler());
    EXPECT_EQ(called(other, "caller"), QStringLiteral("mine")) << "the copy keeps its own";

    // The stored script has no such handler either, and the name can be used again.
    QXOSAIDRef loaded = QXOSAID::QXOSAIDWithComponent(component, script->store());
    EXPECT_EQ(loaded->handlerNames()->size(), 1u);
    EXPECT_EQ(loaded->integerForPropertyName(QStringLiteral("go2")), 1);
    loaded->setValueForHandlerName(other->handlerForName(QStringLiteral("go")), QStringLiteral("go"));
    EXPECT_EQ(called(loaded, "caller"), QStringLiteral("mine"));
    // An inherited handler is found when the script's own is removed.
    QXOSAIDRef child = QXOSAID::QXOSAIDContextWithComponent(component, other);
    child->compile(QStringLiteral("on go()\nreturn \"child's\"\nend go"), kOSAModeAugmentContext);
    EXPECT_EQ(called(child, "caller"), QStringLiteral("child's"));
    child->setDescriptorForHandlerName(nullptr, QStringLiteral("go"));
    EXPECT_EQ(called(child, "caller"), QStringLiteral("mine"));
}

TEST_F(AppleScriptTest, RecordingIsRefused) {
    for (const auto& owner : {component, QXOSAComponent::initWithGenericComponent()}) {
        QXOSAIDRef script = compiled(owner, "return 3"), fresh = QXOSAID::QXOSAIDWithComponent(owner);
        struct Row {
            QXOSAIDRef script;
            void (QXOSAID::*operation)();
            const char* message;
        };
        const char* const kImpossible = "Recording isn’t possible: no application tells AppleScript what its user does.";
        for (const Row& row : {Row{script, &QXOSAID::startRecording, kImpossible}, Row{fresh, &QXOSAID::startRecording, kImpossible},
                               Row{script, &QXOSAID::stopRecording, "No script is being recorded."}}) {
            (row.script.get()->*row.operation)();
            EXPECT_EQ(row.script->lastError(), errOSAScriptError);
            EXPECT_EQ(owner->lastErrorInfo()->error(), errAEEventNotHandled);
            EXPECT_EQ(owner->lastErrorInfo()->message(), QString::fromUtf8(row.message));
            EXPECT_EQ(owner->lastErrorInfo()->errorRange(), (QXRange{kQXNotFound, 0}));
        }
        EXPECT_FALSE(fresh->isValid());
        LogCatcher log;
        fresh->stopRecording();
        EXPECT_EQ(fresh->lastError(), errOSAInvalidID);
        EXPECT_EQ(script->execute()->int32Value(), 3) << "the script is as it was";
    }
}

} // namespace quoddle
