// SPDX-License-Identifier: MIT
// The folders that people go to first: home and what is in it by the desktop's rules, mounted volumes, the user's bookmarks.
#pragma once

#include <QListWidget>

namespace quoddle {

struct Place {
    enum class Kind { home, desktop, folder, volume, computer };
    Kind kind;
    QString title;
    QString path;
};

/// Those that there are now, each folder once. Asks no mounted file system, which might not answer.
QList<Place> availablePlaces();

class PlacesList : public QListWidget {
    Q_OBJECT
public:
    explicit PlacesList(QWidget* parent = nullptr);

    /// Marks the place that is shown, if it is one.
    void setCurrentPlace(const QString& path);
    QSize sizeHint() const override;

Q_SIGNALS:
    void placeChosen(const QString& path);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(const QListWidgetItem* item);
};

} // namespace quoddle
