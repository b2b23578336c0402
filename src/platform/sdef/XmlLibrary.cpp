// SPDX-License-Identifier: MIT
#include "platform/sdef/XmlLibrary.h"

#include <dlfcn.h>

namespace quoddle::sdef {

namespace {

/// The binary interface that belongs to the headers.
constexpr const char* kFileName = LIBXML_VERSION < 21400 ? "libxml2.so.2" : "libxml2.so.16";

const XmlLibrary* load() {
    void* file = ::dlopen(kFileName, RTLD_LAZY | RTLD_LOCAL);
    if (!file)
        return nullptr;
    static XmlLibrary sLibrary;
    bool complete = true;
#define QUODDLE_XML_LOAD(name)                                                                                                             \
    sLibrary.name = reinterpret_cast<decltype(&::name)>(::dlsym(file, #name));                                                             \
    complete = complete && sLibrary.name;
    QUODDLE_XML_FUNCTIONS(QUODDLE_XML_LOAD)
#undef QUODDLE_XML_LOAD
    if (!complete)
        return nullptr;
    sLibrary.xmlInitParser();
    return &sLibrary;
}

} // namespace

const XmlLibrary* XmlLibrary::shared() {
    static const XmlLibrary* sLibrary = load();
    return sLibrary;
}

} // namespace quoddle::sdef
