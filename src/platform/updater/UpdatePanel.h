// SPDX-License-Identifier: MIT
// Tells of a new version, shows the notes about it, and asks what is to be done. Everything in it is plain text.
// Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"

#include <memory>

namespace Ui {
class UpdatePanel;
}

namespace quoddle {

struct UpdateDescription {
    QString appletName;
    QString version;          ///< the new one, as people are told
    QString installedVersion; ///< likewise
    QString notes;            ///< plain text; empty: nothing is known
    QString obstacle;         ///< why it can only be announced; empty when it can be installed
    bool hasPage = false;     ///< there is a page to go to
};

class UpdatePanel : public NSPanel {
    Q_OBJECT
public:
    /// The user's choice, as the result of the dialog.
    enum Choice { later = 0, install, openPage, skip };

    UpdatePanel(const UpdateDescription& update, const QIcon& icon);
    ~UpdatePanel() override;

private:
    std::unique_ptr<Ui::UpdatePanel> mUi;
};

} // namespace quoddle
