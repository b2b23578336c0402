// SPDX-License-Identifier: MIT
// The common ground of the commands of the Standard Additions: their signature, parameters, results and errors.
#pragma once

#include "platform/ae/NSAppleEventManager.h"

namespace quoddle::additions {

using Command = OSErr (*)(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

struct CommandRow {
    AEEventClass eventClass;
    AEEventID eventID;
    Command command;
};

/// Puts the result into the reply.
inline OSErr answer(AEDesc& reply, AEDesc result) {
    (void)reply.put("----"_4cc, std::move(result));
    return noErr;
}

/// Puts an error with a message into the reply. Returns the number when it fits the 16 bits of a handler's status.
inline OSErr fail(AEDesc& reply, OSStatus number, std::u16string_view message) {
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(number));
    (void)reply.put("errs"_4cc, AEDesc::ofText(message));
    return noErr;
}

/// Puts the error for a parameter into the reply: -1701 when it is missing, -1700 with the value and the type when it cannot be coerced.
OSErr failParameter(const AEDesc& event, AEDesc& reply, AEKeyword key, std::u16string_view name, DescType expected);

inline std::optional<std::u16string> textParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? parameter->asText() : std::nullopt;
}

inline std::optional<bool> booleanParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? parameter->asBoolean() : std::nullopt;
}

/// The code of a class or a constant; 0 when the parameter is missing or of another kind.
DescType codeParameter(const AEDesc& event, AEKeyword key);

/// Whether a type is one of the language's names for text: "ctxt", "TEXT", "utxt" and the like.
bool isTextClass(DescType type);

/// The value "missing value".
inline AEDesc missingValue() {
    return AEDesc::ofType("msng"_4cc);
}

} // namespace quoddle::additions
