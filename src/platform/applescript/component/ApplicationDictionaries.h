// SPDX-License-Identifier: MIT
// The words of applications, for compiling and for printing.
//
// Decision: asked in this order: the bundle of an applet that is installed here or stands at the path that a script names, the user's own
// folder ($XDG_DATA_HOME/quoddle/dictionaries), the dictionaries that come with the system. So what people have made or put there takes the
// place of ours. A dictionary is read when the first script of a process asks for it and then kept, because trees and scripts do not own
// it; a change of the file is seen by the next process.
#pragma once

#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/applescript/terminology/Term.h"

namespace quoddle::component {

/// Null when the application has no dictionary here, or one that cannot be read. The source lives as long as the process and never changes.
/// Any thread.
const TermSource* termsOfApplication(const syntax::ApplicationName& application);

/// Why the dictionary of an application could not be read ("PATH:LINE: …"); empty when it has none or was read. Any thread.
std::string dictionaryFault(const syntax::ApplicationName& application);

} // namespace quoddle::component
