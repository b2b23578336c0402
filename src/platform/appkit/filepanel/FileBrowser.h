// SPDX-License-Identifier: MIT
// FileBrowser: the middle of every panel that chooses files: the path of the folder, the places to go to, and the folder's contents.
// One decision: the browser knows what is selected and what can be entered; what counts as a choice is decided by its panel.
// Main thread only.
#pragma once

#include "platform/appkit/filepanel/DirectoryModel.h"

#include <memory>

#include <QElapsedTimer>
#include <QItemSelection>
#include <QWidget>

namespace Ui {
class FileBrowser;
}

namespace quoddle {

class FileBrowser : public QWidget {
    Q_OBJECT
public:
    explicit FileBrowser(QWidget* parent = nullptr);
    ~FileBrowser() override;

    /// Shows a folder by its absolute path. For one that cannot be read the list says so.
    void setDirectory(const QString& path);
    /// Shows a folder as a step of the user's, from which "back" leads to the one before.
    void goTo(const QString& path);
    const QString& directory() const { return mModel.directory(); }
    void setFilter(const DirectoryFilter& filter) { mModel.setFilter(filter); }
    DirectoryModel& model() { return mModel; }
    void setAllowsMultipleSelection(bool allows);
    void setCanCreateDirectories(bool can);
    void focusList();

    struct Item {
        QString path;
        DirectoryEntry entry;
    };
    /// The selected entries from top to bottom.
    QList<Item> selection() const;
    bool hasSelection() const;
    /// When the keyboard is in the list and one folder is selected, enters it and answers true; otherwise answers false.
    bool enterSelectedByKeyboard();
    /// Scrolls to the entry as soon as it is there, and selects it if the user could select it.
    void select(const QString& name);

Q_SIGNALS:
    void directoryChanged();
    void selectionChanged();
    /// The user has double-clicked an entry that is not a folder.
    void itemOpened();
    /// The user has typed a path that is not a folder's into the location field; the path is absolute.
    void fileEntered(const QString& path);
    /// Something could not be done; `problem` is a sentence for the user.
    void failed(const QString& problem);

private:
    void buildTopRow();
    void buildList();
    void addKeys();
    void goBack(QStringList& from, QStringList& to);
    void goToParent();
    void enter(const QModelIndex& index);
    void enterPath(const QString& path);
    void createFolder();
    void makeFolderNamed(const QString& name);
    bool isSelectable(int row) const;
    void keepSelection();
    void restoreSelection();
    void updatePlaceholder();
    void turnArrows();
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Ui::FileBrowser> mUi;
    DirectoryModel mModel;
    QStringList mBack;
    QStringList mForward;
    QStringList mKeptNames; // names of the selected entries while the rows are replaced
    QString mKeptCurrent;
    bool mIsRestoring = false;
    QElapsedTimer mSinceEntered;
    QTimer mLookAgainTimer;
};

} // namespace quoddle
