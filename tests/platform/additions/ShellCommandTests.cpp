// SPDX-License-Identifier: MIT
// do shell script: cancelling commands that resist, and output of any size.
#include "Additions.h"
#include "platform/base/File.h"
#include "platform/base/Wait.h"

#include <atomic>
#include <csignal>
#include <ctime>
#include <sstream>
#include <thread>

namespace quoddle::testing_additions {

namespace {

class ShellCommandTest : public AdditionsTest {
protected:
    /// Runs a command and cancels it as soon as the shell has written its process number into a file, which NOTE in the command does.
    Answer cancelled(std::string command) {
        const std::string noted = path("number");
        std::filesystem::remove(noted);
        command.replace(command.find("NOTE"), 4, "echo $$ >" + noted + ".new; mv " + noted + ".new " + noted);
        std::atomic<bool> isCancelled = false, hasEnded = false;
        std::thread user([&] {
            while (!hasEnded && !std::filesystem::exists(noted))
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            isCancelled = true;
            wakeWaits();
        });
        const Answer answer = send("sysoexec", {{"----"_4cc, text(command)}}, {.cancelled = [&] { return isCancelled.load(); }});
        hasEnded = true;
        user.join();
        return answer;
    }
    pid_t group() const { return static_cast<pid_t>(std::stol(bytesOf("number"))); }
    /// Whether a process of the group is running; ended ones that have not been collected do not count.
    bool isAlive() const {
        for (const auto& process : std::filesystem::directory_iterator("/proc")) {
            const auto stat = readFile(process.path() / "stat", 4096);
            std::istringstream fields(stat ? stat->substr(stat->rfind(')') + 1) : "");
            char state = 0;
            pid_t parent = 0, its = 0;
            if (fields >> state >> parent >> its && its == group() && state != 'Z' && state != 'X')
                return true;
        }
        return false;
    }
    bool ends() const {
        const std::time_t end = std::time(nullptr) + 20;
        while (isAlive() && std::time(nullptr) < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return !isAlive();
    }
};

} // namespace

TEST_F(ShellCommandTest, StopsWhatDoesNotWantToBeStopped) {
    for (const char* command : {"NOTE; sleep 600", "NOTE; exec >&- 2>&-; sleep 600", "trap '' TERM; NOTE; while :; do sleep 600; done",
                                "sleep 600 & NOTE", "NOTE; while :; do echo out; echo err >&2; done"}) {
        EXPECT_EQ(cancelled(command).error(), userCanceledErr) << command;
        EXPECT_TRUE(ends()) << command;
    }
}

TEST_F(ShellCommandTest, LeavesAloneWhatRunsInTheBackground) {
    EXPECT_EQ(send("sysoexec", {{"----"_4cc, text("sleep 600 >/dev/null 2>&1 & echo $$ >" + path("number"))}}).text(), "");
    EXPECT_TRUE(isAlive());
    EXPECT_EQ(::kill(-group(), SIGKILL), 0);
}

TEST_F(ShellCommandTest, TellsHowItEnded) {
    const auto run = [](const std::string& command) { return send("sysoexec", {{"----"_4cc, text(command)}}); };
    EXPECT_EQ(run("exit 3").error(), 3);
    EXPECT_EQ(run("kill -TERM $$").error(), 128 + SIGTERM);
    EXPECT_EQ(run("no-such-program-here 2>/dev/null").error(), 127);
    EXPECT_EQ(run("yes | head -c 300000").text().size(), 299'999u);
    EXPECT_EQ(run("cat; echo end").text(), "end") << "its input is empty";
    EXPECT_EQ(run(std::string("echo a\0; echo b", 15)).error(), paramErr);
}

TEST_F(ShellCommandTest, ALocaleThatIsNotInstalledIsNoComplaintOfTheCommands) {
    setEnvironment("LC_ALL", "xx_XX.UTF-8");
    EXPECT_EQ(send("sysoexec", {{"----"_4cc, text("echo oops >&2; exit 4")}}).errorText(), "oops");
    EXPECT_EQ(send("sysoexec", {{"----"_4cc, text("echo ä | wc -m")}}).text(), "2");
}

TEST_F(ShellCommandTest, UnderstandsWhatTheShellOfMacsUnderstands) {
    const std::pair<const char*, const char*> kCases[] = {
        {"cat <<< \"a b\"", "a b"}, {"[[ abc == a* ]] && echo yes", "yes"}, {"a=(1 2 3); echo ${a[1]}", "2"},
        {"echo {1..3}", "1 2 3"},   {"function f { echo $0; }; f", "sh"},   {"ls /no-such-place &> /dev/null || echo none", "none"},
        {"echo 'a\\tb'", "a\tb"},
    };
    for (const auto& [command, expected] : kCases)
        EXPECT_EQ(send("sysoexec", {{"----"_4cc, text(command)}}).text(), expected) << command;
}

// The shell kills its parent, the guard. If the shell survived that, the command would never end; the test's cancellation stops it then.
TEST_F(ShellCommandTest, AGuardThatIsKilledIsAnError) {
    const std::time_t patience = std::time(nullptr) + 20;
    const Answer answer = send("sysoexec", {{"----"_4cc, text("echo $$ >" + path("number") + "; kill -9 $PPID; while :; do :; done")}},
                               {.cancelled = [patience] { return std::time(nullptr) > patience; }});
    EXPECT_EQ(answer.error(), 128 + SIGKILL);
    EXPECT_TRUE(ends());
    (void)::kill(-group(), SIGKILL);
}

TEST_F(ShellCommandTest, ACommandIsStartedOrAnError) {
    for (const auto& [length, error] : {std::pair(100'000, noErr), std::pair(140'000, memFullErr)})
        EXPECT_EQ(send("sysoexec", {{"----"_4cc, text("true " + std::string(std::size_t(length), 'x'))}}).error(), error) << length;
}

} // namespace quoddle::testing_additions
