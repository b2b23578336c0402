// SPDX-License-Identifier: MIT
// What the commands of the Standard Additions have in common: their shape, reading their parameters, answering.
#pragma once

#include "platform/ae/NSAppleEventManager.h"

namespace quoddle::additions {

using Command = OSErr (*)(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

struct CommandRow {
    AEEventClass eventClass;
    AEEventID eventID;
    Command command;
};

/// Sets the result.
inline OSErr answer(AEDesc& reply, AEDesc result) {
    (void)reply.put("----"_4cc, std::move(result));
    return noErr;
}

/// Sets the error with a text of its own; answers its number where it fits the 16 bits of a handler's status.
inline OSErr fail(AEDesc& reply, OSStatus number, std::u16string_view message) {
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(number));
    (void)reply.put("errs"_4cc, AEDesc::ofText(message));
    return noErr;
}

/// The error for a parameter that is missing (-1701) or that cannot be made into what is expected (-1700, with the value and the type).
OSErr failParameter(const AEDesc& event, AEDesc& reply, AEKeyword key, std::u16string_view name, DescType expected);

inline std::optional<std::u16string> textParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? parameter->asText() : std::nullopt;
}

inline std::optional<bool> booleanParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? parameter->asBoolean() : std::nullopt;
}

/// The code of a class or a constant; 0 when the parameter is missing or something else.
DescType codeParameter(const AEDesc& event, AEKeyword key);

/// "ctxt", "TEXT", "utxt" and the like: the language's names for text.
bool isTextClass(DescType type);

/// "msng" as a value.
inline AEDesc missingValue() {
    return AEDesc::ofType("msng"_4cc);
}

} // namespace quoddle::additions
