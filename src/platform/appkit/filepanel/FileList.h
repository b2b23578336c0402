// SPDX-License-Identifier: MIT
// The list of a folder's contents: rows that can be found by typing, keys that lead into folders and out, and a text for a list without
// rows.
// Main thread only.
#pragma once

#include <QTreeView>

namespace quoddle {

class FileList : public QTreeView {
    Q_OBJECT
public:
    explicit FileList(QWidget* parent = nullptr);

    /// Sets the text that is shown, and told to screen readers, where there are no rows.
    void setPlaceholder(const QString& text);
    const QString& placeholder() const { return mPlaceholder; }

Q_SIGNALS:
    void parentRequested();
    void entryRequested(const QModelIndex& index);
    /// The user has begun to type a path in the list; `text` is the beginning.
    void pathBegun(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString mPlaceholder;
};

} // namespace quoddle
