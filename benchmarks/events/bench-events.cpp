// SPDX-License-Identifier: MIT
// Calls a handler of a running applet, again and again, beside a bare echo of the same bytes between two processes, and says how long each
// call took. Times are in microseconds, memory in kilobytes.
//
//   bench-events echo CALLS                   each round trip of the bare echo
//   bench-events call APPLET CALLS            each call of the applet's handler "same"
//   bench-events script FILE CALLS            each call of the same handler in this process, one thread and no window: the script's time
//   bench-events crowd APPLET CALLERS CALLS   each call of many callers at once, with a connection each, and the count of wrong answers
//   bench-events memory APPLET CALLS          the resident memory of the applet before and after the calls
#include "engine/QXOSAComponent.h"
#include "engine/QXOSAID.h"
#include "platform/ae/AEFlatten.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/applescript/AppleScriptComponent.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace quoddle;

namespace {

using Clock = std::chrono::steady_clock;

AEDesc callOf(std::int32_t value) {
    AEDesc event = AEDesc::appleEvent("ascr"_4cc, "psbr"_4cc);
    (void)event.put("snam"_4cc, AEDesc::ofUTF8("same"));
    (void)event.put("----"_4cc, AEDesc::list({AEDesc::ofInt32(value)}));
    return event;
}

std::string frameOf(const AEDesc& event) {
    AEFrame frame;
    (void)AEFlattenDesc(event, frame.payload);
    return frame.bytes();
}

double microseconds(Clock::duration duration, int calls) {
    return std::chrono::duration<double, std::micro>(duration).count() / calls;
}

bool transfer(int socket, std::string& bytes, bool sends) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = sends ? ::send(socket, bytes.data() + done, bytes.size() - done, 0)
                                    : ::recv(socket, bytes.data() + done, bytes.size() - done, 0);
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

/// Measures the least that two processes can do: the bytes of the request go one way, bytes of the size of the reply the other.
int echo(int calls) {
    AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    (void)reply.put("----"_4cc, AEDesc::ofInt32(1));
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(0));
    std::string request = frameOf(callOf(1)), answer = frameOf(reply);
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        return EXIT_FAILURE;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        while (transfer(ends[1], request, false) && transfer(ends[1], answer, true)) {
        }
        ::_exit(0);
    }
    ::close(ends[1]);
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i)
        if (!transfer(ends[0], request, true) || !transfer(ends[0], answer, false))
            return EXIT_FAILURE;
    std::printf("call %.2f\n", microseconds(Clock::now() - start, calls));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return EXIT_SUCCESS;
}

/// Measures the part of a call that the applet's script thread does.
int script(const char* file, int calls) {
    registerAppleScriptComponent();
    const QXOSAIDRef same = QXOSAID::QXOSAIDWithComponent(QXOSAComponent::appleScriptComponent());
    same->loadFile(QString::fromLocal8Bit(file));
    const auto no = NSAppleEventDescriptor::descriptorWithBoolean(false);
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i) {
        same->setDescriptorForPropertyName(no, QStringLiteral("appletisquitting"));
        const QXOSAIDRef result = same->executeEvent(NSAppleEventDescriptor::descriptorWithAEDesc(callOf(i)));
        if (!result || result->descriptor()->int32Value() != i)
            return EXIT_FAILURE;
    }
    std::printf("call %.2f\n", microseconds(Clock::now() - start, calls));
    return EXIT_SUCCESS;
}

bool callOnce(std::int32_t processID, std::int32_t value) {
    AEDesc reply;
    const OSStatus status = AESendToProcess(processID, callOf(value), &reply, kAEWaitReply, kNoTimeOut, {});
    const AEDesc* answer = reply.find("----"_4cc);
    return status == noErr && answer && answer->asInt32() == value;
}

int call(std::int32_t processID, int calls) {
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i)
        if (!callOnce(processID, i))
            return EXIT_FAILURE;
    std::printf("call %.2f\n", microseconds(Clock::now() - start, calls));
    return EXIT_SUCCESS;
}

int crowd(std::int32_t processID, int callers, int calls) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    const auto start = Clock::now();
    for (int caller = 0; caller < callers; ++caller)
        threads.emplace_back([&, caller] {
            for (int i = 0; i < calls; ++i)
                if (!callOnce(processID, caller * calls + i))
                    ++wrong;
        });
    for (std::thread& thread : threads)
        thread.join();
    std::printf("call %.2f\nwrong %d\n", microseconds(Clock::now() - start, callers * calls), wrong.load());
    return EXIT_SUCCESS;
}

long residentKilobytes(std::int32_t processID) {
    std::ifstream status("/proc/" + std::to_string(processID) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:"))
            return std::strtol(line.c_str() + 6, nullptr, 10);
    return 0;
}

int memory(std::int32_t processID, int calls) {
    for (int i = 0; i < calls / 10; ++i)
        (void)callOnce(processID, i);
    const long before = residentKilobytes(processID);
    int wrong = 0;
    for (int i = 0; i < calls; ++i)
        wrong += callOnce(processID, i) ? 0 : 1;
    std::printf("before %ld\nafter %ld\nwrong %d\n", before, residentKilobytes(processID), wrong);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "echo" && argc == 3)
        return echo(std::atoi(argv[2]));
    if (what == "script" && argc == 4)
        return script(argv[2], std::atoi(argv[3]));
    if (argc < 4) {
        std::fprintf(
            stderr,
            "usage: bench-events echo CALLS | script FILE CALLS | call APPLET CALLS | crowd APPLET CALLERS CALLS | memory APPLET CALLS\n");
        return 2;
    }
    const auto applet = AEFindApplication(AEDesc("aprl"_4cc, argv[2]));
    if (!applet || applet->processID == 0) {
        std::fprintf(stderr, "bench-events: %s does not run\n", argv[2]);
        return EXIT_FAILURE;
    }
    if (what == "call")
        return call(applet->processID, std::atoi(argv[3]));
    if (what == "crowd" && argc == 5)
        return crowd(applet->processID, std::atoi(argv[3]), std::atoi(argv[4]));
    return memory(applet->processID, std::atoi(argv[3]));
}
