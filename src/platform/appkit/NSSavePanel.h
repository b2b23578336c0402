// SPDX-License-Identifier: MIT
// The panel that asks for a name and a place; what it has in common with the one that asks for files (NSOpenPanel) as well.
// One decision: it is our own throughout, because the toolkit's file dialog stands still for seconds in a large folder and walks into
// bundles. It creates nothing but folders: replacing a file is agreed on here and done by whoever asked.
// Main thread only.
#pragma once

#include <functional>
#include <memory>

#include <QString>
#include <QUrl>

class QDialog;

namespace Ui {
class NSSavePanel;
}

namespace quoddle {

class FileBrowser;
class NSAlert;
struct DirectoryFilter;

constexpr int NSModalResponseCancel = 0;
constexpr int NSModalResponseOK = 1;

class NSSavePanel {
public:
    NSSavePanel();
    virtual ~NSSavePanel();
    NSSavePanel(const NSSavePanel&) = delete;
    NSSavePanel& operator=(const NSSavePanel&) = delete;

    /// Shown above the browser as it is, never as markup.
    void setMessage(const QString& message);
    /// The title of the confirming button; an empty one leaves the panel's own.
    void setPrompt(const QString& prompt);
    /// Where to begin: a folder, or a file, which is then selected. Otherwise, and when it is gone: where the last panel of this
    /// application ended, else the user's home.
    void setDirectory(const QString& path);
    void setNameFieldStringValue(const QString& name);
    void setShowsHiddenFiles(bool shows);
    /// False: a folder that is a package is one file.
    void setTreatsFilePackagesAsDirectories(bool treats);
    void setCanCreateDirectories(bool can);

    /// What was chosen; invalid before.
    QUrl url() const { return mURLs.value(0); }

    /// Shows it and waits; answers NSModalResponseOK or NSModalResponseCancel.
    int runModal();
    /// Makes it complete, as runModal() does first; for one that the caller shows by itself, as a sheet for instance.
    void layout() { prepare(); }
    /// Finishes with one of the two responses. The panel's.
    QDialog* dialog();

protected:
    FileBrowser& browser() { return *mBrowser; }
    DirectoryFilter filter() const;
    void changeFilter(const std::function<void(DirectoryFilter&)>& change);
    void setTitle(const QString& title);
    void hideNameField();
    void setConfirmEnabled(bool enabled);
    void showProblem(const QString& problem);
    /// Ends the panel.
    void choose(const QStringList& paths);
    const QList<QUrl>& chosenURLs() const { return mURLs; }

    /// The confirming button was pressed, or a file double-clicked.
    virtual void confirm();
    virtual void selectionChanged();
    /// The path of a file was typed in place of a folder's.
    virtual void fileEntered(const QString& path);
    virtual QString defaultPrompt() const;
    /// Just before the panel is shown.
    virtual void prepare();

private:
    class Panel;
    void connectParts();
    void askToReplace(const QString& path);
    QString startDirectory() const;

    std::unique_ptr<Ui::NSSavePanel> mUi;
    std::unique_ptr<Panel> mPanel;
    std::unique_ptr<NSAlert> mReplaceAlert; // a child of the panel's, so it goes first
    FileBrowser* mBrowser = nullptr;
    QString mDirectory;
    QList<QUrl> mURLs;
    QString mLentName; // of the selected file, which the name field has taken
    bool mHasNameField = true;
};

/// Why a file cannot have the name, as a sentence; empty when it can.
QString problemWithFileName(const QString& name);

} // namespace quoddle
