// SPDX-License-Identifier: MIT
#include "window/TestAppletPanel.h"

#include "platform/appkit/NSApplication.h"

#include <QFileDialog>
#include <QFileInfo>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

const QString kPrompt = u"Choose the Kestrel Applet to test"_s;

class TestAppletPanel final : public QFileDialog {
public:
    TestAppletPanel() {
        setOption(DontUseNativeDialog); // the desktop's own lets no folder be refused
        setFileMode(Directory);
        setWindowTitle(kPrompt);
        setLabelText(Accept, kPrompt);
    }
    QString chosen() const { return selectedFiles().value(0); }

protected:
    void accept() override {
        if (chosen().endsWith(".app"_L1))
            QDialog::accept(); // not the file dialog's, which would go into the folder
        else if (QFileInfo(chosen()).isDir())
            setDirectory(chosen());
    }
};

} // namespace

QString chooseTestApplet() {
    TestAppletPanel panel;
    return NSApplication::sharedApplication()->runModalForWindow(panel) == QDialog::Accepted ? panel.chosen() : QString();
}

} // namespace quoddle
