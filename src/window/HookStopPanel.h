// SPDX-License-Identifier: MIT
// The panel that appears while a hook of the script keeps the window from working: it says so, and has a button to stop the hook.
// One decision: the panel is modal, so that the events handled for its sake cannot reach the window whose hook is being asked.
// Main thread only.
#pragma once

#include "runtime/AppDelegateParts.h"

#include <QElapsedTimer>

namespace quoddle {

class NSPanel;

class HookStopPanel final : public HookStopper {
public:
    HookStopPanel();
    ~HookStopPanel() override;
    bool isStopRequested(const QString& applicationName) override;
    void dismiss() override;

private:
    void show(const QString& applicationName);

    std::unique_ptr<NSPanel> mPanel; // null: nothing is shown
    QElapsedTimer mSinceEvents;
    bool mIsStopRequested = false;
};

} // namespace quoddle
