// SPDX-License-Identifier: MIT
// The drop pane: the first mode of the droplet's window.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"

namespace quoddle {

class DropFilesView;

class DropFilesViewController : public NSViewController {
    Q_OBJECT
public:
    explicit DropFilesViewController(QObject* parent = nullptr) : NSViewController(parent) {}

    /// The pane's view; loaded on first use.
    DropFilesView* forthcomingView();

protected:
    QWidget* loadView() override;
    /// Besides loading, gives the view the applet's prompt, picture and condition.
    void viewDidLoad() override;
};

} // namespace quoddle
