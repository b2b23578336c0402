// SPDX-License-Identifier: MIT
// What a command becomes before it is shown: a dialog, and what its end means as a reply. One function for each command, and what they have
// in common when they write replies.
// Main thread only.
#pragma once

#include "platform/panels/CommandError.h"

#include <functional>
#include <memory>
#include <optional>

#include <QString>

class QDialog;
class QMainWindow;

namespace quoddle {

class NSBundle;

/// Six of the commands have two manners, which scripts can tell from each other by parameters and answers: that of an applet, which answers
/// them itself, and the standard one.
enum class Manner { standard, applet };

/// Whom a command is answered for.
struct Asker {
    Manner manner = Manner::standard;
    /// The bundle whose pictures a command may name and whose types of files count. May be null.
    std::shared_ptr<NSBundle> bundle = {};
};

/// What a dialog finishes with that nobody has answered in time.
constexpr int kGaveUp = 0;

struct CommandDialog {
    /// A fault in the parameters; with one, no dialog is shown.
    std::optional<CommandError> error = {};
    /// Whatever must live as long is owned with it. Null where there is an error.
    std::shared_ptr<QDialog> dialog = {};
    /// Called once with what the dialog finished with.
    std::function<void(int returnCode, AEDesc& reply)> answer = {};
    /// Seconds; 0 and less: never.
    double givingUpAfter = 0;
    /// Called just before it is shown, on a window as a sheet, or on null as a window of its own. May be empty.
    std::function<void(const QMainWindow* parent)> prepare = {};
};

CommandDialog displayDialogDialog(const AEDesc& event, const Asker& asker);
CommandDialog displayAlertDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseFromListDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseFileDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseFolderDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseFileNameDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseColorDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseURLDialog(const AEDesc& event, const Asker& asker);
CommandDialog chooseApplicationDialog(const AEDesc& event, const Asker& asker);

AEDesc descriptorOf(const QString& text);

void setResult(AEDesc& reply, AEDesc result);
void setError(AEDesc& reply, OSStatus number, const QString& message);
/// -128 without a text.
void setCancelled(AEDesc& reply);

/// What dialogs without a title of their own are called: the application, as people know it.
QString standardTitle();

} // namespace quoddle
