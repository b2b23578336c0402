// SPDX-License-Identifier: MIT
#include "platform/applescript/compiler/Scope.h"

namespace quoddle::compiler {

std::string nameKey(const Object& name) {
    std::string key(name.kind == ObjectKind::Identifier ? "u" : "c");
    key += name.kind == ObjectKind::Code && name.bytes.size() > 8 ? name.bytes.substr(0, 8) : name.bytes;
    return key;
}

std::size_t Scope::add(Object* name) {
    auto [entry, isNew] = mIndexes.try_emplace(nameKey(*name), mNames.size());
    if (isNew)
        mNames.push_back(name);
    return entry->second;
}

bool Scope::isVariable(const Object& name) const {
    const std::string key = nameKey(name);
    for (const Scope* scope = this; scope; scope = scope->mOuter)
        if (scope->mKind == Kind::Frame && scope->mIndexes.contains(key))
            return true;
    return false;
}

Scope::Place Scope::find(const Object& name) {
    const std::string key = nameKey(name);
    std::size_t depth = 0;
    for (Scope* scope = this; scope; scope = scope->mOuter, ++depth) {
        if (scope->mGlobals.contains(key) || (scope->mShared && scope->mShared->contains(key)))
            return {Found::Global};
        auto entry = scope->mIndexes.find(key);
        if (entry == scope->mIndexes.end())
            continue;
        if (depth > 0 && scope->mKind == Kind::Frame)
            scope->mCaptured = true;
        if (depth > 0 && scope->mShared)
            return {Found::Global};
        return {depth == 0 ? Found::Here : Found::Outside, depth, entry->second, scope->mKind};
    }
    return {};
}

SharedNames Scope::ownNames() const {
    SharedNames names = mGlobals;
    for (const auto& [key, index] : mIndexes)
        names.insert(key);
    return names;
}

} // namespace quoddle::compiler
