// SPDX-License-Identifier: MIT
#include "platform/additions/SystemInformation.h"

#include "platform/additions/Command.h"
#include "platform/additions/FileParameter.h"
#include "platform/base/UserFolders.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <netinet/in.h>
#include <netpacket/packet.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace quoddle::additions {

namespace {

AEDesc textOrMissing(const std::string& text) {
    return text.empty() ? missingValue() : AEDesc::ofUTF8(text);
}

AEDesc numberOrMissing(std::int64_t number) {
    return number > 0 ? AEDesc::ofInt64(number) : missingValue();
}

/// The value in the first line "name=value" or "name : value", without quotation marks.
std::string valueInFile(const char* path, std::string_view name, char separator) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const std::size_t at = line.find(separator);
        if (!line.starts_with(name) || at == std::string::npos || line.find_first_not_of(" \t", name.size()) != at)
            continue;
        const std::size_t start = line.find_first_not_of(" \t\"", at + 1);
        const std::size_t end = line.find_last_not_of(" \t\"\r");
        return start == std::string::npos || end < start ? std::string() : line.substr(start, end - start + 1);
    }
    return {};
}

struct Addresses {
    std::string ipv4, ethernet;
};

/// The first IPv4 address and the first Ethernet address among the interfaces that lead to other computers.
Addresses addresses() {
    Addresses result;
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) != 0)
        return result;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(list, ::freeifaddrs);
    for (const ifaddrs* at = list; at; at = at->ifa_next) {
        if (!at->ifa_addr || (at->ifa_flags & IFF_LOOPBACK) || !(at->ifa_flags & IFF_UP))
            continue;
        if (at->ifa_addr->sa_family == AF_INET && result.ipv4.empty()) {
            char text[INET_ADDRSTRLEN];
            const auto* internet = reinterpret_cast<const sockaddr_in*>(at->ifa_addr);
            if (::inet_ntop(AF_INET, &internet->sin_addr, text, sizeof text))
                result.ipv4 = text;
        }
        const auto* link = reinterpret_cast<const sockaddr_ll*>(at->ifa_addr);
        if (at->ifa_addr->sa_family == AF_PACKET && link->sll_halen == 6 && result.ethernet.empty()) {
            char text[18];
            std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", link->sll_addr[0], link->sll_addr[1], link->sll_addr[2],
                          link->sll_addr[3], link->sll_addr[4], link->sll_addr[5]);
            result.ethernet = text;
        }
    }
    return result;
}

std::string locale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* value = std::getenv(variable); value && *value) {
            const std::string name = value;
            return name.substr(0, name.find_first_of(".@"));
        }
    return "C";
}

} // namespace

AEDesc systemInformation() {
    char buffer[4096];
    passwd entry{};
    passwd* user = nullptr;
    (void)::getpwuid_r(::getuid(), &entry, buffer, sizeof buffer, &user);
    const std::string longName = user && user->pw_gecos ? user->pw_gecos : "";
    utsname system{};
    (void)::uname(&system);
    const Addresses network = addresses();
    const std::int64_t memory = std::int64_t{::sysconf(_SC_PHYS_PAGES)} * ::sysconf(_SC_PAGESIZE) >> 20;
    const std::string speed = valueInFile("/proc/cpuinfo", "cpu MHz", ':');
    return AEDesc::record({
        {"siav"_4cc, AEDesc::ofText(u"2.8")},
        {"sikv"_4cc, missingValue()},
        {"sisv"_4cc, textOrMissing(valueInFile("/etc/os-release", "VERSION_ID", '='))},
        {"sisn"_4cc, textOrMissing(user && user->pw_name ? user->pw_name : "")},
        {"siln"_4cc, textOrMissing(longName.substr(0, longName.find(',')))},
        {"siid"_4cc, AEDesc::ofInt64(::getuid())},
        {"siul"_4cc, AEDesc::ofUTF8(locale())},
        {"home"_4cc, fileResult(homeFolder(), "alis"_4cc)},
        {"sibv"_4cc, AEDesc::ofUTF8(fileName("/"))},
        {"sicn"_4cc, textOrMissing(system.nodename)},
        {"ldsa"_4cc, textOrMissing(system.nodename)},
        {"siip"_4cc, textOrMissing(network.ipv4)},
        {"siea"_4cc, textOrMissing(network.ethernet)},
        {"sict"_4cc, textOrMissing(system.machine)},
        {"sics"_4cc, numberOrMissing(std::atoll(speed.c_str()))},
        {"sipm"_4cc, numberOrMissing(memory)},
    });
}

} // namespace quoddle::additions
