// SPDX-License-Identifier: MIT
#include "droplet/SpotlightResultsController.h"

#include "droplet/SpotlightResultsCell.h"
#include "platform/appkit/NSPanel.h"
#include "platform/base/TextArgument.h"
#include "platform/search/ranking/RankOrder.h"

#include <algorithm>
#include <functional>
#include <span>

namespace quoddle {

namespace {

constexpr std::size_t kFewPlaces = 8; // up to so many places are changed one by one

Ranked<char16_t> rankOf(const SpotlightMatchRef& match, std::size_t number) {
    const QStringView path = match->path();
    return {match->relevance(), TextArgument(path.mid(path.lastIndexOf(u'/') + 1)).view(), static_cast<std::uint32_t>(number)};
}

QList<SpotlightMatchRef> inOrder(const QList<SpotlightMatchRef>& matches) {
    std::vector<Ranked<char16_t>> ranks;
    for (qsizetype i = 0; i < matches.size(); ++i)
        ranks.push_back(rankOf(matches.at(i), static_cast<std::size_t>(i)));
    RankSort{std::span(ranks)};
    QList<SpotlightMatchRef> ordered;
    ordered.reserve(matches.size());
    for (const Ranked<char16_t>& rank : ranks)
        ordered << matches.at(rank.number);
    return ordered;
}

} // namespace

int SpotlightResultsController::placeOf(const SpotlightMatchRef& match, int from) const {
    const auto isAfter = [rank = rankOf(match, 1)](const SpotlightMatchRef& row) { return comesBefore(rank, rankOf(row, 0)); };
    int end = rowCount();
    // Searches in growing steps, because a hit mostly belongs close behind the one before.
    for (int step = 1, at = from; at < end; at = from + step, step *= 2) {
        if (isAfter(mArranged.at(at)))
            end = at;
        else
            from = at + 1;
    }
    return static_cast<int>(std::partition_point(mArranged.begin() + from, mArranged.begin() + end, std::not_fn(isAfter)) -
                            mArranged.begin());
}

void SpotlightResultsController::addObjects(const QList<SpotlightMatchRef>& matches) {
    const QList<SpotlightMatchRef> ordered = inOrder(matches);
    std::vector<int> places;
    std::size_t different = 0;
    for (const SpotlightMatchRef& match : ordered) {
        const int place = placeOf(match, places.empty() ? 0 : places.back());
        different += places.empty() || place != places.back();
        places.push_back(place);
    }
    if (different <= kFewPlaces)
        insertRuns(ordered, places);
    else
        merge(ordered, places);
}

void SpotlightResultsController::insertRuns(const QList<SpotlightMatchRef>& ordered, const std::vector<int>& places) {
    for (std::size_t begin, end = places.size(); end > 0; end = begin) { // from the last place on, so that the earlier ones stay valid
        const int place = places[end - 1];
        begin = static_cast<std::size_t>(std::lower_bound(places.begin(), places.end(), place) - places.begin());
        const auto first = static_cast<qsizetype>(begin), count = static_cast<qsizetype>(end - begin);
        beginInsertRows({}, place, place + static_cast<int>(count) - 1);
        mArranged.insert(place, count, {});
        std::copy_n(ordered.begin() + first, count, mArranged.begin() + place);
        endInsertRows();
    }
}

void SpotlightResultsController::merge(const QList<SpotlightMatchRef>& ordered, const std::vector<int>& places) {
    const int known = rowCount();
    beginInsertRows({}, known, known + static_cast<int>(ordered.size()) - 1);
    mArranged += ordered;
    endInsertRows();
    std::vector<int> order;
    order.reserve(static_cast<std::size_t>(mArranged.size()));
    int row = 0, added = known;
    for (const int place : places) {
        while (row < place)
            order.push_back(row++);
        order.push_back(added++);
    }
    while (row < known)
        order.push_back(row++);
    reorder(order);
}

void SpotlightResultsController::reorder(const std::vector<int>& order) {
    Q_EMIT layoutAboutToBeChanged();
    QList<SpotlightMatchRef> arranged;
    std::vector<int> newRows(order.size());
    arranged.reserve(mArranged.size());
    for (const int row : order) {
        newRows[static_cast<std::size_t>(row)] = static_cast<int>(arranged.size());
        arranged << std::move(mArranged[row]);
    }
    mArranged = std::move(arranged);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    for (const QModelIndex& oldIndex : from)
        to << index(newRows[static_cast<std::size_t>(oldIndex.row())]);
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged();
}

void SpotlightResultsController::removeObjects(const QSet<const SpotlightMatch*>& matches) {
    std::vector<int> order, gone;
    for (int row = 0; row < rowCount(); ++row)
        (matches.contains(mArranged.at(row).get()) ? gone : order).push_back(row);
    std::vector<std::pair<int, int>> runs; // first and last row of each run
    for (const int row : gone)
        if (!runs.empty() && runs.back().second + 1 == row)
            runs.back().second = row;
        else
            runs.emplace_back(row, row);
    if (runs.size() > kFewPlaces) {
        runs = {{static_cast<int>(order.size()), rowCount() - 1}};
        order.insert(order.end(), gone.begin(), gone.end());
        reorder(order);
    }
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        beginRemoveRows({}, run->first, run->second);
        mArranged.remove(run->first, run->second - run->first + 1);
        endRemoveRows();
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
