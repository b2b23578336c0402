// SPDX-License-Identifier: MIT
// load script, store script, run script, path to me, and what events say about the running script.
#include "platform/applescript/component/ScriptFolder.h"

#include "platform/base/Text.h"

namespace quoddle {
namespace {

namespace fs = std::filesystem;

class ScriptCommandsTest : public ScriptFolderTest {
protected:
    ScriptCommandsTest() { OSASetSendProc(instance, receive, this); }

    /// The result as source, or the number of the error. "@" in the source is the folder.
    std::string run(std::string source, const std::string& location = {}) {
        for (auto at = source.find('@'); at != std::string::npos; at = source.find('@'))
            source.replace(at, 1, folder);
        OSAID script = 0;
        if (OSACompile(instance, AEDesc::ofUTF8(source), kOSAModeCompileIntoContext, script) != noErr)
            return "does not compile";
        if (!location.empty() && OSASetScriptInfo(instance, script, "fref"_4cc, location) != noErr)
            return "takes no location";
        return resultOf(script, "errn"_4cc);
    }

    std::vector<AEDesc> sent;
    OSStatus answer = errAEEventNotHandled; // the answer to every event

private:
    static OSErr receive(const AEDesc& event, AEDesc* reply, AESendMode, AESendPriority, std::int32_t, AEIdleProc, AEFilterProc,
                         void* test) {
        auto* self = static_cast<ScriptCommandsTest*>(test);
        self->sent.push_back(event);
        if (self->answer == noErr)
            (void)reply->put("----"_4cc, AEDesc::ofFilePath(self->path("chosen.scpt")));
        return static_cast<OSErr>(self->answer);
    }
};

constexpr const char* kCounter = "script counter\n"
                                 "property n : 5\n"
                                 "on run\nset n to n + 1\nend run\n"
                                 "on twice(x)\nreturn x * 2 + n\nend twice\n"
                                 "end script\n";

TEST_F(ScriptCommandsTest, AScriptIsStoredAndLoadedAsAnObjectOfItsOwn) {
    const std::string stored = std::string(kCounter) + "store script counter in POSIX file \"@/a.scpt\" replacing yes\n";
    EXPECT_EQ(run(stored + "set x to load script POSIX file \"@/a.scpt\"\nrun x\n{n of x, x's twice(1), n of counter, name of x, parent of "
                           "x is AppleScript}"),
              "{6, 8, 5, \"counter\", false}"); // the stored script keeps the script around it
    // Paths may be texts, and each load gives a copy of its own.
    EXPECT_EQ(run("set x to load script \"@/a.scpt\"\nset y to load script \"@/a.scpt\"\nset n of x to 1\nreturn n of y"), "5");
    EXPECT_EQ(run("run script (POSIX file \"@/a.scpt\")\nrun script ((POSIX file \"@/a.scpt\") as alias)"), "6");
    EXPECT_EQ(run("script child\nproperty parent : load script \"@/a.scpt\"\non twice(x)\nreturn {continue twice(x)}\nend twice\nend "
                  "script\nchild's twice(3)"),
              "{11}");
}

TEST_F(ScriptCommandsTest, BundlesHoldTheScriptInside) {
    for (const char* name : {"b.scptd", "b.app"}) {
        const std::string file = std::string("POSIX file \"@/") + name + "\"";
        EXPECT_EQ(run(kCounter + std::string("store script counter in ") + file + "\nn of (load script " + file + ")"), "5") << name;
        EXPECT_TRUE(fs::is_regular_file(path(name) + "/Contents/Resources/Scripts/main.scpt"));
        std::ignore = writeFile(path(name) + "/Contents/Resources/picture", "kept");
        EXPECT_EQ(run(kCounter + std::string("set n of counter to 1\nstore script counter in ") + file +
                      " replacing yes\nn of (load script " + file + ")"),
                  "1")
            << name;
        EXPECT_TRUE(fs::exists(path(name) + "/Contents/Resources/picture"));
    }
}

TEST_F(ScriptCommandsTest, SourceTextIsCompiledFirst) {
    write("lib.applescript", "property p : 3\non f(x)\nreturn x + p\nend f\n");
    EXPECT_EQ(run("set x to load script POSIX file \"@/lib.applescript\"\nx's f(4)"), "7");
    EXPECT_EQ(run("run script \"1 + 2\""), "3");
    EXPECT_EQ(run("run script \"on run {a, b}\nreturn {b, a}\nend run\" with parameters {1, {2}}"), "{{2}, 1}");
    EXPECT_EQ(run("run script \"on run argv\nreturn argv\nend run\" with parameters 7 in \"applescript\""), "{7}");
    EXPECT_EQ(run("run script \"on f()\nend f\""), "");
    EXPECT_EQ(run(kCounter + std::string("run script counter\nrun script counter\nn of counter")), "7");
    EXPECT_EQ(run("try\nrun script \"error \\\"inner\\\" number 77\"\non error m number n\nreturn {m, n}\nend try"), "{\"inner\", 77}");
}

TEST_F(ScriptCommandsTest, WhatGoesWrongHasANumber) {
    write("text.scpt", "this is not a script (");
    write("damaged.scpt", "FasdUAS 1.101.10garbage");
    const std::string script = "script s\nend script\n";
    const std::pair<std::string, const char*> kCases[] = {
        {"load script POSIX file \"@/none.scpt\"", "-43"},
        {"load script POSIX file \"@\"", "-43"},
        {"load script POSIX file \"@/text.scpt\"", "-2741"},
        {"load script POSIX file \"@/damaged.scpt\"", "-1702"},
        {"load script {1, 2}", "-1700"},
        {"run script \"1 +\"", "-2741"},
        {"run script \"1\" in \"Klingon\"", "-1762"},
        {"run script \"run script \\\"1 +\\\"\"", "-2741"},
        {script + "store script s in POSIX file \"@/text.scpt\" replacing no", "-48"},
        {script + "store script s in POSIX file \"@/no/such/folder.scpt\"", "-120"},
        {script + "store script s in POSIX file \"@\" replacing yes", "-50"},
        {"store script 5 in POSIX file \"@/five.scpt\"", "-1700"},
    };
    for (const auto& [source, number] : kCases)
        EXPECT_EQ(run(source), number) << source;
    EXPECT_TRUE(sent.empty());
    EXPECT_EQ(readFile(path("text.scpt"), 100).operator*(), "this is not a script (");
}

TEST_F(ScriptCommandsTest, ErrorsOfOtherSourcesAreAtTheStatementThatUsesThem) {
    write("far.applescript", "-- some lines\n-- of comment\non f(n)\nreturn n / 0\nend f\non h(caller)\ncaller's g()\nend h");
    const std::string opening = "set l to load script POSIX file \"" + path("far.applescript") + "\"\n";
    const std::string own = "\nscript caller\non g()\nreturn bad\nend g\nend script";
    for (const auto& [source, marked] : std::initializer_list<std::pair<std::string, std::string>>{
             {"run script \"1 / 0\"", "run script \"1 / 0\""},
             {opening + "l's f(1)", "f(1)"},
             {opening + "l's h(caller)" + own, "bad"}, // called back by the other source
             {opening + "try\nl's f(1)\nend try\nset x to bad", "bad"},
         }) {
        run(source);
        AEDesc range;
        ASSERT_EQ(OSAScriptError(instance, "erng"_4cc, "erng"_4cc, range), noErr) << source;
        const auto place = [&](AEKeyword key) { return static_cast<std::size_t>(range.find(key)->asInt32().value_or(0)); };
        EXPECT_EQ(source.substr(place("srcs"_4cc), place("srce"_4cc) - place("srcs"_4cc)), marked);
    }
}

TEST_F(ScriptCommandsTest, WhoeverCanAskIsAsked) {
    const std::string script = "script s\nproperty p : 1\nend script\n";
    write("old.scpt", "old");
    const std::string replacing = script + "store script s in POSIX file \"@/old.scpt\"";
    EXPECT_EQ(run(replacing), "-1713") << "nobody asks";
    answer = userCanceledErr;
    EXPECT_EQ(run(replacing + " replacing ask"), "-128");
    EXPECT_EQ(*readFile(path("old.scpt"), 100), "old");
    answer = noErr;
    EXPECT_EQ(run(replacing + "\np of (load script POSIX file \"@/old.scpt\")"), "1");
    ASSERT_EQ(sent.size(), 3u);
    EXPECT_EQ(sent.back().eventID(), "dlog"_4cc);
    EXPECT_EQ(run(script + "store script s\np of (load script POSIX file \"@/chosen.scpt\")"), "1");
    EXPECT_EQ(sent.back().eventID(), "nwfl"_4cc);
}

TEST_F(ScriptCommandsTest, AScriptKnowsItsFile) {
    answer = noErr;
    const auto asked = [this](const char* source, const std::string& location, AEKeyword key) {
        sent.clear();
        (void)run(source, location);
        const AEDesc* parameter = sent.empty() ? nullptr : sent.back().find(key);
        return parameter ? parameter->asFilePath().value_or("no file") : "nothing";
    };
    EXPECT_EQ(asked("path to me", "/x/a.scpt", "----"_4cc), "/x/a.scpt");
    EXPECT_EQ(asked("path to me", "/x/A.app/Contents/Resources/Scripts/main.scpt", "----"_4cc), "/x/A.app");
    EXPECT_EQ(asked("run script \"path to me\"", "/x/a.scpt", "----"_4cc), "/x/a.scpt");
    EXPECT_EQ(asked("path to me", "", "----"_4cc), "nothing");
    (void)asked("path to application \"No Such\"", "", "----"_4cc);
    ASSERT_TRUE(sent.back().find("----"_4cc));
    EXPECT_EQ(sent.back().find("----"_4cc)->type(), "aprl"_4cc);
    EXPECT_EQ(asked("path to resource \"r\"", "/x/A.app/Contents/Resources/Scripts/main.scpt", "in B"_4cc), "/x/A.app");
    EXPECT_EQ(asked("localized string \"k\"", "/x/a.scpt", "in B"_4cc), "nothing");
}

TEST_F(ScriptCommandsTest, EventsSayWhatIsConsidered) {
    const auto mask = [this](const char* source) {
        sent.clear();
        (void)run(source);
        const auto considerations = sent.empty() ? std::nullopt : sent.back().attribute("csig"_4cc);
        return considerations ? static_cast<std::uint32_t>(considerations->asInt32().value_or(0)) : 0u;
    };
    EXPECT_EQ(mask("beep"), 0x0081007Eu);
    EXPECT_EQ(mask("considering case, numeric strings but ignoring white space\nbeep\nend considering"), 0x000400FBu);
}

TEST_F(ScriptCommandsTest, TheNumberOfAnApplicationsObjectsIsCounted) {
    EXPECT_EQ(run("tell application \"No Such\" to number of windows"), "-1708");
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].eventID(), "cnte"_4cc);
    ASSERT_TRUE(sent[0].find("----"_4cc));
    EXPECT_EQ(sent[0].find("----"_4cc)->find("want"_4cc)->code(), "cwin"_4cc);
}

TEST_F(ScriptCommandsTest, ActivatingNobodyIsNoError) {
    EXPECT_EQ(run("activate\nreturn 1"), "1");
    EXPECT_EQ(sent.size(), 1u);
    EXPECT_EQ(run("tell application \"No Such\" to activate"), "-1708");
}

} // namespace
} // namespace quoddle
