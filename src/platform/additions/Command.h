// SPDX-License-Identifier: MIT
// What the commands of the Standard Additions have in common: their shape, and reading their parameters.
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

inline std::optional<std::u16string> textParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? parameter->asText() : std::nullopt;
}

inline std::optional<bool> booleanParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? parameter->asBoolean() : std::nullopt;
}

// One function for each command; the table in StandardAdditions.cpp says under which codes.
OSErr doShellScript(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

} // namespace quoddle::additions
