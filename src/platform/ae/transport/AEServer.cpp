// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEServer.h"

#include "platform/ae/AEMainThread.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/ae/transport/AEServerConnection.h"
#include "platform/ae/transport/AESocket.h"
#include "platform/base/File.h"

#include <cerrno>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <thread>
#include <unordered_map>

namespace quoddle {

namespace {

constexpr std::size_t kMaximumConnections = 4096;
constexpr int kBacklog = 512;
constexpr int kPatience = 10; // seconds that a peer may stay inside a frame without sending anything of it
constexpr rlim_t kWantedDescriptors = 8192;

/// A thousand callers at once need a thousand sockets.
void raiseDescriptorLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= kWantedDescriptors)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, kWantedDescriptors);
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

/// Shared with the connections, which may be answered after the server has gone.
class AEServer::Loop : public std::enable_shared_from_this<Loop> {
public:
    OSStatus start(const std::string& directory);
    void stop();

private:
    struct Entry {
        std::shared_ptr<AEServerConnection> connection;
        std::uint32_t events = 0; // that the loop waits for
    };

    void run();
    void turn(int timeout);
    bool isStopping();
    void accept();
    void handle(int number, std::uint32_t events);
    void update(int number, Entry& entry);
    void remove(int number);
    void watchForStalls();
    void removeStalled();
    void lookAgain(int number);
    void takeChanges();
    void wake();

    FileDescriptor mListener;
    FileDescriptor mPoll;
    FileDescriptor mWake;
    FileDescriptor mTimer; // runs while a connection is inside a frame
    bool mTimerRuns = false;
    std::string mSocketPath;
    std::thread mThread;                         // either this
    std::shared_ptr<void> mWatching;             // or that
    std::unordered_map<int, Entry> mConnections; // the serving thread only
    std::mutex mMutex;                           // guards what follows
    std::vector<int> mChanged;
    bool mStopping = false;
};

AEServer::AEServer() : mLoop(std::make_shared<Loop>()) {}

AEServer::~AEServer() {
    mLoop->stop();
}

OSStatus AEServer::start(const std::string& directory) {
    return mLoop->start(directory);
}

OSStatus AEServer::Loop::start(const std::string& directory) {
    raiseDescriptorLimit();
    auto listener = listenAt(directory, AESocketName(getpid()), kBacklog);
    if (!listener)
        return listener.error();
    mListener = std::move(*listener);
    mPoll.reset(epoll_create1(EPOLL_CLOEXEC));
    mWake.reset(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    mTimer.reset(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
    if (!mPoll.isOpen() || !mWake.isOpen() || !mTimer.isOpen())
        return statusFromErrno(errno);
    for (int number : {mListener.number(), mWake.number(), mTimer.number()}) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = number;
        if (epoll_ctl(mPoll.number(), EPOLL_CTL_ADD, number, &event) != 0)
            return statusFromErrno(errno);
    }
    mSocketPath = directory + "/" + AESocketName(getpid());
    mWatching = AEWatchDescriptor(mPoll.number(), [this] { turn(0); });
    if (!mWatching)
        mThread = std::thread([this] { run(); });
    return noErr;
}

void AEServer::Loop::stop() {
    {
        const std::lock_guard lock(mMutex);
        mStopping = true;
    }
    mWatching.reset();
    if (mThread.joinable()) {
        wake();
        mThread.join();
    }
    for (auto& [number, entry] : mConnections)
        entry.connection->close();
    mConnections.clear();
    if (!mSocketPath.empty())
        ::unlink(mSocketPath.c_str());
}

bool AEServer::Loop::isStopping() {
    const std::lock_guard lock(mMutex);
    return mStopping;
}

void AEServer::Loop::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(mWake.number(), &one, sizeof one);
}

void AEServer::Loop::lookAgain(int number) {
    {
        const std::lock_guard lock(mMutex);
        if (mStopping)
            return;
        mChanged.push_back(number);
    }
    wake();
}

void AEServer::Loop::run() {
    while (!isStopping())
        turn(-1);
}

/// A handler may serve the event loop itself, so that one turn runs inside another.
void AEServer::Loop::turn(int timeout) {
    const auto self = shared_from_this(); // a handler may end the application
    epoll_event events[64];
    const int count = epoll_wait(mPoll.number(), events, std::size(events), timeout);
    for (int i = 0; i < count && !isStopping(); ++i) {
        const int number = events[i].data.fd;
        if (number == mListener.number())
            accept();
        else if (number == mWake.number())
            takeChanges();
        else if (number == mTimer.number())
            removeStalled();
        else
            handle(number, events[i].events);
    }
}

void AEServer::Loop::accept() {
    while (true) {
        FileDescriptor socket(::accept4(mListener.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!socket.isOpen())
            return;
        if (mConnections.size() >= kMaximumConnections || !isPeerSameUser(socket.number()))
            continue;
        const int number = socket.number();
        // The connection may be answered, and tell of it, when the loop has long gone.
        auto changed = [loop = weak_from_this(), number] {
            if (const auto self = loop.lock())
                self->lookAgain(number);
        };
        Entry& entry = mConnections[number];
        entry = {std::make_shared<AEServerConnection>(std::move(socket), std::move(changed)), EPOLLIN};
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = number;
        if (epoll_ctl(mPoll.number(), EPOLL_CTL_ADD, number, &event) != 0)
            mConnections.erase(number);
    }
}

void AEServer::Loop::handle(int number, std::uint32_t events) {
    const auto found = mConnections.find(number);
    if (found == mConnections.end())
        return;
    using State = AEServerConnection::State;
    const auto connection = found->second.connection;
    State state = State::Open;
    if (events & EPOLLOUT)
        state = connection->write();
    if (state == State::Open && events & EPOLLIN)
        state = connection->read();
    else if (events & (EPOLLHUP | EPOLLERR))
        state = State::Closed;
    if (isStopping())
        return;
    const auto still = mConnections.find(number);
    if (still == mConnections.end() || still->second.connection != connection)
        return;
    if (state == State::Closed)
        remove(number);
    else
        update(number, still->second);
}

void AEServer::Loop::update(int number, Entry& entry) {
    if (entry.connection->isInsideFrame())
        watchForStalls();
    const std::uint32_t wanted =
        (entry.connection->wantsToRead() ? std::uint32_t{EPOLLIN} : 0) | (entry.connection->wantsToWrite() ? std::uint32_t{EPOLLOUT} : 0);
    if (wanted == entry.events)
        return;
    entry.events = wanted;
    epoll_event event{};
    event.events = wanted;
    event.data.fd = number;
    epoll_ctl(mPoll.number(), EPOLL_CTL_MOD, number, &event);
}

void AEServer::Loop::remove(int number) {
    const auto found = mConnections.find(number);
    epoll_ctl(mPoll.number(), EPOLL_CTL_DEL, number, nullptr);
    found->second.connection->close();
    mConnections.erase(found);
}

void AEServer::Loop::watchForStalls() {
    if (std::exchange(mTimerRuns, true))
        return;
    const itimerspec once{{}, {kPatience, 0}};
    timerfd_settime(mTimer.number(), 0, &once, nullptr);
}

void AEServer::Loop::removeStalled() {
    std::uint64_t ignored;
    [[maybe_unused]] const auto got = ::read(mTimer.number(), &ignored, sizeof ignored);
    mTimerRuns = false;
    const auto limit = std::chrono::steady_clock::now() - std::chrono::seconds(kPatience);
    std::vector<int> stalled;
    bool othersInside = false;
    for (const auto& [number, entry] : mConnections) {
        if (entry.connection->isStalledSince(limit))
            stalled.push_back(number);
        else
            othersInside |= entry.connection->isInsideFrame();
    }
    for (int number : stalled)
        remove(number);
    if (othersInside)
        watchForStalls();
}

void AEServer::Loop::takeChanges() {
    std::uint64_t ignored;
    [[maybe_unused]] const auto got = ::read(mWake.number(), &ignored, sizeof ignored);
    std::vector<int> changed;
    {
        const std::lock_guard lock(mMutex);
        changed.swap(mChanged);
    }
    for (int number : changed)
        if (const auto found = mConnections.find(number); found != mConnections.end())
            update(number, found->second);
}

} // namespace quoddle
