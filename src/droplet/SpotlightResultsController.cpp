// SPDX-License-Identifier: MIT
#include "droplet/SpotlightResultsController.h"

#include "droplet/SpotlightResultsCell.h"
#include "platform/appkit/NSPanel.h"
#include "platform/base/TextArgument.h"
#include "platform/search/ranking/RankOrder.h"

#include <algorithm>
#include <numeric>

namespace quoddle {

namespace {

Ranked<char16_t> rankOf(const SpotlightMatchRef& match, int row) {
    const QStringView path = match->path();
    return {match->relevance(), TextArgument(path.mid(path.lastIndexOf(u'/') + 1)).view(), static_cast<std::uint32_t>(row)};
}

} // namespace

void SpotlightResultsController::addObjects(const QList<SpotlightMatchRef>& matches) {
    if (matches.isEmpty())
        return;
    const int known = rowCount(), all = known + static_cast<int>(matches.size());
    beginInsertRows({}, known, all - 1);
    std::vector<Ranked<char16_t>> ranks;
    for (int i = 0; i < matches.size(); ++i)
        ranks.push_back(rankOf(matches.at(i), i));
    RankSort{std::span(ranks)};
    for (const Ranked<char16_t>& rank : ranks)
        mArranged << matches.at(static_cast<int>(rank.number));
    endInsertRows();
    QList<int> order(all);
    std::iota(order.begin(), order.end(), 0);
    std::inplace_merge(order.begin(), order.begin() + known, order.end(),
                       [this](int a, int b) { return comesBefore(rankOf(mArranged.at(a), a), rankOf(mArranged.at(b), b)); });
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
