// SPDX-License-Identifier: MIT
// The frame around every program's work: it answers --version, checks that the output was really written, keeps files off the numbers of
// closed standard streams, settles the user's folders, and ends with a message instead of a crash when memory is short.
#pragma once

namespace quoddle {

/// Prints "PROGRAM (Quoddle) VERSION".
void printVersion(const char* program);

/// Calls `body`, unless the first argument asks for the version, and returns the exit status: the body's, or 1 when the body threw (as when
/// memory runs out) or its standard output could not be written. The reason is then on standard error. The only call in main(). A closed
/// standard stream still fails when used, but no file that is opened later gets its number.
int programMain(const char* program, int argc, char** argv, int (*body)(int argc, char** argv));

} // namespace quoddle
