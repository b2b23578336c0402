// SPDX-License-Identifier: MIT
// The field that shows the path of the folder and takes another one, which it helps to complete.
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

    /// Sets the path that is shown while nothing is being typed, which is also the base of relative paths.
    void setDirectory(const QString& path);
    /// Gives the field the focus, with the text in place of what was there.
    void beginEditing(const QString& text);

Q_SIGNALS:
    /// The user has entered a path: absolute, "~" replaced, not checked for existence.
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

/// The text as an absolute path without "." and ".."; "~" and "~/…" are the home folder, other relative paths begin at `directory`.
QString absolutePathFor(const QString& text, const QString& directory);

} // namespace quoddle
