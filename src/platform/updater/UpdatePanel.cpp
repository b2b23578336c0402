// SPDX-License-Identifier: MIT
#include "platform/updater/UpdatePanel.h"

#include "ui_UpdatePanel.h"

#include <QIcon>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 64;

} // namespace

UpdatePanel::UpdatePanel(const UpdateDescription& update, const QIcon& icon) : mUi(std::make_unique<Ui::UpdatePanel>()) {
    mUi->setupUi(this);
    mUi->iconView->setPixmap(icon.pixmap(kIconSize));
    QFont bold = mUi->messageView->font();
    bold.setBold(true);
    mUi->messageView->setFont(bold);
    const bool isInstallable = update.obstacle.isEmpty();
    mUi->messageView->setText(tr("A new version of %1 is available.").arg(titleText(update.appletName)));
    const QString versions = tr("You have version %1; version %2 is there.").arg(update.installedVersion, update.version);
    mUi->informativeView->setText(isInstallable ? versions + u' ' + tr("Install it now?") : versions);
    mUi->obstacleView->setText(tr("It cannot be installed from here: %1").arg(update.obstacle));
    mUi->obstacleView->setVisible(!isInstallable);
    mUi->notesView->setPlainText(update.notes.isEmpty() ? tr("There are no notes about this version.") : update.notes);
    mUi->installButton->setVisible(isInstallable);
    mUi->pageButton->setVisible(!isInstallable && update.hasPage);
    setWindowTitle(titleText(update.appletName));
    setAccessibleName(mUi->messageView->text());
    setAccessibleDescription(mUi->informativeView->text());

    const struct {
        QPushButton* button;
        Choice choice;
        QString key;
    } buttons[] = {{mUi->skipButton, skip, {}},
                   {mUi->laterButton, later, kEscapeKeyEquivalent},
                   {mUi->pageButton, openPage, kReturnKeyEquivalent},
                   {mUi->installButton, install, kReturnKeyEquivalent}};
    for (const auto& [button, choice, key] : buttons) {
        setKeyEquivalent(*button, key);
        connect(button, &QPushButton::clicked, this, [this, result = choice] { done(result); });
    }
    setCloseButton(mUi->laterButton);
    mUi->notesView->setFocus(); // the keys that move through the notes go there, Return and Escape to the buttons
}

UpdatePanel::~UpdatePanel() = default;

} // namespace quoddle
