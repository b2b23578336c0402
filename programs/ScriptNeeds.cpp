// SPDX-License-Identifier: MIT
#include "ScriptNeeds.h"

#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/applescript/compiler/Compiler.h"
#include "platform/applescript/component/ApplicationDictionaries.h"
#include "platform/applescript/component/ScriptLibraries.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Image.h"
#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/applescript/syntax/Printer.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "ShellPrograms.h"
#include "ShellWords.h"
#include "SourcePlace.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <unordered_set>

namespace quoddle::tool {

namespace {

using syntax::NodeKind;
using Kind = ScriptNeed::Kind;

bool is(const Object* node, NodeKind kind) {
    return node->isNode(syntax::tagOf(kind));
}

const Object* withoutLines(const Object* node) {
    while (is(node, NodeKind::Line))
        node = node->children[0];
    return node;
}

/// The text of a literal; empty for anything else.
std::string literalText(const Object* node) {
    node = withoutLines(node);
    const bool isText = is(node, NodeKind::Literal) && node->children[0]->kind == ObjectKind::Text;
    return isText ? utf8FromUTF16(node->children[0]->text) : "";
}

/// Which characters end a line: in a source that we print, those of the texts in it do not.
enum class LineEnds { All, LineFeeds };

/// The lines in which the units of a text stand.
class LineNumbers {
public:
    LineNumbers(std::u16string_view text, LineEnds ends) {
        for (std::size_t i = 0; i < text.size(); ++i)
            if (text[i] == u'\n' || (ends == LineEnds::All && text[i] == u'\r' && !text.substr(i + 1).starts_with(u'\n')))
                mEnds.push_back(i);
    }
    std::size_t at(std::size_t offset) const {
        return static_cast<std::size_t>(std::lower_bound(mEnds.begin(), mEnds.end(), offset) - mEnds.begin()) + 1;
    }

private:
    std::vector<std::size_t> mEnds;
};

/// Collects the needs, each once.
class Collection {
public:
    /// `line`: 0 when it is not known.
    void add(Kind kind, const std::string& name, std::size_t line, bool isIdentifier = false) {
        if (name.empty())
            return;
        const auto [place, isNew] = mPlaces.try_emplace({kind, isIdentifier, name}, mNeeds.size());
        if (isNew)
            mNeeds.push_back({kind, name, isIdentifier, {}});
        if (line > 0)
            mNeeds[place->second].lines.push_back(line);
    }

    std::vector<ScriptNeed> taken() {
        for (ScriptNeed& need : mNeeds) {
            std::ranges::sort(need.lines);
            need.lines.erase(std::unique(need.lines.begin(), need.lines.end()), need.lines.end());
        }
        std::ranges::stable_sort(mNeeds, {}, [](const ScriptNeed& need) { return need.lines.empty() ? 0 : need.lines.front(); });
        return std::move(mNeeds);
    }

private:
    std::vector<ScriptNeed> mNeeds;
    std::map<std::tuple<Kind, bool, std::string>, std::size_t> mPlaces;
};

class TreeWalk {
public:
    TreeWalk(const syntax::SourceMap& map, const LineNumbers& lines, Collection& found) : mMap(map), mLines(lines), mFound(found) {}

    /// `line`: that of the node around.
    void walk(const Object* node, std::size_t line) {
        if (node->kind == ObjectKind::Node)
            if (const auto range = mMap.find(node))
                line = mLines.at(range->start);
        look(node, line);
        const bool hasParts = node->kind == ObjectKind::Node || node->kind == ObjectKind::List || node->kind == ObjectKind::Record ||
                              node->kind == ObjectKind::Vector;
        if (hasParts && !is(node, NodeKind::Literal))
            for (const Object* part : node->children)
                walk(part, line);
    }

private:
    void look(const Object* node, std::size_t line) {
        if (is(node, NodeKind::Call))
            shellCommand(node, line);
        else if (is(node, NodeKind::UsingTerms))
            application(node->children[1], line);
        else if (is(node, NodeKind::Of))
            frameworkName(node, line);
        else if (is(node, NodeKind::Literal) || is(node, NodeKind::Element) || is(node, NodeKind::ElementByKey))
            thing(node, line);
    }

    void thing(const Object* node, std::size_t line) {
        if (application(node, line) || !is(node, NodeKind::Element))
            return;
        const FourCharCode elementClass = node->children[0]->code();
        if (elementClass == "frmk"_4cc)
            mFound.add(Kind::framework, literalText(node->children[1]), line);
        else if (elementClass == "scpt"_4cc)
            mFound.add(Kind::library, literalText(node->children[1]), line);
    }

    bool application(const Object* node, std::size_t line) {
        const auto application = syntax::applicationOf(node);
        if (application)
            mFound.add(Kind::application, utf8FromUTF16(application->text), line, application->isBundleIdentifier);
        return application.has_value();
    }

    static bool isCurrentApplication(const Object* node) {
        node = withoutLines(node);
        if (!is(node, NodeKind::Literal) && !is(node, NodeKind::Term))
            return false;
        const Object* code = node->children[0];
        return code->isCode(CodeTag::Constant) ? code->code(1) == "cura"_4cc : code->code() == "cura"_4cc;
    }

    /// "current application's NAME", and a call of such a name.
    void frameworkName(const Object* node, std::size_t line) {
        if (!isCurrentApplication(node->children[1]))
            return;
        const Object* part = withoutLines(node->children[0]);
        if (is(part, NodeKind::Element) && part->children[0]->code() == "pcls"_4cc)
            mFound.add(Kind::frameworkName, literalText(part->children[1]), line);
        else if ((is(part, NodeKind::Variable) || is(part, NodeKind::Call)) && part->children[0]->kind == ObjectKind::Identifier)
            mFound.add(Kind::frameworkName, std::string(part->children[0]->spelledName()), line);
    }

    void shellCommand(const Object* call, std::size_t line) {
        const Object* event = call->children[0];
        if (!event->isCode(CodeTag::Event) || event->code(0) != "syso"_4cc || event->code(1) != "exec"_4cc)
            return;
        std::string text;
        addText(call->children[1], text);
        for (const std::string& command : commandsIn(text))
            mFound.add(Kind::command, command, line);
    }

    /// Adds what is known of a text that the script puts together.
    static void addText(const Object* node, std::string& text) {
        node = withoutLines(node);
        if (is(node, NodeKind::Concatenate)) {
            addText(node->children[0], text);
            addText(node->children[1], text);
        } else if (is(node, NodeKind::Literal) && node->children[0]->kind == ObjectKind::Text) {
            text += utf8FromUTF16(node->children[0]->text);
        } else {
            text += kUnknownPart;
        }
    }

    const syntax::SourceMap& mMap;
    const LineNumbers& mLines;
    Collection& mFound;
};

ScriptNeeds needsOfTree(const Object* tree, const syntax::SourceMap& map, const LineNumbers& lines) {
    Collection found;
    if (!tree->isNil())
        TreeWalk(map, lines, found).walk(tree, 0);
    return {.needs = found.taken(), .note = {}, .notePlace = {}};
}

/// The needs of a script that was saved without its tree, as far as its literals name them: the applications.
ScriptNeeds needsOfObjects(const Object* root) {
    Collection found;
    std::unordered_set<const Object*> known = {root};
    for (std::vector<const Object*> open = {root}; !open.empty();) {
        const Object* object = open.back();
        open.pop_back();
        if (object->kind == ObjectKind::Data && object->tag == syntax::kApplicationTag)
            found.add(Kind::application, utf8FromUTF16(syntax::applicationName(object->bytes)), 0);
        for (const Object* part : object->children)
            if (known.insert(part).second)
                open.push_back(part);
    }
    return {.needs = found.taken(), .note = "The script was saved run-only: only its applications can be told.", .notePlace = {}};
}

Result<ScriptNeeds, std::string> needsOfImage(const std::string& bytes) {
    const auto image = readImage(bytes);
    if (!image)
        return Failure{"The compiled script is damaged (" + std::to_string(image.error()) + ")."};
    const Object* root = image->root;
    if (root->isNil() || root->children.size() < block::kScriptChildren)
        return ScriptNeeds{};
    const Object* tree = root->children[block::kScriptTree];
    if (tree->isNil())
        return needsOfObjects(root);
    if (!syntax::isWellFormed(tree))
        return Failure{std::string("The source in the compiled script is damaged.")};
    syntax::SourceMap map;
    syntax::PrintOptions options;
    options.applicationTerms = component::termsOfApplication;
    options.sourceMap = &map;
    const std::u16string source = syntax::printTree(tree, options);
    return needsOfTree(tree, map, LineNumbers(source, LineEnds::LineFeeds));
}

std::string noteOn(std::u16string_view message) {
    return "The source does not compile: " + utf8FromUTF16(message);
}

Result<ScriptNeeds, std::string> needsOfSource(const std::u16string& source) {
    ObjectStore store;
    syntax::SourceMap map;
    syntax::ParseOptions options;
    options.applicationTerms = component::termsOfApplication;
    options.sourceMap = &map;
    const auto tree = syntax::parse(source, store, options);
    const LineNumbers lines(source, LineEnds::All);
    if (tree) {
        ScriptNeeds needs = needsOfTree(*tree, map, lines);
        if (const auto compiled = compiler::compileScript(*tree, store); !compiled) {
            needs.note = noteOn(compiled.error().message);
            needs.notePlace = placeOf(source, map.find(compiled.error().node).value_or(syntax::SourceRange()).start);
        }
        return needs;
    }
    const syntax::ParseError& error = tree.error();
    Collection found;
    if (error.withoutDictionary)
        found.add(Kind::application, utf8FromUTF16(error.withoutDictionary->text), lines.at(error.start),
                  error.withoutDictionary->isBundleIdentifier);
    return ScriptNeeds{found.taken(), noteOn(error.message) + " So not all can be told.", placeOf(source, error.start)};
}

} // namespace

std::string wordFor(Kind kind) {
    static constexpr const char* kWords[] = {"application", "framework", "framework name", "script library", "command"};
    return kWords[static_cast<std::size_t>(kind)];
}

Result<ScriptNeeds, std::string> needsOf(const std::string& bytes) {
    return looksLikeImage(bytes) ? needsOfImage(bytes) : needsOfSource(utf16FromSourceBytes(bytes));
}

bool isHere(const ScriptNeed& need, const std::string& bundle) {
    switch (need.kind) {
    case Kind::application:
        if (!need.isIdentifier && !bundle.empty() && std::filesystem::path(bundle).stem() == need.name)
            return true; // the applet itself
        return bool(AEFindApplication(AEDesc(need.isIdentifier ? "bund"_4cc : "aprl"_4cc, need.name)));
    case Kind::library:
        return component::fileOfLibrary(need.name, bundle).has_value();
    case Kind::command:
        return isCommandHere(need.name);
    case Kind::framework:
    case Kind::frameworkName:
        break;
    }
    return false;
}

} // namespace quoddle::tool
