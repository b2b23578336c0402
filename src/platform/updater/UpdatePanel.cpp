// SPDX-License-Identifier: MIT
#include "platform/updater/UpdatePanel.h"

#include "platform/appkit/StockIcons.h"
#include "ui_UpdatePanel.h"

#include <utility>

#include <QIcon>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 64;

} // namespace

UpdatePanel::UpdatePanel(const UpdateDescription& update, const QIcon& icon) : mUi(std::make_unique<Ui::UpdatePanel>()) {
    mUi->setupUi(this);
    mUi->iconView->setPixmap(pixmapForIcon(icon, kIconSize, devicePixelRatioF()));
    QFont bold = mUi->messageView->font();
    bold.setBold(true);
    mUi->messageView->setFont(bold);
    const bool isInstallable = update.obstacle.isEmpty();
    mUi->messageView->setText(tr("A new version of %1 is available.").arg(titleText(update.appletName)));
    const QString versions = tr("Version %1 has come out; you have version %2.").arg(update.version, update.installedVersion);
    mUi->informativeView->setText(isInstallable ? versions + u' ' + tr("Install it now?") : versions);
    mUi->obstacleView->setText(tr("It cannot be installed from here: %1").arg(update.obstacle));
    mUi->obstacleView->setVisible(!isInstallable);
    mUi->notesView->setPlainText(update.notes.isEmpty() ? tr("There are no notes about this version.") : update.notes);
    mUi->installButton->setVisible(isInstallable);
    mUi->pageButton->setVisible(!isInstallable && update.hasPage);
    setWindowTitle(titleText(update.appletName));
    setAccessibleName(mUi->messageView->text());
    setAccessibleDescription(mUi->informativeView->text());

    const std::pair<QPushButton*, Choice> choices[] = {
        {mUi->skipButton, skip}, {mUi->laterButton, later}, {mUi->pageButton, openPage}, {mUi->installButton, install}};
    for (const auto& [button, choice] : choices) {
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, result = choice] { done(result); });
    }
    setKeyEquivalent(*mUi->laterButton, kEscapeKeyEquivalent);
    setKeyEquivalent(isInstallable ? *mUi->installButton : *mUi->pageButton, kReturnKeyEquivalent);
    setCloseButton(mUi->laterButton);
    mUi->notesView->setFocus(); // arrow and page keys scroll the notes; Return and Escape still reach the buttons
}

UpdatePanel::~UpdatePanel() = default;

} // namespace quoddle
