// SPDX-License-Identifier: MIT
// The panel that asks for a name and a place, and the base of the panel that asks for files (NSOpenPanel).
// Two decisions: the desktop's own chooser stands in for the panel where a portal offers one that can do what is asked. Else the panel is
// our own throughout, because the toolkit's file dialog stands still for seconds in a large folder and walks into bundles. It creates
// nothing but folders: replacing a file is agreed on here and done by the caller.
// Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QString>
#include <QUrl>

class QDialog;

namespace Ui {
class NSSavePanel;
}

namespace quoddle {

class FileBrowser;
class FilePortal;
class NSAlert;
struct DirectoryFilter;
struct FilePortalRequest;

constexpr int NSModalResponseCancel = 0;
constexpr int NSModalResponseOK = 1;

class NSSavePanel {
public:
    NSSavePanel();
    virtual ~NSSavePanel();
    NSSavePanel(const NSSavePanel&) = delete;
    NSSavePanel& operator=(const NSSavePanel&) = delete;

    /// Sets the text above the browser; shown as it is, never as markup.
    void setMessage(const QString& message);
    /// Sets the title of the confirming button; an empty one leaves the panel's own.
    void setPrompt(const QString& prompt);
    /// Sets where to begin: a folder, or a file, which is then selected. Unless it is set, or when it does not exist, the panel begins
    /// where the last panel of this application ended, else in the user's home.
    void setDirectory(const QString& path);
    void setNameFieldStringValue(const QString& name);
    void setShowsHiddenFiles(bool shows);
    /// Whether users can enter folders that are packages; false, the default, shows a package as one file.
    void setTreatsFilePackagesAsDirectories(bool treats);
    void setCanCreateDirectories(bool can);

    /// The chosen file; invalid before the panel has ended with a choice.
    QUrl url() const { return mURLs.value(0); }

    /// Shows the panel and waits; answers NSModalResponseOK or NSModalResponseCancel.
    int runModal();
    /// Completes the panel; runModal() does so itself. Callers who show the dialog themselves, for instance as a sheet, call this first.
    void layout() { prepare(); }
    /// The dialog, which is owned by the panel and finishes with one of the two responses.
    QDialog* dialog();

protected:
    FileBrowser& browser() { return *mBrowser; }
    DirectoryFilter filter() const;
    void changeFilter(const std::function<void(DirectoryFilter&)>& change);
    void setTitle(const QString& title);
    void hideNameField();
    void setConfirmEnabled(bool enabled);
    void showProblem(const QString& problem);
    /// Ends the panel with these files as the choice.
    void choose(const QStringList& paths);
    const QList<QUrl>& chosenURLs() const { return mURLs; }

    /// Called when the confirming button was pressed or a file double-clicked.
    virtual void confirm();
    virtual void selectionChanged();
    /// Called when the user typed the path of a file in place of a folder's.
    virtual void fileEntered(const QString& path);
    virtual QString defaultPrompt() const;
    /// Called just before the panel is shown.
    virtual void prepare();
    /// The question for the desktop's chooser; nullopt when that cannot do what this panel does. Called after prepare().
    virtual std::optional<FilePortalRequest> portalRequest() const;
    /// Takes the answer of the desktop's chooser. A problem, as a sentence for the user, when the files cannot be taken.
    virtual QString takeFromPortal(const QStringList& paths);

private:
    class Panel;
    void connectParts();
    void askToReplace(const QString& path);
    QString startDirectory() const;
    bool beginInPortal();
    void showHere();
    void finish(const QStringList& paths, const QString& lastDirectory);

    std::unique_ptr<Ui::NSSavePanel> mUi;
    std::unique_ptr<Panel> mPanel;
    std::unique_ptr<NSAlert> mReplaceAlert; // a child of the panel's, so it is destroyed first
    FileBrowser* mBrowser = nullptr;
    QString mDirectory;
    QList<QUrl> mURLs;
    QString mLentName; // the name of the selected file, which the name field has taken
    bool mHasNameField = true;
    bool mSelectsFile = false; // the panel begins with a file selected
    std::unique_ptr<FilePortal> mPortal;
    bool mPortalFailed = false;
};

/// Why a file cannot have the name, as a sentence for the user; empty when it can.
QString problemWithFileName(const QString& name);

} // namespace quoddle
