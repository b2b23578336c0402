// SPDX-License-Identifier: MIT
#include "platform/delivery/ArchiveNames.h"

#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle {

namespace {

constexpr std::size_t kLongestName = 1024;
constexpr std::size_t kDeepest = 64;

bool hasControls(std::string_view name) {
    const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    return std::any_of(text.begin(), text.end(), [](QChar c) {
        const bool isBlank = c == u'\n' || c == u'\r' || c == u'\t';
        return c.category() == QChar::Other_Control && !isBlank;
    });
}

std::string_view takePart(std::string_view& name) {
    const std::string_view part = name.substr(0, name.find('/'));
    name.remove_prefix(std::min(name.size(), part.size() + 1));
    return part;
}

} // namespace

std::optional<ArchivePath> partsOfArchiveName(std::string_view name) {
    if (name.empty() || name.size() > kLongestName || name.front() == '/' || !isValidUTF8(name) || hasControls(name))
        return std::nullopt;
    ArchivePath parts;
    while (!name.empty()) {
        const std::string_view part = takePart(name);
        if (part == "..")
            return std::nullopt;
        if (!part.empty() && part != ".")
            parts.emplace_back(part);
    }
    return parts.size() <= kDeepest ? std::optional(parts) : std::nullopt;
}

bool staysInBundle(std::string_view target, std::size_t depth) {
    if (target.empty() || target.size() > kLongestName || target.front() == '/')
        return false;
    std::size_t up = 0;
    bool isDescending = false;
    while (!target.empty()) {
        const std::string_view part = takePart(target);
        if (part == "..") {
            if (isDescending || ++up > depth)
                return false;
        } else if (!part.empty() && part != ".") {
            isDescending = true;
        }
    }
    return isDescending;
}

bool isNoteOfOtherSystem(std::string_view part) {
    return part.starts_with("._");
}

bool ArchiveNames::add(const ArchivePath& path) {
    int folder = 0;
    for (const std::string& part : path) {
        const QString folded = QString::fromStdString(part).normalized(QString::NormalizationForm_C).toCaseFolded();
        const auto place = mNames.try_emplace({folder, folded}, count() + 1, part).first;
        if (place->second.second != part)
            return false;
        folder = place->second.first;
    }
    return true;
}

} // namespace quoddle
