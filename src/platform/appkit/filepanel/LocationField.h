// SPDX-License-Identifier: MIT
// The line that tells the path of the folder shown and takes another one, which it helps to complete.
// Main thread only.
#pragma once

#include "platform/appkit/filepanel/DirectoryModel.h"

#include <QLineEdit>

class QCompleter;

namespace quoddle {

class LocationField : public QLineEdit {
    Q_OBJECT
public:
    explicit LocationField(QWidget* parent = nullptr);

    /// What is shown when nothing is being typed; the base of relative paths.
    void setDirectory(const QString& path);
    /// The cursor goes here with the text in place of what was there.
    void beginEditing(const QString& text);

Q_SIGNALS:
    /// Absolute, "~" replaced; whether it is there is not known.
    void pathEntered(const QString& path);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void completeIn(const QString& text);

    QString mDirectory;
    DirectoryModel mCandidates;
    QCompleter* mCompleter;
};

/// Absolute and without "." and ".."; "~" and "~/…" are the home folder.
QString absolutePathFor(const QString& text, const QString& directory);

} // namespace quoddle
