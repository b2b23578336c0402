// SPDX-License-Identifier: MIT
// The generic component: which real component gets the work, and that identifiers of one are never passed to another.
#include "platform/osa/FakeComponent.h"
#include "platform/osa/StoredScript.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace quoddle {

namespace {

const std::string kTrailer = std::string("ascr\0\x01\0\x0C\xFA\xDE\xDE\xAD", 12);

class GenericComponentTest : public testing::Test {
protected:
    GenericComponentTest() {
        FakeComponent::registerAs("ascr"_4cc, 1000);
        FakeComponent::registerAs("fak2"_4cc, 1000);
        generic = OpenDefaultComponent(kOSAComponentType, kOSAGenericScriptingComponentSubtype);
    }
    ~GenericComponentTest() override { CloseComponent(generic); }

    OSAID compiled(const char* source) {
        OSAID id = 0;
        EXPECT_EQ(OSACompile(generic, AEDesc::ofUTF8(source), 0, id), noErr);
        return id;
    }

    ComponentInstance generic = 0;
};

} // namespace

TEST(StoredScript, IsToldApartByItsEnds) {
    const std::pair<std::string, std::optional<OSType>> kScripts[] = {
        {"FasdUAS 1.101.10", "ascr"_4cc},
        {"#!/usr/bin/osascript\nFasdUAS 1.101.10", "ascr"_4cc},
        {"JsOsaDAS1.001.00", "jscr"_4cc},
        {"whatever" + kTrailer, "ascr"_4cc},
        {"whatever" + kTrailer + "padding of another system", "ascr"_4cc},
        {std::string(100000, 'x') + kTrailer, "ascr"_4cc},
        {kTrailer + std::string(100000, 'x'), std::nullopt},
        {"\xFA\xDE\xDE\xAD", std::nullopt},
        {"display dialog \"FasdUAS \"", std::nullopt},
        {"", std::nullopt},
        {"#!", std::nullopt},
    };
    for (const auto& [bytes, subType] : kScripts)
        EXPECT_EQ(subTypeOfStoredScript(bytes), subType) << bytes.substr(0, 40);
}

TEST(StoredScript, FilesAndBundles) {
    auto folder = std::filesystem::temp_directory_path() / "quoddle-osa-test";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "a.app/Contents/Resources/Scripts");
    std::ofstream(folder / "a.app/Contents/Resources/Scripts/main.scpt") << "FasdUAS 1.101.10";
    std::ofstream(folder / "text.applescript") << "beep";
    std::ofstream(folder / "long.scpt") << std::string(10000, 'x') << kTrailer;
    OSType subType = 1;
    EXPECT_EQ(subTypeOfStoredScriptFile(folder / "a.app", subType), noErr);
    EXPECT_EQ(subType, "ascr"_4cc);
    EXPECT_EQ(subTypeOfStoredScriptFile(folder / "text.applescript", subType), noErr);
    EXPECT_EQ(subType, 0u);
    EXPECT_EQ(subTypeOfStoredScriptFile(folder / "long.scpt", subType), noErr);
    EXPECT_EQ(subType, "ascr"_4cc);
    EXPECT_EQ(subTypeOfStoredScriptFile(folder / "none", subType), fnfErr);
    EXPECT_EQ(subTypeOfStoredScriptFile(folder, subType), fnfErr);
    std::filesystem::remove_all(folder);
}

TEST_F(GenericComponentTest, OpensComponentsWhenTheyAreNeeded) {
    EXPECT_EQ(FakeComponent::last(), nullptr);
    OSAID id = 0;
    EXPECT_EQ(OSALoad(generic, AEDesc("scpt"_4cc, "return 1"), 0, id), errOSABadStorageType);
    EXPECT_EQ(OSALoad(generic, AEDesc("scpt"_4cc, "JsOsaDAS1.001.00"), 0, id), errOSACantOpenComponent);
    EXPECT_EQ(FakeComponent::last(), nullptr);
    EXPECT_EQ(OSALoad(generic, FakeComponent("fak2"_4cc).stored(u"return 1"), 0, id), noErr);
    ASSERT_NE(FakeComponent::last(), nullptr);
    ComponentInstance real = 0, again = 0;
    EXPECT_EQ(OSAGetScriptingComponent(generic, "fak2"_4cc, real), noErr);
    EXPECT_EQ(OSAGenericToRealID(generic, id, again), noErr);
    EXPECT_EQ(real, again);
    AEDesc text;
    EXPECT_EQ(OSACopyID(real, id, id), noErr) << "the real identifier works on the real component";
    EXPECT_EQ(CloseComponent(generic), noErr);
    EXPECT_EQ(OSADispose(real, id), badComponentInstance) << "what it opened closes with it";
    EXPECT_EQ(OSAGetScriptingComponent(generic, "scpt"_4cc, real), badComponentInstance);
}

TEST_F(GenericComponentTest, NeverOpensItself) {
    ComponentInstance real = 0;
    EXPECT_EQ(OSAGetScriptingComponent(generic, "scpt"_4cc, real), errOSACantOpenComponent);
}

TEST_F(GenericComponentTest, TheDefaultComponentGetsWhatHasNoOwner) {
    OSType subType = 0;
    EXPECT_EQ(OSAGetDefaultScriptingComponent(generic, subType), noErr);
    EXPECT_EQ(subType, "ascr"_4cc);
    EXPECT_EQ(OSASetDefaultScriptingComponent(generic, "none"_4cc), errOSACantOpenComponent);
    EXPECT_EQ(OSASetDefaultScriptingComponent(generic, "fak2"_4cc), noErr);
    OSAID id = compiled("return 1"), value = 0;
    ComponentInstance real = 0;
    EXPECT_EQ(OSACoerceFromDesc(generic, AEDesc::ofInt32(5), 0, value), noErr);
    EXPECT_EQ(OSAGenericToRealID(generic, id, real), noErr);
    EXPECT_EQ(ComponentSubType(real), "fak2"_4cc);
    EXPECT_EQ(OSAGenericToRealID(generic, value, real), noErr);
    EXPECT_EQ(ComponentSubType(real), "fak2"_4cc);
}

TEST_F(GenericComponentTest, ResultsGetIdentifiersOfTheirOwn) {
    OSAID script = compiled("property total 3\nhandler aevtquit\nreturn 12"), value = 0;
    FakeComponent* fake = FakeComponent::last();
    EXPECT_LT(script, 1000u) << "the generic component's numbers, not the real one's";
    ASSERT_EQ(OSAExecute(generic, script, 0, 0, value), noErr);
    AEDesc desc;
    EXPECT_EQ(OSACoerceToDesc(generic, value, "****"_4cc, 0, desc), noErr);
    EXPECT_EQ(desc, AEDesc::ofInt32(12));
    OSAID property = 0;
    ASSERT_EQ(OSAGetProperty(generic, 0, script, AEDesc::ofUTF8("total"), property), noErr);
    EXPECT_EQ(OSASetProperty(generic, 0, script, AEDesc::ofUTF8("total"), value), noErr);
    std::size_t count = fake->count();
    for (OSAID id : {property, value, script})
        EXPECT_EQ(OSADispose(generic, id), noErr);
    EXPECT_EQ(fake->count(), count - 3);
    EXPECT_EQ(OSADispose(generic, script), errOSAInvalidID);
    EXPECT_EQ(OSAExecute(generic, script, 0, 0, value), errOSAInvalidID);
    EXPECT_EQ(OSAGetProperty(generic, 0, 999, AEDesc::ofUTF8("total"), property), errOSAInvalidID);
}

TEST_F(GenericComponentTest, CompilingInPlaceKeepsTheIdentifier) {
    OSAID script = compiled("return 1"), kept = script, value = 0;
    EXPECT_EQ(OSACompile(generic, AEDesc::ofUTF8("return 2"), 0, script), noErr);
    EXPECT_EQ(script, kept);
    AEDesc desc;
    EXPECT_EQ(OSAExecute(generic, script, 0, 0, value), noErr);
    EXPECT_EQ(OSACoerceToDesc(generic, value, "long"_4cc, 0, desc), noErr);
    EXPECT_EQ(desc, AEDesc::ofInt32(2));
    OSAID recorded = 0;
    EXPECT_EQ(OSAStartRecording(generic, recorded), noErr);
    EXPECT_EQ(OSAStopRecording(generic, recorded), noErr);
}

TEST_F(GenericComponentTest, IdentifiersOfTwoComponentsDoNotMix) {
    OSAID script = compiled("return 1"), other = 0, value = 0;
    ASSERT_EQ(OSALoad(generic, FakeComponent("fak2"_4cc).stored(u"error 7 fak2"), 0, other), noErr);
    EXPECT_EQ(OSAExecute(generic, script, other, 0, value), errOSAComponentMismatch);
    EXPECT_EQ(OSASetProperty(generic, 0, script, AEDesc::ofUTF8("x"), other), errOSAComponentMismatch);
    EXPECT_EQ(OSASetHandler(generic, 0, script, AEDesc::ofUTF8("x"), other), errOSAComponentMismatch);
    EXPECT_EQ(OSAExecute(generic, other, 0, 0, value), errOSAScriptError);
    AEDesc text;
    EXPECT_EQ(OSAScriptError(generic, "errs"_4cc, "utxt"_4cc, text), noErr);
    EXPECT_EQ(text, AEDesc::ofUTF8("fak2")) << "the error of whoever failed last";
    OSAID real = other, back = 0;
    ComponentInstance exact = 0;
    ASSERT_EQ(OSAGenericToRealID(generic, real, exact), noErr);
    back = real;
    EXPECT_EQ(OSARealToGenericID(generic, back, exact), noErr);
    EXPECT_EQ(back, other) << "a known one keeps its number";
    EXPECT_EQ(OSARealToGenericID(generic, back, generic), errOSAComponentMismatch);
}

TEST_F(GenericComponentTest, CallbacksReachEveryComponent) {
    int constant = 0;
    compiled("return 1");
    FakeComponent* first = FakeComponent::last();
    OSAActiveProc proc = [](void*) { return OSErr{0}; };
    EXPECT_EQ(OSASetActiveProc(generic, proc, &constant), noErr);
    OSASendProc send = [](const AEDesc&, AEDesc*, AESendMode, AESendPriority, std::int32_t, AEIdleProc, AEFilterProc, void*) {
        return OSErr{0};
    };
    OSAResumeDispatchProc resume = [](const AEDesc&, AEDesc*, void*) { return OSErr{0}; };
    EXPECT_EQ(OSASetSendProc(generic, send, &constant), noErr);
    EXPECT_EQ(OSASetResumeDispatchProc(generic, resume, &constant), noErr);
    EXPECT_EQ(OSASetDefaultTarget(generic, AEDesc::ofProcess(9)), noErr);
    ComponentInstance real = 0;
    EXPECT_EQ(OSAGetScriptingComponent(generic, "fak2"_4cc, real), noErr);
    ASSERT_NE(FakeComponent::last(), first) << "opened after the procedures were set";
    for (const FakeComponent* each : {first, FakeComponent::last()}) {
        EXPECT_EQ(each->callbacks.active.proc, proc);
        EXPECT_EQ(each->callbacks.send.proc, send);
        EXPECT_EQ(each->callbacks.resumeDispatch.proc, resume);
        EXPECT_EQ(each->callbacks.active.refCon, &constant);
        EXPECT_EQ(each->callbacks.send.refCon, &constant);
        EXPECT_EQ(each->callbacks.resumeDispatch.refCon, &constant);
        EXPECT_EQ(each->defaultTarget, AEDesc::ofProcess(9));
    }
    OSAActiveProc read = nullptr;
    void* refCon = nullptr;
    EXPECT_EQ(OSAGetActiveProc(generic, read, refCon), noErr);
    EXPECT_EQ(read, proc);
    EXPECT_EQ(refCon, &constant);
}

} // namespace quoddle
