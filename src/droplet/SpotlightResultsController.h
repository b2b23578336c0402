// SPDX-License-Identifier: MIT
// The array controller of the results: puts the hits of the search into their order and offers them to the list as rows. The most relevant
// comes first, equally relevant ones by name.
// One decision: hits that come later are merged in, so a batch costs as much as there are rows, whatever the number of batches; a selected
// hit stays selected wherever it moves.
// Main thread only.
#pragma once

#include "droplet/SpotlightMatch.h"

#include <QAbstractListModel>
#include <QSet>

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
    /// Puts the rows into a new order; `order[i]` is the row that comes to stand at i.
    void reorder(const QList<int>& order);

    QList<SpotlightMatchRef> mArranged;
};

} // namespace quoddle
