// SPDX-License-Identifier: MIT
#include "droplet/SpotlightResultsCell.h"

#include "droplet/NSColor+Additions.h"
#include "droplet/SpotlightResultsController.h"
#include "platform/foundation/FileTypes.h"
#include "platform/foundation/NSLog.h"

#include <cmath>

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QTextLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

// Lengths in points.
constexpr double kIconIndent = 2;
constexpr double kIconExtent = 32;
constexpr double kTextIndent = 38;
constexpr double kNameHeight = 20;
constexpr double kNameSize = 13;
constexpr double kFolderSize = 10;

constexpr double kReadable = 4; // least contrast ratio between the notes and the selection

const QColor kMatchColor = QColor::fromRgbF(0.556f, 0.979f, 0.0f);

QFont systemFont(double points) {
    QFont font = QApplication::font();
    font.setPixelSize(static_cast<int>(points)); // a point of the rows is a pixel of the toolkit
    return font;
}

/// The path of the folder that holds a file, with "~" for the home folder.
QString abbreviatedFolder(const QString& path) {
    const QString folder = path.left(std::max<qsizetype>(path.lastIndexOf(u'/'), 1));
    const QString home = QDir::homePath();
    if (folder == home)
        return u"~"_s;
    return folder.startsWith(home + u'/') ? u'~' + folder.mid(home.size()) : folder;
}

/// The contrast ratio of two colours as accessibility guidelines define it: from 1 for equal colours to 21 for black and white.
double contrastRatio(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) { return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

/// The colour of a selected row, in which names keep their colour. When the names or the notes would be hard to read on the palette's
/// colour, it is made darker or lighter, as little as suffices.
QColor selectionColor(const QColor& highlight, const QColor& label) {
    const QColor contrast = contrastingLabelColor(label);
    const auto mixed = [&](double share) {
        return QColor::fromRgbF(static_cast<float>(std::lerp(highlight.redF(), contrast.redF(), share)),
                                static_cast<float>(std::lerp(highlight.greenF(), contrast.greenF(), share)),
                                static_cast<float>(std::lerp(highlight.blueF(), contrast.blueF(), share)));
    };
    const auto isReadable = [&](const QColor& color) {
        return contrastingLabelColor(color) != contrast && contrastRatio(color, contrastingLabelNoteColor(color)) >= kReadable;
    };
    double share = 0;
    while (share < 1 && !isReadable(mixed(share)))
        share = std::min(share + 0.02, 1.0);
    return mixed(share);
}

} // namespace

SpotlightResultsCell::SpotlightResultsCell(QObject* parent) : QStyledItemDelegate(parent) {
    connect(&mIcons, &FileIcons::iconChanged, this, &SpotlightResultsCell::iconChanged);
}

QString SpotlightResultsCell::accessibilityValue(const SpotlightMatch* match) {
    return match ? stringWithFormat(QCoreApplication::translate("SpotlightResultsCell", "Name: %@.\nPath: %@"),
                                    {displayNameOfFile(match->path()), abbreviatedFolder(match->path())})
                 : QString();
}

QSize SpotlightResultsCell::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {0, static_cast<int>(SpotlightMatch::kRowHeight)};
}

void SpotlightResultsCell::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto* controller = qobject_cast<const SpotlightResultsController*>(index.model());
    const SpotlightMatchRef match = controller ? controller->arrangedObjects().value(index.row()) : nullptr;
    if (!match)
        return;
    QStyleOptionViewItem row = option;
    const bool isHighlighted = row.state & QStyle::State_Selected;
    const QPalette::ColorGroup group = row.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor label = row.palette.color(group, QPalette::Text);
    QColor highlight = row.palette.color(group, QPalette::Highlight);
    if (isHighlighted)
        highlight = selectionColor(highlight, label);
    row.palette.setColor(group, QPalette::Highlight, highlight);
    const QStyle* style = row.widget ? row.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &row, painter, row.widget);

    const QRectF frame = row.rect;
    const bool isMirrored = row.direction == Qt::RightToLeft;
    QRectF icon(frame.left() + kIconIndent, frame.top(), kIconExtent, kIconExtent);
    QRectF text = frame.adjusted(kTextIndent, 0, 0, 0);
    if (isMirrored) {
        icon.moveRight(frame.right() - kIconIndent);
        text = frame.adjusted(0, 0, -kTextIndent, 0);
    }
    const QFileInfo info(match->path());
    const bool isDirectory = info.isDir();
    mIcons.iconFor(match->path(), isDirectory, isFilePackage(match->path(), isDirectory)).paint(painter, icon.toRect());

    painter->save();
    drawName(*painter, {text.left(), text.top(), text.width(), kNameHeight}, *match, label);
    QColor note = label;
    note.setAlphaF(0.6f);
    painter->setPen(isHighlighted ? contrastingLabelNoteColor(highlight) : note);
    painter->setFont(systemFont(kFolderSize));
    const QRectF folderLine = text.adjusted(0, kNameHeight, 0, 0);
    const QString folder =
        painter->fontMetrics().elidedText(drawableName(abbreviatedFolder(match->path())), Qt::ElideMiddle, static_cast<int>(text.width()));
    painter->setLayoutDirection(Qt::LeftToRight); // paths read from left to right in any interface
    painter->drawText(folderLine, (isMirrored ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop | Qt::AlignAbsolute | Qt::TextSingleLine,
                      folder);
    painter->restore();
}

/// QUIRK: matching letters are black on yellow-green in a selected row as well, and the other letters keep their colour; users rely on
/// finding the matches by that colour.
void SpotlightResultsCell::drawName(QPainter& painter, const QRectF& line, SpotlightMatch& match, const QColor& color) const {
    const QFont font = systemFont(kNameSize);
    const QString whole = drawableName(match.previewItemTitle());
    const QString name = QFontMetricsF(font).elidedText(whole, Qt::ElideRight, line.width());
    const qsizetype shown = name == whole ? name.size() : std::max<qsizetype>(name.size() - 1, 0); // without the ellipsis
    QList<QTextLayout::FormatRange> formats;
    const auto ranges = match.matchRanges().value_or(NameRanges());
    for (const NameRange& range : ranges) {
        const auto length = static_cast<std::uint64_t>(shown);
        if (range.location >= length || range.length == 0)
            continue;
        QTextLayout::FormatRange format{
            static_cast<int>(range.location), static_cast<int>(std::min(range.length, length - range.location)), {}};
        format.format.setBackground(kMatchColor);
        format.format.setForeground(Qt::black);
        formats << format;
    }
    QTextLayout layout(name, font);
    QTextOption option(Qt::AlignLeading | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(Qt::LayoutDirectionAuto); // the direction of the name itself
    layout.setTextOption(option);
    layout.setFormats(formats);
    layout.beginLayout();
    QTextLine textLine = layout.createLine();
    textLine.setLineWidth(line.width());
    layout.endLayout();
    const bool isMirrored = QApplication::layoutDirection() == Qt::RightToLeft;
    const double x = isMirrored ? line.right() - textLine.naturalTextWidth() : line.left();
    painter.setPen(color);
    layout.draw(&painter, {x, line.top() + (line.height() - textLine.height()) / 2});
}

} // namespace quoddle
