// SPDX-License-Identifier: MIT
#include "window/TestAppletPanel.h"

#include "platform/appkit/NSOpenPanel.h"

namespace quoddle {

using namespace Qt::StringLiterals;

QString chooseTestApplet() {
    NSOpenPanel panel;
    panel.setAllowedFileTypes({u"app"_s});
    panel.setAllowsMultipleSelection(false);
    panel.setCanChooseDirectories(false);
    panel.setPrompt(u"Choose the Kestrel Applet to test"_s);
    return panel.runModal() == NSModalResponseOK ? panel.url().toLocalFile() : QString();
}

} // namespace quoddle
