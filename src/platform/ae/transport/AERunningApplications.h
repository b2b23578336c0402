// SPDX-License-Identifier: MIT
// Which applications of this user run and take Apple events: one small file for each beside its socket, PID.app and PID.sock.
//
// Decision: the files are the registry; no process keeps it. A record names the time its process started, so that one left behind by a
// crash is told from a new process with the same number, and removed by whoever meets it.
#pragma once

#include "platform/base/OSStatus.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

struct AERunningApplication {
    std::int32_t processID = 0;
    std::string name;             // as people call it, without ".app"
    std::string bundleIdentifier; // may be empty
    std::string path;             // of the bundle, absolute, without links; may be empty
};

/// The applications that run, the last one started first. Any thread.
std::vector<AERunningApplication> AEListRunningApplications();

/// Makes a record of this process, complete or not at all; its processID is ignored. A file status on failure.
OSStatus AERegisterApplication(const AERunningApplication& application);
/// Removes the record of this process, so that it is found no more. Its socket stays for those who have found it.
void AEWithdrawApplication();
/// Removes both.
void AEUnregisterApplication();

/// The name that scripts have for the application they run in: its registered name, else that of the program.
std::string AECurrentApplicationName();

/// False for one that has ended, also when nobody has collected it yet.
bool AEIsProcessAlive(std::int32_t processID);

/// Where the process listens; `directory` is AERuntimeDirectory's.
std::string AESocketName(std::int32_t processID);

/// Names and identifiers are compared without regard to case; ".app" at the end of a name is ignored.
bool AESameApplicationName(std::string_view a, std::string_view b);

} // namespace quoddle
