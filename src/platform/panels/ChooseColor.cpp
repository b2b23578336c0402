// SPDX-License-Identifier: MIT
// The command "choose color". Its colours are three numbers from 0 to 65535.
#include "platform/panels/CommandDialog.h"
#include "platform/panels/CommandError.h"

#include <algorithm>
#include <array>

#include <QColorDialog>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QPushButton>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSmallestField = 100; // points

using Color = std::array<std::uint16_t, 3>;

/// The colour of a parameter: a list of three numbers, or a descriptor of type "cRGB" with the same three numbers as bytes. nullopt for any
/// other value.
std::optional<Color> colorFrom(const AEDesc& value) {
    Color color{};
    if (value.type() == "cRGB"_4cc && value.data().size() == sizeof color) {
        value.data().copy(reinterpret_cast<char*>(color.data()), sizeof color);
        return color;
    }
    if (value.items().size() != color.size())
        return std::nullopt;
    for (std::size_t i = 0; i < color.size(); ++i) {
        const auto part = value.items()[i].asDouble();
        if (!part || !(*part >= 0 && *part <= 65535))
            return std::nullopt;
        color[i] = static_cast<std::uint16_t>(*part);
    }
    return color;
}

AEDesc listFrom(const Color& color) {
    AEDesc list = AEDesc::list();
    for (std::uint16_t part : color)
        (void)list.insertItem(0, AEDesc::ofInt32(part));
    return list;
}

QColor shownAs(const Color& color) {
    return QColor::fromRgba64(color[0], color[1], color[2]);
}

/// The colour to answer. The dialog knows 256 steps, so a colour that the user has not changed is answered as it was given, with its finer
/// steps.
Color chosenColor(const QColor& chosen, const Color& given) {
    if (chosen.rgb() == shownAs(given).rgb())
        return given;
    const QRgba64 color = chosen.rgba64();
    return {color.red(), color.green(), color.blue()};
}

/// Arranges the buttons as in our other panels: Cancel before OK, without pictures.
void arrangeButtons(QColorDialog& dialog) {
    auto* box = dialog.findChild<QDialogButtonBox*>();
    if (!box)
        return;
    box->setStyleSheet(u"button-layout: 3"_s);
    for (QAbstractButton* button : box->buttons()) {
        button->setIcon({});
        button->setAccessibleName(button->text().remove(u'&'));
    }
}

/// Lets the field of colours become lower where the screen has no room for the whole dialog.
void loosenField(QColorDialog& dialog) {
    for (auto* field : dialog.findChildren<QFrame*>())
        if (field->sizePolicy().verticalPolicy() == QSizePolicy::Fixed && field->sizeHint().height() > kSmallestField)
            field->setSizePolicy(field->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
}

} // namespace

CommandDialog chooseColorDialog(const AEDesc& event, const Asker&) {
    Color given{};
    if (const AEDesc* parameter = event.find("dcol"_4cc)) {
        const auto color = colorFrom(*parameter);
        if (!color)
            return {.error = CommandError{errAECoercionFail, {}, *parameter, "cRGB"_4cc}};
        given = *color;
    }
    auto dialog = std::make_shared<QColorDialog>(shownAs(given));
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    dialog->setWindowTitle(QCoreApplication::translate("ChooseColor", "Choose a Color"));
    dialog->setAccessibleName(dialog->windowTitle());
    arrangeButtons(*dialog);
    loosenField(*dialog);
    const QColorDialog* shown = dialog.get();
    return {.dialog = dialog, .answer = [shown, given](int returnCode, AEDesc& reply) {
                if (returnCode == QDialog::Accepted)
                    setResult(reply, listFrom(chosenColor(shown->selectedColor(), given)));
                else
                    setCancelled(reply);
            }};
}

} // namespace quoddle
