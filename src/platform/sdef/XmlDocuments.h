// SPDX-License-Identifier: MIT
// The XML files that make up one dictionary: reading them within bounds, and finding what an xi:include means.
//
// Decision: inclusions are resolved here and not by the library, so that every file is opened by us, inside the folders that are allowed,
// and every selection has a bound on the work that it may cause. A file that declares entities is refused at the first one.
#pragma once

#include "platform/sdef/XmlLibrary.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle::sdef {

class XmlDocuments {
public:
    /// `sharedFolder` holds dictionaries that any other may include; empty: there is none.
    explicit XmlDocuments(std::string sharedFolder) : mSharedFolder(std::move(sharedFolder)) {}
    XmlDocuments(const XmlDocuments&) = delete;
    XmlDocuments& operator=(const XmlDocuments&) = delete;
    ~XmlDocuments();

    /// The root element of the file; null with the error set. The first file says which folder is its own.
    const xmlNode* open(const std::string& path);

    /// Calls visit(node) for every element that an xi:include stands for, or for the contents of its fallback when there is no such file.
    /// False with the error set.
    bool include(const xmlNode* inclusion, const std::function<bool(const xmlNode*)>& visit);
    static bool isInclusion(const xmlNode* node);

    static std::string_view nameOf(const xmlNode* node);
    /// Empty when the element does not have the attribute.
    static std::string attribute(const xmlNode* node, std::string_view name);
    /// As above, of our own namespace.
    static std::string ownAttribute(const xmlNode* node, std::string_view name);

    /// Sets the error unless there is one; answers false.
    bool fail(const xmlNode* node, std::string_view message);
    bool fail(const std::string& path, long line, std::string_view message);
    const std::string& error() const { return mError; }
    std::vector<std::string> paths() const;

private:
    struct Document {
        std::string path;
        xmlDocPtr tree = nullptr;
    };
    const Document* read(const std::string& path);
    const Document* documentOf(const xmlNode* node) const;
    std::string resolved(const std::string& reference) const;
    bool isAllowed(const std::string& path) const;
    bool select(const xmlNode* inclusion, const Document& document, const std::string& pointer,
                const std::function<bool(const xmlNode*)>& visit);

    const XmlLibrary* mLibrary = nullptr;
    std::string mSharedFolder;
    std::string mOwnFolder;
    std::vector<std::unique_ptr<Document>> mDocuments;
    std::size_t mBytes = 0;
    int mInclusions = 0, mDepth = 0;
    std::string mError;
};

} // namespace quoddle::sdef
