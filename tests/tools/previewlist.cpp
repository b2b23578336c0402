// SPDX-License-Identifier: MIT
// A list of files with the preview panel, for tests with a real keyboard and for people who want to see what a file looks like in it.
//
//   previewlist FILE…      space shows the selected files, the arrows move the selection, Escape closes the panel, then the list
#include "platform/appkit/Appearance.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/preview/QLPreviewPanel.h"

#include <cstdio>

#include <QFile>
#include <QKeyEvent>
#include <QListWidget>

using namespace quoddle;

namespace {

class File final : public QLPreviewItem {
public:
    explicit File(const QString& path) : mPath(path) {}
    QUrl previewItemURL() const override { return QUrl::fromLocalFile(mPath); }

private:
    const QString mPath;
};

class FileList final : public QListWidget, public QLPreviewPanelController, public QLPreviewPanelDataSource, public QLPreviewPanelDelegate {
public:
    explicit FileList(const QStringList& files) {
        addItems(files);
        setSelectionMode(ExtendedSelection);
        setCurrentRow(0);
        QLPreviewPanel::registerController(*this, *this);
        connect(this, &QListWidget::itemSelectionChanged, this, [this] {
            if (mPanel)
                mPanel->reloadData();
        });
    }

    bool acceptsPreviewPanelControl(QLPreviewPanel&) override { return true; }
    void beginPreviewPanelControl(QLPreviewPanel& panel) override {
        mPanel = &panel;
        panel.setDataSource(this);
        panel.setDelegate(this);
    }
    void endPreviewPanelControl(QLPreviewPanel&) override { mPanel = nullptr; }
    int numberOfPreviewItemsInPreviewPanel(QLPreviewPanel&) override { return static_cast<int>(selectedItems().size()); }
    std::shared_ptr<const QLPreviewItem> previewPanelPreviewItemAtIndex(QLPreviewPanel&, int index) override {
        return std::make_shared<File>(selectedItems().at(index)->text());
    }
    bool previewPanelHandleEvent(QLPreviewPanel&, QEvent& event) override {
        if (event.type() != QEvent::KeyPress)
            return false;
        keyPressEvent(static_cast<QKeyEvent*>(&event));
        return true;
    }
    QRect previewPanelSourceFrameOnScreenForPreviewItem(QLPreviewPanel&, const QLPreviewItem&) override {
        const QRect row = visualItemRect(currentItem());
        return {viewport()->mapToGlobal(row.topLeft()), row.size()};
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            return NSApplication::quit();
        if (event->key() != Qt::Key_Space)
            return QListWidget::keyPressEvent(event);
        QLPreviewPanel& panel = QLPreviewPanel::sharedPreviewPanel();
        panel.isVisible() ? panel.orderOut() : panel.makeKeyAndOrderFront();
    }

private:
    QLPreviewPanel* mPanel = nullptr;
};

} // namespace

int main(int argc, char** argv) {
    setUserDefaultsDomain(QStringLiteral("previewlist"));
    NSApplication application(argc, argv);
    Appearance::applyRememberedScheme();
    QStringList files;
    for (int i = 1; i < argc; ++i)
        files << QFile::decodeName(argv[i]);
    FileList list(files);
    list.setWindowTitle(QStringLiteral("Files"));
    list.resize(360, 200);
    list.move(20, 20);
    list.show();
    return NSApplication::exec();
}
