// SPDX-License-Identifier: MIT
// Shows a new version with its notes, and asks what to do. All its texts are plain text. Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"

#include <memory>

namespace Ui {
class UpdatePanel;
}

namespace quoddle {

struct UpdateDescription {
    QString appletName;
    QString version;          ///< the new version as shown to the user
    QString installedVersion; ///< the installed version as shown to the user
    QString notes;            ///< plain text; empty when there are none
    QString obstacle;         ///< why the version can only be announced; empty when it can be installed
    bool hasPage = false;     ///< whether there is a web page to open
};

class UpdatePanel : public NSPanel {
    Q_OBJECT
public:
    /// The user's choice is the result of the dialog.
    enum Choice { later = 0, install, openPage, skip };

    UpdatePanel(const UpdateDescription& update, const QIcon& icon);
    ~UpdatePanel() override;

private:
    std::unique_ptr<Ui::UpdatePanel> mUi;
};

} // namespace quoddle
