// SPDX-License-Identifier: MIT
#include "platform/sdef/BundleDictionary.h"

#include "platform/sdef/XmlDocuments.h"

#include <filesystem>

namespace quoddle::sdef {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kKey = "OSAScriptingDefinition";
constexpr std::string_view kExtension = ".sdef";

/// The node itself when it is an element, else the first one behind it; null when none follows.
const xmlNode* elementFrom(const xmlNode* node) {
    while (node && node->type != XML_ELEMENT_NODE)
        node = node->next;
    return node;
}

std::string textOf(const xmlNode* element) {
    std::string text;
    for (const xmlNode* part = element->children; part; part = part->next)
        text += part->type == XML_TEXT_NODE && part->content ? reinterpret_cast<const char*>(part->content) : "";
    return text;
}

/// Reads property lists in their XML form only: an applet with a binary one is found by its resources.
std::string namedInSettings(const std::string& bundle) {
    XmlDocuments files("");
    const xmlNode* root = files.open(bundle + "/Contents/Info.plist");
    const xmlNode* settings = root ? elementFrom(root->children) : nullptr;
    for (const xmlNode* key = settings ? elementFrom(settings->children) : nullptr; key;) {
        const xmlNode* value = elementFrom(key->next);
        if (value && XmlDocuments::nameOf(value) == "string" && textOf(key) == kKey)
            return textOf(value);
        key = value ? elementFrom(value->next) : nullptr;
    }
    return {};
}

} // namespace

std::string dictionaryOfBundle(const std::string& bundle) {
    const fs::path resources = fs::path(bundle) / "Contents" / "Resources";
    std::error_code error;
    if (const fs::path name = namedInSettings(bundle); !name.empty() && name == name.filename()) {
        const fs::path file = resources / (name.extension() == kExtension ? name : fs::path(name.string() + std::string(kExtension)));
        if (fs::is_regular_file(file, error))
            return file.string();
    }
    std::string only;
    for (fs::directory_iterator entry(resources, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() != kExtension)
            continue;
        if (!only.empty())
            return {};
        only = entry->path().string();
    }
    return only;
}

} // namespace quoddle::sdef
