// SPDX-License-Identifier: MIT
// The array controller of the results: puts the hits of the search into their order and offers them to the list as rows. The most relevant
// comes first, equally relevant ones by name.
// One decision: few of the hits that are there are looked at again when others come or go. What comes or goes in a few places changes these
// rows alone; what does so in many is one change of the whole order, which costs a copy of the rows. A selected hit stays selected
// wherever it moves.
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
    /// Name, and for those who cannot see the row, name and folder.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    /// The first row, not above `from`, that comes after a hit.
    int placeOf(const SpotlightMatchRef& match, int from) const;
    /// `places[i]`: the row that the hit i comes before. Ascending, as the hits are in order.
    void insertRuns(const QList<SpotlightMatchRef>& ordered, const std::vector<int>& places);
    void merge(const QList<SpotlightMatchRef>& ordered, const std::vector<int>& places);
    /// Puts the rows into a new order; `order[i]` is the row that comes to stand at i.
    void reorder(const std::vector<int>& order);

    QList<SpotlightMatchRef> mArranged;
};

} // namespace quoddle
