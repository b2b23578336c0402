// SPDX-License-Identifier: MIT
// The objects that a preview panel works with: an item is a file to show, the data source has the items, the delegate handles keys, and a
// controller installs data source and delegate. Main thread only.
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
    /// The URL of a local file; for any other URL the panel shows that there is nothing to see.
    virtual QUrl previewItemURL() const = 0;
    /// Empty for the name that file managers show.
    virtual QString previewItemTitle() const { return {}; }
};

class QLPreviewPanelDataSource {
public:
    virtual ~QLPreviewPanelDataSource() = default;
    virtual int numberOfPreviewItemsInPreviewPanel(QLPreviewPanel& panel) = 0;
    /// `index` is less than the number of items. Null for nothing to show. The panel keeps the item while it shows it.
    virtual std::shared_ptr<const QLPreviewItem> previewPanelPreviewItemAtIndex(QLPreviewPanel& panel, int index) = 0;
};

class QLPreviewPanelDelegate {
public:
    virtual ~QLPreviewPanelDelegate() = default;
    /// Called for keys that are pressed or released in the panel and that the panel does not use itself. True when the delegate has handled
    /// the key.
    virtual bool previewPanelHandleEvent(QLPreviewPanel&, QEvent&) { return false; }
    /// The item's frame on the screen in the toolkit's pixels; empty when the item is not visible. The panel's zoom begins and ends there.
    virtual QRect previewPanelSourceFrameOnScreenForPreviewItem(QLPreviewPanel&, const QLPreviewItem&) { return {}; }
};

/// An object that may decide what the panel shows: see QLPreviewPanel::registerController().
class QLPreviewPanelController {
public:
    /// Takes the panel away from this controller without calling it.
    virtual ~QLPreviewPanelController();
    virtual bool acceptsPreviewPanelControl(QLPreviewPanel& panel) = 0;
    /// Called when this controller gets the panel: it sets a data source and a delegate.
    virtual void beginPreviewPanelControl(QLPreviewPanel& panel) = 0;
    /// Called when this controller loses the panel. The panel forgets data source and delegate afterwards.
    virtual void endPreviewPanelControl(QLPreviewPanel& panel) = 0;
};

} // namespace quoddle
