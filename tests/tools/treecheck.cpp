// SPDX-License-Identifier: MIT
// Compares the parser and the printer with scripts that other compilers made.
//
//   treecheck FOLDER          every compiled script below FOLDER: read it, print its tree, parse the print, compare the trees;
//                             every source: parse it; every source beside a compiled script of the same name: compare the trees
//   treecheck --tree FILE     prints the tree of a compiled script or of a source
//   treecheck --print FILE    prints the tree as source
//
// The program prints counts and, for each file that fails, the first difference. It is a tool for a person and not a test, because the
// scripts that it is run on do not belong to us.
#include "platform/applescript/component/ApplicationDictionaries.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Image.h"
#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/applescript/syntax/Printer.h"
#include "platform/applescript/syntax/TreeText.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>

using namespace quoddle;
using namespace quoddle::syntax;
namespace fs = std::filesystem;

namespace {

std::string bytesOfFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

ParseOptions parseOptions() {
    ParseOptions options;
    options.applicationTerms = component::termsOfApplication;
    return options;
}

PrintOptions printOptions() {
    PrintOptions options;
    options.applicationTerms = component::termsOfApplication;
    return options;
}

struct Comparison {
    /// Whether differences between compilers are allowed: terms that one of them stores as a property and another as a class are then
    /// equal.
    bool drift = false;
    std::string difference;

    bool fail(const Object* a, const Object* b, const char* what) {
        if (difference.empty())
            difference = std::string(what) + ": " + treeText(a).substr(0, 300) + "\n      got " + treeText(b).substr(0, 300);
        return false;
    }

    static const Object* stripped(const Object* o) { return o; }

    bool equal(const Object* a, const Object* b, int depth = 0) {
        if (depth > 5000)
            return fail(a, b, "depth");
        if (drift && a->isBlock(block::SourcedTerm))
            a = a->children[0];
        // Whether `properties` is a property depends on the application's dictionary.
        if (drift && a->isNode(tagOf(NodeKind::Term)) && a->children[0]->code() == "pALL"_4cc && b->isNode(tagOf(NodeKind::Every)))
            return true;
        // Old compilers made a block of a single line.
        if (drift && a->isNode(tagOf(NodeKind::Block)) && a->children[0]->children.size() == 1 && !b->isNode(tagOf(NodeKind::Block))) {
            if (b->isNode(tagOf(NodeKind::Line)) && !a->children[0]->children[0]->isNode(tagOf(NodeKind::Line)))
                b = b->children[0];
            return equal(a->children[0]->children[0], b, depth + 1);
        }
        if (drift && a->kind == ObjectKind::Node && b->kind == ObjectKind::Node && a->tag != b->tag) {
            auto term = [](const Object* o) { return o->isNode(tagOf(NodeKind::Literal)) || o->isNode(tagOf(NodeKind::Term)); };
            if (term(a) && term(b) && a->children[0]->isCode(CodeTag::Class) && b->children[0]->isCode(CodeTag::Class) &&
                a->children[0]->bytes == b->children[0]->bytes)
                return true;
        }
        if (a->kind != b->kind)
            return fail(a, b, "kind");
        switch (a->kind) {
        case ObjectKind::Nil:
            return true;
        case ObjectKind::Boolean:
            return a->boolean == b->boolean || fail(a, b, "boolean");
        case ObjectKind::Integer:
            return a->integer == b->integer || fail(a, b, "integer");
        case ObjectKind::Real:
            return a->real == b->real || fail(a, b, "real");
        case ObjectKind::Code:
            return (a->tag == b->tag && a->bytes.substr(0, 8) == b->bytes.substr(0, 8)) || fail(a, b, "code");
        case ObjectKind::Identifier:
            return (a->bytes == b->bytes && a->spelledName() == b->spelledName()) || fail(a, b, "identifier");
        case ObjectKind::Text:
            return a->text == b->text || fail(a, b, "text");
        case ObjectKind::Data:
            if (a->tag == kApplicationTag && b->tag == kApplicationTag)
                return applicationName(a->bytes) == applicationName(b->bytes) || fail(a, b, "application");
            return (a->tag == b->tag && a->bytes == b->bytes) || fail(a, b, "data");
        case ObjectKind::Raw:
            return a->bytes == b->bytes || fail(a, b, "raw");
        default:
            break;
        }
        // A class without a word has no plural to print.
        bool plural = drift && a->isNode(tagOf(NodeKind::Every)) && b->isNode(tagOf(NodeKind::Every));
        if (a->kind == ObjectKind::Node && (a->tag != b->tag || (a->flags != b->flags && !plural)))
            return fail(a, b, a->tag != b->tag ? "node" : "flags");
        if (a->kind == ObjectKind::Block && a->tag != b->tag)
            return fail(a, b, "block");
        if (a->isNode(tagOf(NodeKind::Line)))
            return equal(a->children[0], b->children[0], depth + 1) && comments(a, b);
        if (a->children.size() != b->children.size())
            return fail(a, b, "count");
        for (std::size_t i = 0; i < a->children.size(); ++i) {
            if (!equal(a->children[i], b->children[i], depth + 1))
                return false;
        }
        return true;
    }

    /// Compares comments. Old scripts keep a comment in one form, new ones in two.
    bool comments(const Object* a, const Object* b) {
        auto text = [](const Object* line) {
            const Object* last = line->children[line->children.size() - 1];
            return last->isNil() ? line->children[1]->text : last->text;
        };
        return text(a) == text(b) || fail(a, b, "comment");
    }
};

/// Counts of trees that were printed and parsed again.
struct Round {
    int unparsed = 0, exact = 0, drift = 0, different = 0;
};

struct Counts {
    int compiled = 0, runOnly = 0, unread = 0;
    Round trees, sourceTrees; // from compiled scripts and from sources
    int sources = 0, parsed = 0;
    int pairs = 0, pairParsed = 0, pairExact = 0, pairDrift = 0;
    int statements = 0, statementsFound = 0; // of the pairs of a compiled script and its source
};

std::string errorText(const ParseError& error, std::u16string_view source) {
    std::size_t line = 1;
    for (std::size_t i = 0; i < error.start && i < source.size(); ++i)
        line += source[i] == '\n' || (source[i] == '\r' && !(i + 1 < source.size() && source[i + 1] == '\n'));
    std::size_t from = error.start;
    while (from > 0 && source[from - 1] != '\n' && source[from - 1] != '\r')
        --from;
    std::u16string here(source.substr(from, 120));
    here = here.substr(0, here.find_first_of(u"\r\n"));
    return std::to_string(error.number) + " " + utf8FromUTF16(error.message) + " line " + std::to_string(line) + " at " +
           std::to_string(error.start - from) + ": " + utf8FromUTF16(here);
}

/// The text of a source without the line end that decompiling a script into a file adds.
std::u16string sourceOf(const std::string& bytes) {
    std::u16string source = utf16FromSourceBytes(bytes);
    if (source.ends_with(u'\n'))
        source.pop_back();
    if (source.ends_with(u'\r'))
        source.pop_back();
    return source;
}

const Object* treeOf(const Object* root) {
    return root->kind == ObjectKind::Block && root->children.size() > 1 ? root->children[1] : root;
}

void roundTrip(const fs::path& path, const Object* tree, Round& counts, bool verbose) {
    std::u16string printed = printTree(tree, printOptions());
    ObjectStore store;
    auto again = parse(printed, store, parseOptions());
    if (!again) {
        ++counts.unparsed;
        if (verbose)
            std::cout << "PRINT " << path.string() << "\n      " << errorText(again.error(), printed) << '\n';
        return;
    }
    Comparison exact, drift;
    drift.drift = true;
    if (exact.equal(tree, *again))
        ++counts.exact;
    else if (drift.equal(tree, *again))
        ++counts.drift;
    else if (++counts.different; verbose)
        std::cout << "ROUND " << path.string() << "\n      " << drift.difference << '\n';
}

/// Counts every statement of a tree that does not contain a block.
void gatherStatements(const Object* node, std::map<std::string, int>& found, int depth = 0) {
    if (depth > 200)
        return;
    if (node->isNode(tagOf(NodeKind::Block))) {
        for (const Object* line : node->children[0]->children) {
            const Object* statement = line->isNode(tagOf(NodeKind::Line)) ? line->children[0] : line;
            bool simple = statement->kind == ObjectKind::Node;
            for (const Object* child : statement->children)
                simple = simple && !child->isNode(tagOf(NodeKind::Block));
            if (simple)
                ++found[treeText(statement)];
        }
    }
    for (const Object* child : node->children)
        gatherStatements(child, found, depth + 1);
}

void countStatements(const Object* theirs, const Object* ours, Counts& counts, bool verbose) {
    std::map<std::string, int> a, b;
    gatherStatements(theirs, a);
    gatherStatements(ours, b);
    for (const auto& [text, n] : a) {
        counts.statements += n;
        auto other = b.find(text);
        counts.statementsFound += other == b.end() ? 0 : std::min(n, other->second);
        if (verbose && other == b.end())
            std::cout << "MISSING " << text << '\n';
    }
}

void check(const fs::path& path, Counts& counts, bool verbose) {
    std::string bytes = bytesOfFile(path);
    if (looksLikeImage(bytes)) {
        ++counts.compiled;
        auto image = readImage(bytes);
        if (!image) {
            ++counts.unread;
            return;
        }
        const Object* tree = treeOf(image->root);
        if (tree->isNil()) {
            ++counts.runOnly;
            return;
        }
        roundTrip(path, tree, counts.trees, verbose);
        fs::path sourcePath = path;
        sourcePath.replace_extension(".applescript");
        if (!fs::exists(sourcePath))
            return;
        ++counts.pairs;
        std::u16string source = sourceOf(bytesOfFile(sourcePath));
        ObjectStore store;
        auto parsed = parse(source, store, parseOptions());
        if (!parsed) {
            if (verbose)
                std::cout << "PAIRERR " << sourcePath.string() << "\n      " << errorText(parsed.error(), source) << '\n';
            return;
        }
        ++counts.pairParsed;
        countStatements(tree, *parsed, counts, verbose);
        Comparison exact, drift;
        drift.drift = true;
        if (exact.equal(tree, *parsed))
            ++counts.pairExact;
        else if (drift.equal(tree, *parsed))
            ++counts.pairDrift;
        else if (verbose)
            std::cout << "PAIR " << sourcePath.string() << "\n      " << drift.difference << '\n';
    } else if (path.extension() == ".applescript" || path.extension() == ".scpt") {
        ++counts.sources;
        std::u16string source = sourceOf(bytes);
        ObjectStore store;
        auto parsed = parse(source, store, parseOptions());
        if (parsed) {
            ++counts.parsed;
            roundTrip(path, *parsed, counts.sourceTrees, verbose);
        } else if (verbose)
            std::cout << "SOURCE " << path.string() << "\n      " << errorText(parsed.error(), source) << '\n';
    }
}

int showFile(const std::string& option, const fs::path& path) {
    std::string bytes = bytesOfFile(path);
    auto store = std::make_shared<ObjectStore>();
    const Object* tree = nullptr;
    if (looksLikeImage(bytes)) {
        auto image = readImage(bytes);
        if (!image)
            return 1;
        store = image->store;
        tree = treeOf(image->root);
    } else {
        std::u16string source = sourceOf(bytes);
        auto parsed = parse(source, *store, parseOptions());
        if (!parsed) {
            std::cout << errorText(parsed.error(), source) << '\n';
            return 1;
        }
        tree = *parsed;
    }
    std::cout << (option == "--tree" ? treeText(tree) : utf8FromUTF16(printTree(tree, printOptions()))) << '\n';
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && (argv[1] == std::string("--tree") || argv[1] == std::string("--print")))
        return showFile(argv[1], argv[2]);
    bool verbose = argc > 2 && argv[2] == std::string("-v");
    if (argc < 2) {
        std::cerr << "treecheck FOLDER [-v] | --tree FILE | --print FILE\n";
        return 2;
    }
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(argv[1])) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    Counts c;
    for (const fs::path& file : files)
        check(file, c, verbose);
    std::cout << "compiled " << c.compiled << ", unreadable " << c.unread << ", run-only " << c.runOnly << '\n';
    auto round = [](const char* what, const Round& r) {
        std::cout << what << ", printed and parsed again: exact " << r.exact << ", but for drift " << r.drift << ", different "
                  << r.different << ", not parsed " << r.unparsed << '\n';
    };
    round("compiled trees", c.trees);
    std::cout << "sources " << c.sources << ", parsed " << c.parsed << '\n';
    round("source trees", c.sourceTrees);
    std::cout << "pairs " << c.pairs << ", source parsed " << c.pairParsed << ": exact " << c.pairExact << ", but for drift " << c.pairDrift
              << "; statements " << c.statements << ", found in the source's tree " << c.statementsFound << '\n';
    return 0;
}
