// SPDX-License-Identifier: MIT
// Which program the desktop opens a type of file with, once an applet that takes the type is there as well.
//
// Decision: without a word about it in a list of defaults, desktops take a program of the user's own folder before one of the system, and
// so would take each new applet. Therefore the default of before is written down where the user's own choices come first: in the list in
// the applications folder. Behind it stands the applet's name, which marks the line as ours; it goes with the last such name. A line of the
// user's that names only programs which have gone gets all of this at its end. A user who wants the applet as the default gets it into the
// list of own choices, as the desktop's settings do.
#pragma once

#include <string>

#include <QStringList>

namespace quoddle::tool {

/// Whether the applet is to be the default, or what was the default before.
enum class DefaultProgram { before, applet };

/// Sees to the defaults for the types of an applet, whose desktop entry is `identifier` and need not be there yet, in place of what an
/// earlier call has written for it. An applet that is the default already stays so. Answers an error as a sentence; empty when there is
/// none.
std::string setDefaultPrograms(const QString& identifier, const QStringList& types, DefaultProgram which);

/// Takes all back. Answers an error as a sentence; empty when there is none.
std::string removeDefaultPrograms(const QString& identifier);

} // namespace quoddle::tool
