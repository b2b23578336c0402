// SPDX-License-Identifier: MIT
#include "droplet/JudgingView.h"

#include "platform/appkit/ProgressBar.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>

namespace quoddle {

JudgingView::JudgingView(QWidget* parent) : QWidget(parent), mProgressView(new ProgressBar) {
    mProgressView->setAccessibleName(tr("Checking the files"));
    auto* stop = new QPushButton(tr("Stop"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(mProgressView, 1);
    layout->addWidget(stop);
    connect(stop, &QPushButton::clicked, this, &JudgingView::stopRequested);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &JudgingView::stopRequested);
    hide();
}

void JudgingView::showProgress(qsizetype judged, qsizetype all) {
    mProgressView->setDoubleValue(100 * static_cast<double>(judged) / static_cast<double>(all));
    show();
}

} // namespace quoddle
