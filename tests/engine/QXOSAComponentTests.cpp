// SPDX-License-Identifier: MIT
// Components: opening, the last error, the last result, the run state.
#include "Fixture.h"

#include "engine/OSACallbacks.h"

#include <fstream>

#include <QTemporaryDir>

namespace quoddle {

using QXOSAComponentTest = BridgeTest;

TEST_F(QXOSAComponentTest, OpensAndCloses) {
    EXPECT_FALSE(QXOSAComponent::componentWithLanguageSubType("none"_4cc));
    EXPECT_EQ(component->languageSubType(), "fake"_4cc);
    EXPECT_EQ(component->version(), 0x10203);
    EXPECT_EQ(fake->callbacks.active.proc, OSAActiveCallback);
    EXPECT_EQ(fake->callbacks.send.proc, OSASendCallback);
    EXPECT_EQ(fake->callbacks.resumeDispatch.proc, OSAResumeCallback);
    EXPECT_EQ(fake->callbacks.active.refCon, component.get());
    ComponentInstance instance = component->component();
    auto adopted = std::make_shared<QXOSAComponent>(instance, false);
    EXPECT_EQ(adopted->languageSubType(), 0u);
    EXPECT_EQ(fake->callbacks.active.refCon, adopted.get());
    adopted.reset();
    EXPECT_EQ(fake->callbacks.active.refCon, nullptr) << "another component may get the same address";
    EXPECT_EQ(fake->callbacks.send.refCon, nullptr);
    EXPECT_EQ(fake->callbacks.resumeDispatch.refCon, nullptr);
    EXPECT_EQ(fake->callbacks.active.proc(fake->callbacks.active.refCon), noErr)
        << "the procedures stay, and know that their component is gone";
    component.reset();
    EXPECT_EQ(ComponentSubType(instance), 0u);
    EXPECT_EQ(QXOSAComponent::genericComponent(), QXOSAComponent::genericComponent());
    EXPECT_EQ(QXOSAComponent::osaOperationQueue().maxConcurrentOperationCount(), 10);
    EXPECT_EQ(QXOSAComponent::_asResultPropertyDescriptor()->aeDesc(), AEDesc::ofCode("prop"_4cc, "rslt"_4cc));
}

TEST_F(QXOSAComponentTest, CheckedFailuresRaiseAndAreKept) {
    const char* kName = "QXOSAComponent Failure";
    EXPECT_EQ(raised([&] { component->defaultLanguageSubType(); }, kName), badComponentSelector);
    EXPECT_EQ(component->lastError(), badComponentSelector);
    try {
        component->_failOSError(-42);
        FAIL();
    } catch (const QXOSAException& exception) {
        EXPECT_EQ(exception.name(), QString::fromUtf8(kName));
        EXPECT_EQ(exception.reason(), QStringLiteral("Error -42 received from component instance"));
        EXPECT_TRUE(exception.userInfo().isEmpty());
    }
    EXPECT_TRUE(component->_failOSError(noErr));
    EXPECT_EQ(component->lastError(), noErr);
}

TEST_F(QXOSAComponentTest, GenericComponentsNameLanguages) {
    FakeComponent::registerAs("ascr"_4cc);
    auto generic = QXOSAComponent::initWithGenericComponent();
    EXPECT_EQ(generic->defaultLanguageSubType(), "ascr"_4cc);
    generic->setDefaultLanguageSubType("fake"_4cc);
    EXPECT_EQ(generic->defaultLanguageSubType(), "fake"_4cc);
    auto stored = Descriptor::descriptorWithAEDesc(fake->stored(u"return 1"));
    EXPECT_EQ(generic->languageSubTypeForStoredScript(stored), "fake"_4cc);
    EXPECT_EQ(raised([&] { generic->languageSubTypeForStoredScript(nullptr); }, "QXOSAComponent Failure"), errOSABadStorageType);
    EXPECT_EQ(raised([&] { generic->setDefaultLanguageSubType("none"_4cc); }, "QXOSAComponent Failure"), errOSACantOpenComponent);
    EXPECT_TRUE(generic->realComponentForLanguageSubType("fake"_4cc));
    auto real = generic->realComponentForLanguageSubType("fake"_4cc);
    ASSERT_TRUE(real);
    EXPECT_EQ(real->version(), 0x10203) << "the one before was not closed";
    EXPECT_FALSE(generic->realComponentForLanguageSubType("none"_4cc));
    auto script = generic->loadFromStoredScript(stored, 0x40);
    EXPECT_EQ(FakeComponent::last()->calls.back().modeFlags, 0x40u);
    EXPECT_TRUE(script->ownsValueID());
    EXPECT_EQ(script->realFromGeneric()->component()->component(), real->component());
}

TEST_F(QXOSAComponentTest, LastErrorComesFromTheScript) {
    fake->error = {{"errn"_4cc, AEDesc::ofInt32(-1728)}};
    EXPECT_EQ(component->lastError(), -1728);
    EXPECT_EQ(raised([&] { component->_failOSError(errOSAScriptError); }, "QXOSAComponent Failure"), errOSAScriptError);
    EXPECT_EQ(component->lastError(), -1728) << "-1753 asks the component";
    fake->error.clear();
    EXPECT_EQ(component->lastErrorRange(), (QXRange{kQXNotFound, 0}));
    EXPECT_EQ(component->lastError(), 0);
}

TEST_F(QXOSAComponentTest, MessagesAreCleaned) {
    const QString kFragment = QStringLiteral("\u00ABclass asDB\u00BB id \u00ABdata 00\u00BB of ");
    const std::pair<QString, QString> kMessages[] = {
        {QStringLiteral("Plain."), QStringLiteral("Plain.")},
        {QStringLiteral(".class asDB. id (12) of x"), QStringLiteral("x")},
        {QStringLiteral("Can't get \u00ABclass asDB\u00BB id (12) of (a) of word 1."), QStringLiteral("Can't get word 1.")},
        {kFragment, kFragment},
    };
    for (const auto& [message, cleaned] : kMessages) {
        AEDesc text = AEDesc::ofText(message.toStdU16String());
        fake->error = {{"errs"_4cc, text}, {"errb"_4cc, text}};
        EXPECT_EQ(component->lastErrorMessage(), cleaned);
        EXPECT_EQ(component->lastBriefErrorMessage(), cleaned);
    }
    // Two lines with two matches of 23 characters. The second is cut at the place that it had before the first was removed.
    for (const char* lineEnd : {"\n", "\r"}) {
        const QString first = QStringLiteral("-class asDB- id (1) of ");
        const QString message =
            first + QStringLiteral("a") + QString::fromLatin1(lineEnd) + first + QStringLiteral("0123456789").repeated(4);
        fake->error = {{"errs"_4cc, AEDesc::ofText(message.toStdU16String())}};
        QString expected = message;
        EXPECT_EQ(component->lastErrorMessage(), expected.remove(0, 23).remove(25, 23));
        EXPECT_TRUE(expected.contains(first));
    }
}

TEST_F(QXOSAComponentTest, ErrorRecordsAreSnapshots) {
    fake->error = {{"errs"_4cc, AEDesc::ofUTF8("left over")}};
    QXOSAErrorInfoRef none = component->lastErrorInfo();
    EXPECT_TRUE(none->isRuntimeError());
    EXPECT_EQ(none->error(), 0);
    EXPECT_EQ(none->errorRange(), (QXRange{kQXNotFound, 0}));
    EXPECT_EQ(none->description(),
              QStringLiteral("<QXOSAErrorInfo error: 0, errorRange: {9223372036854775807, 0}, message: (null), briefMessage: "
                             "(null), application: (null), expectedType: (null), partialResult: (null), offendingObject: "
                             "(null)>"));
    auto status = QXOSAErrorInfo::errorInfoForOSStatus(userCanceledErr);
    EXPECT_FALSE(status->isRuntimeError());
    EXPECT_EQ(status->errorRange(), (QXRange{0, 0}));
    EXPECT_TRUE(status->message().isNull());
    fake->error = {{"errn"_4cc, AEDesc::ofInt32(42)},
                   {"errs"_4cc, AEDesc::ofUTF8("full")},
                   {"errb"_4cc, AEDesc::ofUTF8("brief")},
                   {"erap"_4cc, AEDesc::ofUTF8("Editor")},
                   {"errt"_4cc, AEDesc::ofType("docu"_4cc)},
                   {"ptlr"_4cc, AEDesc::ofInt32(7)},
                   {"erob"_4cc, AEDesc::list({AEDesc::ofInt32(1), AEDesc::ofInt32(2)})},
                   {"erng"_4cc, AEDesc::record({{"srcs"_4cc, AEDesc::ofInt32(3)}, {"srce"_4cc, AEDesc::ofInt32(10)}}, "erng"_4cc)}};
    const AEDesc object = fake->error["erob"_4cc];
    auto full = component->lastErrorInfo();
    fake->error.clear();
    EXPECT_TRUE(full->isRuntimeError());
    EXPECT_EQ(full->error(), 42);
    EXPECT_EQ(full->errorRange(), (QXRange{3, 7}));
    EXPECT_EQ(full->message(), QStringLiteral("full"));
    EXPECT_EQ(full->briefMessage(), QStringLiteral("brief"));
    EXPECT_EQ(stringValue(full->application()), QStringLiteral("Editor"));
    EXPECT_EQ(full->expectedType()->typeCodeValue(), "docu"_4cc);
    EXPECT_EQ(full->partialResult()->int32Value(), 7);
    EXPECT_EQ(full->offendingObject()->aeDesc(), object);
    EXPECT_EQ(
        full->description(),
        QStringLiteral("<QXOSAErrorInfo error: 42, errorRange: {3, 7}, message: full, briefMessage: brief, application: "
                       "<NSAppleEventDescriptor: 'utxt'(Editor)>, expectedType: <NSAppleEventDescriptor: 'type'(docu)>, partialResult: "
                       "<NSAppleEventDescriptor: 'long'(7)>, offendingObject: <NSAppleEventDescriptor: 'list'(2 items)>>"));
}

TEST_F(QXOSAComponentTest, DefaultTargets) {
    component->setDefaultTarget(nullptr);
    EXPECT_EQ(component->defaultTarget()->descriptorType(), "null"_4cc);
    auto target = Descriptor::descriptorWithProcessIdentifier(1);
    component->setDefaultTarget(target);
    component->setDefaultTarget(target);
    EXPECT_EQ(callCount("setDefaultTarget"), 2u);
    EXPECT_EQ(fake->defaultTarget, target->aeDesc());
    fake->failures["setDefaultTarget"] = -50;
    EXPECT_EQ(raised([&] { component->setDefaultTarget(nullptr); }, "QXOSAComponent Failure"), -50);
    EXPECT_EQ(component->defaultTarget(), target);
}

TEST_F(QXOSAComponentTest, LoadsFiles) {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a.scpt"));
    std::ofstream(path.toStdString()) << fake->stored(u"return 1").data();
    bool storable = false;
    auto script = component->loadFromURL(QUrl::fromLocalFile(path), 0, &storable);
    ASSERT_TRUE(script);
    EXPECT_TRUE(storable);
    EXPECT_TRUE(script->ownsValueID());
    fake->isStorable = false;
    EXPECT_TRUE(component->loadFromURL(QUrl::fromLocalFile(path), 0x40, &storable));
    EXPECT_FALSE(storable);
    EXPECT_EQ(callsOf("loadFile").back().modeFlags, 0x40u);
    EXPECT_FALSE(component->loadFromURL(QUrl::fromLocalFile(folder.filePath(QStringLiteral("none"))), 0));
    EXPECT_FALSE(component->loadFromURL(QUrl(QStringLiteral("http://example.org/a")), 0));
    fake->failures["loadFile"] = -54;
    EXPECT_EQ(raised([&] { component->loadFromURL(QUrl::fromLocalFile(path), 0); }, "QXOSAComponent Failure"), -54);
}

TEST_F(QXOSAComponentTest, SourceStyles) {
    OSASourceStyle style{.name = u"Keywords", .bold = true};
    OSASourceStyle other{.name = u"Comments", .italic = true};
    component->setSourceAttributes({style, other});
    EXPECT_EQ(component->sourceAttributes(), (std::vector{style, other}));
    EXPECT_EQ(component->sourceAttributeNames(), (QStringList{QStringLiteral("Keywords"), QStringLiteral("Comments")}));
    fake->failures["getSourceStyleNames"] = -1750;
    EXPECT_EQ(component->sourceAttributeNames(), std::nullopt);
}

TEST_F(QXOSAComponentTest, TheLastResultIsKeptInAScratchScript) {
    EXPECT_FALSE(component->lastResult());
    component->setLastResult(nullptr);
    component->setLastResult(nullptr);
    EXPECT_EQ(callCount("compile"), 1u);
    EXPECT_EQ(callCount("coerceFromDesc"), 1u) << "one undefined value for all";
    auto kept = std::find_if(fake->values.begin(), fake->values.end(), [](const auto& entry) { return entry.second.source == u"-- xxx"; });
    ASSERT_NE(kept, fake->values.end());
    EXPECT_EQ(fake->values[kept->second.properties[u"rslt"]].desc, descriptorWithUndefinedValue()->aeDesc());
    component->setLastResult(QXOSAID::QXOSAIDWithComponent(component, Descriptor::descriptorWithInt32(3)));
    EXPECT_EQ(fake->values[kept->second.properties[u"rslt"]].desc, AEDesc::ofInt32(3));
    fake->failures["setProperty"] = -1750;
    EXPECT_EQ(raised([&] { component->setLastResult(nullptr); }), noErr);
    std::weak_ptr<QXOSAComponent> weak = component;
    component.reset();
    EXPECT_TRUE(weak.expired()) << "what it keeps does not keep it";
}

TEST_F(QXOSAComponentTest, AFailingScratchScriptIsLogged) {
    fake->failures["compile"] = errOSAScriptError;
    LogCatcher log;
    component->setLastResult(nullptr);
    EXPECT_EQ(log.count(QStringLiteral("compile 'log' failed: <QXOSAErrorInfo error: ")), 1);
}

TEST_F(QXOSAComponentTest, RunStateDefaultsAndTheInvertedBusy) {
    EXPECT_TRUE(component->yieldCPU());
    EXPECT_FALSE(component->preventDestructiveEvents());
    EXPECT_EQ(component->timeoutError(), -1712);
    EXPECT_EQ(component->threadCanceledError(), -128);
    EXPECT_EQ(component->destructiveEventError(), -10000);
    EXPECT_FALSE(component->timeout().isValid());
    EXPECT_FALSE(component->isCancelled());
    EXPECT_FALSE(component->isResuming());
    int notified = 0;
    QObject::connect(component.get(), &QXOSAComponent::isBusyChanged, component.get(), [&] { ++notified; });
    EXPECT_TRUE(component->isBusy());
    component->setOperation(std::make_shared<NSOperation>([] {}));
    EXPECT_FALSE(component->isBusy());
    component->setOperation(nullptr);
    component->setOperation(nullptr);
    EXPECT_EQ(notified, 2);
    component->setTimeoutInterval(60);
    EXPECT_NEAR(static_cast<double>(QDateTime::currentDateTime().msecsTo(component->timeout())), 60000, 2000);
    const QDateTime deadline = QDateTime::fromMSecsSinceEpoch(1234567);
    component->setTimeout(deadline);
    EXPECT_EQ(component->timeout(), deadline);
    component->setTimeout(QDateTime());
    EXPECT_FALSE(component->timeout().isValid());
}

TEST(QXOSAComponent, DangerousEvents) {
    const std::pair<AEEventClass, std::vector<AEEventID>> kSafe[] = {
        {"ascr"_4cc, {"gdte"_4cc, "gdut"_4cc, "noop"_4cc}},
        {"core"_4cc, {"cnte"_4cc, "doex"_4cc, "getd"_4cc}},
        {"ears"_4cc, {"ffdr"_4cc, "lfdr"_4cc, "lvol"_4cc}},
        {"Jons"_4cc, {"gClp"_4cc, "iClp"_4cc}},
        {"ScTl"_4cc, {"ToAE"_4cc, "ToHT"_4cc, "ToXM"_4cc}},
        {"fbcs"_4cc, {"summ"_4cc}},
        {"fndr"_4cc, {"ToAE"_4cc, "ToHT"_4cc, "ToXM"_4cc, "gstl"_4cc}},
        {"misc"_4cc, {"curd"_4cc}},
        {"rdwr"_4cc, {"geof"_4cc}},
        {"syso"_4cc, {"cpls"_4cc, "cton"_4cc, "nfo4"_4cc, "ntoc"_4cc, "offs"_4cc, "rand"_4cc, "rond"_4cc}},
    };
    for (const auto& [suite, events] : kSafe) {
        for (AEEventID eventID : events)
            EXPECT_FALSE(QXOSAComponent::isDangerousEventSuite(suite, eventID)) << bytesOf(suite) << bytesOf(eventID);
        EXPECT_TRUE(QXOSAComponent::isDangerousEventSuite(suite, suite == "ascr"_4cc ? "psbr"_4cc : "setd"_4cc)) << bytesOf(suite);
    }
    EXPECT_TRUE(QXOSAComponent::isDangerousEventSuite("aevt"_4cc, "odoc"_4cc));
    EXPECT_TRUE(QXOSAComponent::isDangerousEventSuite("none"_4cc, "getd"_4cc));
    EXPECT_TRUE(QXOSAComponent::isDangerousEventSuite("jons"_4cc, "gClp"_4cc)) << "codes know upper and lower case";
}

} // namespace quoddle
