// SPDX-License-Identifier: MIT
// say, with programs in place of speech programs that record their arguments.
#include "Additions.h"
#include "platform/base/Wait.h"

#include <chrono>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quoddle {

using namespace testing_additions;

namespace {

class SpeechTest : public AdditionsTest {
protected:
    SpeechTest() { setEnvironment("PATH", path("bin") + ":/usr/bin:/bin"); }

    void install(const std::string& program, const std::string& more = "") {
        make("bin/" + program, "#!/bin/sh\necho \"${0##*/}\" \"$@\" >> " + path("said") + "\n" + more + "\n");
        ::chmod(path("bin/" + program).c_str(), 0755);
    }
    void uninstallOthers() { setEnvironment("PATH", path("bin")); }
    std::string said() {
        std::string lines = bytesOf("said");
        make("said", "");
        return lines;
    }
};

} // namespace

// The speech program may go on after the script has ended, so it must not hold the script's files open.
TEST_F(SpeechTest, TheProgramGetsNoneOfOurFiles) {
    constexpr int kOurs = 57;
    ASSERT_EQ(::dup2(STDERR_FILENO, kOurs), kOurs);
    install("espeak-ng", "test ! -e /proc/$$/fd/57 || echo held >> " + path("said"));
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}}).errorText(), "");
    ::close(kOurs);
    EXPECT_EQ(said(), "espeak-ng -- a\n");
}

TEST_F(SpeechTest, TellsTheProgramWhatTheScriptWants) {
    install("espeak-ng");
    uninstallOthers();
    const struct {
        Parameters parameters;
        std::string said;
    } kCases[] = {
        {{}, "espeak-ng -- -hello\n"},
        {{{"RATE"_4cc, whole(200)}, {"PTCH"_4cc, real(50)}, {"VOLU"_4cc, real(0.5)}}, "espeak-ng -s 200 -p 50 -a 50 -- -hello\n"},
        {{{"RATE"_4cc, whole(100000)}, {"VOIC"_4cc, text("de")}}, "espeak-ng -s 450 -v de -- -hello\n"},
        {{{"stof"_4cc, file("x.wav")}}, "espeak-ng -w " + path("x.wav") + " -- -hello\n"},
    };
    for (const auto& row : kCases) {
        Parameters parameters = row.parameters;
        parameters.push_back({"----"_4cc, text("-hello")});
        EXPECT_EQ(send("sysottos", parameters).errorText(), "");
        EXPECT_EQ(said(), row.said);
    }
    // The desktop's speech program is preferred, except for files, which it cannot write.
    install("spd-say");
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}, {"RATE"_4cc, whole(175)}, {"VOLU"_4cc, whole(1)}}).error(), noErr);
    EXPECT_EQ(said(), "spd-say -P message -r 0 -i 100 -w -- a\n");
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}, {"STOP"_4cc, AEDesc::ofBoolean(true)}}).error(), noErr);
    EXPECT_EQ(said(), "spd-say -C\nspd-say -P message -w -- a\n");
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}, {"stof"_4cc, file("x.wav")}}).error(), noErr);
    EXPECT_EQ(said(), "espeak-ng -w " + path("x.wav") + " -- a\n");
    install("spd-say", "exit 1");
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}}).error(), noErr);
    EXPECT_EQ(said(), "spd-say -P message -w -- a\nespeak-ng -- a\n");
}

TEST_F(SpeechTest, SaysWhatIsWrong) {
    uninstallOthers();
    const Answer missing = send("sysottos", {{"----"_4cc, text("a")}});
    EXPECT_EQ(missing.error(), errAEEventFailed);
    EXPECT_NE(missing.errorText().find("espeak-ng"), std::string::npos) << missing.errorText();
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}, {"stof"_4cc, file("x.aiff")}}).error(), paramErr);
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}, {"RATE"_4cc, text("fast")}}).error(), errAECoercionFail);
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text(std::string(200'000, 'a'))}}).error(), errOSADataBlockTooLarge);
    EXPECT_EQ(send("sysottos").error(), errAEDescNotFound);
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("")}}).error(), noErr);
}

TEST_F(SpeechTest, WaitsOrNotAndStops) {
    install("espeak", "trap 'echo stopped >> " + path("said") + "; exit' TERM\nsleep 20 & wait");
    install("spd-say", "exit 1");
    install("espeak-ng", "exit 1");
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::steady_clock::now() - start; };
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}, {"wfsp"_4cc, AEDesc::ofBoolean(false)}}).error(), noErr);
    EXPECT_LT(elapsed(), std::chrono::seconds(5));
    ASSERT_EQ(std::remove(path("bin/espeak").c_str()), 0);
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("b")}, {"STOP"_4cc, AEDesc::ofBoolean(true)}}).error(), errAEEventFailed);
    for (int tries = 0; bytesOf("said").find("stopped") == std::string::npos && tries < 500; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_NE(bytesOf("said").find("stopped"), std::string::npos);
    install("espeak", "exec sleep 30");
    const WaitAlarm alarm(start + std::chrono::milliseconds(800));
    const AESendOptions cancelled{.cancelled = [&] { return elapsed() >= std::chrono::milliseconds(800); }};
    EXPECT_EQ(send("sysottos", {{"----"_4cc, text("a")}}, cancelled).error(), userCanceledErr);
    EXPECT_LT(elapsed(), std::chrono::seconds(15));
}

} // namespace quoddle
