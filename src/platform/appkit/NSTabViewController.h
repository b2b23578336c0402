// SPDX-License-Identifier: MIT
// Several panes in one place, one shown at a time, without visible tabs.
// One decision: a cross-fade fades a picture of the old pane over the new one, which is live at once; focus and accessibility never wait
// for an animation.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"

#include <vector>

class QStackedWidget;

namespace quoddle {

class NSTabViewController : public NSViewController {
    Q_OBJECT
public:
    enum class TransitionOptions { none = 0, crossfade = 1 };

    explicit NSTabViewController(QObject* parent = nullptr);
    ~NSTabViewController() override;

    /// Takes the controller; its view is loaded when it is first selected or asked for.
    void addTabViewController(std::unique_ptr<NSViewController> controller);
    /// The controller of a tab; null beyond the end.
    NSViewController* tabViewController(int index) const;
    int tabCount() const { return static_cast<int>(mTabs.size()); }

    /// The index of the selected tab; -1 until one was selected.
    int selectedTabViewItemIndex() const { return mSelected; }
    /// Selects a tab. Does nothing for an index that does not exist.
    void setSelectedTabViewItemIndex(int index);

    /// How tabs follow each other; initially without a transition. A fade needs a visible view and a user who has not turned animations
    /// off.
    TransitionOptions transitionOptions() const { return mTransition; }
    void setTransitionOptions(TransitionOptions options) { mTransition = options; }
    /// Whether a fade is running.
    bool isInTransition() const { return mOverlay != nullptr; }

    /// Makes room for the view of the tab now, so that selecting it later does not change the size of the whole.
    void reserveSpaceForTab(int index);

protected:
    QWidget* loadView() override;

private:
    void beginCrossfade(const QPixmap& oldPane);
    void endCrossfade();

    struct Tab {
        std::unique_ptr<NSViewController> controller;
        bool inStack = false;
    };
    std::vector<Tab> mTabs;
    QStackedWidget* mStack = nullptr; // the view
    QWidget* mOverlay = nullptr;      // the picture that fades, a child of mStack
    int mSelected = -1;
    TransitionOptions mTransition = TransitionOptions::none;
};

} // namespace quoddle
