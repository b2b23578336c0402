// SPDX-License-Identifier: MIT
// Draws one row of the results: the icon, the name with the matching parts marked, and below it the folder.
// Main thread only.
#pragma once

#include "droplet/SpotlightMatch.h"
#include "platform/appkit/filepanel/FileIcons.h"

#include <QStyledItemDelegate>

namespace quoddle {

class SpotlightResultsCell : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit SpotlightResultsCell(QObject* parent = nullptr);

    /// The row in words, "Name: … Path: …", for screen readers; empty without a match.
    static QString accessibilityValue(const SpotlightMatch* match);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

Q_SIGNALS:
    /// The icon of a visible file has been read.
    void iconChanged();

private:
    void drawName(QPainter& painter, const QRectF& line, SpotlightMatch& match, const QColor& color) const;

    mutable FileIcons mIcons;
};

} // namespace quoddle
