// SPDX-License-Identifier: MIT
// The panel that asks for existing files or folders.
// One decision: files of other types than those asked for are hidden, as users of this desktop expect. Where folders are asked for, files
// are shown greyed, because they help to recognise the folder. Main thread only.
#pragma once

#include "platform/appkit/NSSavePanel.h"

#include <QStringList>

namespace quoddle {

class NSOpenPanel final : public NSSavePanel {
public:
    NSOpenPanel();

    /// Whether files can be chosen; true unless set.
    void setCanChooseFiles(bool can);
    void setCanChooseDirectories(bool can);
    void setAllowsMultipleSelection(bool allows);
    /// The types that can be chosen, as type identifiers, name extensions or OSTypes; an empty list allows all.
    void setAllowedFileTypes(const QStringList& types);
    /// Whether a chosen symbolic link stands for the file it leads to; true unless set.
    void setResolvesAliases(bool resolves) { mResolvesAliases = resolves; }

    /// The chosen files from top to bottom as the panel showed them.
    QList<QUrl> urls() const { return chosenURLs(); }

private:
    void confirm() override;
    void selectionChanged() override;
    void fileEntered(const QString& path) override;
    QString defaultPrompt() const override;
    void prepare() override;
    std::optional<FilePortalRequest> portalRequest() const override;
    QString takeFromPortal(const QStringList& paths) override;
    /// Why a file cannot be chosen here, as a sentence for the user; empty when it can.
    QString problemWith(const QString& path) const;
    void chooseResolved(QStringList paths);

    bool mAllowsMultipleSelection = false;
    bool mResolvesAliases = true;
};

} // namespace quoddle
