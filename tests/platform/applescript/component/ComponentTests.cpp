// SPDX-License-Identifier: MIT
// The component as the scripting architecture sees it.
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/base/Text.h"
#include "platform/base/Wait.h"
#include "platform/osa/OSA.h"

#include <atomic>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <malloc.h>
#include <thread>

namespace quoddle {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

class ComponentTest : public testing::Test {
protected:
    ComponentTest() {
        registerAppleScriptComponent();
        instance = OpenDefaultComponent(kOSAComponentType, kAppleScriptSubtype);
    }
    ~ComponentTest() override { CloseComponent(instance); }

    OSAID compiled(std::u16string_view source) {
        OSAID id = 0;
        EXPECT_EQ(OSACompile(instance, AEDesc::ofText(source), kOSAModeCompileIntoContext, id), noErr) << errorPart("errs"_4cc);
        return id;
    }
    std::string shown(OSAID id) {
        AEDesc text;
        return id && OSADisplay(instance, id, "utxt"_4cc, 0, text) == noErr ? text.asUTF8().value_or("?") : "";
    }
    std::string run(OSAID script) {
        OSAID result = 0;
        const OSStatus status = OSAExecute(instance, script, 0, 0, result);
        return status == noErr ? shown(result) : "status " + std::to_string(status);
    }
    std::string errorPart(FourCharCode selector) {
        AEDesc part;
        return OSAScriptError(instance, selector, "utxt"_4cc, part) == noErr ? part.asUTF8().value_or("?") : "";
    }
    std::pair<int, int> errorRange() {
        AEDesc range;
        if (OSAScriptError(instance, "erng"_4cc, "erng"_4cc, range) != noErr)
            return {-1, -1};
        return {range.find("srcs"_4cc)->asInt32().value_or(-2), range.find("srce"_4cc)->asInt32().value_or(-2)};
    }
    std::string property(OSAID script, const AEDesc& name) {
        OSAID value = 0;
        const OSStatus status = OSAGetProperty(instance, 0, script, name, value);
        return status == noErr ? shown(value) : "status " + std::to_string(status);
    }
    AEDesc callOf(const char* name, std::vector<AEDesc> arguments) {
        AEDesc event = AEDesc::appleEvent("ascr"_4cc, "psbr"_4cc, AEDesc::ofCurrentProcess());
        (void)event.put("snam"_4cc, AEDesc::ofUTF8(name));
        (void)event.put("----"_4cc, AEDesc::list(std::move(arguments)));
        return event;
    }

    ComponentInstance instance = 0;
};

TEST_F(ComponentTest, RunsAndRemembersTheResult) {
    EXPECT_EQ(run(compiled(u"6 * 7")), "42");
    EXPECT_EQ(property(0, AEDesc::ofCode("prop"_4cc, "rslt"_4cc)), "42");
    EXPECT_EQ(run(compiled(u"on foo()\nend foo")), ""); // nothing to run
    OSAID none = 0;
    EXPECT_EQ(OSAExecute(instance, 9999, 0, 0, none), errOSAInvalidID);
}

TEST_F(ComponentTest, TellsWhatWentWrongAndWhere) {
    EXPECT_EQ(run(compiled(u"set a to 1\nerror \"boom\" number 42 from {7}")), "status -1753");
    EXPECT_EQ(errorPart("errn"_4cc), "42");
    EXPECT_EQ(errorPart("errs"_4cc), "boom");
    EXPECT_EQ(errorRange(), (std::pair{11, 42}));
    AEDesc offending;
    ASSERT_EQ(OSAScriptError(instance, "erob"_4cc, "list"_4cc, offending), noErr);
    EXPECT_EQ(offending.count(), 1u);

    OSAID id = 0;
    EXPECT_EQ(OSACompile(instance, AEDesc::ofUTF8("set x to (1 +"), 2, id), errOSAScriptError);
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(errorPart("errn"_4cc), "-2741");
    EXPECT_GE(errorRange().first, 12);
}

TEST_F(ComponentTest, AddedCodeKnowsTheNamesOfTheScript) {
    OSAID script = compiled(u"property early : 1"), copied = 0, copy = 0, value = 0;
    const auto add = [this](OSAID& to, const std::u16string& name) {
        const std::u16string source = u"on of_" + name + u"()\nreturn " + name + u"\nend of_" + name + u"\nof_" + name + u"()";
        EXPECT_EQ(OSACompile(instance, AEDesc::ofText(source), kOSAModeCompileIntoContext | kOSAModeAugmentContext, to), noErr);
        return run(to);
    };
    EXPECT_EQ(add(script, u"early"), "1");
    EXPECT_EQ(OSACompile(instance, AEDesc::ofText(u"global shared\nset shared to 2\nset other to 3"), kOSAModeAugmentContext, script),
              noErr);
    EXPECT_EQ(run(script), "3");
    ASSERT_EQ(OSACoerceFromDesc(instance, AEDesc::ofInt32(5), 0, value), noErr);
    ASSERT_EQ(OSASetProperty(instance, 0, script, AEDesc::ofUTF8("late"), value), noErr);
    ASSERT_EQ(OSACopyID(instance, script, copied), noErr);
    ASSERT_EQ(OSACopyScript(instance, script, copy), noErr);
    const struct {
        const char* what;
        OSAID script;
    } cases[] = {{"script", script}, {"another ID of it", copied}, {"a copy", copy}};
    for (auto [what, each] : cases) {
        EXPECT_EQ(add(each, u"early"), "1") << what;
        EXPECT_EQ(add(each, u"shared"), "2") << what;
        EXPECT_EQ(add(each, u"late"), "5") << what;
        EXPECT_EQ(add(each, u"other"), "status -1753") << what; // a variable of a run handler is nobody else's
        EXPECT_EQ(errorPart("errs"_4cc), "The variable other is not defined.") << what;
    }
    ASSERT_EQ(OSACompile(instance, AEDesc::ofText(u"property later : 6"), kOSAModeAugmentContext, copied), noErr);
    EXPECT_EQ(add(script, u"later"), "6");
    EXPECT_EQ(add(copy, u"later"), "status -1753");
}

TEST_F(ComponentTest, ReadsAndSetsProperties) {
    const OSAID script = compiled(u"property amount : 1\nproperty |odd name| : 2\non run\nreturn amount\nend run");
    EXPECT_EQ(property(script, AEDesc::ofUTF8("AMOUNT")), "1");
    EXPECT_EQ(property(script, AEDesc::ofUTF8("odd name")), "status -50");
    EXPECT_EQ(property(script, AEDesc::ofUTF8("|odd name|")), "2");
    EXPECT_EQ(property(script, AEDesc::ofUTF8("nothing")), "status -1728");
    OSAID value = 0;
    ASSERT_EQ(OSACoerceFromDesc(instance, AEDesc::ofInt32(5), 0, value), noErr);
    EXPECT_EQ(OSASetProperty(instance, 0, script, AEDesc::ofUTF8("amount"), value), noErr);
    EXPECT_EQ(run(script), "5");
    EXPECT_EQ(OSASetProperty(instance, kOSAModeDontDefine, script, AEDesc::ofUTF8("fresh"), value), errAENoSuchObject);
    EXPECT_EQ(OSASetProperty(instance, 0, script, AEDesc::ofUTF8("fresh"), value), noErr);
    EXPECT_EQ(property(script, AEDesc::ofUTF8("fresh")), "5");
    AEDesc names;
    ASSERT_EQ(OSAGetHandlerNames(instance, 0, script, names), noErr);
    ASSERT_EQ(names.count(), 1u);
    EXPECT_EQ(names.itemAt(1)->type(), "evnt"_4cc);
}

TEST_F(ComponentTest, StoresAndLoads) {
    const OSAID script = compiled(u"property runs : 0\non run\nset runs to runs + 1\nreturn runs\nend run");
    run(script);
    for (const bool runOnly : {false, true}) {
        AEDesc stored;
        ASSERT_EQ(OSAStore(instance, script, "scpt"_4cc, runOnly ? kOSAModePreventGetSource : 0, stored), noErr);
        OSAID loaded = 0;
        ASSERT_EQ(OSALoad(instance, stored, 0, loaded), noErr);
        EXPECT_EQ(run(loaded), "2"); // the property's value was stored, too
        AEDesc source;
        EXPECT_EQ(OSAGetSource(instance, loaded, "utxt"_4cc, source), runOnly ? errOSASourceNotAvailable : noErr);
    }
    OSAID id = 0;
    AEDesc nothing, source;
    ASSERT_EQ(OSAStore(instance, compiled(u""), "scpt"_4cc, 0, nothing), noErr);
    ASSERT_EQ(OSALoad(instance, nothing, 0, id), noErr);
    EXPECT_EQ(OSAGetSource(instance, id, "utxt"_4cc, source), noErr) << "a script compiled from nothing is not run-only";
    EXPECT_EQ(source.asUTF8(), "");
    EXPECT_EQ(OSALoad(instance, AEDesc("scpt"_4cc, "FasdUAS 1.101.10\x0E"), 0, id), errOSACorruptData);
    EXPECT_EQ(OSALoadFile(instance, "/nowhere/main.scpt", nullptr, 0, id), fnfErr);
}

TEST_F(ComponentTest, ExecutesEvents) {
    const OSAID script = compiled(
        u"on add(a, b)\nreturn a + b\nend add\non open theFiles\nreturn count theFiles\nend open\non run argv\nreturn argv\nend run");
    const auto answer = [&](const AEDesc& event) {
        OSAID result = 0;
        const OSStatus status = OSAExecuteEvent(instance, event, script, 0, result);
        return status == noErr ? shown(result) : "status " + std::to_string(status);
    };
    EXPECT_EQ(answer(callOf("add", {AEDesc::ofInt32(1), AEDesc::ofDouble(2.5)})), "3.5");
    EXPECT_EQ(answer(callOf("ADD", {AEDesc::ofInt32(1), AEDesc::ofInt32(2)})), "3");
    EXPECT_EQ(answer(callOf("nobody", {})), "status -1753");
    EXPECT_EQ(errorPart("errn"_4cc), "-1708");
    AEDesc open = AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc);
    (void)open.put("----"_4cc, AEDesc::list({AEDesc::ofFilePath("/tmp"), AEDesc::ofFilePath("/etc")}));
    EXPECT_EQ(answer(open), "2");
    AEDesc run = AEDesc::appleEvent("aevt"_4cc, "oapp"_4cc);
    (void)run.put("----"_4cc, AEDesc::list({AEDesc::ofUTF8("x")}));
    EXPECT_EQ(answer(run), "{\"x\"}");
    EXPECT_EQ(answer(AEDesc::appleEvent("misc"_4cc, "idle"_4cc)), "status -1708");
    std::int32_t hasOpen = 0;
    ASSERT_EQ(OSAGetScriptInfo(instance, script, "hsod"_4cc, hasOpen), noErr);
    EXPECT_EQ(hasOpen, 1);
}

TEST_F(ComponentTest, ValuesGoThroughDescriptorsUnchanged) {
    for (const char* source : {"missing value", "true", "-7", "2.5", "\"tëxt\"", "{1, {2, \"x\"}}", "{name:\"n\", |my own|:3}", "integer",
                               "date \"Friday, November 9, 2007 at 11:35:50 AM\""}) {
        OSAID value = 0, back = 0;
        ASSERT_EQ(OSACompileExecute(instance, AEDesc::ofUTF8(source), 0, 0, value), noErr) << source;
        const std::string before = shown(value);
        AEDesc descriptor;
        ASSERT_EQ(OSACoerceToDesc(instance, value, "****"_4cc, 0, descriptor), noErr) << source;
        ASSERT_EQ(OSACoerceFromDesc(instance, descriptor, 0, back), noErr) << source;
        EXPECT_EQ(shown(back), before) << source;
    }
}

TEST_F(ComponentTest, FindsWhatWasDeclaredBetweenBars) {
    const OSAID script = compiled(u"property |Cap| : 1\non |Go|()\nreturn |Cap|\nend |Go|");
    OSAID handler = 0, value = 0;
    for (const char* name : {"Go", "|Go|"})
        EXPECT_EQ(OSAGetHandler(instance, 0, script, AEDesc::ofUTF8(name), handler), noErr) << name;
    EXPECT_EQ(OSAGetHandler(instance, 0, script, AEDesc::ofUTF8("go"), handler), errAENoSuchObject);
    EXPECT_EQ(property(script, AEDesc::ofUTF8("Cap")), "1");
    ASSERT_EQ(OSACoerceFromDesc(instance, AEDesc::ofInt32(2), 0, value), noErr);
    ASSERT_EQ(OSASetProperty(instance, 0, script, AEDesc::ofUTF8("Cap"), value), noErr);
    ASSERT_EQ(OSAExecuteEvent(instance, callOf("Go", {}), script, 0, value), noErr);
    EXPECT_EQ(shown(value), "2");
}

TEST_F(ComponentTest, StrangeDescriptorsBecomeValues) {
    struct Row {
        AEDesc desc;
        const char* shown;
    };
    const Row kRows[] = {
        {AEDesc("ucom"_4cc, std::string(8, '\xff')), "1.84467440737096E+19"},
        {AEDesc("doub"_4cc, std::string("\1\0\0\0\0\0\xfa\xff", 8)), "NAN"}, // the bits of a pointer
        {AEDesc("comp"_4cc, "short"), "0"},
        {AEDesc::ofCurrentProcess(), "current application"},
        {AEDesc::ofProcess(1), "«data kpid01000000»"}, // the address of another process
        {AEDesc("evnt"_4cc, ""), "«event ****"},
        {AEDesc::list({AEDesc::ofInt32(1)}).withType("utxt"_4cc), "\"\""},
        {AEDesc("scpt"_4cc, "no script"), "«data scpt6E6F20736372697074»"},
    };
    for (const Row& row : kRows) {
        OSAID value = 0;
        ASSERT_EQ(OSACoerceFromDesc(instance, row.desc, 0, value), noErr);
        EXPECT_EQ(shown(value).substr(0, std::string(row.shown).size()), row.shown) << bytesOf(row.desc.type());
    }
}

TEST_F(ComponentTest, TellsInWhatTypeAValueIsHadBest) {
    struct Row {
        const char* source;
        DescType best;
        OSStatus status; ///< when asked for a descriptor of that type
    };
    const Row kRows[] = {
        {"set l to {1}\nset end of l to l\nreturn l", "list"_4cc, errAECoercionFail}, // a list that holds itself
        {"{class:document, size:1}", "reco"_4cc, noErr},
        {"\"text\"", "utxt"_4cc, noErr},
        {"a reference to item 1 of {{1}}", "list"_4cc, noErr},
        {"missing value", "type"_4cc, noErr},
    };
    for (const Row& row : kRows) {
        OSAID value = 0;
        ASSERT_EQ(OSACompileExecute(instance, AEDesc::ofUTF8(row.source), 0, 0, value), noErr);
        std::int32_t type = 0;
        EXPECT_EQ(OSAGetScriptInfo(instance, value, "best"_4cc, type), noErr);
        EXPECT_EQ(static_cast<DescType>(type), row.best) << row.source;
        AEDesc desc;
        EXPECT_EQ(OSACoerceToDesc(instance, value, row.best, 0, desc), row.status) << row.source;
    }
    OSAID undefined = 0;
    AEDesc desc;
    ASSERT_EQ(OSACoerceFromDesc(instance, AEDesc::ofType("undf"_4cc), 0, undefined), noErr);
    EXPECT_EQ(OSACoerceToDesc(instance, undefined, "****"_4cc, 0, desc), noErr);
    EXPECT_EQ(desc, AEDesc::ofType("undf"_4cc));
}

// An application answers each question with a reference that can only be followed by asking again.
TEST_F(ComponentTest, ReferencesThatLeadNowhereEnd) {
    const auto element = [](AEDesc index, AEDesc container) {
        return AEDesc::record({{"want"_4cc, AEDesc::ofType("cobj"_4cc)},
                               {"form"_4cc, AEDesc::ofEnum("indx"_4cc)},
                               {"seld"_4cc, std::move(index)},
                               {"from"_4cc, std::move(container)}},
                              "obj "_4cc);
    };
    static AEDesc endless;
    endless = element(element(AEDesc::ofInt32(1), AEDesc()), AEDesc::list({AEDesc::ofInt32(7)}));
    OSASetSendProc(
        instance,
        [](const AEDesc&, AEDesc* reply, AESendMode, AESendPriority, std::int32_t, AEIdleProc, AEFilterProc, void*) {
            return static_cast<OSErr>(reply->put("----"_4cc, endless));
        },
        nullptr);
    OSAID value = 0;
    AEDesc desc;
    ASSERT_EQ(OSACoerceFromDesc(instance, endless, 0, value), noErr);
    EXPECT_EQ(OSACoerceToDesc(instance, value, "****"_4cc, 0, desc), errOSAScriptError);
    EXPECT_EQ(errorPart("errn"_4cc), "-2706");
    OSASetSendProc(instance, nullptr, nullptr);
}

TEST_F(ComponentTest, ParentsNeverFormARing) {
    const OSAID a = compiled(u"on run\nreturn 1\nend run"), b = compiled(u"2");
    const AEDesc parent = AEDesc::ofCode("prop"_4cc, "pare"_4cc);
    EXPECT_EQ(OSASetProperty(instance, 0, a, parent, b), noErr);
    EXPECT_EQ(OSASetProperty(instance, 0, b, parent, a), errOSAScriptError);
    EXPECT_EQ(errorPart("errn"_4cc), "-10003");
    EXPECT_EQ(OSASetProperty(instance, 0, a, parent, a), errOSAScriptError);
    EXPECT_EQ(OSASetProperty(instance, 0, a, parent, 0), noErr);
    EXPECT_EQ(OSASetProperty(instance, 0, b, parent, a), noErr);
}

// A large record from a sender must not take time by the square of its size.
TEST_F(ComponentTest, LargeRecordsTakeNoLongerThanTheyAre) {
    constexpr AEKeyword kCount = 200'000;
    std::vector<AEItem> fields;
    std::vector<AEDesc> userFields;
    for (AEKeyword i = 0; i < kCount; ++i) {
        fields.push_back({0x61000000 + i, AEDesc::ofInt32(1)});
        userFields.push_back(AEDesc::ofUTF8("field" + std::to_string(i)));
        userFields.push_back(AEDesc::ofInt32(1));
    }
    fields.push_back({0x61000000, AEDesc::ofInt32(2)}); // the last of several equal keys counts
    fields.push_back({"usrf"_4cc, AEDesc::list(std::move(userFields))});
    const std::clock_t start = std::clock();
    OSAID record = 0;
    AEDesc back;
    ASSERT_EQ(OSACoerceFromDesc(instance, AEDesc::record(std::move(fields)), 0, record), noErr);
    ASSERT_EQ(OSACoerceToDesc(instance, record, "reco"_4cc, 0, back), noErr);
    EXPECT_LT(std::clock() - start, 5 * CLOCKS_PER_SEC);
    EXPECT_EQ(back.count(), kCount + 1);
    EXPECT_EQ(back.itemAt(1)->asInt32(), 2);
    EXPECT_EQ(back.find("usrf"_4cc)->count(), 2 * kCount);
}

struct Calls {
    std::atomic<int> count{0};
    int cancelAt = 0; // 0: never
    static OSErr proc(void* refCon) {
        auto& calls = *static_cast<Calls*>(refCon);
        return ++calls.count == calls.cancelAt ? userCanceledErr : noErr;
    }
};

TEST_F(ComponentTest, AsksOftenAndEndsWhenToldTo) {
    constexpr int kQuestions = 15;
    constexpr double kSeconds = 0.02 * kQuestions; // a question every 10 ms
    const auto now = [] {                          // processor time: a thread that wants to run may have to wait for the processor
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    for (const char16_t* source : {u"repeat\nend repeat", u"on f()\nf2()\nend f\non f2()\nend f2\nrepeat\nf()\nend repeat"}) {
        const OSAID script = compiled(source);
        double quickest = 60; // the quickest of a few attempts, because the machine may be busy
        for (int tries = 0; tries < 5 && quickest > kSeconds; ++tries) {
            Calls calls;
            calls.cancelAt = kQuestions;
            OSASetActiveProc(instance, Calls::proc, &calls);
            const double start = now();
            EXPECT_EQ(run(script), "status -1753");
            quickest = std::min(quickest, now() - start);
            EXPECT_EQ(errorPart("errn"_4cc), "-128");
            EXPECT_EQ(calls.count, kQuestions) << "goes on after it was told to end";
            OSASetActiveProc(instance, nullptr, nullptr);
        }
        EXPECT_LE(quickest, kSeconds);
    }
}

TEST_F(ComponentTest, ARunEndsAlthoughItsScriptCatchesEveryCancel) {
    OSASetActiveProc(
        instance, [](void*) -> OSErr { return userCanceledErr; }, nullptr);
    for (const char16_t* source : {
             u"repeat\ntry\nrepeat\nend repeat\nend try\nend repeat",
             u"repeat\ntry\ndelay 60\non error number -128\nend try\nend repeat",
             u"on f()\ntry\nrepeat\nend repeat\non error\nf()\nend try\nend f\nf()\nf()",
             u"repeat\ntry\nrun script \"repeat\ntry\nrepeat\nend repeat\nend try\nend repeat\"\nend try\nend repeat",
         }) {
        EXPECT_EQ(run(compiled(source)), "status -1753");
        EXPECT_EQ(errorPart("errn"_4cc), "-128");
    }
    // A script may catch any number of cancels, as long as each is taken back.
    int count = 0;
    OSASetActiveProc(
        instance, [](void* refCon) -> OSErr { return static_cast<OSErr>(++*static_cast<int*>(refCon) % 2 ? noErr : userCanceledErr); },
        &count);
    EXPECT_EQ(
        run(compiled(
            u"set n to 0\nrepeat until n = 200\ntry\nrepeat\nend repeat\non error number -128\nset n to n + 1\nend try\nend repeat\nn")),
        "200");
    OSASetActiveProc(instance, nullptr, nullptr);
}

TEST_F(ComponentTest, ADelayIsLeftAloneUntilSomebodyWakesIt) {
    Calls calls;
    calls.cancelAt = 3;
    OSASetActiveProc(instance, Calls::proc, &calls);
    std::thread stopper([&] {
        for (int woken = 0; woken < calls.cancelAt; ++woken) {
            while (calls.count < woken)
                std::this_thread::yield();
            wakeWaits();
        }
    });
    EXPECT_EQ(run(compiled(u"delay 3600")), "status -1753");
    stopper.join();
    EXPECT_EQ(errorPart("errn"_4cc), "-128");
    EXPECT_EQ(calls.count, calls.cancelAt);
    OSASetActiveProc(instance, nullptr, nullptr);
}

TEST_F(ComponentTest, ManySmallRunsLeaveNothingBehind) {
    const OSAID script = compiled(u"on same(x)\nreturn x\nend same");
    const AEDesc event = callOf("same", {AEDesc::ofText(std::u16string(2000, u'x'))});
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 20'000; ++i) {
        OSAID result = 0;
        ASSERT_EQ(OSAExecuteEvent(instance, event, script, 0, result), noErr);
        OSADispose(instance, result);
    }
    EXPECT_LT(mallinfo2().uordblks, before + (std::size_t{40} << 20)); // the scripts have made 80 MB of garbage
}

TEST_F(ComponentTest, AnotherThreadGetsItsTurnDuringARun) {
    Calls calls;
    OSASetActiveProc(instance, Calls::proc, &calls);
    const OSAID script =
        compiled(u"property stopNow : false\nproperty turns : 0\non run\nrepeat until stopNow\nset turns to turns + 1\nend repeat\nreturn "
                 u"\"ended\"\nend run\n"
                 u"on twice(x)\nset l to {}\nrepeat 1000 times\nset end of l to x & x\nend repeat\nreturn item -1 of l\nend twice");
    std::string result;
    std::thread runner([&] { result = run(script); });
    while (calls.count < 3)
        std::this_thread::yield();
    int atOnce = 0;
    for (int i = 0; i < 20; ++i) {
        const auto start = Clock::now();
        OSAID answer = 0;
        EXPECT_EQ(OSAExecuteEvent(instance, callOf("twice", {AEDesc::ofUTF8("ab")}), script, 0, answer), noErr);
        atOnce += Clock::now() - start < milliseconds(60);
        EXPECT_EQ(shown(answer), "\"abab\"");
    }
    EXPECT_GE(atOnce, 5); // all of them on an idle machine
    OSAID yes = 0;
    ASSERT_EQ(OSACoerceFromDesc(instance, AEDesc::ofBoolean(true), 0, yes), noErr);
    ASSERT_EQ(OSASetProperty(instance, 0, script, AEDesc::ofUTF8("stopNow"), yes), noErr);
    runner.join();
    EXPECT_EQ(result, "\"ended\"");
    OSASetActiveProc(instance, nullptr, nullptr);
}

TEST_F(ComponentTest, KnowsWhetherARunHasChangedTheScript) {
    const std::u16string properties =
        u"property n : 0\nproperty t : \"ab\"\nproperty l : {1, {2}}\nproperty m : {1, {3}}\nproperty r : {a:{b:1}}\n"
        u"property d : date \"1/1/2001\"\nscript s\nproperty p : 1\nend script\non f(x)\nreturn x + n\nend f\n";
    const std::pair<const char16_t*, bool> rows[] = {
        {u"f(3)", false},
        {u"set n to 0", false},
        {u"set l to {1, {2}}", false}, // an equal list, but not the same one
        {u"set n to 1", true},
        {u"set n to 0.5", true},
        {u"set t to \"ba\"", true},
        {u"set item 1 of item 2 of l to 3", true},
        {u"set end of l to 1", true},
        {u"set {l, m} to {m, l}", true},
        {u"set b of a of r to 2", true},
        {u"set time of d to 5", true},
        {u"set p of s to 2", true},
    };
    for (const auto& [statement, changes] : rows) {
        const OSAID script = compiled(properties + statement);
        std::int32_t isModified = -1;
        EXPECT_EQ(OSASetScriptInfo(instance, script, "modi"_4cc, 0), noErr);
        EXPECT_EQ(OSAGetScriptInfo(instance, script, "modi"_4cc, isModified), noErr);
        EXPECT_EQ(isModified, 0);
        run(script);
        (void)OSAGetScriptInfo(instance, script, "modi"_4cc, isModified);
        EXPECT_EQ(isModified, changes) << utf8FromUTF16(statement);
        (void)OSASetScriptInfo(instance, script, "modi"_4cc, 1);
        (void)OSAGetScriptInfo(instance, script, "modi"_4cc, isModified);
        EXPECT_EQ(isModified, 1);
    }
}

} // namespace
} // namespace quoddle
