// SPDX-License-Identifier: MIT
// The array controller of the results: puts the hits of the search into their order and offers them to the list as rows. The most relevant
// hit comes first, equally relevant ones are ordered by name.
// One decision: adding or removing hits looks at few of the present rows. Changes in a few places are made row by row; changes in many
// places are one new order of all rows, which costs a copy of them. A selected hit stays selected wherever it moves.
// Main thread only.
#pragma once

#include "droplet/SpotlightMatch.h"

#include <QAbstractListModel>
#include <QSet>

#include <vector>

namespace quoddle {

class SpotlightResultsController : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    const QList<SpotlightMatchRef>& arrangedObjects() const { return mArranged; }
    void addObjects(const QList<SpotlightMatchRef>& matches);
    void removeObjects(const QSet<const SpotlightMatch*>& matches);
    void removeAllObjects();

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The name of a hit; for screen readers its name and folder; for the tool tip its path.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    /// The row before which the hit belongs; the search begins with row `from`, which must not lie behind that.
    int placeOf(const SpotlightMatchRef& match, int from) const;
    /// Inserts hits in their order; the hit i goes before row `places[i]`. The places ascend.
    void insertRuns(const QList<SpotlightMatchRef>& ordered, const std::vector<int>& places);
    void merge(const QList<SpotlightMatchRef>& ordered, const std::vector<int>& places);
    /// Puts the rows into a new order; the row `order[i]` moves to i.
    void reorder(const std::vector<int>& order);

    QList<SpotlightMatchRef> mArranged;
};

} // namespace quoddle
