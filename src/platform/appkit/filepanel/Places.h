// SPDX-License-Identifier: MIT
// The folders that people go to first: the home folder and the desktop's usual folders in it, mounted volumes, the user's bookmarks.
#pragma once

#include <QListWidget>

namespace quoddle {

struct Place {
    enum class Kind { home, desktop, folder, volume, computer };
    Kind kind;
    QString title;
    QString path;
};

/// The places that exist now, each folder once. Asks no mounted file system, because one that hangs would not answer.
QList<Place> availablePlaces();

class PlacesList : public QListWidget {
    Q_OBJECT
public:
    explicit PlacesList(QWidget* parent = nullptr);

    /// Marks the place of the folder that is shown; marks none when it is not a place.
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
