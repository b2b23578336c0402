// SPDX-License-Identifier: MIT
// The information card: the icon and the facts of a file and, after an error, the reason why nothing more is shown. Main thread only.
#pragma once

#include "platform/appkit/filepanel/FileIcons.h"
#include "platform/preview/FileFacts.h"

#include <QWidget>

class QLabel;

namespace quoddle {

class ElidedLabel;

class CardView : public QWidget {
    Q_OBJECT
public:
    explicit CardView(QWidget* parent = nullptr);
    /// An empty path in `facts` shows only the notice.
    void setFacts(const FileFacts& facts, const QString& notice);

protected:
    void changeEvent(QEvent* event) override;

private:
    void showIcon();
    void adaptColors();

    FileIcons mIcons;
    FileFacts mFacts;
    QLabel* mIcon;
    ElidedLabel* mName;
    QLabel* mLines;
    QLabel* mNotice;
};

} // namespace quoddle
