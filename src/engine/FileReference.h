// SPDX-License-Identifier: MIT
// From file URLs to the paths that the scripting architecture takes in place of file references. Private to this layer.
#pragma once

#include <optional>
#include <string>

#include <QUrl>

namespace quoddle {

/// Nothing unless the URL names an existing local file: only what exists can be referred to.
std::optional<std::string> fileReferenceFromURL(const QUrl& url);

} // namespace quoddle
