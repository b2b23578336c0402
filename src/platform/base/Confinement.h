// SPDX-License-Identifier: MIT
// For a process that reads what may come from anybody and answers on streams that are open already: what it can do besides is taken away.
#pragma once

namespace quoddle {

/// From now on the process, with all its threads, cannot run programs, make connections, change files or folders, or touch other processes:
/// such calls fail with EPERM. It can read files, load libraries, use memory and threads, and write to what is open. There is no way back.
/// False: the system does not offer that, and nothing has changed. Call it before there are other threads.
bool confineProcess();

} // namespace quoddle
