// SPDX-License-Identifier: MIT
#include "droplet/DropFilesViewController.h"

#include "droplet/DropFilesView.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

DropFilesView* DropFilesViewController::forthcomingView() {
    return static_cast<DropFilesView*>(view());
}

QWidget* DropFilesViewController::loadView() {
    return new DropFilesView;
}

void DropFilesViewController::viewDidLoad() {
    AppDelegate* delegate = AppDelegate::instance();
    forthcomingView()->setPromptString(delegate->appletDropPrompt());
    forthcomingView()->setPromptIcon(delegate->appletDropImage());
    forthcomingView()->setDropPredicate(delegate->dropPredicate());
}

} // namespace quoddle
