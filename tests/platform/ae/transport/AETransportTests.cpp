// SPDX-License-Identifier: MIT
// Events over sockets: what arrives, what comes back, and peers that misbehave. Both ends are in this process; the server has a thread of
// its own.
#include "platform/ae/AEFlatten.h"
#include "platform/ae/NSAppleEventManager.h"
#include "platform/ae/transport/AEAccount.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/ae/transport/AESecondLaunch.h"
#include "platform/ae/transport/AEServer.h"
#include "platform/ae/transport/AEServerConnection.h"
#include "platform/ae/transport/AESocket.h"
#include "platform/ae/transport/AETransport.h"
#include "platform/base/File.h"
#include "platform/base/Wait.h"

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <malloc.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>

namespace quoddle {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

class AETransportTest : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/quoddle-test.XXXXXX";
        root = mkdtemp(name);
        setenv("XDG_RUNTIME_DIR", root.c_str(), 1);
        setenv("XDG_DATA_HOME", root.c_str(), 1);
        directory = *AERuntimeDirectory();
    }
    void TearDown() override {
        AEStopListening();
        manager.removeEventHandlerForEventClass("test"_4cc, "echo"_4cc);
        manager.removeEventHandlerForEventClass("test"_4cc, "late"_4cc);
        unsetenv("XDG_RUNTIME_DIR");
        unsetenv("XDG_DATA_HOME");
        fs::remove_all(root);
    }

    void listen() { ASSERT_EQ(AEListen({0, "Echo", "org.example.echo", root}), noErr); }
    void handleEcho() {
        manager.setEventHandler(
            [this](const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
                ++handled;
                if (const auto direct = event->paramDescriptorForKeyword("----"_4cc))
                    reply->setParamDescriptor(direct, "----"_4cc);
            },
            "test"_4cc, "echo"_4cc);
    }
    /// Suspends the events "late" until answerKept().
    void handleLate() {
        manager.setEventHandler(
            [this](const NSAppleEventDescriptorRef&, const NSAppleEventDescriptorRef&) {
                const std::lock_guard lock(mutex);
                kept.push_back(manager.suspendCurrentAppleEvent());
                ++handled;
            },
            "test"_4cc, "late"_4cc);
    }
    void answerKept() {
        std::vector<NSAppleEventManagerSuspensionID> answered;
        {
            const std::lock_guard lock(mutex);
            answered.swap(kept);
        }
        for (const auto& suspension : answered)
            manager.resumeWithSuspensionID(suspension);
    }
    static bool eventually(const std::function<bool()>& condition) {
        for (int wait = 0; !condition() && wait < 3000; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return condition();
    }
    /// The frame that a sender would write for the event.
    static std::string bytesOf(const AEDesc& event) {
        AEFrame frame;
        EXPECT_EQ(AEFlattenDesc(event, frame.payload), noErr);
        return frame.bytes();
    }
    /// A connection over which the bytes have been sent, or as many as the other end takes.
    FileDescriptor sent(std::string_view bytes) const {
        FileDescriptor socket = std::move(*connectTo(directory, AESocketName(getpid())));
        ssize_t count = 0;
        while (!bytes.empty() && ((count = ::send(socket.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL)) >= 0 || errno == EAGAIN))
            bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return socket;
    }
    static bool isClosed(const FileDescriptor& socket) {
        pollfd state{socket.number(), POLLIN, 0};
        return ::poll(&state, 1, 0) > 0;
    }
    static AEDesc eventWith(AEEventID eventID, std::int32_t value) {
        AEDesc event = AEDesc::appleEvent("test"_4cc, eventID, AEDesc::ofProcess(getpid()));
        (void)event.put("----"_4cc, AEDesc::ofInt32(value));
        return event;
    }
    OSStatus send(const AEDesc& event, AEDesc* reply, AESendMode mode = kAEWaitReply, std::int32_t ticks = 600,
                  const AESendOptions& options = {}) {
        return AESendToProcess(getpid(), event, reply, mode, ticks, options);
    }
    static std::int32_t valueOf(const AEDesc& reply) {
        const AEDesc* direct = reply.find("----"_4cc);
        return direct ? direct->asInt32().value_or(-1) : -1;
    }
    /// Listens in place of the server and passes its first connection to `behave`.
    std::thread listenAs(std::function<void(int socket)> behave) {
        auto listener = listenAt(directory, AESocketName(getpid()), 8);
        return std::thread([listener = std::move(*listener), behave] {
            pollfd state{listener.number(), POLLIN, 0};
            ::poll(&state, 1, 5000);
            const FileDescriptor socket(::accept(listener.number(), nullptr, nullptr));
            behave(socket.number());
        });
    }

    NSAppleEventManager& manager = NSAppleEventManager::sharedAppleEventManager();
    std::string root, directory;
    std::atomic<int> handled = 0;
    std::mutex mutex;
    std::vector<NSAppleEventManagerSuspensionID> kept;
};

/// No descriptor can be opened as long as the object lives.
class WithoutDescriptors {
public:
    WithoutDescriptors() {
        getrlimit(RLIMIT_NOFILE, &mBefore);
        rlimit none = mBefore;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~WithoutDescriptors() { setrlimit(RLIMIT_NOFILE, &mBefore); }

private:
    rlimit mBefore{};
};

TEST_F(AETransportTest, BringsEventsAndReplies) {
    listen();
    handleEcho();
    AEDesc reply;
    EXPECT_EQ(send(eventWith("echo"_4cc, 42), &reply), noErr);
    EXPECT_EQ(valueOf(reply), 42);

    // A message that needs many reads arrives complete.
    AEDesc large = AEDesc::appleEvent("test"_4cc, "echo"_4cc);
    (void)large.put("----"_4cc, AEDesc("utf8"_4cc, std::string(5'000'000, 'x')));
    EXPECT_EQ(send(large, &reply), noErr);
    EXPECT_EQ(reply.find("----"_4cc)->data().size(), 5'000'000u);

    EXPECT_EQ(send(eventWith("echo"_4cc, 1), nullptr, kAENoReply), noErr);
    EXPECT_EQ(send(eventWith("none"_4cc, 1), &reply), errAEEventNotHandled);
    EXPECT_EQ(reply.find("errn"_4cc)->asInt32(), errAEEventNotHandled);
    for (int wait = 0; handled < 3 && wait < 1000; ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(handled, 3);
    AEStopListening();
    EXPECT_EQ(send(eventWith("echo"_4cc, 1), &reply), procNotFound);
}

TEST_F(AETransportTest, AnswersSuspendedEventsLater) {
    listen();
    std::thread answering;
    manager.setEventHandler(
        [&](const NSAppleEventDescriptorRef&, const NSAppleEventDescriptorRef&) {
            answering = std::thread([this, suspension = manager.suspendCurrentAppleEvent()] {
                std::this_thread::sleep_for(std::chrono::milliseconds(30));
                manager.replyAppleEventForSuspensionID(suspension)
                    ->setParamDescriptor(NSAppleEventDescriptor::descriptorWithInt32(7), "----"_4cc);
                manager.resumeWithSuspensionID(suspension);
            });
        },
        "test"_4cc, "late"_4cc);
    AEDesc reply;
    EXPECT_EQ(send(eventWith("late"_4cc, 1), &reply), noErr);
    EXPECT_EQ(valueOf(reply), 7);
    answering.join();
}

TEST_F(AETransportTest, LosesAndDoublesNothing) {
    listen();
    handleEcho();
    constexpr int kThreads = 100, kCalls = 100;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> callers;
    for (int thread = 0; thread < kThreads; ++thread)
        callers.emplace_back([&, thread] {
            for (int call = 0; call < kCalls; ++call) {
                AEDesc reply;
                const std::int32_t value = thread * kCalls + call;
                if (send(eventWith("echo"_4cc, value), &reply) != noErr || valueOf(reply) != value)
                    ++wrong;
            }
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(handled, kThreads * kCalls);
}

TEST_F(AETransportTest, EndsWaitingForPeersThatDoNotAnswer) {
    const AESendOptions cancelled{[] { return true; }, nullptr};
    const auto stall = [](int socket) {
        char byte;
        while (::recv(socket, &byte, 1, 0) > 0) {
        }
    };
    const struct {
        const char* what;
        std::function<void(int)> behave;
        std::int32_t ticks;
        AESendOptions options;
        OSStatus expected;
    } kCases[] = {
        {"ends before it answers", [](int) {}, 600, {}, connectionInvalid},
        {"never answers", stall, 6, {}, errAETimeout},
        {"never answers, and the sender is cancelled", stall, -2, cancelled, userCanceledErr},
        {"answers nonsense", [](int socket) { ::send(socket, "HTTP/1.1 400 Bad Request\r\n\r\n", 28, 0); }, 600, {}, connectionInvalid},
        {"answers another event",
         [](int socket) {
             AEFrame frame;
             frame.kind = AEFrame::Kind::Reply;
             frame.id = 0xFFFFFFFF;
             const std::string bytes = frame.bytes();
             ::send(socket, bytes.data(), bytes.size(), 0);
         },
         600,
         {},
         connectionInvalid},
    };
    for (const auto& row : kCases) {
        std::thread peer = listenAs(row.behave);
        AEDesc reply;
        const auto start = Clock::now();
        EXPECT_EQ(send(eventWith("echo"_4cc, 1), &reply, kAEWaitReply, row.ticks, row.options), row.expected) << row.what;
        EXPECT_LT(Clock::now() - start, std::chrono::seconds(5)) << row.what;
        EXPECT_TRUE(reply.isNull()) << row.what;
        peer.join();
    }
}

TEST_F(AETransportTest, OutlivesHostileCallers) {
    listen();
    handleEcho();
    AEFrame event;
    event.payload = "QAE1 this is no descriptor";
    AEFrame reply;
    reply.kind = AEFrame::Kind::Reply;
    std::string tooLarge = AEFrame().bytes();
    tooLarge[16] = '\x7F';
    const std::string kMessages[] = {"GET / HTTP/1.1\r\n\r\n", tooLarge, event.bytes(), reply.bytes(), std::string(100, '\0')};
    for (const std::string& message : kMessages) {
        auto socket = connectTo(directory, AESocketName(getpid()));
        ASSERT_TRUE(socket);
        ::send(socket->number(), message.data(), message.size(), MSG_NOSIGNAL);
        pollfd state{socket->number(), POLLIN, 0};
        ASSERT_EQ(::poll(&state, 1, 2000), 1) << "not closed: " << message;
        char byte;
        EXPECT_LE(::recv(socket->number(), &byte, 1, 0), 0);
    }
    // Three bad senders: one stops inside a frame, one claims a large frame and sends little, and one leaves without reading its reply.
    std::vector<FileDescriptor> open;
    std::string claims = AEFrame().bytes();
    claims[16] = '\x07';
    for (const std::string& message : {std::string("QA"), claims}) {
        open.push_back(std::move(*connectTo(directory, AESocketName(getpid()))));
        ::send(open.back().number(), message.data(), message.size(), MSG_NOSIGNAL);
    }
    AEDesc answered;
    EXPECT_EQ(send(eventWith("echo"_4cc, 5), &answered), noErr);
    EXPECT_EQ(valueOf(answered), 5);
}

TEST_F(AETransportTest, AConnectionThatIsIdleMakesRoom) {
    listen();
    handleEcho();
    constexpr std::size_t kMany = 2100; // more connections than one sender may have
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_cur < 2 * kMany + 100)
        GTEST_SKIP() << "too few descriptors";
    std::vector<FileDescriptor> idle;
    while (idle.size() < kMany) {
        auto socket = connectTo(directory, AESocketName(getpid()));
        ASSERT_TRUE(socket);
        idle.push_back(std::move(*socket));
    }
    AEDesc answered;
    EXPECT_EQ(send(eventWith("echo"_4cc, 5), &answered), noErr);
    EXPECT_EQ(valueOf(answered), 5);
    EXPECT_TRUE(eventually([&] { return isClosed(idle.front()); })) << "the one that was idle for longest";
    EXPECT_FALSE(isClosed(idle.back()));
}

/// An event that takes ten times as much memory as its flattened form.
AEDesc eventOfSmallParts(AEEventID eventID, std::size_t count) {
    AEDesc event = AEDesc::appleEvent("test"_4cc, eventID);
    (void)event.put("----"_4cc, AEDesc::list(std::vector<AEDesc>(count, AEDesc::list({AEDesc()}))));
    return event;
}

/// No more memory than this many bytes can be had as long as the object lives.
class ShortOfMemory {
public:
    explicit ShortOfMemory(std::size_t bytes) {
        ::malloc_trim(0); // what earlier tests have freed would serve
        getrlimit(RLIMIT_AS, &mBefore);
        rlimit few = mBefore;
        few.rlim_cur = std::stoul(*readToEnd(FileDescriptor(::open("/proc/self/statm", O_RDONLY)).number(), 1000)) *
                           static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) +
                       bytes;
        setrlimit(RLIMIT_AS, &few);
    }
    ~ShortOfMemory() { setrlimit(RLIMIT_AS, &mBefore); }

private:
    rlimit mBefore{};
};

TEST_F(AETransportTest, OutlivesEventsThatDoNotFitIntoMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer takes more than there is";
#endif
    listen();
    handleEcho();
    AEDesc answered;
    ASSERT_EQ(send(eventWith("echo"_4cc, 1), &answered), noErr); // allocates everything that is made once
    const std::string bytes = bytesOf(eventOfSmallParts("echo"_4cc, 1'000'000));
    {
        const ShortOfMemory little(std::size_t{1} << 20);
        const FileDescriptor socket = sent(bytes);
        EXPECT_TRUE(eventually([&] { return isClosed(socket); }));
    }
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(send(eventWith("echo"_4cc, 5), &answered), noErr);
    EXPECT_EQ(valueOf(answered), 5);
}

TEST_F(AETransportTest, WhatEventsTakeInMemoryIsBounded) {
    listen();
    handleLate();
    const std::string bytes = bytesOf(eventOfSmallParts("late"_4cc, 700'000));
    std::vector<FileDescriptor> sockets;
    const auto isHandled = [&](int number) {
        sockets.push_back(sent(bytes));
        EXPECT_TRUE(eventually([&] { return handled == number || isClosed(sockets.back()); }));
        return handled == number;
    };
    EXPECT_TRUE(isHandled(1));
    EXPECT_TRUE(isHandled(2));
    EXPECT_FALSE(isHandled(3));
    answerKept();
    EXPECT_TRUE(isHandled(3)) << "what is answered counts no more";
    answerKept();
}

TEST_F(AETransportTest, WhatIsHeldForASenderIsBounded) {
    listen();
    std::string part = AEFrame().bytes();
    part[16] = '\x07';
    part.resize(std::size_t{100} << 20, '\0');
    const FileDescriptor first = sent(part), second = sent(part);
    EXPECT_FALSE(isClosed(first) || isClosed(second));
    const FileDescriptor third = sent(part);
    EXPECT_EQ(errno, EPIPE) << "it would have been too much";
}

TEST(AEServerConnection, APeerThatTricklesIsStalled) {
    const auto account = std::make_shared<AEAccount>();
    const auto isDropped = [&](std::size_t bytesEachTick) {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        const FileDescriptor peer(ends[0]);
        AEServerConnection connection(FileDescriptor(ends[1]), getpid(), account, [] {});
        std::string message = AEFrame().bytes();
        message[16] = '\x07';
        for (int tick = 0; tick < 20; ++tick) {
            message.resize(std::max(message.size(), bytesEachTick), '\0');
            EXPECT_EQ(::send(peer.number(), message.data(), message.size(), 0), ssize_t(message.size()));
            connection.read(nullptr);
            if (connection.isStalledAtTick())
                return true;
            message.assign(bytesEachTick, '\0');
        }
        return false;
    };
    EXPECT_TRUE(isDropped(0));
    EXPECT_TRUE(isDropped(1));
    EXPECT_FALSE(isDropped(60'000));
}

TEST(AEAccount, OneSenderDoesNotTakeFromOthersWhatTheyNeed) {
    const auto account = std::make_shared<AEAccount>();
    AECharge first(account, 1), second(account, 2), third(account, 3);
    EXPECT_FALSE(first.set(AEAccount::mostOfSender() + 1));
    EXPECT_TRUE(first.set(AEAccount::mostOfSender()));
    EXPECT_TRUE(second.set(AEAccount::mostOfSender()));
    EXPECT_FALSE(third.set(1 << 20)) << "too much in all";
    EXPECT_TRUE(third.set(100'000)) << "an ordinary event";
    EXPECT_TRUE(second.set(0));
    EXPECT_TRUE(third.set(1 << 20));
}

TEST_F(AETransportTest, HandlesWhatSendersLeaveBehind) {
    listen();
    handleLate();
    // The sender sends more events than the server takes at a time, does not wait for replies, and goes.
    constexpr int kEvents = 150;
    {
        const auto socket = connectTo(directory, AESocketName(getpid()));
        ASSERT_TRUE(socket);
        for (int i = 0; i < kEvents; ++i) {
            const std::string bytes = bytesOf(eventWith("late"_4cc, i));
            ASSERT_EQ(::send(socket->number(), bytes.data(), bytes.size(), MSG_NOSIGNAL), ssize_t(bytes.size()));
            ASSERT_TRUE(i > 0 || eventually([&] { return handled == 1; }));
        }
    }
    EXPECT_TRUE(eventually([&] {
        answerKept();
        return handled == kEvents;
    })) << handled;
}

TEST_F(AETransportTest, WaitsForDescriptorsWithoutTurningInCircles) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors of its own to look at objects";
#endif
    listen();
    handleEcho();
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{AF_UNIX, {}};
    (directory + "/" + AESocketName(getpid())).copy(address.sun_path, sizeof address.sun_path - 1);
    {
        const WithoutDescriptors none;
        ASSERT_EQ(::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        const std::clock_t before = std::clock();
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 10);
        // A process that cannot check the others does not take them for ended.
        EXPECT_TRUE(AEListRunningApplications().empty());
    }
    EXPECT_EQ(AEListRunningApplications().size(), 1u);
    const std::string bytes = bytesOf(eventWith("echo"_4cc, 1));
    ::send(socket.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    EXPECT_TRUE(eventually([&] { return handled == 1; }));
}

TEST_F(AETransportTest, AnApplicationThatEndsWaitsForWhatItOwesAndNothingElse) {
    EXPECT_TRUE(AEIsAnswered(false)) << "deaf, and nobody waits";
    AEExpectEvent();
    EXPECT_FALSE(AEIsAnswered(false)) << "the event it was launched for comes when it listens";
    listen();
    handleLate();
    EXPECT_FALSE(AEIsAnswered(false));
    std::vector<std::thread> senders;
    const auto call = [&] {
        const int before = handled;
        senders.emplace_back([this] { EXPECT_EQ(send(eventWith("late"_4cc, 1), nullptr), noErr); });
        ASSERT_TRUE(eventually([&] { return handled == before + 1; }));
    };
    call();
    EXPECT_FALSE(AEIsAnswered(false));
    std::vector<NSAppleEventManagerSuspensionID> first;
    first.swap(kept);
    call();
    EXPECT_FALSE(AEIsAnswered(false));
    manager.resumeWithSuspensionID(first[0]);
    EXPECT_EQ(AEListRunningApplications().size(), 1u);
    EXPECT_TRUE(AEIsAnswered(true)) << "what came after the question is not waited for";
    EXPECT_TRUE(AEListRunningApplications().empty());
    EXPECT_FALSE(AEIsAnswered(false)) << "but by the next question";
    answerKept();
    EXPECT_TRUE(AEIsAnswered(false));

    // A reply is not counted as sent until the sender has read all of it.
    handleEcho();
    AEDesc large = AEDesc::appleEvent("test"_4cc, "echo"_4cc);
    (void)large.put("----"_4cc, AEDesc("utf8"_4cc, std::string(3'000'000, 'x')));
    AEFrame frame;
    frame.flags = AEFrame::kWantsReply;
    ASSERT_EQ(AEFlattenDesc(large, frame.payload), noErr);
    auto socket = connectTo(directory, AESocketName(getpid()));
    ASSERT_TRUE(socket);
    const std::string bytes = frame.bytes();
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(socket->number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    ASSERT_TRUE(eventually([&] { return handled == 3; }));
    EXPECT_FALSE(AEIsAnswered(false));
    socket->reset();
    EXPECT_TRUE(eventually([] { return AEIsAnswered(false); })) << "or has gone";
    for (std::thread& sender : senders)
        sender.join();
}

TEST_F(AETransportTest, AnApplicationThatEndsIsToldWhenAnAnswerMayHaveCome) {
    handleLate();
    const auto wakes = [](const std::function<void()>& happens) {
        Wait wait;
        wait.forget();
        happens();
        pollfd woken{wait.descriptor(), POLLIN, 0};
        return ::poll(&woken, 1, 20'000) == 1;
    };
    AEExpectEvent();
    EXPECT_FALSE(AEIsAnswered(false));
    EXPECT_TRUE(wakes([this] { listen(); }));
    std::thread sender;
    EXPECT_TRUE(wakes([&] { sender = std::thread([this] { EXPECT_EQ(send(eventWith("late"_4cc, 1), nullptr), noErr); }); }));
    EXPECT_TRUE(eventually([this] { return handled == 1; }));
    EXPECT_FALSE(AEIsAnswered(false));
    EXPECT_TRUE(wakes([this] { answerKept(); }));
    EXPECT_TRUE(eventually([] { return AEIsAnswered(false); }));
    sender.join();
}

TEST_F(AETransportTest, AnApplicationThatCannotListenIsDeafNotDead) {
    fs::create_directories(directory + "/" + AESocketName(getpid()) + "/in the way");
    EXPECT_NE(AEListen({0, "Echo", "org.example.echo", root}), noErr);
    AEExpectEvent();
    EXPECT_TRUE(AEIsAnswered(false));
    AEStopListening();
}

TEST_F(AETransportTest, LaunchesOfOneApplicationTakeTurnsAndLeaveNothing) {
    auto first = std::make_unique<AELaunchLock>(root);
    std::atomic<int> inside = 0, most = 0;
    std::vector<std::thread> others;
    for (int i = 0; i < 8; ++i)
        others.emplace_back([&] {
            AELaunchLock lock(root);
            most = std::max(most.load(), ++inside);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            --inside;
        });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(most, 0);
    first.reset();
    for (std::thread& other : others)
        other.join();
    EXPECT_EQ(most, 1);
    EXPECT_TRUE(fs::is_empty(directory));
}

TEST_F(AETransportTest, KeepsARegistryOfWhatRuns) {
    // Files of processes that have ended or whose number another process has now, and files that are no records.
    for (const char* name : {"999999999.app", "999999998.sock", "1.sock", "1.app", "12x.app", "nonsense.app"})
        ASSERT_EQ(writeFile(directory + "/" + name, "QAE1 no record"), noErr);
    listen();
    const auto running = AEListRunningApplications();
    ASSERT_EQ(running.size(), 1u);
    EXPECT_EQ(running[0].processID, getpid());
    EXPECT_EQ(running[0].name, "Echo");
    EXPECT_FALSE(fs::exists(directory + "/1.app"));
    EXPECT_FALSE(fs::exists(directory + "/999999998.sock"));
    EXPECT_TRUE(fs::exists(directory + "/nonsense.app"));

    fs::create_directory(root + "/Contents");
    const auto pidOf = [](DescType type, const std::string& text) {
        const auto found = AEFindApplication(AEDesc(type, text));
        return found ? found->processID : found.error();
    };
    EXPECT_EQ(pidOf("aprl"_4cc, "echo.app"), getpid());
    EXPECT_EQ(pidOf("aprl"_4cc, root), getpid());
    EXPECT_EQ(pidOf("aprl"_4cc, "file://" + root + "/"), getpid());
    EXPECT_EQ(pidOf("bund"_4cc, "ORG.example.Echo"), getpid());
    EXPECT_EQ(pidOf("bund"_4cc, ""), procNotFound);
    EXPECT_EQ(pidOf("aprl"_4cc, "Nobody"), procNotFound);
    EXPECT_EQ(pidOf("mach"_4cc, "?"), errAEUnknownAddressType);
    AEStopListening();
    EXPECT_EQ(pidOf("aprl"_4cc, "Echo"), 0); // known from its earlier run
    EXPECT_TRUE(AEListRunningApplications().empty());
}

TEST_F(AETransportTest, AnswersForApplicationsThatDoNotRun) {
    AEInstallTransport();
    const auto ask = [](FourCharCode property, AEDesc* reply) {
        AEDesc event = AEDesc::appleEvent("core"_4cc, "getd"_4cc, AEDesc("aprl"_4cc, "Nobody"));
        AEDesc object = AEDesc::record("obj "_4cc);
        (void)object.put("want"_4cc, AEDesc::ofType("prop"_4cc));
        (void)object.put("from"_4cc, AEDesc());
        (void)object.put("form"_4cc, AEDesc::ofEnum("prop"_4cc));
        (void)object.put("seld"_4cc, AEDesc::ofType(property));
        (void)event.put("----"_4cc, object);
        return AESendMessage(event, reply, kAEWaitReply, 600);
    };
    AEDesc reply;
    EXPECT_EQ(ask("prun"_4cc, &reply), noErr);
    EXPECT_EQ(reply.find("----"_4cc)->asBoolean(), false);
    EXPECT_EQ(ask("pnam"_4cc, &reply), procNotFound);
    AESetRemoteSender({});
}

TEST_F(AETransportTest, TrustsOnlyAFolderOfItsOwn) {
    EXPECT_EQ(directory, root + "/quoddle");
    ASSERT_EQ(::chmod(directory.c_str(), 0755), 0);
    EXPECT_FALSE(AERuntimeDirectory());
    fs::remove(directory);
    fs::create_directory_symlink("/tmp", directory);
    EXPECT_FALSE(AERuntimeDirectory());
    fs::remove(directory);
    EXPECT_TRUE(AERuntimeDirectory());
    // The folder is not made where others may write, or in another user's folder.
    fs::remove(directory);
    const std::string otherwise = "/tmp/quoddle-" + std::to_string(::geteuid());
    ASSERT_EQ(::chmod(root.c_str(), 0777), 0);
    EXPECT_EQ(*AERuntimeDirectory(), otherwise);
    ASSERT_EQ(::chmod(root.c_str(), 0700), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(root.c_str(), 12345, 12345), 0);
        EXPECT_EQ(*AERuntimeDirectory(), otherwise);
    }
    EXPECT_FALSE(fs::exists(directory));
}

TEST_F(AETransportTest, LaunchesNobodyWhoCouldNotBeFound) {
    AEInstallTransport();
    const std::string program = root + "/Deaf.app/Contents/Linux/Deaf", trace = root + "/launched";
    fs::create_directories(fs::path(program).parent_path());
    ASSERT_EQ(writeFile(program, "#!/bin/sh\ntouch '" + trace + "'\n"), noErr);
    ASSERT_EQ(::chmod(program.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(directory.c_str(), 0755), 0);
    AEDesc reply;
    const AEDesc event = AEDesc::appleEvent("test"_4cc, "echo"_4cc, AEDesc("aprl"_4cc, root + "/Deaf.app"));
    EXPECT_EQ(AESendMessage(event, &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    ASSERT_TRUE(reply.find("errs"_4cc));
    EXPECT_EQ(reply.find("errn"_4cc)->asInt32(), -5000);
    EXPECT_NE(reply.find("errs"_4cc)->asUTF8()->find("chmod 700"), std::string::npos);
    EXPECT_EQ(AESendMessage(event, nullptr, kAENoReply, kAEDefaultTimeout), -5000);
    EXPECT_FALSE(fs::exists(trace));
}

} // namespace
} // namespace quoddle
