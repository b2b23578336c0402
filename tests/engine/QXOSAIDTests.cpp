// SPDX-License-Identifier: MIT
// Script values: ownership, failures, execution, handlers, properties, descriptors.
#include "Fixture.h"

#include "engine/BridgedObjects.h"

#include <fstream>

#include <QTemporaryDir>

namespace quoddle {

class QXOSAIDTest : public BridgeTest {
protected:
    QXOSAIDRef value(AEDesc desc) { return QXOSAID::QXOSAIDWithComponent(component, std::move(desc)); }
    QXOSAIDRef number(std::int32_t n) { return value(AEDesc::ofInt32(n)); }
};

TEST_F(QXOSAIDTest, MadeFromDescriptors) {
    EXPECT_FALSE(QXOSAID::QXOSAIDWithComponent(component, NSAppleEventDescriptorRef()));
    EXPECT_FALSE(QXOSAID::QXOSAIDWithComponent(component, Descriptor::nullDescriptor()));
    EXPECT_FALSE(QXOSAID::QXOSAIDWithComponent(component, Descriptor::descriptorWithString("")));
    EXPECT_TRUE(QXOSAID::QXOSAIDWithComponent(component, Descriptor::listDescriptor()));
    EXPECT_FALSE(QXOSAID::QXOSAIDWithComponent(component, AEDesc("scpt"_4cc, "short")));
    EXPECT_EQ(QXOSAID::QXOSAIDWithComponent(component, fake->stored(u"return 1"))->descriptorType(), "scpt"_4cc);
    EXPECT_EQ(number(5)->int32Value(), 5);
    fake->failures["coerceFromDesc"] = -1700;
    EXPECT_FALSE(number(5));
    QXOSAIDRef empty = QXOSAID::QXOSAIDWithComponent(component);
    EXPECT_FALSE(empty->isValid());
    EXPECT_TRUE(empty->ownsValueID());
    EXPECT_EQ(empty->descriptorType(), "null"_4cc);
    EXPECT_FALSE(empty->descriptor() || empty->store() || empty->source() || empty->display());
    EXPECT_EQ(empty->getInfoForSelector("best"_4cc), 0);
    EXPECT_EQ(empty->lastError(), noErr) << "the component is not asked";
}

TEST_F(QXOSAIDTest, OwnersDispose) {
    OSAID id = number(1)->valueID();
    EXPECT_EQ(fake->values.count(id), 0u);
    OSAID kept = fake->add({.desc = AEDesc::ofInt32(2)});
    {
        QXOSAIDRef borrowed = QXOSAID::QXOSAIDWithComponent(component, kept, false);
        borrowed->clear();
        EXPECT_FALSE(borrowed->isValid());
        EXPECT_TRUE(borrowed->ownsValueID());
    }
    EXPECT_EQ(fake->values.count(kept), 1u);
    QXOSAIDRef replaced = number(3);
    OSAID old = replaced->valueID();
    replaced->setDescriptor(Descriptor::descriptorWithInt32(4));
    EXPECT_EQ(fake->values.count(old), 0u);
    fake->failures["coerceFromDesc"] = -1700;
    EXPECT_EQ(raised([&] { replaced->setDescriptor(Descriptor::descriptorWithInt32(5)); }), -1700);
    fake->failures.clear();
    EXPECT_EQ(replaced->int32Value(), 4) << "kept when there is no new one";
    replaced->load(Descriptor::descriptorWithAEDesc(fake->stored(u"return 1")));
    EXPECT_EQ(replaced->descriptorType(), "scpt"_4cc);
    replaced->clear();
    EXPECT_EQ(fake->count(), 1u);
    LogCatcher log;
    fake->values.erase(kept);
    QXOSAID::QXOSAIDWithComponent(component, kept);
    EXPECT_EQ(log.count(QStringLiteral("QXOSAID _failOSError: errOSAInvalidID: <QXOSAID: 0x")), 1) << "and nothing escapes the destructor";
}

TEST_F(QXOSAIDTest, QuietAndLoudFailures) {
    QXOSAIDRef script = number(1);
    LogCatcher log;
    EXPECT_TRUE(script->_failOSError(noErr));
    for (OSStatus quiet : {errOSAScriptError, userCanceledErr, errOSAInvalidID}) {
        EXPECT_FALSE(script->_failOSError(quiet));
        EXPECT_EQ(script->lastError(), quiet);
    }
    EXPECT_EQ(log.count(QStringLiteral("errOSAInvalidID: ")), 1);
    EXPECT_EQ(log.count(QStringLiteral(", stack: ")), 1);
    try {
        script->_failOSError(errOSAInternalTableOverflow);
        FAIL();
    } catch (const QXOSAException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("QXOSAID Failure"));
        EXPECT_EQ(exception.reason(), QStringLiteral("Error -2707 received from OSAID instance"));
        EXPECT_EQ(exception.userInfo()[QStringLiteral("QXOSAID")].value<QXOSAIDRef>(), script);
        EXPECT_EQ(exception.userInfo()[QStringLiteral("OSStatus")].toInt(), errOSAInternalTableOverflow);
    }
    EXPECT_EQ(log.count(QStringLiteral("QXOSAID _failOSError: errOSAInternalTableOverflow: ")), 1);
    EXPECT_EQ(raised([&] { script->_failOSError(-43); }), -43);
}

TEST_F(QXOSAIDTest, Execution) {
    component->setCancelled(true);
    QXOSAIDRef result = compiled("return 12")->execute();
    ASSERT_TRUE(result);
    EXPECT_FALSE(component->isCancelled());
    EXPECT_TRUE(result->ownsValueID());
    EXPECT_EQ(result->integerValue(), 12);
    EXPECT_FALSE(compiled("return nothing")->execute());
    QXOSAIDRef failing = compiled("error 500 oops");
    EXPECT_FALSE(failing->execute());
    EXPECT_EQ(failing->lastError(), errOSAScriptError);
    EXPECT_EQ(component->lastErrorInfo()->error(), 500);
    EXPECT_EQ(component->lastErrorInfo()->message(), QStringLiteral("oops"));
    QXOSAIDRef cancelled = compiled("status -128");
    EXPECT_FALSE(cancelled->execute());
    EXPECT_EQ(cancelled->lastError(), userCanceledErr);
    EXPECT_EQ(raised([&] { compiled("status -1750")->execute(); }), -1750);
    QXOSAIDRef script = compiled("return 1");
    EXPECT_TRUE(script->executeEvent(nullptr));
    EXPECT_EQ(callCount("executeEvent"), 0u);
    EXPECT_TRUE(script->executeEvent(Descriptor::appleEventWithEventClass("misc"_4cc, "idle"_4cc)));
    EXPECT_EQ(fake->lastEvent.eventID(), "idle"_4cc);
    component->setCancelled(true);
    EXPECT_TRUE(script->executeInContext(nullptr));
    EXPECT_FALSE(component->isCancelled());
}

TEST_F(QXOSAIDTest, Subroutines) {
    QXOSAIDRef script = compiled("return 1");
    component->setCancelled(true);
    EXPECT_TRUE(script->executeSubroutine(QStringLiteral("go"), {}));
    EXPECT_FALSE(component->isCancelled());
    EXPECT_EQ(fake->lastEvent.eventClass(), "ascr"_4cc);
    EXPECT_EQ(fake->lastEvent.eventID(), "psbr"_4cc);
    EXPECT_EQ(fake->lastEvent.attribute("addr"_4cc), AEDesc::ofCurrentProcess());
    EXPECT_EQ(fake->lastEvent.attribute("rtid"_4cc)->asInt32(), -1);
    EXPECT_EQ(fake->lastEvent.find("snam"_4cc)->asUTF8(), "go");
    EXPECT_EQ(*fake->lastEvent.find("----"_4cc), AEDesc::list());
    auto a = Descriptor::descriptorWithInt32(1), b = Descriptor::descriptorWithInt32(2), c = Descriptor::descriptorWithInt32(3);
    script->executeSubroutine(QStringLiteral("go"), {a});
    EXPECT_EQ(*fake->lastEvent.find("----"_4cc), AEDesc::list({a->aeDesc()}));
    // Each parameter is inserted at the position equal to the number of items so far, which is in front of the last one.
    script->executeSubroutine(QStringLiteral("go"), {a, b, c});
    EXPECT_EQ(*fake->lastEvent.find("----"_4cc), AEDesc::list({b->aeDesc(), c->aeDesc(), a->aeDesc()}));
}

TEST_F(QXOSAIDTest, Contexts) {
    QXOSAIDRef parent = number(1);
    QXOSAIDRef context = QXOSAID::QXOSAIDContextWithComponent(component, parent);
    ASSERT_TRUE(context);
    EXPECT_EQ(fake->values[context->valueID()].source, u"10");
    EXPECT_EQ(callsOf("compile").at(0).modeFlags, kOSAModeCompileIntoContext);
    EXPECT_EQ(fake->values[context->valueID()].properties.count(u"pare"), 1u);
    LogCatcher log;
    fake->failures["setProperty"] = errOSAScriptError;
    EXPECT_FALSE(QXOSAID::QXOSAIDContextWithComponent(component, parent));
    EXPECT_EQ(log.count(QStringLiteral("QXOSAIDContextWithComponent:parent: failed")), 1);
    fake->failures["compile"] = errOSAScriptError;
    EXPECT_FALSE(QXOSAID::QXOSAIDContextWithComponent(component));
    EXPECT_EQ(log.count(QStringLiteral("QXOSAIDContextWithComponent failed")), 1);
}

TEST_F(QXOSAIDTest, Files) {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a.scpt"));
    QUrl url = QUrl::fromLocalFile(path), missing = QUrl::fromLocalFile(folder.filePath(QStringLiteral("none")));
    compiled("return 1")->storeFile(path);
    QXOSAIDRef script = QXOSAID::QXOSAIDWithComponent(component);
    EXPECT_EQ(raised([&] { script->loadFileURL(missing); }), -4960);
    EXPECT_EQ(raised([&] { script->loadFileURL(QUrl(QStringLiteral("http://example.org/"))); }), -4960);
    script->loadFileURL(url);
    EXPECT_EQ(script->scriptLocation(), url);
    std::size_t count = callCount("setScriptFile");
    script->setScriptLocation(missing);
    script->setScriptLocation(url);
    QXOSAID::QXOSAIDWithComponent(component)->setScriptLocation(url);
    EXPECT_EQ(callCount("setScriptFile"), count) << "missing, equal, no value";
    fake->failures["setScriptFile"] = -50;
    LogCatcher log;
    EXPECT_EQ(raised([&] { script->setScriptLocation(QUrl::fromLocalFile(folder.path())); }), noErr);
    EXPECT_EQ(log.count(QStringLiteral("setScriptLocation: OSASetScriptInfo file://%1 => -50").arg(folder.path())), 1);
    EXPECT_EQ(script->store()->aeDesc(), fake->stored(u"return 1"));
}

TEST_F(QXOSAIDTest, CopiesAndRecordings) {
    QXOSAIDRef script = compiled("return 1"), copy = script->copyScript();
    ASSERT_TRUE(copy);
    EXPECT_NE(copy->valueID(), script->valueID());
    EXPECT_EQ(callCount("copyID"), 0u);
    EXPECT_EQ(QString::fromStdU16String(script->copyID()->source()->text), QStringLiteral("return 1"));
    EXPECT_EQ(callCount("copyID") + callCount("copyScript"), 2u);
    QXOSAIDRef recording = QXOSAID::QXOSAIDWithComponent(component);
    recording->startRecording();
    EXPECT_TRUE(recording->isValid());
    recording->stopRecording();
    EXPECT_EQ(callsOf("stopRecording").at(0).id, recording->valueID());
    LogCatcher log;
    fake->failures = {{"startRecording", -1750}, {"stopRecording", errOSAInvalidID}};
    EXPECT_EQ(raised([&] { recording->startRecording(); }), -1750);
    recording->stopRecording();
    EXPECT_EQ(recording->lastError(), errOSAInvalidID);
    EXPECT_EQ(number(3)->display()->text, u"3");
    EXPECT_EQ(raised([&] { number(3)->source(); }), errOSASourceNotAvailable);
    script->setInfo(9, "modi"_4cc);
    EXPECT_EQ(script->getInfoForSelector("modi"_4cc), 9);
    EXPECT_EQ(raised([&] { script->getInfoForSelector("what"_4cc); }), errOSABadSelector);
}

TEST_F(QXOSAIDTest, RealValuesOfGenericOnes) {
    FakeComponent::registerAs("ascr"_4cc);
    auto generic = QXOSAComponent::initWithGenericComponent();
    QXOSAIDRef script = QXOSAID::QXOSAIDWithComponent(generic);
    ASSERT_TRUE(script->compile(QStringLiteral("return 1")));
    QXOSAIDRef real = script->realFromGeneric();
    ASSERT_TRUE(real);
    EXPECT_FALSE(real->ownsValueID());
    EXPECT_NE(real->component(), generic);
    EXPECT_EQ(FakeComponent::last()->callbacks.active.refCon, real->component().get());
    EXPECT_TRUE(real->execute());
    real.reset();
    EXPECT_TRUE(script->execute()) << "the value is still there";
}

TEST_F(QXOSAIDTest, Handlers) {
    QXOSAIDRef script = compiled("handler aevtodoc\nhandler aevtquit\nhandler miscidle\nhandler Go\nhandler |other|");
    EXPECT_TRUE(script->hasOpenHandler() && script->hasQuitHandler() && script->hasIdleHandler());
    EXPECT_FALSE(script->hasRunHandler());
    EXPECT_TRUE(script->hasHandlerNamed(QStringLiteral("gO")));
    EXPECT_FALSE(script->hasHandlerNamed(QStringLiteral("stop")));
    EXPECT_EQ(script->handlerNames()->size(), 5u);
    std::size_t count = fake->count();
    struct Row {
        AEEventClass eventClass;
        AEEventID eventID;
        const char* name;
        bool handled;
    };
    const Row kRows[] = {
        {"aevt"_4cc, "oapp"_4cc, "", true}, // true for any script
        {"aevt"_4cc, "odoc"_4cc, "", true}, {"aevt"_4cc, "quit"_4cc, "", true},   {"aevt"_4cc, "pdoc"_4cc, "", false},
        {"misc"_4cc, "idle"_4cc, "", true}, {"ascr"_4cc, "psbr"_4cc, "Go", true}, {"ascr"_4cc, "psbr"_4cc, "stop", false},
    };
    for (const Row& row : kRows) {
        auto event = Descriptor::appleEventWithEventClass(row.eventClass, row.eventID);
        event->setParamDescriptor(Descriptor::descriptorWithString(row.name), "snam"_4cc);
        EXPECT_EQ(script->hasHandlerForAppleEvent(event), row.handled) << bytesOf(row.eventID) << row.name;
    }
    EXPECT_TRUE(script->hasHandlerForAppleEvent(nullptr));
    EXPECT_TRUE(script->hasHandlerForAppleEvent(Descriptor::nullDescriptor()));
    QXOSAIDRef none = QXOSAID::QXOSAIDWithComponent(component);
    EXPECT_FALSE(none->hasHandlerForAppleEvent(Descriptor::appleEventWithEventClass("aevt"_4cc, "oapp"_4cc)));
    EXPECT_FALSE(none->hasRunHandler() || none->hasOpenHandler() || none->hasHandlerNamed(QStringLiteral("go")));
    EXPECT_EQ(none->handlerNames(), std::nullopt);
    fake->barred = {u"other"};
    EXPECT_TRUE(script->handlerForName(QStringLiteral("other")));
    EXPECT_EQ(raised([&] { script->handlerForName(QStringLiteral("stop")); }), errAEHandlerNotFound);
    EXPECT_EQ(fake->count(), count) << "what is found is given back";
    script->setValueForHandlerName(number(1), QStringLiteral("late"));
    EXPECT_TRUE(script->hasHandlerNamed(QStringLiteral("late")));
    script->setDescriptorForHandlerName(nullptr, QStringLiteral("late"));
    EXPECT_FALSE(script->hasHandlerNamed(QStringLiteral("late")));
}

TEST_F(QXOSAIDTest, Properties) {
    QXOSAIDRef script = compiled("property total 3\nproperty |odd name| text\nproperty ppgt 9");
    EXPECT_EQ(script->propertyForName(QStringLiteral("total"))->int32Value(), 3);
    EXPECT_EQ(script->integerForPropertyName(QStringLiteral("total")), 3);
    EXPECT_EQ(script->stringForPropertyName(QStringLiteral("total")), QStringLiteral("3"));
    EXPECT_EQ(script->unsignedIntegerForPropertyID("ppgt"_4cc), 9u);
    EXPECT_EQ(script->propertyNames()->size(), 3u);
    std::size_t count = fake->count();
    EXPECT_TRUE(script->hasPropertyNamed(QStringLiteral("total")));
    EXPECT_TRUE(script->hasPropertyForID("ppgt"_4cc));
    EXPECT_FALSE(script->hasPropertyForID("none"_4cc));
    EXPECT_EQ(fake->count(), count);
    EXPECT_EQ(raised([&] { script->propertyForName(QStringLiteral("none")); }), OSAIllegalAssign);
    script->setDescriptorForPropertyName(Descriptor::descriptorWithBoolean(true), QStringLiteral("appletisquitting"));
    EXPECT_TRUE(script->propertyForName(QStringLiteral("appletisquitting"))->booleanValue());
    script->setDescriptorForPropertyName(nullptr, QStringLiteral("appletisquitting"));
    EXPECT_FALSE(script->hasPropertyNamed(QStringLiteral("appletisquitting")));
    EXPECT_EQ(script->stringForPropertyID("ppgt"_4cc), QStringLiteral("9"));
    EXPECT_EQ(script->integerForPropertyID("ppgt"_4cc), 9);
    EXPECT_EQ(script->unsignedIntegerForPropertyName(QStringLiteral("total")), 3u);
}

TEST_F(QXOSAIDTest, PlainValuesOfProperties) {
    QXOSAIDRef script = compiled("property ppgt 9\nproperty ppgd text");
    script->setDescriptorForPropertyID(Descriptor::listDescriptor(), "ppga"_4cc);
    const std::size_t count = fake->count();
    EXPECT_EQ(script->plainValueForPropertyID("ppgt"_4cc), AEDesc::ofInt32(9));
    EXPECT_EQ(script->plainValueForPropertyID("ppgd"_4cc), AEDesc::ofUTF8("text"));
    for (FourCharCode other : {"ppga"_4cc, "ppgc"_4cc})
        EXPECT_EQ(script->plainValueForPropertyID(other), std::nullopt);
    EXPECT_EQ(QXOSAID(component).plainValueForPropertyID("ppgt"_4cc), std::nullopt);
    EXPECT_EQ(fake->count(), count);
}

TEST_F(QXOSAIDTest, NamesBetweenBars) {
    QXOSAIDRef script = compiled("property |date| 3");
    fake->barred = {u"date", u"x"};
    EXPECT_TRUE(script->propertyForName(QStringLiteral("date")));
    EXPECT_TRUE(script->hasPropertyNamed(QStringLiteral("date")));
    EXPECT_EQ(raised([&] { script->propertyForName(QStringLiteral("x")); }), OSAIllegalAssign) << "the second status counts";
    std::size_t count = callCount("getProperty");
    EXPECT_TRUE(script->hasPropertyForDescriptor(Descriptor::descriptorWithDescriptorType("TEXT"_4cc, "date")));
    EXPECT_FALSE(script->hasPropertyForDescriptor(Descriptor::descriptorWithDescriptorType("utf8"_4cc, "date")));
    EXPECT_EQ(callCount("getProperty"), count + 3) << "only \"utxt\" and \"TEXT\" are tried again";
}

TEST_F(QXOSAIDTest, DescriptorsByBestType) {
    for (DescType type : {"STXT"_4cc, "TEXT"_4cc, "itxt"_4cc, "utf8"_4cc, "utxt"_4cc}) {
        fake->calls.clear();
        EXPECT_EQ(value(AEDesc(type, "abcd"))->descriptor()->descriptorType(), type);
        EXPECT_EQ(callsOf("display").at(0).type, type) << bytesOf(type);
    }
    EXPECT_EQ(value(AEDesc::ofDouble(1.5))->descriptor()->aeDesc(), AEDesc::ofDouble(1.5));
    EXPECT_EQ(compiled("return 1")->descriptor()->aeDesc(), fake->stored(u"return 1"));
    OSAID null = fake->add({});
    EXPECT_EQ(QXOSAID::QXOSAIDWithComponent(component, null)->descriptor()->descriptorType(), "null"_4cc);
    LogCatcher log;
    EXPECT_FALSE(QXOSAID::QXOSAIDWithComponent(component, 77777, false)->descriptor());
    EXPECT_EQ(log.count(QStringLiteral("errOSAInvalidID")), 1);
}

TEST_F(QXOSAIDTest, DescriptorsAreKeptUntilTheValueChanges) {
    QXOSAIDRef script = compiled("return 1");
    EXPECT_EQ(script->descriptorCache(), nullptr);
    auto first = script->descriptor();
    EXPECT_EQ(script->descriptor(), first);
    EXPECT_EQ(callCount("store"), 1u);
    EXPECT_NE(script->descriptor(1), first);
    EXPECT_EQ(script->descriptorCache()->size(), 2u);
    script->setValueForPropertyName(number(1), QStringLiteral("x"));
    EXPECT_NE(script->descriptor(), first);
    auto second = script->descriptor();
    script->setValueForHandlerName(number(1), QStringLiteral("x"));
    EXPECT_NE(script->descriptor(), second);
    second = script->descriptor();
    const OSAID before = script->valueID();
    script->compile(QStringLiteral("return 2"));
    EXPECT_EQ(callsOf("compile").back().id, before);
    EXPECT_EQ(script->descriptor(), second) << "compiling leaves what is kept";
    script->clear();
    EXPECT_TRUE(script->descriptorCache()->empty());
}

TEST_F(QXOSAIDTest, RecordsWithAClassAreFixedUp) {
    AEDesc plain = AEDesc::record({{"a   "_4cc, AEDesc::ofInt32(1)}});
    OSAID classID = fake->add({.desc = AEDesc::ofType("docu"_4cc)});
    OSAID id = fake->add({.desc = plain, .properties = {{u"pcls", classID}}});
    QXOSAIDRef record = QXOSAID::QXOSAIDWithComponent(component, id);
    EXPECT_TRUE(record->isRecord());
    EXPECT_EQ(record->descriptor(0x40)->aeDesc(), plain);
    for (const auto& [operation, flags] : {std::pair("coerceToDesc", 0x40u), std::pair("setProperty", 4u)}) {
        const auto calls = callsOf(operation);
        EXPECT_EQ(calls.size(), 2u);
        EXPECT_TRUE(std::all_of(calls.begin(), calls.end(), [flags = flags](const auto& call) { return call.modeFlags == flags; }))
            << operation;
    }
    EXPECT_EQ(callCount("dispose"), 1u) << "of the class that was read";
    EXPECT_EQ(fake->values[id].properties.count(u"pcls"), 1u) << "the class is back";
}

TEST_F(QXOSAIDTest, FailedCoercionsAreTriedOnceMore) {
    QXOSAIDRef odd = value(AEDesc::ofInt32(1));
    fake->refusedTypes = {"****"_4cc};
    EXPECT_EQ(odd->descriptor(0x40)->aeDesc(), AEDesc::ofInt32(1));
    EXPECT_EQ(callsOf("coerceToDesc").at(1).modeFlags, 0x40u);
    fake->calls.clear();
    fake->refusedTypes = {"****"_4cc, "long"_4cc};
    LogCatcher log;
    EXPECT_FALSE(odd->descriptor());
    EXPECT_EQ(callCount("coerceToDesc"), 2u);
    EXPECT_EQ(
        log.count(QStringLiteral("-[QXOSAID descriptorWithModeFlags: exception: Error -1700 received from OSAID instance, source: (null)")),
        1);
    fake->failures["coerceToDesc"] = -1750;
    EXPECT_FALSE(odd->descriptor());
    EXPECT_EQ(callCount("coerceToDesc"), 3u) << "only after -1700";
    EXPECT_EQ(log.count(QStringLiteral("descriptorWithModeFlags")), 1);
    QXOSAIDRef script = compiled("return 1");
    fake->failures["store"] = errAECoercionFail;
    EXPECT_FALSE(script->descriptor());
    EXPECT_EQ(callCount("coerceToDesc"), 3u) << "and not for scripts";
}

TEST_F(QXOSAIDTest, TypeTests) {
    EXPECT_TRUE(number(1)->isValue());
    EXPECT_FALSE(compiled("return 1")->isValue());
    EXPECT_TRUE(value(AEDesc::list())->isList());
    EXPECT_TRUE(value(descriptorWithMissingValue()->aeDesc())->isMissingValue());
    EXPECT_TRUE(value(descriptorWithUndefinedValue()->aeDesc())->isUndefinedValue());
    EXPECT_FALSE(value(AEDesc::ofEnum("msng"_4cc))->isMissingValue());
    const std::pair<DescType, bool> kFiles[] = {{"alis"_4cc, true}, {"file"_4cc, true},  {"fsrf"_4cc, true}, {"furl"_4cc, true},
                                                {"psxf"_4cc, true}, {"bmrk"_4cc, false}, {"utxt"_4cc, false}};
    for (auto [type, answer] : kFiles)
        EXPECT_EQ(value(AEDesc(type, "file:///a"))->isFile(), answer) << bytesOf(type);
    const std::pair<DescType, bool> kTexts[] = {{"STXT"_4cc, true},  {"TEXT"_4cc, true}, {"encs"_4cc, true}, {"itxt"_4cc, true},
                                                {"sutx"_4cc, true},  {"utf8"_4cc, true}, {"utxt"_4cc, true}, {"cstr"_4cc, false},
                                                {"pstr"_4cc, false}, {"ut16"_4cc, false}};
    for (auto [type, answer] : kTexts)
        EXPECT_EQ(value(AEDesc(type, "abcdef"))->isText(), answer) << bytesOf(type);
    EXPECT_TRUE(value(fileSpecifier("file"_4cc, "name"_4cc, "utxt"_4cc)->aeDesc())->isFile());
    EXPECT_FALSE(value(fileSpecifier("docu"_4cc, "name"_4cc, "utxt"_4cc)->aeDesc())->isFile());
    EXPECT_EQ(value(AEDesc::ofUTF8("18446744073709551615"))->unsignedIntegerValue(), UINT64_MAX);
    // Some components know only one of the two selectors for scripts.
    QXOSAIDRef script = compiled("return 1");
    for (FourCharCode denied : {"cscr"_4cc, "cntx"_4cc}) {
        fake->setScriptInfo(script->valueID(), denied, 0);
        fake->setScriptInfo(script->valueID(), denied == "cscr"_4cc ? "cntx"_4cc : "cscr"_4cc, 1);
        EXPECT_EQ(script->descriptorType(), "scpt"_4cc) << bytesOf(denied);
    }
    // A value with the best type "enum" has the type of its descriptor.
    OSAID id = fake->add({.desc = AEDesc::ofBoolean(true)});
    fake->setScriptInfo(id, "best"_4cc, static_cast<std::int32_t>("enum"_4cc));
    EXPECT_EQ(QXOSAID::QXOSAIDWithComponent(component, id)->descriptorType(), "bool"_4cc);
    std::uint64_t ticket = BridgedObjects::add(7);
    QXOSAIDRef reference = value(BridgedObjects::descriptor(ticket)->aeDesc());
    EXPECT_TRUE(reference->isASObjCReference());
    EXPECT_EQ(reference->ASObjCReference(), QVariant(7));
    EXPECT_FALSE(number(1)->isASObjCReference());
}

} // namespace quoddle
