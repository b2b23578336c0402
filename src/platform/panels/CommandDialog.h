// SPDX-License-Identifier: MIT
// An interactive command that is ready to be shown: a dialog, and the reply that its end means. There is one function for each
// command; the other functions help all of them to write replies.
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

/// How a command is answered: by the applet itself or in the standard way. Six of the commands exist in both manners, and scripts can tell
/// the two apart by parameters and results.
enum class Manner { standard, applet };

/// The program for which a command is answered.
struct Asker {
    Manner manner = Manner::standard;
    /// The bundle whose pictures and types of files a command may name. May be null.
    std::shared_ptr<NSBundle> bundle = {};
};

/// The return code of a dialog that nobody has answered in time.
constexpr int kGaveUp = 0;

struct CommandDialog {
    /// A fault in the parameters. When there is one, no dialog is shown.
    std::optional<CommandError> error = {};
    /// The dialog, which also owns everything that must live as long. Null when there is an error.
    std::shared_ptr<QDialog> dialog = {};
    /// Writes the reply for the dialog's return code; called once.
    std::function<void(int returnCode, AEDesc& reply)> answer = {};
    /// The seconds after which the dialog gives up; 0 and less: never.
    double givingUpAfter = 0;
    /// Called just before the dialog is shown: as a sheet of `parent`, or as a window of its own when that is null. May be empty.
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
/// Sets the error -128, without a text.
void setCancelled(AEDesc& reply);

/// The title of dialogs without a title of their own: the application's name as people know it.
QString standardTitle();

} // namespace quoddle
