// SPDX-License-Identifier: MIT
// The two forms of an event's name: a script holds class and ID as eight characters, an "evnt" descriptor as two codes in the byte order of
// the machine, like all descriptor data.
#pragma once

#include "platform/ae/AEDesc.h"

#include <cstring>

namespace quoddle::component {

inline AEDesc descriptorOfEventName(std::string_view characters) {
    const FourCharCode codes[] = {fourCharCode(characters.substr(0, 4)), fourCharCode(characters.substr(4, 4))};
    return {"evnt"_4cc, {reinterpret_cast<const char*>(codes), sizeof codes}};
}

/// Empty when the descriptor holds fewer than two codes.
inline std::string eventNameOfDescriptor(const AEDesc& descriptor) {
    FourCharCode codes[2];
    if (descriptor.data().size() < sizeof codes)
        return {};
    std::memcpy(codes, descriptor.data().data(), sizeof codes);
    return bytesOf(codes[0]) + bytesOf(codes[1]);
}

} // namespace quoddle::component
