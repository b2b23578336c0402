// SPDX-License-Identifier: MIT
// What every program does around its work: standard streams that can be relied on, output that is really written, an end without a core
// when memory is short.
#pragma once

namespace quoddle {

/// Calls `body` and answers the exit status: that of the body, or 1 when what it has printed on standard output could not be written or
/// when there was no memory, which is then said on standard error. First and last thing in main(). Standard streams that are closed fail
/// as before, but no file that is opened later takes their place.
int programMain(const char* program, int argc, char** argv, int (*body)(int argc, char** argv));

} // namespace quoddle
