// SPDX-License-Identifier: MIT
#include "platform/sdef/XmlDocuments.h"

#include "platform/base/File.h"

#include <filesystem>

namespace quoddle::sdef {

namespace {

namespace fs = std::filesystem;

// Generous for what people write: the largest dictionaries known have half a megabyte, in two files.
constexpr std::size_t kMaximumBytes = std::size_t(4) << 20; // of all files of a dictionary
constexpr std::size_t kMaximumDocuments = 16;
constexpr int kMaximumInclusions = 50;
constexpr int kMaximumDepth = 8;
constexpr unsigned long kMaximumSelectionSteps = 200'000;

constexpr std::string_view kInclusion = "http://www.w3.org/2001/XInclude";
constexpr std::string_view kInclusionDraft = "http://www.w3.org/2003/XInclude";
constexpr std::string_view kOwnNamespace = "urn:quoddle:dictionary";

std::string_view viewOf(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : std::string_view();
}

std::string valueOf(const xmlAttr* attribute) {
    std::string value;
    for (const xmlNode* part = attribute->children; part; part = part->next)
        value += viewOf(part->content);
    return value;
}

/// A parser that calls this stops; whoever started it sees that the document is not well formed.
void refuseEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    parser->_private = parser;
    XmlLibrary::shared()->xmlStopParser(parser);
}

std::string canonical(const std::string& path) {
    std::error_code error;
    const fs::path found = fs::weakly_canonical(path, error);
    return error ? path : found.string();
}

bool isInside(const std::string& path, const std::string& folder) {
    return !folder.empty() && path.size() > folder.size() && path.starts_with(folder) &&
           (folder.back() == '/' || path[folder.size()] == '/');
}

std::string withoutLineEnd(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text;
}

} // namespace

XmlDocuments::~XmlDocuments() {
    for (const auto& document : mDocuments) {
        if (document->tree)
            mLibrary->xmlFreeDoc(document->tree);
    }
}

bool XmlDocuments::fail(const std::string& path, long line, std::string_view message) {
    if (mError.empty())
        mError = path + ":" + (line > 0 ? std::to_string(line) + ": " : " ") + std::string(message);
    return false;
}

bool XmlDocuments::fail(const xmlNode* node, std::string_view message) {
    const Document* document = documentOf(node);
    return fail(document ? document->path : std::string(), mLibrary->xmlGetLineNo(node), message);
}

std::vector<std::string> XmlDocuments::paths() const {
    std::vector<std::string> paths;
    for (const auto& document : mDocuments)
        paths.push_back(document->path);
    return paths;
}

const xmlNode* XmlDocuments::open(const std::string& path) {
    mLibrary = XmlLibrary::shared();
    if (!mLibrary) {
        fail(path, 0, "the XML library libxml2 is not installed");
        return nullptr;
    }
    mOwnFolder = fs::path(canonical(path)).parent_path().string();
    mSharedFolder = mSharedFolder.empty() ? std::string() : canonical(mSharedFolder);
    const Document* document = read(canonical(path));
    return document ? mLibrary->xmlDocGetRootElement(document->tree) : nullptr;
}

const XmlDocuments::Document* XmlDocuments::read(const std::string& path) {
    for (const auto& known : mDocuments) {
        if (known->path == path)
            return known.get();
    }
    if (mDocuments.size() >= kMaximumDocuments) {
        fail(path, 0, "the dictionary consists of too many files");
        return nullptr;
    }
    const auto bytes = readFile(path, kMaximumBytes - mBytes);
    if (!bytes) {
        fail(path, 0, bytes.error() == -108 ? "the dictionary is too large" : "the file cannot be read");
        return nullptr;
    }
    mBytes += bytes->size();
    xmlParserCtxtPtr parser = mLibrary->xmlNewParserCtxt();
    if (!parser)
        return nullptr;
    parser->sax->entityDecl = refuseEntity;
    const int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOCDATA | XML_PARSE_COMPACT;
    xmlDocPtr tree = mLibrary->xmlCtxtReadMemory(parser, bytes->data(), static_cast<int>(bytes->size()), nullptr, nullptr, options);
    if (parser->_private)
        fail(path, 0, "a dictionary cannot declare entities");
    else if (!tree)
        fail(path, parser->lastError.line, withoutLineEnd(parser->lastError.message ? parser->lastError.message : "this is no XML"));
    const bool refused = parser->_private || !tree;
    mLibrary->xmlFreeParserCtxt(parser);
    if (refused) {
        if (tree)
            mLibrary->xmlFreeDoc(tree);
        return nullptr;
    }
    return mDocuments.emplace_back(std::make_unique<Document>(Document{path, tree})).get();
}

const XmlDocuments::Document* XmlDocuments::documentOf(const xmlNode* node) const {
    for (const auto& document : mDocuments) {
        if (document->tree == node->doc)
            return document.get();
    }
    return nullptr;
}

std::string_view XmlDocuments::nameOf(const xmlNode* node) {
    return viewOf(node->name);
}

std::string XmlDocuments::attribute(const xmlNode* node, std::string_view name) {
    for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
        if (!attribute->ns && viewOf(attribute->name) == name)
            return valueOf(attribute);
    }
    return {};
}

std::string XmlDocuments::ownAttribute(const xmlNode* node, std::string_view name) {
    for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
        if (attribute->ns && viewOf(attribute->ns->href) == kOwnNamespace && viewOf(attribute->name) == name)
            return valueOf(attribute);
    }
    return {};
}

bool XmlDocuments::isInclusion(const xmlNode* node) {
    const std::string_view space = node->ns ? viewOf(node->ns->href) : std::string_view();
    return (space == kInclusion || space == kInclusionDraft) && nameOf(node) == "include";
}

bool XmlDocuments::isAllowed(const std::string& path) const {
    return isInside(path, mOwnFolder) || isInside(path, mSharedFolder);
}

/// The absolute path that a reference means, without links; empty when it leads out of the folders that are allowed. References to the
/// folder in which a Mac keeps shared dictionaries mean ours.
std::string XmlDocuments::resolved(const std::string& reference) const {
    constexpr std::string_view kMacFolder = "/System/Library/ScriptingDefinitions/";
    const std::size_t mac = reference.find(kMacFolder);
    std::string path;
    if (mac != std::string::npos)
        path = canonical(mSharedFolder + "/" + reference.substr(mac + kMacFolder.size()));
    else if (reference.find(':') == std::string::npos && !reference.starts_with('/'))
        path = canonical(mOwnFolder + "/" + reference);
    std::error_code error;
    if (mac == std::string::npos && !fs::exists(path, error) && reference.find('/') == std::string::npos)
        path = canonical(mSharedFolder + "/" + reference);
    return isAllowed(path) ? path : std::string();
}

bool XmlDocuments::include(const xmlNode* inclusion, const std::function<bool(const xmlNode*)>& visit) {
    if (++mInclusions > kMaximumInclusions)
        return fail(inclusion, "there are too many inclusions");
    if (mDepth >= kMaximumDepth)
        return fail(inclusion, "inclusions are nested too deeply");
    const std::string reference = attribute(inclusion, "href");
    if (const std::string kind = attribute(inclusion, "parse"); !kind.empty() && kind != "xml")
        return fail(inclusion, "only XML can be included");
    const std::string path = reference.empty() ? documentOf(inclusion)->path : resolved(reference);
    if (path.empty())
        return fail(inclusion, "“" + reference + "” is outside of the folders from which a dictionary may include");
    std::error_code error;
    bool done = true;
    ++mDepth;
    if (!fs::exists(path, error)) {
        const xmlNode* fallback = inclusion->children;
        while (fallback && nameOf(fallback) != "fallback")
            fallback = fallback->next;
        if (!fallback)
            done = fail(inclusion, "there is no “" + reference + "” to include");
        for (const xmlNode* node = fallback ? fallback->children : nullptr; done && node; node = node->next)
            done = node->type != XML_ELEMENT_NODE || visit(node);
    } else if (const Document* document = read(path)) {
        const std::string pointer = attribute(inclusion, "xpointer");
        done = pointer.empty() ? visit(mLibrary->xmlDocGetRootElement(document->tree)) : select(inclusion, *document, pointer, visit);
    } else {
        done = false;
    }
    --mDepth;
    return done;
}

bool XmlDocuments::select(const xmlNode* inclusion, const Document& document, const std::string& pointer,
                          const std::function<bool(const xmlNode*)>& visit) {
    constexpr std::string_view kScheme = "xpointer(";
    if (!pointer.starts_with(kScheme) || !pointer.ends_with(')'))
        return fail(inclusion, "the xpointer “" + pointer + "” is not understood");
    const std::string path = pointer.substr(kScheme.size(), pointer.size() - kScheme.size() - 1);
    xmlXPathContextPtr context = mLibrary->xmlXPathNewContext(document.tree);
    if (!context)
        return fail(inclusion, "there is no memory");
    context->opLimit = kMaximumSelectionSteps;
    context->error = [](void*, auto*) {};
    xmlXPathObjectPtr found = mLibrary->xmlXPathEval(reinterpret_cast<const xmlChar*>(path.c_str()), context);
    std::vector<const xmlNode*> nodes;
    if (found && found->type == XPATH_NODESET && found->nodesetval)
        nodes.assign(found->nodesetval->nodeTab, found->nodesetval->nodeTab + found->nodesetval->nodeNr);
    const bool understood = found && found->type == XPATH_NODESET;
    // Nodes of namespaces belong to the set that was found, so the kinds are looked at before that goes.
    std::erase_if(nodes, [](const xmlNode* node) { return node->type != XML_ELEMENT_NODE; });
    if (found)
        mLibrary->xmlXPathFreeObject(found);
    mLibrary->xmlXPathFreeContext(context);
    if (!understood)
        return fail(inclusion, "the xpointer “" + pointer + "” is not understood, or takes too long");
    for (const xmlNode* node : nodes) {
        if (!visit(node))
            return false;
    }
    return true;
}

} // namespace quoddle::sdef
