// SPDX-License-Identifier: MIT
// FileBrowser: the middle of every panel that chooses files. Where one is, the places to go to, and what is there.
// One decision: it knows what is selected and what can be entered, and leaves to its panel what a choice is.
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

    /// Absolute. A folder that cannot be read is shown as such.
    void setDirectory(const QString& path);
    /// The same as a step of the user's, who can go back.
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
    /// From top to bottom.
    QList<Item> selection() const;
    bool hasSelection() const;
    /// Goes into the one folder that is selected when the keyboard is in the list; false when it did not.
    bool enterSelectedByKeyboard();
    /// Has the entry seen once it is there, and selected if the user could select it.
    void select(const QString& name);

Q_SIGNALS:
    void directoryChanged();
    void selectionChanged();
    /// A double click on what is no folder.
    void itemOpened();
    /// The path of a file was typed into the location field; absolute. Of what is no folder.
    void fileEntered(const QString& path);
    /// What could not be done.
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
    QStringList mKeptNames; // selected while the rows are replaced
    QString mKeptCurrent;
    bool mIsRestoring = false;
    QElapsedTimer mSinceEntered;
    QTimer mLookAgainTimer;
};

} // namespace quoddle
