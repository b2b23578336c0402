// SPDX-License-Identifier: MIT
// The panel that asks for files or folders that are there.
// One decision: files of other kinds than those asked for are not shown, as people here know it; where folders are asked for, files are
// shown greyed, for they tell which folder it is. Main thread only.
#pragma once

#include "platform/appkit/NSSavePanel.h"

#include <QStringList>

namespace quoddle {

class NSOpenPanel final : public NSSavePanel {
public:
    NSOpenPanel();

    /// Files, unless set otherwise.
    void setCanChooseFiles(bool can);
    void setCanChooseDirectories(bool can);
    void setAllowsMultipleSelection(bool allows);
    /// Type identifiers, name extensions or OSTypes; none: all.
    void setAllowedFileTypes(const QStringList& types);
    /// A chosen symbolic link stands for what it leads to; true unless set.
    void setResolvesAliases(bool resolves) { mResolvesAliases = resolves; }

    /// From top to bottom as the panel showed them.
    QList<QUrl> urls() const { return chosenURLs(); }

private:
    void confirm() override;
    void selectionChanged() override;
    void fileEntered(const QString& path) override;
    QString defaultPrompt() const override;
    void prepare() override;
    void chooseResolved(QStringList paths);

    bool mResolvesAliases = true;
};

} // namespace quoddle
