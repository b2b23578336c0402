// SPDX-License-Identifier: MIT
// The commands set the clipboard to, the clipboard, clipboard info.
#include "platform/additions/Clipboard.h"
#include "platform/additions/Commands.h"
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEFlatten.h"

#include <algorithm>

namespace quoddle::additions {

namespace {

constexpr std::size_t kLargest = kAEMaxSize - 4096; // leaves room for the frame around it on the way to another process

/// The classes under which a text is available, by the names that scripts know.
constexpr DescType kTextForms[] = {"utxt"_4cc, "utf8"_4cc, "ut16"_4cc, "TEXT"_4cc};

/// The forms for scripts: a text in all its classes, anything else unchanged.
std::vector<AEDesc> formsToShow(const std::vector<AEDesc>& contents) {
    std::vector<AEDesc> forms;
    const auto add = [&forms](AEDesc form) {
        const bool isNew = std::none_of(forms.begin(), forms.end(), [&](const AEDesc& other) { return other.type() == form.type(); });
        if (isNew)
            forms.push_back(std::move(form));
    };
    for (const AEDesc& form : contents) {
        add(form);
        if (isTextClass(form.type()))
            for (DescType type : kTextForms)
                if (auto text = AECoerced(form, type))
                    add(std::move(*text));
    }
    return forms;
}

std::size_t sizeOf(const AEDesc& form) {
    if (!form.isList() && !form.isRecord())
        return form.data().size();
    std::string bytes;
    return AEFlattenDesc(form, bytes) == noErr ? bytes.size() : 0;
}

/// A record with each form under its class.
AEDesc recordOf(const std::vector<AEDesc>& contents) {
    AEDesc record = AEDesc::record();
    for (const AEDesc& form : contents)
        if (!record.find(form.type()))
            (void)record.put(form.type(), form);
    return record;
}

std::optional<AEDesc> contentsAs(const std::vector<AEDesc>& contents, DescType asClass) {
    const bool asText = asClass == "ctxt"_4cc;
    for (const AEDesc& form : contents)
        if (form.type() == asClass || (asText && isTextClass(form.type())))
            return form;
    for (const AEDesc& form : contents)
        if (auto coerced = AECoerced(form, asText ? "utxt"_4cc : asClass))
            return coerced;
    if (asClass == "reco"_4cc)
        return recordOf(contents);
    return std::nullopt;
}

/// A record of classes and their data stands for one thing in several forms; any other value is a single form.
std::vector<AEDesc> formsOf(const AEDesc& value) {
    const auto isForm = [](const AEItem& field) {
        return (isTextClass(field.key) && field.value.asText()) || field.key == field.value.type();
    };
    const auto fields = value.fields();
    if (value.type() != "reco"_4cc || fields.empty() || !std::all_of(fields.begin(), fields.end(), isForm))
        return {value};
    std::vector<AEDesc> forms;
    for (const AEItem& field : fields)
        forms.push_back(isTextClass(field.key) ? AEDesc::ofText(*field.value.asText()) : field.value);
    return forms;
}

OSErr failDesktop(AEDesc& reply, OSStatus status) {
    if (status == userCanceledErr)
        return static_cast<OSErr>(status);
    return fail(reply, status,
                status == connectionInvalid
                    ? u"The desktop’s clipboard didn’t answer: the program quoddle-clipboard is missing or has ended."
                    : u"The desktop’s clipboard could not be set.");
}

} // namespace

OSErr setTheClipboard(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const AEDesc* value = event.find("----"_4cc);
    if (!value)
        return failParameter(event, reply, "----"_4cc, u"to", "****"_4cc);
    if (sizeOf(*value) > kLargest)
        return fail(reply, memFullErr, u"This is too large for the clipboard.");
    const OSStatus status = Clipboard::shared()->setContents(formsOf(*value), context);
    return status == noErr ? noErr : failDesktop(reply, status);
}

OSErr theClipboard(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const DescType asClass = codeParameter(event, "rtyp"_4cc);
    const auto contents = Clipboard::shared()->contents(asClass == "reco"_4cc ? 0 : asClass, context);
    if (!contents)
        return failDesktop(reply, contents.error());
    if (contents->empty() && (!asClass || isTextClass(asClass) || asClass == "ctxt"_4cc))
        return answer(reply, AEDesc::ofText(u""));
    if (!asClass)
        return answer(reply, contents->front());
    const auto value = contentsAs(*contents, asClass);
    return value ? answer(reply, *value)
                 : fail(reply, errAECoercionFail, u"Can’t make some data into the expected type: the clipboard has nothing like it.");
}

OSErr clipboardInfo(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const DescType wanted = codeParameter(event, "for "_4cc);
    const auto contents = Clipboard::shared()->contents(0, context);
    if (!contents)
        return failDesktop(reply, contents.error());
    AEDesc list = AEDesc::list();
    for (const AEDesc& form : formsToShow(*contents))
        if (!wanted || form.type() == wanted || (wanted == "ctxt"_4cc && form.type() == "utxt"_4cc))
            (void)list.insertItem(0, AEDesc::list({AEDesc::ofType(form.type()), AEDesc::ofInt64(static_cast<std::int64_t>(sizeOf(form)))}));
    return answer(reply, std::move(list));
}

} // namespace quoddle::additions
