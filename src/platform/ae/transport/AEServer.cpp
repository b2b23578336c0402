// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEServer.h"

#include "platform/ae/AEMainThread.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/ae/transport/AEServerConnection.h"
#include "platform/ae/transport/AESocket.h"
#include "platform/base/File.h"
#include "platform/base/Wait.h"

#include <atomic>
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
constexpr std::size_t kMaximumOfSender = kMaximumConnections / 2;
constexpr int kBacklog = 512;
constexpr std::chrono::seconds kPatience{10}; // for peers that do not take their replies while the application wants to end
constexpr int kTick = 1;                      // seconds
constexpr int kTurnsForSentEvents = 64;
constexpr rlim_t kWantedDescriptors = 8192;

/// Raises the limit of open files, because each caller takes a socket.
void raiseDescriptorLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= kWantedDescriptors)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, kWantedDescriptors);
    setrlimit(RLIMIT_NOFILE, &limit);
}

/// A round is held by every event that arrives in it until its answer has been sent. Wakes the waits when the last holder lets it go.
std::shared_ptr<void> newRound() {
    return {nullptr, [](void*) { wakeWaits(); }};
}

} // namespace

/// The server's state. Connections share it, because they may be answered after the server has been destroyed.
class AEServer::Loop : public std::enable_shared_from_this<Loop> {
public:
    OSStatus start(const std::string& directory);
    void stop();
    bool isAnswered();
    bool hasReceived() const { return mHasReceived; }

private:
    struct Entry {
        std::shared_ptr<AEServerConnection> connection;
        std::uint32_t events = 0; // the events for which epoll watches the connection
    };

    // Numbers of watched descriptors. Unlike descriptors, numbers are not reused, so a late event cannot be taken for that of a newer
    // connection.
    using Number = std::uint64_t;
    enum : Number { kListener, kWake, kTimer, kFirstConnection };

    void run();
    /// Returns the number of events.
    int turn(int timeout);
    bool isStopping();
    std::shared_ptr<void> currentRound();
    bool watch(int operation, int descriptor, Number number, std::uint32_t events);
    void accept();
    void add(FileDescriptor socket, pid_t sender);
    /// False when the sender, or all senders together, have too many connections and none of them is idle.
    bool makeRoomFor(pid_t sender);
    void handle(Number number, std::uint32_t events);
    void update(Number number, Entry& entry);
    void remove(Number number);
    void startTimer();
    void tick();
    void removeStalled();
    void lookAgain(Number number);
    void takeChanges();
    void wake();

    FileDescriptor mListener;
    FileDescriptor mPoll;
    FileDescriptor mWake;
    FileDescriptor mTimer; // runs while something has to be looked at later
    bool mTimerRuns = false;
    bool mListenerRests = false;
    std::string mSocketPath;
    std::thread mThread;                            // runs the loop, unless the main thread does
    std::shared_ptr<void> mWatching;                // lets the main thread run the loop; null with a thread of its own
    std::unordered_map<Number, Entry> mConnections; // used by the serving thread only
    std::unordered_map<pid_t, std::size_t> mCounts; // connections of each sender
    const std::shared_ptr<AEAccount> mAccount = std::make_shared<AEAccount>();
    Number mNext = kFirstConnection;
    std::atomic<bool> mHasReceived = false;
    std::mutex mMutex; // guards the members below
    std::vector<Number> mChanged;
    std::shared_ptr<void> mRound = newRound();
    std::weak_ptr<void> mAwaited; // the round for whose end isAnswered() waits
    bool mIsAwaiting = false;
    bool mStopping = false;
};

AEServer::AEServer() : mLoop(std::make_shared<Loop>()) {}

AEServer::~AEServer() {
    mLoop->stop();
}

OSStatus AEServer::start(const std::string& directory) {
    return mLoop->start(directory);
}

bool AEServer::isAnswered() {
    return mLoop->isAnswered();
}

bool AEServer::hasReceived() const {
    return mLoop->hasReceived();
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
    if (!watch(EPOLL_CTL_ADD, mListener.number(), kListener, EPOLLIN) || !watch(EPOLL_CTL_ADD, mWake.number(), kWake, EPOLLIN) ||
        !watch(EPOLL_CTL_ADD, mTimer.number(), kTimer, EPOLLIN))
        return statusFromErrno(errno);
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

std::shared_ptr<void> AEServer::Loop::currentRound() {
    const std::lock_guard lock(mMutex);
    return mRound;
}

bool AEServer::Loop::isAnswered() {
    if (!mIsAwaiting) {
        // Events that have already been sent belong to the round that ends now, so they are read first. The server's own thread has read
        // them.
        for (int turns = 0; mWatching && turns < kTurnsForSentEvents && turn(0) > 0; ++turns) {
        }
        const std::lock_guard lock(mMutex);
        mAwaited = std::exchange(mRound, newRound());
        mIsAwaiting = true;
    }
    const std::lock_guard lock(mMutex);
    mIsAwaiting = !mAwaited.expired();
    return !mIsAwaiting;
}

bool AEServer::Loop::watch(int operation, int descriptor, Number number, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.u64 = number;
    return epoll_ctl(mPoll.number(), operation, descriptor, &event) == 0;
}

void AEServer::Loop::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(mWake.number(), &one, sizeof one);
}

void AEServer::Loop::lookAgain(Number number) {
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

/// Turns may be nested, because a handler may run the event loop.
int AEServer::Loop::turn(int timeout) {
    const auto self = shared_from_this(); // a handler may end the application, which destroys the server
    epoll_event events[64];
    const int count = epoll_wait(mPoll.number(), events, std::size(events), timeout);
    for (int i = 0; i < count && !isStopping(); ++i) {
        const Number number = events[i].data.u64;
        if (number == kListener)
            accept();
        else if (number == kWake)
            takeChanges();
        else if (number == kTimer)
            tick();
        else
            handle(number, events[i].events);
    }
    return count;
}

void AEServer::Loop::accept() {
    while (true) {
        FileDescriptor socket(::accept4(mListener.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!socket.isOpen()) {
            if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR && errno != ECONNABORTED) {
                // Without descriptors or memory, new connections stay in the listener's queue until the timer; watching the listener would
                // only loop.
                mListenerRests = watch(EPOLL_CTL_MOD, mListener.number(), kListener, 0);
                startTimer();
            }
            return;
        }
        if (const auto sender = sameUserPeer(socket.number()); sender && makeRoomFor(*sender))
            add(std::move(socket), *sender);
    }
}

/// Closes the connection that has been idle for longest. Its sender notices when it wants to send the next event, and connects again.
bool AEServer::Loop::makeRoomFor(pid_t sender) {
    const auto mine = mCounts.find(sender);
    const bool isOwnFault = mine != mCounts.end() && mine->second >= kMaximumOfSender;
    if (!isOwnFault && mConnections.size() < kMaximumConnections)
        return true;
    const Entry* idle = nullptr;
    Number number = 0;
    for (const auto& [candidate, entry] : mConnections) {
        if ((isOwnFault && entry.connection->sender() != sender) || !entry.connection->isIdle())
            continue;
        if (!idle || entry.connection->lastRead() < idle->connection->lastRead()) {
            idle = &entry;
            number = candidate;
        }
    }
    if (idle)
        remove(number);
    return idle != nullptr;
}

void AEServer::Loop::add(FileDescriptor socket, pid_t sender) {
    const Number number = mNext++;
    const int descriptor = socket.number();
    // A connection may be answered after the loop has been destroyed.
    auto changed = [loop = weak_from_this(), number] {
        if (const auto self = loop.lock())
            self->lookAgain(number);
    };
    mConnections[number] = {std::make_shared<AEServerConnection>(std::move(socket), sender, mAccount, std::move(changed)), EPOLLIN};
    ++mCounts[sender];
    if (!watch(EPOLL_CTL_ADD, descriptor, number, EPOLLIN))
        remove(number);
}

void AEServer::Loop::handle(Number number, std::uint32_t events) {
    const auto found = mConnections.find(number);
    if (found == mConnections.end())
        return;
    const auto connection = found->second.connection;
    if (events & EPOLLOUT)
        connection->write();
    if (events & EPOLLIN)
        connection->read(currentRound());
    else if (events & (EPOLLHUP | EPOLLERR))
        connection->dropReplies(); // events that were sent before the peer went are read later
    if (connection->hasReceived() && !mHasReceived.exchange(true))
        wakeWaits();
    if (isStopping())
        return;
    if (const auto still = mConnections.find(number); still != mConnections.end())
        update(number, still->second);
}

void AEServer::Loop::update(Number number, Entry& entry) {
    if (entry.connection->isClosed())
        return remove(number);
    if (entry.connection->isInsideFrame() || entry.connection->wantsToWrite())
        startTimer();
    const std::uint32_t wanted =
        (entry.connection->wantsToRead() ? std::uint32_t{EPOLLIN} : 0) | (entry.connection->wantsToWrite() ? std::uint32_t{EPOLLOUT} : 0);
    if (wanted == entry.events)
        return;
    // epoll always reports a closed peer, so a connection that wants nothing now is not watched at all.
    const int operation = wanted == 0 ? EPOLL_CTL_DEL : entry.events == 0 ? EPOLL_CTL_ADD : EPOLL_CTL_MOD;
    entry.events = wanted;
    if (!watch(operation, entry.connection->number(), number, wanted))
        remove(number);
}

void AEServer::Loop::remove(Number number) {
    const auto found = mConnections.find(number);
    if (found->second.events != 0)
        watch(EPOLL_CTL_DEL, found->second.connection->number(), number, 0);
    found->second.connection->close();
    if (const auto count = mCounts.find(found->second.connection->sender()); --count->second == 0)
        mCounts.erase(count);
    mConnections.erase(found);
}

void AEServer::Loop::startTimer() {
    if (std::exchange(mTimerRuns, true))
        return;
    const itimerspec once{{}, {kTick, 0}};
    timerfd_settime(mTimer.number(), 0, &once, nullptr);
}

void AEServer::Loop::tick() {
    std::uint64_t ignored;
    [[maybe_unused]] const auto got = ::read(mTimer.number(), &ignored, sizeof ignored);
    mTimerRuns = false;
    if (std::exchange(mListenerRests, false))
        watch(EPOLL_CTL_MOD, mListener.number(), kListener, EPOLLIN);
    removeStalled();
}

void AEServer::Loop::removeStalled() {
    const auto limit = std::chrono::steady_clock::now() - kPatience;
    bool isEnding;
    {
        const std::lock_guard lock(mMutex);
        isEnding = mIsAwaiting;
    }
    std::vector<Number> stalled;
    bool othersMay = false;
    for (const auto& [number, entry] : mConnections) {
        // A sender may leave its reply unread for any time, but an application that wants to end does not wait for it.
        if (entry.connection->isStalledAtTick() || (isEnding && entry.connection->isUnreadSince(limit)))
            stalled.push_back(number);
        else
            othersMay |= entry.connection->isInsideFrame() || entry.connection->wantsToWrite();
    }
    for (Number number : stalled)
        remove(number);
    if (othersMay)
        startTimer();
}

void AEServer::Loop::takeChanges() {
    std::uint64_t ignored;
    [[maybe_unused]] const auto got = ::read(mWake.number(), &ignored, sizeof ignored);
    std::vector<Number> changed;
    {
        const std::lock_guard lock(mMutex);
        changed.swap(mChanged);
    }
    for (Number number : changed)
        if (const auto found = mConnections.find(number); found != mConnections.end())
            update(number, found->second);
}

} // namespace quoddle
