// SPDX-License-Identifier: MIT
// Draws rows with a little room above and below.
#pragma once

#include <QStyledItemDelegate>

namespace quoddle {

class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const int height = std::max(option.fontMetrics.height(), option.decorationSize.height()) + kRoom;
        return {QStyledItemDelegate::sizeHint(option, index).width(), height};
    }

private:
    static constexpr int kRoom = 6;
};

} // namespace quoddle
