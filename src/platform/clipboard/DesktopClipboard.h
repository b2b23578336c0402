// SPDX-License-Identifier: MIT
// The clipboard that the programs of a desktop share; this process holds the contents that it has set. Main thread only.
#pragma once

#include "platform/ae/AEDesc.h"

#include <vector>

#include <QObject>

namespace quoddle {

class DesktopClipboard : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    /// As of formsFromData(). Waits some seconds at most for the program that has copied.
    virtual std::vector<AEDesc> contents(DescType wanted) = 0;
    /// False when the desktop refuses.
    virtual bool setContents(const std::vector<AEDesc>& forms) = 0;
    /// Whether the contents that this process has set are still there.
    virtual bool isOwner() const = 0;

Q_SIGNALS:
    /// Emitted when another program has set the clipboard, or the desktop has gone.
    void lost();
};

} // namespace quoddle
