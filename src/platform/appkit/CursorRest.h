// SPDX-License-Identifier: MIT
// Lets the cursor in a text stand still when nobody has typed or clicked for a while, so that a window that waits for text lets the
// processor sleep. It blinks again from the next key or click on.
#pragma once

#include <chrono>

#include <QObject>
#include <QTimer>

namespace quoddle {

/// Works for all texts of the application. Does nothing on desktops whose cursors do not blink. Main thread.
class CursorRest final : public QObject {
public:
    explicit CursorRest(QObject* parent, std::chrono::milliseconds patience = std::chrono::seconds(10));
    ~CursorRest() override;

private:
    bool eventFilter(QObject* object, QEvent* event) override;

    const int mFlashTime;
    QTimer mPatience;
};

} // namespace quoddle
