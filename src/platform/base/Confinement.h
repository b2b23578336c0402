// SPDX-License-Identifier: MIT
// Takes rights away from a process that reads input from untrusted sources and answers on streams that are already open.
#pragma once

namespace quoddle {

/// Confines the process, with all its threads, for the rest of its life: it cannot run programs, make connections, change files or folders,
/// or touch other processes; such calls fail with EPERM. It can read files, load libraries, use memory and threads, and write to open
/// files. Returns false, and changes nothing, when the system cannot confine processes. Must be called before there are other threads.
bool confineProcess();

} // namespace quoddle
