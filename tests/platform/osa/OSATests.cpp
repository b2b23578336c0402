// SPDX-License-Identifier: MIT
// The registry and the calls: instances are opened and closed, unknown ones are refused, all other calls are forwarded.
#include "platform/osa/FakeComponent.h"

#include <gtest/gtest.h>
#include <thread>

namespace quoddle {

TEST(ComponentRegistry, OpensWhatIsRegistered) {
    FakeComponent::registerAs("fak1"_4cc);
    EXPECT_EQ(OpenDefaultComponent(kOSAComponentType, "none"_4cc), 0u);
    EXPECT_EQ(OpenDefaultComponent("xxxx"_4cc, "fak1"_4cc), 0u);
    RegisterComponent({.subType = "fail"_4cc, .open = [] { return nullptr; }});
    EXPECT_EQ(OpenDefaultComponent(kOSAComponentType, "fail"_4cc), 0u);
    ComponentInstance first = OpenDefaultComponent(kOSAComponentType, "fak1"_4cc);
    ComponentInstance second = OpenDefaultComponent(kOSAComponentType, "fak1"_4cc);
    EXPECT_NE(first, second);
    EXPECT_EQ(ComponentSubType(first), "fak1"_4cc);
    EXPECT_EQ(CallComponentVersion(first), 0x10203);
    EXPECT_EQ(CloseComponent(first), noErr);
    EXPECT_EQ(CloseComponent(first), badComponentInstance);
    EXPECT_EQ(CallComponentVersion(first), 0);
    OSAID id = 7;
    EXPECT_EQ(OSACompile(first, AEDesc::ofUTF8("x"), 0, id), badComponentInstance);
    EXPECT_EQ(OSADispose(0, 1), badComponentInstance);
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(CloseComponent(second), noErr);
}

TEST(OSA, WhatAComponentLeavesOutIsUnsupported) {
    RegisterComponent({.subType = "empt"_4cc, .open = [] { return std::make_shared<ScriptingComponent>(); }});
    ComponentInstance empty = OpenDefaultComponent(kOSAComponentType, "empt"_4cc);
    OSAID id = 0;
    AEDesc desc;
    OSType subType;
    EXPECT_EQ(OSACompile(empty, {}, 0, id), badComponentSelector);
    EXPECT_EQ(OSAStore(empty, 1, "scpt"_4cc, 0, desc), badComponentSelector);
    EXPECT_EQ(OSAGetDefaultScriptingComponent(empty, subType), badComponentSelector);
    CloseComponent(empty);
}

TEST(OSA, CombinedCallsLeaveNothingBehind) {
    FakeComponent::registerAs("fak1"_4cc);
    ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, "fak1"_4cc);
    FakeComponent* fake = FakeComponent::last();
    OSAID id = 0;
    EXPECT_EQ(OSACompileExecute(instance, AEDesc::ofUTF8("return 12"), 0, 0, id), noErr);
    EXPECT_EQ(fake->count(), 1u);
    EXPECT_EQ(OSADispose(instance, id), noErr);
    AEDesc text;
    EXPECT_EQ(OSADoScript(instance, AEDesc::ofUTF8("return 12"), 0, "utxt"_4cc, 0, text), noErr);
    EXPECT_EQ(text, AEDesc::ofUTF8("12"));
    EXPECT_EQ(OSADoScript(instance, AEDesc::ofUTF8("return nothing"), 0, "utxt"_4cc, 0, text), noErr);
    EXPECT_TRUE(text.isNull());
    EXPECT_EQ(OSADoScript(instance, AEDesc::ofUTF8("error 5 oops"), 0, "utxt"_4cc, 0, text), errOSAScriptError);
    EXPECT_EQ(OSAScriptError(instance, "errs"_4cc, "utxt"_4cc, text), noErr);
    EXPECT_EQ(text, AEDesc::ofUTF8("oops"));
    EXPECT_EQ(fake->count(), 0u);
    CloseComponent(instance);
}

TEST(ComponentRegistry, AnInstanceClosedInsideACallLivesUntilItsEnd) {
    FakeComponent::registerAs("fak1"_4cc);
    ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, "fak1"_4cc);
    static ComponentInstance sToClose;
    sToClose = instance;
    OSASetActiveProc(
        instance, [](void*) { return static_cast<OSErr>(CloseComponent(sToClose) == noErr ? userCanceledErr : 1); }, nullptr);
    OSAID id = 0;
    EXPECT_EQ(OSACompileExecute(instance, AEDesc::ofUTF8("loop"), 0, 0, id), errOSAScriptError);
    EXPECT_EQ(FakeComponent::last(), nullptr);
}

TEST(ComponentRegistry, ManyThreadsOpenAndClose) {
    FakeComponent::registerAs("empt"_4cc);
    RegisterComponent({.subType = "empt"_4cc, .open = [] { return std::make_shared<ScriptingComponent>(); }});
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int round = 0; round < 200; ++round) {
                ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, "empt"_4cc);
                EXPECT_EQ(OSADispose(instance, 1), badComponentSelector);
                EXPECT_EQ(CloseComponent(instance), noErr);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace quoddle
