// SPDX-License-Identifier: MIT
#include "platform/appkit/NSOpenPanel.h"

#include "platform/appkit/filepanel/FileBrowser.h"
#include "platform/appkit/filepanel/FilePortal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLongestChainOfLinks = 40; // the system's own limit

/// The path that a chain of links ends at; the path itself when it is no link or the chain leads nowhere.
QString resolved(const QString& path) {
    QString target = path;
    for (int i = 0; i < kLongestChainOfLinks; ++i) {
        const QFileInfo info(target);
        if (!info.isSymLink())
            return info.exists() ? target : path;
        target = info.symLinkTarget();
    }
    return path;
}

} // namespace

NSOpenPanel::NSOpenPanel() {
    hideNameField();
    setCanCreateDirectories(false);
    changeFilter([](DirectoryFilter& filter) {
        filter.canChooseFiles = true;
        filter.leavesOutOthers = true;
    });
}

void NSOpenPanel::setCanChooseFiles(bool can) {
    changeFilter([can](DirectoryFilter& filter) {
        filter.canChooseFiles = can;
        filter.leavesOutOthers = can;
    });
}

void NSOpenPanel::setCanChooseDirectories(bool can) {
    changeFilter([can](DirectoryFilter& filter) { filter.canChooseDirectories = can; });
    setCanCreateDirectories(can);
}

void NSOpenPanel::setAllowsMultipleSelection(bool allows) {
    mAllowsMultipleSelection = allows;
    browser().setAllowsMultipleSelection(allows);
}

void NSOpenPanel::setAllowedFileTypes(const QStringList& types) {
    changeFilter([&types](DirectoryFilter& filter) { filter.allowedTypes = AllowedFileTypes(types); });
}

void NSOpenPanel::prepare() {
    setTitle(filter().canChooseFiles ? QCoreApplication::translate("NSOpenPanel", "Open")
                                     : QCoreApplication::translate("NSOpenPanel", "Choose a Folder"));
    NSSavePanel::prepare();
}

QString NSOpenPanel::defaultPrompt() const {
    return filter().canChooseFiles ? QCoreApplication::translate("NSOpenPanel", "Open")
                                   : QCoreApplication::translate("NSOpenPanel", "Choose");
}

void NSOpenPanel::selectionChanged() {
    const bool canChooseThisFolder = filter().canChooseDirectories && browser().model().state() != DirectoryState::missing;
    setConfirmEnabled(canChooseThisFolder || browser().hasSelection());
}

void NSOpenPanel::confirm() {
    const QList<FileBrowser::Item> items = browser().selection();
    QStringList chosen;
    for (const FileBrowser::Item& item : items)
        if (item.entry.canBeChosen)
            chosen.append(item.path);
    if (!chosen.isEmpty())
        chooseResolved(chosen);
    else if (items.size() == 1 && items.first().entry.isDirectory)
        browser().goTo(items.first().path);
    else if (items.isEmpty() && filter().canChooseDirectories)
        chooseResolved({browser().directory()});
}

void NSOpenPanel::fileEntered(const QString& path) {
    if (const QString problem = problemWith(path); !problem.isEmpty())
        showProblem(problem);
    else
        chooseResolved({path});
}

QString NSOpenPanel::problemWith(const QString& path) const {
    const DirectoryFilter wanted = filter();
    const QFileInfo info(path);
    if (!info.exists())
        return QCoreApplication::translate("NSOpenPanel", "“%1” cannot be found.").arg(path);
    const bool isFolder = info.isDir() && (wanted.treatsFilePackagesAsDirectories || !isFilePackage(path));
    const bool canBeChosen = isFolder ? wanted.canChooseDirectories : wanted.canChooseFiles && wanted.allowedTypes.matches(path);
    return canBeChosen ? QString() : QCoreApplication::translate("NSOpenPanel", "“%1” is not of a kind that can be chosen here.").arg(path);
}

std::optional<FilePortalRequest> NSOpenPanel::portalRequest() const {
    const DirectoryFilter wanted = filter();
    const auto types = wanted.allowedTypes.filter();
    auto request = NSSavePanel::portalRequest();
    if (!types || !request)
        return std::nullopt;
    request->folders = wanted.canChooseDirectories;
    request->multiple = mAllowsMultipleSelection;
    request->namePatterns = types->namePatterns;
    request->mimeTypes = types->mimeTypes;
    return request;
}

QString NSOpenPanel::takeFromPortal(const QStringList& paths) {
    QStringList chosen;
    for (const QString& path : paths) {
        chosen << QDir::cleanPath(path);
        if (const QString problem = problemWith(chosen.last()); !problem.isEmpty())
            return problem;
    }
    chooseResolved(mAllowsMultipleSelection ? chosen : chosen.first(1));
    return {};
}

void NSOpenPanel::chooseResolved(QStringList paths) {
    if (mResolvesAliases)
        std::transform(paths.begin(), paths.end(), paths.begin(), &resolved);
    choose(paths);
}

} // namespace quoddle
