// SPDX-License-Identifier: MIT
#include "Applet.h"

#include <gtest/gtest.h>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;
using test::ScriptedComponent;
using Calls = std::vector<std::string>;

namespace {

constexpr auto kNoPane = "KVBShowStartupScreen = NO;";
constexpr auto kStay = "KVBShowStartupScreen = NO; KVBStayOpen = YES;";
constexpr auto kPane = "";
constexpr auto kPaneAndStay = "KVBStayOpen = \"true\";";

} // namespace

TEST(Launch, DecidesWhatStarts) {
    const QStringList opening{u"progress"_s, u"show"_s, u"progress"_s};
    struct {
        const char *name, *handlers, *info;
        QStringList files;
        Calls calls;
        bool ended, started;
        int idleCalls;
        QStringList window; ///< calls of the window before anything has run
    } const table[] = {
        {"run only", "run", kNoPane, {}, {"run"}, true, true, 0, {}},
        {"run only, stays open", "run", kStay, {}, {"run"}, false, true, 0, {}},
        {"run and idle, stays open: idle follows the run", "run idle", kStay, {}, {"run"}, false, true, 1, {}},
        {"run and idle, does not stay open", "run idle", kNoPane, {}, {"run"}, true, true, 0, {}},
        {"idle only, stays open", "idle", kStay, {}, {}, false, true, 1, {}},
        {"idle only, does not stay open", "idle", kNoPane, {}, {}, true, false, 0, {}},
        {"quit only", "quit", kStay, {}, {}, true, false, 0, {}},
        {"nothing", "", kNoPane, {}, {}, true, false, 0, {}},
        {"no script at all", nullptr, kNoPane, {}, {}, true, false, 0, {}},
        {"pane", "run", kPane, {}, {}, false, false, 0, {u"startup"_s}},
        {"pane, stays open", "run idle", kPaneAndStay, {}, {}, false, false, 0, {u"startup"_s}},
        {"pane, no script at all", nullptr, kPane, {}, {}, false, false, 0, {u"startup"_s}},
        {"droplet waits", "open", kNoPane, {}, {}, false, true, 0, {u"last"_s, u"show"_s}},
        {"droplet with a run handler", "open run", kNoPane, {}, {"run"}, false, true, 0, {u"last"_s, u"show"_s, u"progress"_s}},
        {"droplet with a pane", "open", kPane, {}, {}, false, false, 0, {u"startup"_s, u"show"_s}},
        {"droplet with files", "open run", kNoPane, {u"/a"_s}, {"open"}, true, true, 0, opening},
        {"droplet with files, stays open", "open", kStay, {u"/a"_s}, {"open"}, false, true, 0, opening},
        {"droplet with pane: files held back, then opened", "open", kPane, {u"/a"_s}, {"open"}, true, true, 0, opening},
        {"files for a script that opens none", "run", kNoPane, {u"/a"_s}, {}, true, true, 0, {}},
        {"files for one behind a pane: forgotten", "run", kPane, {u"/a"_s}, {}, false, false, 0, {u"startup"_s}},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = row.handlers, .info = row.info});
        applet.launch(row.files);
        EXPECT_EQ(applet.windowLog, row.window) << applet.windowLog.join(u' ').toStdString();
        applet.settle();
        EXPECT_EQ(ScriptedComponent::calls(), row.calls);
        EXPECT_EQ(applet.ended(), row.ended);
        EXPECT_EQ(applet.delegate->scriptStarted(), row.started);
        EXPECT_EQ(applet.pendingIdleCalls(), row.idleCalls);
        EXPECT_TRUE(applet.delegate->isInitialized());
        EXPECT_EQ(applet.alerts.shown.size(), 0);
    }
}

TEST(Launch, ForAnEventInPlaceOfTheRunLeavesTheRunToTheEvent) {
    struct {
        const char *name, *handlers, *info;
        bool runs;      ///< whether the launching event asks for the run
        int idleCalls;  ///< after the launch; counts the call that ends a forgotten applet as well
        bool ended;     ///< after the run
        bool forgotten; ///< whether the applet ends when nobody asks for anything
    } const table[] = {
        {"one-shot", "run", kNoPane, true, 1, true, true},
        {"stays open", "run idle", kStay, true, 1, false, false},
        {"droplet", "open run", kNoPane, true, 0, false, false},
        {"with a pane", "run", kPane, false, 0, false, false},
    };
    for (const auto& row : table) {
        for (const bool isAsked : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.name << isAsked);
            Applet applet({.handlers = row.handlers, .info = row.info, .insteadOfRun = true});
            applet.launch();
            applet.settle();
            EXPECT_EQ(ScriptedComponent::calls(), Calls());
            EXPECT_FALSE(applet.ended());
            EXPECT_EQ(applet.pendingIdleCalls(), row.idleCalls);
            if (!isAsked) {
                applet.advance(130);
                applet.settle();
                EXPECT_EQ(applet.ended(), row.forgotten);
                continue;
            }
            // A second launch by hand asks for the run like an event, but only the first time.
            if (row.runs)
                for (int time = 0; time < 2; ++time)
                    applet.delegate->applicationWillReopen(true);
            applet.settle();
            EXPECT_EQ(ScriptedComponent::calls(), row.runs ? Calls{"run"} : Calls());
            EXPECT_EQ(applet.ended(), row.ended);
        }
    }
}

TEST(Launch, TheFirstWindowSoonAfterItIsWhatTheUserWaitsFor) {
    const struct {
        const char *name, *handlers, *info;
        bool insteadOfRun;
        std::function<void(Applet&)> before;
        bool isAwaited;
    } table[] = {
        {"at once", "run", kPaneAndStay, false, [](Applet&) {}, true},
        {"not the second one", "run", kPaneAndStay, false, [](Applet& applet) { applet.delegate->takeAwaitedWindow(); }, false},
        {"a moment later", "run", kPaneAndStay, false, [](Applet& applet) { applet.advance(1.5); }, true},
        {"not much later", "run", kPaneAndStay, false, [](Applet& applet) { applet.advance(3); }, false},
        {"not when the run is over", "run", kStay, false, [](Applet& applet) { applet.settle(); }, false},
        {"not in an idle call", "idle", kStay, false, [](Applet& applet) { applet.advance(1); }, false},
        {"not for somebody else", "run", kStay, true, [](Applet&) {}, false},
        {"launched again", "run", kStay, true, [](Applet& applet) { applet.delegate->applicationWillReopen(true); }, true},
    };
    for (const auto& row : table) {
        Applet applet({.handlers = row.handlers, .info = row.info, .insteadOfRun = row.insteadOfRun});
        applet.launch();
        row.before(applet);
        EXPECT_EQ(applet.delegate->takeAwaitedWindow(), row.isAwaited) << row.name;
        applet.settle();
    }
}

TEST(Launch, AnAppletWhoseWorkIsDoneEndsWhenOthersHaveTheirAnswers) {
    for (const char* handlers : {"run", "", "run quit"}) {
        for (const bool isQuitAskedFor : {false, true}) {
            SCOPED_TRACE(testing::Message() << handlers << isQuitAskedFor);
            int owed = 3;
            Applet applet({.handlers = handlers, .info = kNoPane, .areOthersAnswered = [&](bool isEndCertain) {
                               EXPECT_EQ(isEndCertain, std::string_view(handlers) != "run quit");
                               return --owed <= 0;
                           }});
            ScriptedComponent::sHandlers["quit"] = [](ScriptedComponent::Run& run) {
                run.continueEvent();
                return ScriptedComponent::Outcome();
            };
            applet.launch();
            applet.settle();
            applet.windowLog.clear();
            EXPECT_FALSE(applet.ended());
            if (isQuitAskedFor)
                applet.application.terminate();
            for (int answer = 0; answer < 2 && !isQuitAskedFor; ++answer) {
                EXPECT_FALSE(applet.ended());
                applet.delegate->applicationWaitsWoken();
            }
            applet.settle();
            EXPECT_TRUE(applet.ended());
            EXPECT_EQ(owed, isQuitAskedFor ? 2 : 0);
        }
    }
}

TEST(Launch, SetsUpOnceFromTheBundlesKeys) {
    struct {
        const char *name, *info;
        QStringList setup;
        bool updateItem, startupScreen, stayOpen;
    } const table[] = {
        {"nothing said", "", {u"osax"_s}, false, true, false},
        {"a feed", "SUFeedURL = x;", {u"updater"_s, u"osax"_s}, true, true, false},
        {"standard dialogs as text: not honoured", "KVBUseStandardOSAXEN = YES;", {u"osax"_s}, false, true, false},
        {"pane as words", "KVBShowStartupScreen = true; KVBStayOpen = no;", {u"osax"_s}, false, true, false},
        {"pane as figures", "KVBShowStartupScreen = 0; KVBStayOpen = 1;", {u"osax"_s}, false, false, true},
        {"pane as something else", "KVBShowStartupScreen = (); KVBStayOpen = {};", {u"osax"_s}, false, false, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = "open", .info = row.info});
        applet.launch();
        applet.delegate->_setupApplication(false); // the second call does nothing
        EXPECT_EQ(applet.setup, row.setup);
        EXPECT_EQ(applet.delegate->checkForUpdatesMenuItem() != nullptr, row.updateItem);
        EXPECT_EQ(applet.delegate->showStartupScreen(), row.startupScreen);
        EXPECT_EQ(applet.delegate->isStayOpenScript(), row.stayOpen);
        EXPECT_EQ(applet.delegate->idleSeconds(), 1);
        EXPECT_EQ(applet.controllerIdentifier, u"dropletWindowController"_s);
    }
    // Only the XML form of property lists has numbers.
    for (const auto& [value, installed] : std::initializer_list<std::pair<const char*, bool>>{{"<true/>", false},
                                                                                              {"<integer>1</integer>", false},
                                                                                              {"<real>0.5</real>", false},
                                                                                              {"<false/>", true},
                                                                                              {"<integer>0</integer>", true}}) {
        Applet applet({.infoXML = value});
        applet.launch();
        EXPECT_EQ(applet.setup.contains(u"osax"_s), installed) << value;
        EXPECT_EQ(applet.controllerIdentifier, u"appletWindowController"_s);
    }
}

TEST(Launch, PutsTheAppletsNameIntoTheMenus) {
    Applet applet({});
    applet.launch();
    const NSMenuItem& top = *applet.application.menu->itemArray()[0];
    EXPECT_EQ(top.title(), u"Demo"_s);
    const NSMenuItem& about = *top.submenu()->itemArray()[0];
    EXPECT_EQ(about.title(), u"About Demo, Demo"_s);
    EXPECT_EQ(about.submenu()->itemArray()[0]->title(), u"Deep Demo"_s);
}

TEST(Launch, StartsTheProgressOfADropletIndeterminate) {
    for (const auto& [handlers, total] : {std::pair{"open run", -1}, std::pair{"run", 0}}) {
        Applet applet({.handlers = handlers});
        applet.launch();
        const auto asObj = applet.delegate->mainScript()->propertyForPropertyID("ascr"_4cc);
        ASSERT_TRUE(asObj);
        EXPECT_EQ(asObj->integerForPropertyID("ppgt"_4cc), total) << handlers;
        EXPECT_EQ(asObj->integerForPropertyID("ppgc"_4cc), 0);
        EXPECT_EQ(asObj->stringForPropertyID("ppgd"_4cc), u""_s);
        EXPECT_EQ(asObj->stringForPropertyID("ppga"_4cc), u""_s);
    }
}

TEST(Launch, ABrokenScriptHasNoHandlersAndIsNotTriedAgain) {
    Applet applet({.handlers = nullptr, .info = kNoPane});
    const QXOSAIDRef first = applet.delegate->mainGenericScript();
    ASSERT_TRUE(first);
    EXPECT_FALSE(first->isValid());
    EXPECT_EQ(applet.delegate->mainGenericScript(), first);
    EXPECT_FALSE(applet.delegate->mainScript());
    applet.launch();
    EXPECT_TRUE(applet.ended());
}

TEST(Launch, JudgesMenuItems) {
    Applet applet({});
    applet.launch();
    const auto& items = applet.application.menu->itemArray()[0]->submenu()->itemArray();
    const NSMenuItem& quit = *items.back();
    ASSERT_EQ(quit.action(), u"terminate:"_s);
    EXPECT_TRUE(applet.delegate->validateMenuItem(quit));
    applet.delegate->setDisplayingPanel(true);
    EXPECT_FALSE(applet.delegate->validateMenuItem(quit));
    EXPECT_TRUE(applet.delegate->validateMenuItem(*items.front()));
    EXPECT_TRUE(applet.delegate->respondsToAction(u"checkForUpdates:"_s));
    EXPECT_FALSE(applet.delegate->respondsToAction(u"copy:"_s));
}

} // namespace quoddle
