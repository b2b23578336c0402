// SPDX-License-Identifier: MIT
#include "platform/panels/CommandParameters.h"

#include "platform/additions/FileParameter.h"
#include "platform/ae/AECoercion.h"
#include "platform/ae/AETypeTests.h"
#include "platform/appkit/NSPanel.h"

namespace quoddle {

namespace {

constexpr std::size_t kMostButtons = 3;

/// Reads the button that a parameter names by its position or its title. An absent parameter is no error; a button that does not exist is
/// one.
std::optional<CommandError> readButton(const AEDesc& event, AEKeyword key, const QStringList& buttons, std::u16string_view message,
                                       std::optional<int>& button) {
    const AEDesc* given = event.find(key);
    if (!given)
        return std::nullopt;
    qsizetype index = -1;
    if (AEIsInteger(*given)) {
        const std::int64_t position = given->asInt64().value_or(0);
        index = position >= 1 && position <= buttons.size() ? static_cast<qsizetype>(position) - 1 : -1;
    } else if (const auto title = given->asText()) {
        index = buttons.indexOf(QString::fromStdU16String(*title));
    }
    if (index < 0)
        return CommandError{paramErr, message};
    button = static_cast<int>(index);
    return std::nullopt;
}

} // namespace

std::optional<QString> optionalTextParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* given = event.find(key);
    const auto text = given ? given->asText() : std::nullopt;
    return text ? std::optional(QString::fromStdU16String(*text)) : std::nullopt;
}

QString textParameter(const AEDesc& event, AEKeyword key) {
    return optionalTextParameter(event, key).value_or(QString());
}

QString titleParameter(const AEDesc& event) {
    return titleText(textParameter(event, "appr"_4cc));
}

bool booleanParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* given = event.find(key);
    return given && given->asBoolean().value_or(false);
}

AEDesc listParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* given = event.find(key);
    return given ? AECoerced(*given, "list"_4cc).value_or(AEDesc::list()) : AEDesc::list();
}

QStringList textsOf(const AEDesc& list) {
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(list.count()));
    for (const AEDesc& item : list.items())
        texts << QString::fromStdU16String(item.asText().value_or(std::u16string()));
    return texts;
}

std::optional<CommandError> ButtonParameters::read(const AEDesc& event, ButtonParameters& parameters, const QStringList& unlessNamed) {
    if (const AEDesc* givingUp = event.find("givu"_4cc)) {
        const auto seconds = givingUp->asInt32();
        if (!seconds)
            return CommandError{errAECoercionFail, {}, *givingUp, "magn"_4cc};
        parameters.givingUpAfter = *seconds;
    }
    const AEDesc buttons = listParameter(event, "btns"_4cc);
    if (buttons.count() > kMostButtons)
        return CommandError{paramErr, u"Maximum of 3 buttons allowed."};
    parameters.buttons = buttons.count() > 0 ? textsOf(buttons) : unlessNamed;
    if (auto error =
            readButton(event, "dflt"_4cc, parameters.buttons, u"Specified default button does not exist.", parameters.defaultButton))
        return error;
    return readButton(event, "cbtn"_4cc, parameters.buttons, u"Specified cancel button does not exist.", parameters.cancelButton);
}

std::optional<CommandError> IconParameter::read(const AEDesc& event, IconParameter& parameter) {
    constexpr Kind kByNumber[] = {Kind::stop, Kind::note, Kind::caution};
    const AEDesc* given = event.find("disp"_4cc);
    if (!given)
        return std::nullopt;
    std::optional<std::int64_t> number;
    if (given->type() == "enum"_4cc && given->code() < std::size(kByNumber))
        number = given->code();
    else if (AEIsInteger(*given))
        number = given->asInt64().value_or(-1);
    if (number) {
        if (*number < 0 || *number >= static_cast<std::int64_t>(std::size(kByNumber)))
            return CommandError{paramErr, u"No such icon."};
        parameter.kind = kByNumber[*number];
    } else if (AEIsFile(*given)) {
        parameter.kind = Kind::file;
        parameter.name = QString::fromStdString(additions::filePathOf(*given).value_or(std::string()));
    } else if (AEIsText(*given)) {
        parameter.kind = Kind::resource;
        parameter.name = QString::fromStdU16String(given->asText().value_or(std::u16string()));
    }
    return std::nullopt;
}

CommandError resourceNotFound() {
    return {resNotFound, u"A resource wasn't found."};
}

} // namespace quoddle
