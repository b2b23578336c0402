// SPDX-License-Identifier: MIT
#include "droplet/SpotlightResultsController.h"

#include "droplet/SpotlightResultsCell.h"
#include "platform/appkit/NSPanel.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quoddle {

namespace {

QStringView lastPathComponent(const QString& path) {
    return QStringView(path).mid(path.lastIndexOf(u'/') + 1);
}

/// The order of the list. A hit whose relevance is no number comes last.
bool comesBefore(const SpotlightMatchRef& a, const SpotlightMatchRef& b) {
    const double left = std::isnan(a->relevance()) ? -1 : a->relevance(), right = std::isnan(b->relevance()) ? -1 : b->relevance();
    if (left != right)
        return left > right;
    return lastPathComponent(a->path()).compare(lastPathComponent(b->path())) < 0;
}

} // namespace

void SpotlightResultsController::addObjects(const QList<SpotlightMatchRef>& matches) {
    if (matches.isEmpty())
        return;
    const int known = rowCount(), all = known + static_cast<int>(matches.size());
    beginInsertRows({}, known, all - 1);
    mArranged += matches;
    std::stable_sort(mArranged.begin() + known, mArranged.end(), &comesBefore);
    endInsertRows();
    QList<int> order(all);
    std::iota(order.begin(), order.end(), 0);
    std::inplace_merge(order.begin(), order.begin() + known, order.end(),
                       [this](int a, int b) { return comesBefore(mArranged.at(a), mArranged.at(b)); });
    if (!std::is_sorted(order.begin(), order.end()))
        reorder(order);
}

void SpotlightResultsController::reorder(const QList<int>& order) {
    Q_EMIT layoutAboutToBeChanged();
    QList<SpotlightMatchRef> arranged;
    QList<int> newRows(order.size());
    arranged.reserve(order.size());
    for (int row = 0; row < order.size(); ++row) {
        arranged << mArranged.at(order.at(row));
        newRows[order.at(row)] = row;
    }
    mArranged = std::move(arranged);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    for (const QModelIndex& oldIndex : from)
        to << index(newRows.at(oldIndex.row()));
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged();
}

void SpotlightResultsController::removeObjects(const QSet<const SpotlightMatch*>& matches) {
    for (int end = rowCount(); end > 0;) {
        int last = end - 1;
        if (!matches.contains(mArranged.at(last).get())) {
            --end;
            continue;
        }
        int first = last;
        while (first > 0 && matches.contains(mArranged.at(first - 1).get()))
            --first;
        beginRemoveRows({}, first, last);
        mArranged.remove(first, last - first + 1);
        endRemoveRows();
        end = first;
    }
}

void SpotlightResultsController::removeAllObjects() {
    if (mArranged.isEmpty())
        return;
    beginResetModel();
    mArranged.clear();
    endResetModel();
}

int SpotlightResultsController::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(mArranged.size());
}

QVariant SpotlightResultsController::data(const QModelIndex& index, int role) const {
    const SpotlightMatchRef match = mArranged.value(index.row());
    if (!match)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return match->previewItemTitle();
    case Qt::AccessibleTextRole:
    case Qt::AccessibleDescriptionRole:
        return SpotlightResultsCell::accessibilityValue(match.get());
    case Qt::ToolTipRole:
        return toolTipText(match->path());
    default:
        return {};
    }
}

} // namespace quoddle
