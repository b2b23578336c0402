// SPDX-License-Identifier: MIT
// The user's running applications that take Apple events: for each a small file, PID.app, beside its socket, PID.sock.
//
// Decision: the files are the registry; no process keeps it. A record has the start time of its process. By it any process can tell a
// record that a crash has left behind, even when a new process has the same number, and removes it.
#pragma once

#include "platform/base/OSStatus.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

struct AERunningApplication {
    std::int32_t processID = 0;
    std::string name;             // the name without ".app"
    std::string bundleIdentifier; // may be empty
    std::string path;             // of the bundle, absolute and without links; may be empty
};

/// The running applications, the one started last first. Any thread.
std::vector<AERunningApplication> AEListRunningApplications();

/// Writes the record of this process, completely or not at all; `processID` is ignored. A file status on failure.
OSStatus AERegisterApplication(const AERunningApplication& application);
/// Removes the record of this process, so that others do not find it any more. The socket stays for those that have found it.
void AEWithdrawApplication();
/// Removes the record and the socket.
void AEUnregisterApplication();

/// The name of the application in which scripts run: its registered name, else the program's name.
std::string AECurrentApplicationName();

/// False for a process that has ended, also when its parent has not collected it yet.
bool AEIsProcessAlive(std::int32_t processID);

/// The name of the socket at which a process listens, in the folder AERuntimeDirectory().
std::string AESocketName(std::int32_t processID);

/// Compares names or identifiers without regard to case; ".app" at the end is ignored.
bool AESameApplicationName(std::string_view a, std::string_view b);

} // namespace quoddle
