// SPDX-License-Identifier: MIT
#include "platform/panels/ChooseFromListPanel.h"

#include "platform/appkit/WindowLayout.h"

#include <cmath>

#include <QHash>
#include <QMainWindow>
#include <QScreen>
#include <QStyle>
#include <QWindow>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostMeasured = 30;
constexpr int kLongestMeasured = 2000; // characters; more would be wider than any screen
constexpr int kColumnPadding = 6;
constexpr int kMinimumWidth = 340;
constexpr int kBesideColumn = 42;  // the view's margins and the table's frame
constexpr int kBesideButtons = 48; // the view's margins and the distance between the two buttons
constexpr int kBesidePrompt = 90;  // margins, distances and buttons above and below the table
constexpr int kTableFrame = 2;
constexpr int kSmallestTable = 41;
constexpr int kDeepestShown = 8; // levels of lists in lists

/// The text in the row of an item: the item's own text or, when it has none, the texts of the items that it holds.
QString shownText(const AEDesc& item, int depth = 0) {
    if (item.type() == "type"_4cc && item.code() == "msng"_4cc)
        return u"missing value"_s; // the name of the value in scripts
    if (const auto text = item.asText())
        return QString::fromStdU16String(*text);
    QStringList texts;
    if (depth < kDeepestShown && item.isList())
        for (const AEDesc& held : item.items())
            texts << shownText(held, depth + 1);
    else if (depth < kDeepestShown && item.isRecord())
        for (const AEItem& field : item.fields())
            texts << shownText(field.value, depth + 1);
    return texts.join(u", "_s);
}

QStringList shownTexts(const AEDesc& list) {
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(list.count()));
    for (const AEDesc& item : list.items())
        texts << shownText(item);
    return texts;
}

/// The height for a sheet: from the bottom of the usable screen up to the upper edge of the window's content. The whole screen's height for
/// a window that has not been placed yet.
int roomBelow(const QMainWindow& parent) {
    const QRect screen = parent.screen()->availableGeometry();
    if (!parent.windowHandle() || !parent.windowHandle()->isExposed())
        return screen.height();
    const int contentHeight = parent.centralWidget() ? parent.centralWidget()->height() : 0;
    return screen.bottom() - parent.frameGeometry().bottom() + contentHeight;
}

} // namespace

std::optional<CommandError> ChooseFromListParameters::read(const AEDesc& event, ChooseFromListParameters& parameters) {
    parameters.title = titleParameter(event);
    parameters.list = listParameter(event, "----"_4cc);
    if (parameters.list.count() == 0)
        return CommandError{paramErr, u"The list is empty."};
    parameters.texts = shownTexts(parameters.list);
    if (const AEDesc defaults = listParameter(event, "inSL"_4cc); defaults.count() > 0) {
        QHash<QString, int> firstRows;
        for (int row = static_cast<int>(parameters.texts.size()) - 1; row >= 0; --row)
            firstRows.insert(parameters.texts[row], row);
        for (const QString& text : shownTexts(defaults))
            if (const int row = firstRows.value(text, -1); row >= 0)
                parameters.defaultRows << row;
    }
    parameters.multipleSelectionsAllowed = booleanParameter(event, "mlsl"_4cc);
    parameters.emptySelectionAllowed = booleanParameter(event, "empL"_4cc);
    parameters.prompt = optionalTextParameter(event, "prmp"_4cc);
    parameters.cancelButtonName = optionalTextParameter(event, "cnbt"_4cc);
    parameters.okButtonName = optionalTextParameter(event, "okbt"_4cc);
    return std::nullopt;
}

int ChooseFromListPanel::_calculateColumnWidthFor(const QStringList& texts, const QFont& font) {
    std::vector<const QString*> longest(std::min<qsizetype>(texts.size(), kMostMeasured));
    std::vector<const QString*> all;
    all.reserve(texts.size());
    for (const QString& text : texts)
        all.push_back(&text);
    std::partial_sort_copy(all.begin(), all.end(), longest.begin(), longest.end(),
                           [](const QString* a, const QString* b) { return a->size() > b->size(); });
    const QFontMetricsF metrics(font);
    double width = 0;
    for (const QString* text : longest) {
        if (text->size() * 2 < longest.front()->size())
            break;
        width = std::max(width, metrics.horizontalAdvance(text->left(kLongestMeasured)));
    }
    return longest.empty() ? 0 : static_cast<int>(std::ceil(width)) + kColumnPadding;
}

ChooseFromListPanel::ChooseFromListPanel(const ChooseFromListParameters& parameters) : mList(parameters.list) {
    ChooseFromListViewController& controller = mViewController;
    controller.theList = parameters.texts;
    mWindow.setContentViewController(&controller);
    mWindow.setWindowTitle(parameters.title);
    if (parameters.prompt)
        controller.setPrompt(*parameters.prompt);
    if (parameters.cancelButtonName)
        setButtonTitle(*controller.cancelButton(), *parameters.cancelButtonName);
    if (parameters.okButtonName)
        setButtonTitle(*controller.okButton(), *parameters.okButtonName);
    setKeyEquivalent(*controller.cancelButton(), kEscapeKeyEquivalent);
    setKeyEquivalent(*controller.okButton(), kReturnKeyEquivalent);
    mWindow.setCloseButton(controller.cancelButton());
    mWindow.setAccessibleName(controller.promptField()->text());
    controller.setAllowsMultipleSelection(parameters.multipleSelectionsAllowed);
    controller.setAllowsEmptySelection(parameters.emptySelectionAllowed);
    if (!parameters.defaultRows.isEmpty())
        controller.selectRows(parameters.defaultRows);
    controller.tableView()->setFocus();
}

void ChooseFromListPanel::sizeView(const QSize& room) {
    ChooseFromListViewController& controller = mViewController;
    const QTableView& table = *controller.tableView();
    const int column = _calculateColumnWidthFor(controller.theList, table.font());
    const int scroller = table.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &table);
    fitButtonTitles({controller.cancelButton(), controller.okButton()}, room.width() - kBesideButtons);
    const int buttons = controller.cancelButton()->sizeHint().width() + controller.okButton()->sizeHint().width() + kBesideButtons;
    const int width = std::min(std::max({column + scroller + kBesideColumn, buttons, kMinimumWidth}), room.width());
    mHeaderHeight = controller.fitPrompt(width) + kBesidePrompt;
    const qint64 items = qint64(controller.numberOfRowsInTableView()) * controller.rowHeight();
    const qint64 height = std::min<qint64>(room.height(), items + kTableFrame + mHeaderHeight);
    controller.view()->setMinimumSize(kMinimumWidth, mHeaderHeight + kSmallestTable); // keeps a sheet on a low window usable
    mWindow.resize(width, std::max(static_cast<int>(height), mHeaderHeight + kSmallestTable));
}

void ChooseFromListPanel::prepareForSheetOn(const QMainWindow& parent) {
    sizeView({roomOnScreen(parent).width(), roomBelow(parent)});
}

void ChooseFromListPanel::prepareForModalForm() {
    sizeView(roomOnScreen(mWindow));
    mWindow.setCloseButton(nullptr);
}

AEDesc ChooseFromListPanel::selectedItems() const {
    std::vector<AEDesc> items;
    for (const int row : mViewController.selectedRows())
        items.push_back(*mList.itemAt(static_cast<std::size_t>(row) + 1));
    return AEDesc::list(std::move(items));
}

} // namespace quoddle
