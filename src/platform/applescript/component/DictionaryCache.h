// SPDX-License-Identifier: MIT
// Terms of dictionaries that were read before, in $XDG_CACHE_HOME/quoddle/dictionaries.
//
// Decision: an entry holds the path, size and time of every file that the dictionary consists of, and serves as long as none of them has
// changed. A cache that cannot be read or written is of no consequence: the dictionary itself is read then.
#pragma once

#include "platform/applescript/terminology/TermDictionary.h"

#include <memory>
#include <string>
#include <vector>

namespace quoddle::component {

/// Null when there is no entry for the dictionary at the path, or none that is up to date. Any thread.
std::unique_ptr<TermDictionary> cachedTerms(const std::string& path);

/// `files`: all that the dictionary consists of. Any thread, and any number of processes at a time.
void cacheTerms(const std::string& path, const std::vector<std::string>& files, const TermDictionary& terms);

} // namespace quoddle::component
