// SPDX-License-Identifier: MIT
#include "platform/additions/Command.h"

#include <algorithm>

namespace quoddle::additions {

OSErr failParameter(const AEDesc& event, AEDesc& reply, AEKeyword key, std::u16string_view name, DescType expected) {
    const AEDesc* given = event.find(key);
    if (!given)
        return fail(reply, errAEDescNotFound, u"The “" + std::u16string(name) + u"” parameter is missing.");
    (void)reply.put("erob"_4cc, *given);
    (void)reply.put("errt"_4cc, AEDesc::ofType(expected));
    return fail(reply, errAECoercionFail, u"Can’t make some data into the expected type: “" + std::u16string(name) + u"”.");
}

DescType codeParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    if (!parameter)
        return 0;
    const DescType type = parameter->type();
    return type == "type"_4cc || type == "enum"_4cc || type == "prop"_4cc ? parameter->code() : 0;
}

bool isTextClass(DescType type) {
    constexpr DescType kTextClasses[] = {"ctxt"_4cc, "TEXT"_4cc, "utxt"_4cc, "itxt"_4cc, "STXT"_4cc, "sutx"_4cc, "utf8"_4cc, "ut16"_4cc};
    return std::find(std::begin(kTextClasses), std::end(kTextClasses), type) != std::end(kTextClasses);
}

} // namespace quoddle::additions
