// SPDX-License-Identifier: MIT
// The panel that appears while a hook of the script keeps the window from working: it says so, and has a button to stop the hook.
// One decision: the panel comes by itself, so the keyboard stays where it is, for example in the search field, and typing goes on there.
// Escape presses Stop wherever the keyboard is, unless another dialog is waiting for an answer.
// Main thread only.
#pragma once

#include "runtime/AppDelegateParts.h"

#include <QObject>

namespace quoddle {

class NSPanel;

class HookStopPanel final : public QObject, public HookStopper {
    Q_OBJECT
public:
    HookStopPanel();
    ~HookStopPanel() override;
    void show(const QString& applicationName, std::function<void()> stop) override;
    void dismiss() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isKeyboardOfAnother() const;

    std::unique_ptr<NSPanel> mPanel; // null while no panel is shown
    std::function<void()> mStop;
};

} // namespace quoddle
