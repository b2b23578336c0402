// SPDX-License-Identifier: MIT
// The XML library, loaded when the first dictionary is read.
//
// Decision: linking to it would cost every program that runs a script a third of its start, and hardly any script needs it. The headers of
// the library give the types; only functions are used, none of its variables.
#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

namespace quoddle::sdef {

struct XmlLibrary {
#define QUODDLE_XML_FUNCTIONS(X)                                                                                                           \
    X(xmlInitParser)                                                                                                                       \
    X(xmlNewParserCtxt)                                                                                                                    \
    X(xmlFreeParserCtxt)                                                                                                                   \
    X(xmlCtxtReadMemory)                                                                                                                   \
    X(xmlStopParser)                                                                                                                       \
    X(xmlFreeDoc)                                                                                                                          \
    X(xmlDocGetRootElement)                                                                                                                \
    X(xmlGetLineNo)                                                                                                                        \
    X(xmlXPathNewContext)                                                                                                                  \
    X(xmlXPathFreeContext)                                                                                                                 \
    X(xmlXPathEval)                                                                                                                        \
    X(xmlXPathFreeObject)
#define QUODDLE_XML_MEMBER(name) decltype(&::name) name = nullptr;
    QUODDLE_XML_FUNCTIONS(QUODDLE_XML_MEMBER)
#undef QUODDLE_XML_MEMBER

    /// Null when the library is not installed. Any thread.
    static const XmlLibrary* shared();
};

} // namespace quoddle::sdef
