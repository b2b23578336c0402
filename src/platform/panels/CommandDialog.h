// SPDX-License-Identifier: MIT
// What a command becomes before it is shown: a dialog, and what its end means as a reply. One function for each command, and what they have
// in common when they write replies.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>
#include <memory>

#include <QString>

class QDialog;

namespace quoddle {

/// What a dialog finishes with that nobody has answered in time.
constexpr int kGaveUp = 0;

struct CommandDialog {
    /// Null: the reply is complete without one. Whatever must live as long is owned with it.
    std::shared_ptr<QDialog> dialog;
    /// Called once with what the dialog finished with.
    std::function<void(int returnCode, AEDesc& reply)> answer;
    double givingUpAfter = 0; ///< seconds; 0 and less: never
};

CommandDialog displayDialogDialog(const AEDesc& event, AEDesc& reply);
CommandDialog displayAlertDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseFromListDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseFileDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseFolderDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseFileNameDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseColorDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseURLDialog(const AEDesc& event, AEDesc& reply);
CommandDialog chooseApplicationDialog(const AEDesc& event, AEDesc& reply);

AEDesc descriptorOf(const QString& text);

void setResult(AEDesc& reply, AEDesc result);
void setError(AEDesc& reply, OSStatus number, const QString& message);
/// -128 without a text.
void setCancelled(AEDesc& reply);

/// What dialogs without a title of their own are called: the application, as people know it.
QString standardTitle();

} // namespace quoddle
