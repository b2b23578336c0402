// SPDX-License-Identifier: MIT
// The clipboard that the programs of a desktop share, held by this process after it has set it. Main thread only.
#pragma once

#include "platform/ae/AEDesc.h"

#include <vector>

#include <QObject>

namespace quoddle {

class DesktopClipboard : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    /// As of formsFromData. A program that has copied and does not answer is given up after some seconds.
    virtual std::vector<AEDesc> contents(DescType wanted) = 0;
    /// False when the desktop refuses.
    virtual bool setContents(const std::vector<AEDesc>& forms) = 0;
    /// Whether what this process has set is there still.
    virtual bool isOwner() const = 0;

Q_SIGNALS:
    /// Another program has set the clipboard, or the desktop has gone.
    void lost();
};

} // namespace quoddle
