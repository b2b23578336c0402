// SPDX-License-Identifier: MIT
// The preview panel's partners: items are the files to show, a data source has them, a delegate takes keys, and a controller puts both in.
// Main thread only.
#pragma once

#include <memory>

#include <QRect>
#include <QUrl>

class QEvent;

namespace quoddle {

class QLPreviewPanel;

class QLPreviewItem {
public:
    virtual ~QLPreviewItem() = default;
    /// Of a local file; any other is shown as nothing to see.
    virtual QUrl previewItemURL() const = 0;
    /// Empty: the name that file managers show.
    virtual QString previewItemTitle() const { return {}; }
};

class QLPreviewPanelDataSource {
public:
    virtual ~QLPreviewPanelDataSource() = default;
    virtual int numberOfPreviewItemsInPreviewPanel(QLPreviewPanel& panel) = 0;
    /// `index` is below the number. Null: nothing to see. The panel keeps the item while it shows it.
    virtual std::shared_ptr<const QLPreviewItem> previewPanelPreviewItemAtIndex(QLPreviewPanel& panel, int index) = 0;
};

class QLPreviewPanelDelegate {
public:
    virtual ~QLPreviewPanelDelegate() = default;
    /// A key that was pressed or released in the panel and is none of the panel's own. True: it has done what it does.
    virtual bool previewPanelHandleEvent(QLPreviewPanel&, QEvent&) { return false; }
    /// The item's place on the screen, in the toolkit's pixels; empty when it is not to be seen. The panel zooms from and to there.
    virtual QRect previewPanelSourceFrameOnScreenForPreviewItem(QLPreviewPanel&, const QLPreviewItem&) { return {}; }
};

/// Somebody in a window who may say what the panel shows: see QLPreviewPanel::registerController().
class QLPreviewPanelController {
public:
    /// Takes the panel away from this controller without a word.
    virtual ~QLPreviewPanelController();
    virtual bool acceptsPreviewPanelControl(QLPreviewPanel& panel) = 0;
    /// From here on the panel is this controller's: it puts in a data source and a delegate.
    virtual void beginPreviewPanelControl(QLPreviewPanel& panel) = 0;
    /// The panel is this controller's no more; the panel forgets data source and delegate after this.
    virtual void endPreviewPanelControl(QLPreviewPanel& panel) = 0;
};

} // namespace quoddle
