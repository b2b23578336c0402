// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AESocket.h"

#include "platform/base/File.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace quoddle {

namespace {

constexpr timeval kPatience{.tv_sec = 2}; // to wait for a place in the queue of a busy listener

bool makeAddress(const FileDescriptor& directory, const std::string& name, sockaddr_un& address) {
    address = {};
    address.sun_family = AF_UNIX;
    const int length = std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", directory.number(), name.c_str());
    return length > 0 && static_cast<std::size_t>(length) < sizeof address.sun_path;
}

FileDescriptor openDirectory(const std::string& path) {
    return FileDescriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
}

} // namespace

std::optional<pid_t> sameUserPeer(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    const bool isSame = getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
    return isSame ? std::optional(peer.pid) : std::nullopt;
}

Result<FileDescriptor, OSStatus> listenAt(const std::string& directory, const std::string& name, int backlog) {
    const FileDescriptor folder = openDirectory(directory);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address;
    if (!folder.isOpen() || !socket.isOpen())
        return Failure{statusFromErrno(errno)};
    if (!makeAddress(folder, name, address))
        return Failure{paramErr};
    ::unlinkat(folder.number(), name.c_str(), 0);
    if (::fchmod(socket.number(), 0600) != 0 || ::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::fchmodat(folder.number(), name.c_str(), 0600, 0) != 0 || ::listen(socket.number(), backlog) != 0)
        return Failure{statusFromErrno(errno)};
    return socket;
}

Result<FileDescriptor, OSStatus> connectTo(const std::string& directory, const std::string& name) {
    const FileDescriptor folder = openDirectory(directory);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address;
    if (!folder.isOpen() || !socket.isOpen() || !makeAddress(folder, name, address))
        return Failure{procNotFound};
    ::setsockopt(socket.number(), SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
    while (::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        if (errno != EINTR)
            return Failure{procNotFound};
    if (::fcntl(socket.number(), F_SETFL, O_NONBLOCK) != 0 || !sameUserPeer(socket.number()))
        return Failure{procNotFound};
    return socket;
}

} // namespace quoddle
