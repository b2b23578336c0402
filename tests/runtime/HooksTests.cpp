// SPDX-License-Identifier: MIT
#include "Applet.h"

#include "engine/BridgedObjects.h"
#include "engine/NSAppleEventDescriptor-QXAdditions.h"

#include <gtest/gtest.h>

#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;
using test::ScriptedComponent;

namespace {

constexpr auto kDroplet = "open";

/// Answers images that are as wide as the name, path or data is long.
class FakeImages final : public ImageSource {
public:
    QImage imageNamed(const QString& name) override { return made("named", name.size()); }
    QImage imageFile(const QString& path) override { return made("file", path.size()); }
    QImage imageWithData(const std::string& data) override { return made("data", static_cast<qsizetype>(data.size())); }
    static QImage made(const char* kind, qsizetype width) {
        QImage image(static_cast<int>(width), 1, QImage::Format_Mono);
        image.setText(u"kind"_s, QString::fromLatin1(kind));
        return image;
    }
};

QString told(const QImage& image) {
    return image.isNull() ? u"none"_s : u"%1 %2"_s.arg(image.text(u"kind"_s)).arg(image.width());
}

void setProperty(const Applet& applet, const char* name, const NSAppleEventDescriptorRef& value) {
    applet.delegate->mainScript()->setDescriptorForPropertyName(value, QString::fromLatin1(name));
}

NSAppleEventDescriptorRef raw(const char* type, std::string_view data) {
    return NSAppleEventDescriptor::descriptorWithDescriptorType(fourCharCode(type), data);
}

} // namespace

TEST(Hooks, DecideWhichFilesAreAcceptable) {
    const AEDesc yes = AEDesc::ofBoolean(true), no = AEDesc::ofBoolean(false);
    const struct {
        const char *name, *handlers;
        ScriptedComponent::Outcome outcome;
        bool isAcceptable, ends;
    } rows[] = {
        {"no open handler", "run appletfileisacceptable", {yes}, false, false},
        {"no hook", kDroplet, {}, true, false},
        {"yes", "open appletfileisacceptable", {yes}, true, false},
        {"no", "open appletfileisacceptable", {no}, false, false},
        {"no answer", "open appletfileisacceptable", {}, false, false},
        {"an error", "open appletfileisacceptable", ScriptedComponent::failing(5, u"It went wrong."), false, true},
        {"cancelled", "open appletfileisacceptable", ScriptedComponent::failing(userCanceledErr, u"User canceled."), false, false},
        {"the engine fails", "open appletfileisacceptable", {{}, noErr, {}, {}, errOSASystemError}, true, false},
    };
    for (const auto& row : rows) {
        Applet applet({.handlers = row.handlers});
        std::string asked;
        ScriptedComponent::sHandlers["appletfileisacceptable"] = [&](ScriptedComponent::Run& run) {
            const AEDesc* parameters = run.event.find("----"_4cc);
            if (parameters && parameters->count() == 1)
                asked = parameters->items()[0].asUTF8().value_or("");
            return row.outcome;
        };
        applet.delegate->_setupApplication(false);
        EXPECT_EQ(applet.delegate->isFileAcceptable(u"/a b.txt"_s), row.isAcceptable) << row.name;
        EXPECT_EQ(applet.alerts.shown.size(), row.ends ? 1 : 0) << row.name;
        if (row.ends)
            applet.alerts.dismiss();
        EXPECT_EQ(applet.ended(), row.ends) << row.name;
    }
}

TEST(Hooks, AnswerTheUpdater) {
    for (const auto* name : {"appletmaycheckforupdates", "appletupdatershouldpromptforpermissiontocheckforupdates"}) {
        const auto ask = [name](AppDelegate& delegate) {
            return name == std::string_view("appletmaycheckforupdates") ? delegate.updaterMayCheckForUpdates()
                                                                        : delegate.updaterShouldPromptForPermissionToCheckForUpdates();
        };
        const struct {
            const char* handlers;
            ScriptedComponent::Outcome outcome;
            bool answer;
            int alerts;
        } rows[] = {
            {"run", {}, true, 0},
            {name, {AEDesc::ofBoolean(true)}, true, 0},
            {name, {AEDesc::ofBoolean(false)}, false, 0},
            {name, ScriptedComponent::failing(5, u"x"), false, 1},
            {name, {{}, noErr, {}, {}, errOSASystemError}, true, 0},
        };
        for (const auto& row : rows) {
            Applet applet({.handlers = row.handlers});
            ScriptedComponent::sHandlers[name] = [&](ScriptedComponent::Run&) { return row.outcome; };
            applet.delegate->_setupApplication(false);
            EXPECT_EQ(ask(*applet.delegate), row.answer) << name;
            EXPECT_EQ(applet.alerts.shown.size(), row.alerts) << name;
        }
    }
}

TEST(Hooks, ThatTakeLongCanBeStopped) {
    class Stopper final : public HookStopper {
    public:
        int requests = 0, dismissals = 0, stopAt = 3;
        QString name;
        void show(const QString& applicationName, std::function<void()> stop) override {
            name = applicationName;
            if (++requests == stopAt)
                stop();
        }
        void dismiss() override { ++dismissals; }
    } stopper;
    const struct {
        double secondsOfTurn; // the hook takes ten turns
        int stopAt;
        bool isAcceptable, isStopped, isOffered;
    } rows[] = {{0.05, 1, true, false, false}, {0.3, 3, false, true, true}, {0.3, 100, true, false, true}, {0.05, 1, true, false, false}};
    Applet applet({.handlers = "open appletfileisacceptable", .hookStopper = &stopper});
    applet.delegate->_setupApplication(false);
    for (const auto& row : rows) {
        stopper.requests = 0;
        stopper.stopAt = row.stopAt;
        ScriptedComponent::sHandlers["appletfileisacceptable"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
            for (int turn = 0; turn < 10; ++turn) {
                applet.advance(row.secondsOfTurn);
                if (const OSErr stop = run.yield())
                    return ScriptedComponent::failing(stop, u"User canceled.");
            }
            return {AEDesc::ofBoolean(true)};
        };
        const int dismissals = stopper.dismissals;
        EXPECT_EQ(applet.delegate->isFileAcceptable(u"/a"_s), row.isAcceptable);
        EXPECT_EQ(applet.delegate->hookWasStopped(), row.isStopped);
        EXPECT_EQ(stopper.requests > 0, row.isOffered);
        EXPECT_EQ(stopper.dismissals, dismissals + 1);
    }
    EXPECT_FALSE(stopper.name.isEmpty());
    EXPECT_TRUE(applet.alerts.shown.isEmpty()) << "stopping a hook is no error";

    // A Stop of one hook has nothing to do with files that no hook was asked about.
    Applet other({.handlers = "open appletmaycheckforupdates", .hookStopper = &stopper});
    stopper.requests = 0;
    stopper.stopAt = 1;
    ScriptedComponent::sHandlers["appletmaycheckforupdates"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        other.advance(2);
        return ScriptedComponent::failing(run.yield() ? OSErr(userCanceledErr) : OSErr(noErr), u"User canceled.");
    };
    other.delegate->_setupApplication(false);
    EXPECT_FALSE(other.delegate->updaterMayCheckForUpdates());
    EXPECT_TRUE(other.delegate->hookWasStopped());
    EXPECT_TRUE(other.delegate->isFileAcceptable(u"/a"_s));
    EXPECT_FALSE(other.delegate->hookWasStopped());
}

/// The hook runs on the main thread and the handler on the script queue, but both scripts share the component.
TEST(Hooks, AreStoppedWithoutTheHandlerThatRuns) {
    class Stopper final : public HookStopper {
    public:
        void show(const QString&, std::function<void()> stop) override { stop(); }
        void dismiss() override {}
    } stopper;
    Applet applet({.handlers = "open appletfileisacceptable", .info = "KVBStayOpen = YES;", .hookStopper = &stopper});
    std::atomic<bool> isRunning = false, mayEnd = false;
    std::atomic<OSErr> handlerWasTold = noErr;
    ScriptedComponent::sHandlers["open"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        isRunning = true;
        while (!mayEnd && handlerWasTold == noErr)
            handlerWasTold = run.yield();
        return {};
    };
    bool loops = false;
    ScriptedComponent::sHandlers["appletfileisacceptable"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        for (int turn = 0; loops && turn < 1000; ++turn) {
            applet.advance(0.1);
            if (const OSErr stop = run.yield())
                return ScriptedComponent::failing(stop, u"User canceled.");
        }
        return {AEDesc::ofBoolean(true)};
    };
    applet.launch();
    applet.delegate->applicationOpenFiles({u"/a"_s});
    ASSERT_TRUE(Applet::eventually([&] { return isRunning.load(); }));
    loops = true;
    EXPECT_FALSE(applet.delegate->isFileAcceptable(u"/b"_s));
    EXPECT_TRUE(applet.delegate->hookWasStopped());
    EXPECT_EQ(handlerWasTold, noErr) << "the hook's Stop is not the handler's";

    // A Stop of the handler does not stop the hook, and a new hook does not cancel the handler's Stop.
    loops = false;
    applet.delegate->mainScript()->component()->setCancelled(true);
    EXPECT_TRUE(applet.delegate->isFileAcceptable(u"/b"_s));
    EXPECT_TRUE(Applet::eventually([&] { return handlerWasTold != noErr; }));
    mayEnd = true;
    applet.settle();
}

TEST(Hooks, JudgeManyFilesInSlices) {
    Applet applet({.handlers = "open appletfileisacceptable", .info = "KVBStayOpen = YES;"});
    QStringList files;
    for (int i = 0; i < 100; ++i)
        files << u"/f%1"_s.arg(i);
    int judged = 0;
    std::vector<std::size_t> opened;
    std::string last;
    ScriptedComponent::sHandlers["appletfileisacceptable"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        ++judged;
        applet.advance(0.01);
        return {AEDesc::ofBoolean(run.event.find("----"_4cc)->items()[0].asUTF8().value_or("").find("no") == std::string::npos)};
    };
    ScriptedComponent::sHandlers["open"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        const AEDesc* list = run.event.find("----"_4cc);
        opened.push_back(list->count());
        last = list->items().back().asUTF8().value_or("");
        return {};
    };
    applet.launch();
    applet.settle();
    const auto open = [&](int request, const QStringList& names) {
        applet.application.asked = request;
        applet.delegate->applicationOpenFiles(names);
        applet.application.asked = 0;
    };
    const QList<std::pair<int, int>> none;

    open(1, files);
    open(2, {u"/no"_s}); // judged after the first request
    EXPECT_LT(judged, 10) << "the window has its turn";
    EXPECT_EQ(applet.application.answered, none);
    EXPECT_TRUE(Applet::eventually([&] {
        applet.advance(0);
        return applet.application.answered.size() == 2;
    }));
    EXPECT_EQ(judged, 101);
    EXPECT_EQ(opened, std::vector<std::size_t>{100});
    EXPECT_TRUE(last.ends_with("/f99")) << last;
    EXPECT_TRUE(applet.application.answered.contains(std::pair(1, 0)));
    EXPECT_TRUE(applet.application.answered.contains(std::pair(2, 2)));
    EXPECT_TRUE(applet.windowLog.contains(u"progress"_s));

    applet.application.answered.clear();
    open(3, files);
    open(4, files);
    applet.delegate->stopRunningScript();
    EXPECT_EQ(applet.application.answered, (QList<std::pair<int, int>>{{3, 1}, {4, 1}}));
    EXPECT_EQ(applet.windowLog.last(), u"last"_s);
    applet.advance(1);
    EXPECT_EQ(opened.size(), 1);
}

TEST(Hooks, FilesThatAreBeingJudgedKeepTheAppletAndAreStoppedWithTheRun) {
    for (const bool isStopped : {false, true}) {
        SCOPED_TRACE(isStopped);
        Applet applet({.handlers = "open appletfileisacceptable"}); // this applet does not stay open
        ScriptedComponent::sHandlers["appletfileisacceptable"] = [&](ScriptedComponent::Run&) -> ScriptedComponent::Outcome {
            applet.advance(0.05);
            return {AEDesc::ofBoolean(true)};
        };
        std::vector<std::size_t> opened;
        std::atomic<bool> isRunning = false, mayEnd = false;
        std::atomic<OSErr> wasTold = noErr;
        ScriptedComponent::sHandlers["open"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
            opened.push_back(run.event.find("----"_4cc)->count());
            isRunning = true;
            while (!mayEnd && wasTold == noErr)
                wasTold = run.yield();
            return wasTold == noErr ? ScriptedComponent::Outcome() : ScriptedComponent::failing(wasTold, u"User canceled.");
        };
        applet.launch({u"/first"_s});
        ASSERT_TRUE(Applet::eventually([&] { return isRunning.load(); }));
        applet.delegate->applicationOpenFiles({u"/1"_s, u"/2"_s, u"/3"_s, u"/4"_s, u"/5"_s});
        if (isStopped)
            applet.delegate->stopRunningScript();
        else
            mayEnd = true;
        applet.settle();
        EXPECT_EQ(applet.ended(), isStopped) << "the end of the first run";
        EXPECT_EQ(wasTold != noErr, isStopped);
        EXPECT_TRUE(Applet::eventually([&] {
            applet.advance(0);
            return applet.ended();
        }));
        EXPECT_EQ(opened, isStopped ? std::vector<std::size_t>{1} : (std::vector<std::size_t>{1, 5}));
    }
}

TEST(Hooks, HearOfAnUpdate) {
    Applet applet({.handlers = "run appletupdaterwillinstallupdate appletupdaterwillrelaunchapplication"});
    applet.delegate->_setupApplication(false);
    applet.delegate->updaterWillInstallUpdate();
    applet.delegate->updaterWillRelaunchApplication();
    const std::vector<std::string> expected = {"appletupdaterwillinstallupdate", "appletupdaterwillrelaunchapplication"};
    EXPECT_EQ(ScriptedComponent::calls(), expected);
}

TEST(Hooks, NameThePromptsOfThePanes) {
    Applet applet({.handlers = kDroplet, .strings = "DefaultDropFilesPrompt = drop; DefaultFindFilesPrompt = find;"});
    applet.delegate->_setupApplication(false);
    EXPECT_EQ(applet.delegate->appletDropPrompt(), u"drop"_s);
    EXPECT_EQ(applet.delegate->appletSearchPrompt(), u"find"_s);
    setProperty(applet, "appletdropname", NSAppleEventDescriptor::descriptorWithString(u"Put them here"));
    setProperty(applet, "appletsearchname", NSAppleEventDescriptor::descriptorWithInt32(7));
    EXPECT_EQ(applet.delegate->appletDropPrompt(), u"Put them here"_s);
    EXPECT_EQ(applet.delegate->appletSearchPrompt(), u"7"_s);
    setProperty(applet, "appletdropname", descriptorWithMissingValue());
    EXPECT_EQ(applet.delegate->appletDropPrompt(), u"drop"_s);
}

TEST(Hooks, MakeImagesOfValues) {
    FakeImages images;
    Applet applet({.handlers = kDroplet, .images = &images});
    applet.delegate->_setupApplication(false);
    EXPECT_EQ(told(applet.delegate->appletDropImage()), u"named 19"_s); // the name of the picture of several documents has 19 letters
    EXPECT_EQ(told(applet.delegate->appletSearchImage()), u"none"_s);

    const auto reference = [](const QVariant& object) { return BridgedObjects::descriptor(BridgedObjects::add(object)); };
    const std::pair<NSAppleEventDescriptorRef, QString> rows[] = {
        {descriptorWithMissingValue(), u"none"_s},
        {NSAppleEventDescriptor::descriptorWithString(u"logo"), u"named 4"_s},
        {NSAppleEventDescriptor::descriptorWithFileURL(u"/a b.png"_s), u"file 8"_s},
        {raw("PNG ", "12345"), u"data 5"_s},
        {raw("tiff", "123456"), u"data 6"_s},
        {raw("BMP ", "1"), u"named 19"_s},
        {NSAppleEventDescriptor::descriptorWithInt32(3), u"named 19"_s},
        {reference(u"star"_s), u"named 4"_s},
        {reference(QUrl::fromLocalFile(u"/x.png"_s)), u"file 6"_s},
        {reference(FakeImages::made("own", 9)), u"own 9"_s},
        {reference(5), u"named 19"_s},
    };
    for (const auto& [value, expected] : rows) {
        setProperty(applet, "appletdropimage", value);
        EXPECT_EQ(told(applet.delegate->appletDropImage()), expected) << value->descriptorType();
    }
    setProperty(applet, "appletsearchimage", NSAppleEventDescriptor::descriptorWithInt32(3));
    EXPECT_EQ(told(applet.delegate->appletSearchImage()), u"none"_s);
}

} // namespace quoddle
