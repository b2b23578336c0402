// SPDX-License-Identifier: MIT
#include "platform/preview/CardView.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/ElidedLabel.h"
#include "platform/appkit/StockIcons.h"
#include "platform/foundation/FileTypes.h"

#include <QEvent>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconExtent = 128; // points

QLabel* addLine(QVBoxLayout& column) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    column.addWidget(label);
    return label;
}

} // namespace

CardView::CardView(QWidget* parent) : QWidget(parent), mIcon(new QLabel), mName(new ElidedLabel) {
    auto* column = new QVBoxLayout(this);
    column->addStretch(1);
    mIcon->setAlignment(Qt::AlignCenter);
    mIcon->setFixedHeight(kIconExtent);
    column->addWidget(mIcon);
    column->addSpacing(8);
    mName->setAlignment(Qt::AlignCenter);
    mName->setElideMode(Qt::ElideMiddle);
    QFont large = mName->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    mName->setFont(large);
    column->addWidget(mName);
    mLines = addLine(*column);
    mNotice = addLine(*column);
    column->addStretch(1);
    adaptColors();
    connect(&mIcons, &FileIcons::iconChanged, this, &CardView::showIcon);
}

void CardView::setFacts(const FileFacts& facts, const QString& notice) {
    mFacts = facts;
    mName->setText(drawableName(facts.name));
    const QStringList lines = facts.lines();
    mLines->setText(lines.join(u'\n'));
    mLines->setVisible(!lines.isEmpty());
    mNotice->setText(notice);
    mNotice->setVisible(!notice.isEmpty());
    mIcon->setVisible(!facts.path.isEmpty());
    mName->setVisible(!facts.path.isEmpty());
    setAccessibleName(facts.path.isEmpty() ? notice : tr("Information on %1").arg(facts.name));
    showIcon();
}

void CardView::showIcon() {
    if (mFacts.path.isEmpty())
        return mIcon->clear();
    const QIcon icon = mIcons.iconFor(mFacts.path, mFacts.isDirectory && !mFacts.isPackage, mFacts.isPackage);
    mIcon->setPixmap(pixmapForIcon(icon, kIconExtent, devicePixelRatioF()));
}

void CardView::adaptColors() {
    QPalette quiet = palette();
    quiet.setColor(QPalette::WindowText, Appearance::secondaryLabelColor(palette()));
    mLines->setPalette(quiet);
    mNotice->setPalette(quiet);
}

void CardView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adaptColors();
}

} // namespace quoddle
