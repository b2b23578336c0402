// SPDX-License-Identifier: MIT
// The stored form of `application "Name"`: a block of data whose alias record or URL holds the name.
//
// We write a minimal alias record, enough for any reader to find the name. Which application that is, is looked up when the script runs.
#pragma once

#include "platform/applescript/image/Object.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quoddle::syntax {

/// Tag of the Data objects that hold applications.
constexpr std::uint8_t kApplicationTag = 8;

/// Makes the data for an application. `name` may be a URL ("eppc://…", "http://…").
std::string applicationData(std::u16string_view name);

/// The name without ".app", or the URL, for printing and for finding the application. Empty when the data hold neither.
std::u16string applicationName(std::string_view data);

/// An application as a `tell`, a `using terms from` or a `use` names it.
struct ApplicationName {
    std::u16string text; // empty when the name is known only when the script runs
    bool isBundleIdentifier = false;
};

/// The application that a node names, directly or at the end of a chain of containers; nullopt when it names none.
std::optional<ApplicationName> applicationOf(const Object* target);

} // namespace quoddle::syntax
