// SPDX-License-Identifier: MIT
// Catches the lines that tested code logs. Only one thread may log at a time.
#pragma once

#include <algorithm>

#include <QStringList>

namespace quoddle {

/// Collects the logged lines for as long as it lives.
class LogCatcher {
public:
    LogCatcher() {
        sLines.clear();
        mPrevious = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { sLines.append(line); });
    }
    ~LogCatcher() { qInstallMessageHandler(mPrevious); }
    const QStringList& lines() const { return sLines; }
    int count(const QString& beginning) const {
        return static_cast<int>(std::count_if(sLines.begin(), sLines.end(), [&](const QString& line) { return line.contains(beginning); }));
    }

private:
    static inline QStringList sLines;
    QtMessageHandler mPrevious;
};

} // namespace quoddle
