// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/LocationField.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QDir>
#include <QKeyEvent>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 16;

/// Completes the name after the last slash; the part of the path in front of it stays as it was typed.
class PathCompleter final : public QCompleter {
public:
    PathCompleter(QAbstractItemModel* candidates, QLineEdit* field) : QCompleter(candidates, field), mField(field) {}

    QStringList splitPath(const QString& path) const override { return {path.mid(path.lastIndexOf(u'/') + 1)}; }
    QString pathFromIndex(const QModelIndex& index) const override {
        const QString text = mField->text();
        return text.left(text.lastIndexOf(u'/') + 1) + index.data().toString();
    }

private:
    const QLineEdit* mField;
};

} // namespace

QString absolutePathFor(const QString& text, const QString& directory) {
    const bool isInHome = text == "~"_L1 || text.startsWith("~/"_L1);
    const QString path = isInHome ? QDir::homePath() + text.mid(1) : text;
    return QDir::cleanPath(path.startsWith(u'/') ? path : directory + u'/' + path);
}

LocationField::LocationField(QWidget* parent) : QLineEdit(parent), mCompleter(new PathCompleter(&mCandidates, this)) {
    DirectoryFilter foldersOnly;
    foldersOnly.canChooseFiles = false;
    foldersOnly.leavesOutOthers = true;
    mCandidates.setFilter(foldersOnly);
    mCompleter->setCaseSensitivity(Qt::CaseInsensitive);
    mCompleter->setCompletionRole(Qt::DisplayRole);
    setCompleter(mCompleter);
    connect(this, &QLineEdit::textEdited, this, &LocationField::completeIn);
    connect(&mCandidates, &QAbstractItemModel::modelReset, this, [this] {
        if (!hasFocus() || !isModified() || mCandidates.rowCount() == 0)
            return;
        mCompleter->popup()->setIconSize({kIconSize, kIconSize});
        mCompleter->complete();
    });
}

void LocationField::setDirectory(const QString& path) {
    mDirectory = path;
    setText(path);
}

void LocationField::beginEditing(const QString& text) {
    setFocus();
    setText(text);
    setModified(true);
    completeIn(text);
}

void LocationField::completeIn(const QString& text) {
    const qsizetype slash = text.lastIndexOf(u'/');
    const QString directory = absolutePathFor(text.left(slash + 1), mDirectory);
    if (directory == mCandidates.directory())
        return;
    mCompleter->setCompletionPrefix(text.mid(slash + 1));
    mCandidates.setDirectory(directory);
}

void LocationField::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !text().isEmpty()) {
        Q_EMIT pathEntered(absolutePathFor(text(), mDirectory)); // the key goes no further, so the panel is not confirmed
    } else if (event->key() == Qt::Key_Escape && text() != mDirectory) {
        setText(mDirectory);
        selectAll();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void LocationField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        setText(mDirectory);
}

} // namespace quoddle
