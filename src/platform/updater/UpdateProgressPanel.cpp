// SPDX-License-Identifier: MIT
#include "platform/updater/UpdateProgressPanel.h"

#include "platform/appkit/ElidedLabel.h"
#include "platform/appkit/ProgressBar.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 400;

} // namespace

UpdateProgressPanel::UpdateProgressPanel(const QString& title, const QString& activity) : mDetail(new ElidedLabel), mBar(new ProgressBar) {
    auto* label = new ElidedLabel;
    label->setObjectName(u"activityView"_s);
    label->setText(activity);
    mDetail->setObjectName(u"detailView"_s);
    mDetail->setSecondary(true);
    mDetail->setTabularFigures(true);
    mBar->setObjectName(u"progressBar"_s);
    mBar->setAccessibleName(activity);
    mBar->setIndeterminate(true);
    mBar->startAnimation();
    auto* cancelButton = new QPushButton;
    cancelButton->setObjectName(u"cancelButton"_s);
    setButtonTitle(*cancelButton, tr("Cancel"));
    setKeyEquivalent(*cancelButton, kEscapeKeyEquivalent);
    connect(cancelButton, &QPushButton::clicked, this, [this] { done(0); });
    setCloseButton(cancelButton);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(mDetail, 1);
    buttons->addWidget(cancelButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(12);
    layout->addWidget(label);
    layout->addWidget(mBar);
    layout->addLayout(buttons);
    setMinimumWidth(kWidth);
    setWindowTitle(titleText(title));
    setAccessibleName(activity);
}

void UpdateProgressPanel::setProgress(qint64 done, qint64 total) {
    mBar->setIndeterminate(total <= 0);
    if (total > 0)
        mBar->setDoubleValue(100.0 * static_cast<double>(done) / static_cast<double>(total));
    const QLocale locale;
    mDetail->setText(total > 0 ? tr("%1 of %2").arg(locale.formattedDataSize(done), locale.formattedDataSize(total)) : QString());
}

} // namespace quoddle
