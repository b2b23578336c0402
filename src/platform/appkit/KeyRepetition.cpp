// SPDX-License-Identifier: MIT
#include "platform/appkit/KeyRepetition.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quoddle {

namespace {

class ReleaseWatch final : public QObject {
public:
    bool follows(const QKeyEvent& press) const { return press.timestamp() != 0 && press.timestamp() == mTimestamp && press.key() == mKey; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyRelease) {
            const auto& release = *static_cast<const QKeyEvent*>(event);
            mTimestamp = release.timestamp();
            mKey = release.key();
        }
        return false;
    }

private:
    quint64 mTimestamp = 0;
    int mKey = 0;
};

ReleaseWatch& releaseWatch() {
    static ReleaseWatch sWatch;
    return sWatch;
}

} // namespace

void watchKeyRepetition() {
    QCoreApplication::instance()->installEventFilter(&releaseWatch());
}

bool isKeyRepetition(const QKeyEvent& press) {
    return press.isAutoRepeat() || releaseWatch().follows(press);
}

} // namespace quoddle
