// SPDX-License-Identifier: MIT
// The parser's internals. Each part of the grammar has a source file: operators, references, primaries, commands, statements, blocks,
// definitions.
//
// Decision: after an error the parser stands at the end of the script and every function returns quickly with a nil object, so that callers
// need not check for errors.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/applescript/syntax/Lexer.h"
#include "platform/applescript/syntax/OperatorTable.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/applescript/terminology/Terminology.h"

#include <set>
#include <span>
#include <vector>

namespace quoddle::syntax {

class Parser {
public:
    Parser(std::u16string_view source, ObjectStore& store, const ParseOptions& options);

    Object* script();
    const ParseError& error() const { return mError; }

private:
    // --- tokens (Parser.cpp)
    const Token& peek(std::size_t ahead = 0) const { return mTokens[std::min(mAt + ahead, mTokens.size() - 1)]; }
    const Token& advance();
    void skip(std::size_t tokens) {
        for (; tokens > 0; --tokens)
            advance();
    }
    bool at(Keyword keyword, std::size_t ahead = 0) const { return peek(ahead).keyword == keyword; }
    bool at(Symbol symbol, std::size_t ahead = 0) const { return peek(ahead).symbol == symbol; }
    bool accept(Keyword keyword);
    bool accept(Symbol symbol);
    void expect(Keyword keyword);
    void expect(Symbol symbol);
    /// Whether a certain word that is not a keyword stands ahead: times, seconds, id.
    bool atWord(std::string_view key, std::size_t ahead = 0) const;
    bool atLineEnd(std::size_t ahead = 0) const;
    /// The next words from `ahead` on, as many as a term may have.
    std::span<const std::string_view> wordsAhead(std::size_t ahead = 0) const;
    TermMatch matchTerm(Terminology::Kinds kinds, std::size_t ahead = 0) const;

    // --- errors (ParseErrors.cpp)
    Object* fail(OSStatus number, std::u16string message, const Token& token);
    Object* fail(OSStatus number, std::u16string message, SourceRange range);
    /// Fails with the message "Expected … but found …" about the next token.
    Object* expected(std::u16string_view what);
    /// Fails because the script is nested more deeply, or a chain is longer, than the readers of the tree can follow; `bound` says which.
    Object* tooComplex(std::u16string_view bound);
    bool failed() const { return mError.number != noErr; }
    std::u16string describe(std::size_t ahead) const;
    bool isValueToken(const Token& token) const;

    // --- nodes (Parser.cpp)
    Object* node(NodeKind kind, std::span<Object* const> children, std::uint16_t flags, std::size_t firstToken);
    Object* node(NodeKind kind, std::initializer_list<Object*> children, std::uint16_t flags, std::size_t firstToken) {
        return node(kind, std::span(children.begin(), children.size()), flags, firstToken);
    }
    /// Wraps an expression in a Line whose flags keep how it was written.
    Object* wrap(Object* expression, std::uint16_t how, std::size_t firstToken) {
        return node(NodeKind::Line, {expression, nil(), nil()}, how, firstToken);
    }
    Object* literal(Object* value, std::size_t firstToken) { return node(NodeKind::Literal, {value}, 0, firstToken); }
    Object* list(const std::vector<Object*>& items) { return mStore.list(items); }
    Object* nil() { return mStore.nil(); }
    Object* emptyList() { return mStore.list({}); }
    /// A Record of labels and values, or an empty list when there are none.
    Object* labels(const std::vector<Object*>& keysAndValues);
    Object* identifier(const Word& word);
    Object* codeOf(const Term& term);
    Object* eventCode(FourCharCode eventClass, FourCharCode eventID, const EventTerm* event);
    static bool is(const Object* object, NodeKind kind) { return object->isNode(tagOf(kind)); }

    // --- operators (ParseOperators.cpp)
    Object* expression(Level minimum = Level::Or);
    Object* operand();
    Object* binary(Object* left, const OperatorRow& row, std::size_t firstToken);
    Object* typeName();

    // --- references (ParseReferences.cpp)
    Object* reference();
    Object* unfiltered();
    Object* contained(Object* part, std::size_t firstToken);
    static bool standsAlone(const Object* part);
    static bool isClassOfConstant(const Object* part, const Object* container);
    Object* commandBehind(Object* made, std::size_t firstToken);
    Object* containers(Object* made, std::size_t firstToken);
    Object* possessives(Object* made, std::size_t firstToken);
    Object* filtered(Object* reference, std::size_t firstToken);
    bool atContainer() const;
    /// Whether the token `ahead` can begin an operand. Labels of the commands being read cannot.
    bool startsOperand(std::size_t ahead = 0) const;

    // --- primaries (ParsePrimaries.cpp)
    enum class Place : std::uint8_t { Value, Part, Index, Type };
    Object* owned(Place place);
    Object* primary(Place place);
    Object* primaryCore(Place place);
    /// Wraps an operand to keep the line break behind it, unless an operand follows and keeps the break.
    Object* breakAfter(Object* operand);
    /// Whether a line break stands before the next operand, which has to keep it.
    bool takeBreak();
    Object* wordPrimary(Place place);
    Object* keywordPrimary(Place place, bool& handled);
    Object* termPrimary(const TermMatch& match, Place place);
    Object* parenthesized();
    Object* braces();
    Object* brackets();
    Object* recordAfterKey(std::size_t firstToken);
    /// The label in front of a colon: an identifier or a code; nullptr when there is none.
    Object* recordKey();
    Object* rawCode(Place place);
    Object* rawClass(FourCharCode code, bool maybeClass, Place place);
    Object* rawData(std::u16string_view text);
    std::vector<Object*> itemsUntil(Symbol close);

    // --- elements (ParseElements.cpp)
    Object* element(Object* classCode, TermKind kind, std::size_t firstToken);
    Object* indexed(Object* classCode, std::size_t firstToken);
    Object* ordinal(std::size_t firstToken);
    Object* pickedClass();
    Object* index();
    Object* rangeBound();
    /// The words before, after, behind, in front of, in back of.
    struct Relation {
        NodeKind kind;
        std::uint16_t flags;
        std::size_t tokens;
    };
    std::optional<Relation> relationAt(std::size_t ahead) const;
    /// Parses `before x`, or `word before x` when there is a class.
    Object* insertion(const Relation& relation, Object* classCode, std::size_t firstToken);
    Object* applicationNamed(std::size_t firstToken);
    Object* dateNamed(std::size_t firstToken);
    bool startsIndex() const;
    bool startsKey() const;

    // --- commands and calls (ParseCommands.cpp)
    Object* command(Object* event, const EventTerm* term, std::size_t firstToken);
    Object* commandLabels(const EventTerm* term);
    bool commandLabel(const EventTerm* term, std::vector<Object*>& pairs);
    bool switches(const EventTerm* term, std::vector<Object*>& pairs);
    bool given(std::vector<Object*>& pairs);
    Object* givenLabel();
    void addLabel(std::vector<Object*>& pairs, Object* key, Object* value, std::size_t firstToken);
    const ParameterTerm* labelAt(const EventTerm* term, std::size_t ahead, std::size_t& words) const;
    bool atActiveLabel(std::size_t ahead = 0) const;
    Object* call(const Word& name, Place place, std::size_t firstToken);
    Object* interleaved(std::size_t firstToken);
    /// The spelling here of a part of a call's name.
    std::u16string partSpelling(const Token& token) const;
    bool atUserLabel() const;
    /// The code of a preposition that labels a parameter of a user's handler; 0 when none stands here.
    FourCharCode preposition(std::size_t& tokens) const;
    Object* userLabels();

    // --- statements (ParseStatements.cpp)
    Object* statement();
    Object* keywordStatement(bool& handled);
    Object* simpleStatement(bool& handled);
    Object* expressionStatement();
    Object* setStatement(NodeKind kind);
    Object* errorStatement();
    Object* declaration(NodeKind kind);
    Object* useStatement();
    Object* continueStatement();
    Object* name();

    // --- blocks (ParseBlocks.cpp)
    enum class Body : std::uint8_t { Statements, ScriptObject, Script };
    std::vector<Object*> lines(Body body);
    Object* block(Body body = Body::Statements);
    Object* asBody(const std::vector<Object*>& lines);
    void line(std::vector<Object*>& lines, Body body);
    Object* commentLine(Object* statement, const Token& comment, bool onHeader);
    bool atBlockEnd() const;
    void endOf(Keyword keyword, Keyword other = Keyword::None);
    Object* inlineStatement();
    Object* ifStatement();
    Object* tellStatement();
    Object* repeatStatement();
    Object* tryStatement();
    Object* errorHeading();
    Object* consideringStatement();
    std::vector<Object*> considerations();
    Object* withStatement();
    Object* usingStatement();
    bool pushTarget(const Object* target);
    void popTarget();
    const TermSource* termsOf(const ApplicationName& application);

    // --- definitions (ParseDefinitions.cpp)
    Object* handler();
    Object* handlerHeading();
    Object* eventHeading(Object* event, const EventTerm* term, std::size_t firstToken);
    Object* userHeading(std::size_t firstToken);
    Object* interleavedHeading(std::size_t firstToken);
    Object* parameter();
    Object* pattern();
    /// Takes a word of the language as the name of a handler's variable; nullptr when none stands here.
    Object* wordAsVariable();
    /// Whether the next token is a word of the language that is a variable here. Before `of` the word means the property, unless the
    /// variable is an index.
    bool atWordVariable(bool isIndex = false) const;
    /// Whether the next token is a word of the language that names a handler, followed by arguments.
    bool atWordHandler() const;
    bool hasSeveralInParentheses(std::size_t ahead) const;
    void findHandlerNames();
    Object* scriptObject();
    Object* property();
    void checkDuplicates(const std::vector<Object*>& lines);
    void checkDeclarations(const Object* body);

    /// Inside brackets: labels of the commands outside do not count, and calls may have labels.
    struct Brackets {
        explicit Brackets(Parser& owner)
            : parser(owner), active(std::exchange(owner.mActive, {})), labels(std::exchange(owner.mUserLabels, true)) {}
        ~Brackets() {
            parser.mActive = std::move(active);
            parser.mUserLabels = labels;
        }
        Brackets(const Brackets&) = delete;
        Brackets& operator=(const Brackets&) = delete;
        Parser& parser;
        std::vector<const EventTerm*> active;
        bool labels;
    };
    struct ScopedFlag {
        ScopedFlag(bool& variable, bool value) : flag(variable), old(std::exchange(variable, value)) {}
        ~ScopedFlag() { flag = old; }
        ScopedFlag(const ScopedFlag&) = delete;
        ScopedFlag& operator=(const ScopedFlag&) = delete;
        bool& flag;
        bool old;
    };
    /// Counts the nesting of the parser's functions, and makes the parser fail when it is too deep.
    struct Depth {
        explicit Depth(Parser& owner);
        ~Depth() { --parser.mDepth; }
        Depth(const Depth&) = delete;
        Depth& operator=(const Depth&) = delete;
        Parser& parser;
    };

    std::u16string_view mSource;
    ObjectStore& mStore;
    const ParseOptions& mOptions;
    SourceMap mOwnMap;
    SourceMap& mMap; // the caller's map, or mOwnMap
    std::unique_ptr<TokenList> mList;
    std::vector<Token>& mTokens;
    std::size_t mAt = 0;
    Terminology mTerms;
    std::vector<ApplicationName> mTargets; // whose dictionaries were entered, the innermost last
    /// The last one without a dictionary that was left, and the token where. What stops the parser there stands in a one-line `tell`.
    std::pair<std::size_t, ApplicationName> mLeftTarget;
    /// Whether the script says `use scripting additions`.
    bool mUsesAdditions;
    ParseError mError;
    std::unordered_map<std::string_view, Object*> mIdentifiers;
    mutable std::vector<std::string_view> mWords;
    /// Commands that may still get labelled parameters, innermost last.
    std::vector<const EventTerm*> mActive;
    /// Whether a name may be followed by the labels of a call (`f of x given y:1`).
    bool mUserLabels = true;
    /// Whether applications are stored as text and not as data (`use application`).
    bool mPlainApplications = false;
    /// Whether constants go before properties and classes (the direct parameter of `path to`).
    bool mConstantsFirst = false;
    /// Whether a call may be written foo:a bar:b without a target in front: at the start of a statement.
    bool mTargeted = false;
    /// A continuation mark stood before a token that begins no operand; the next operand keeps it.
    bool mPendingBreak = false;
    /// Whether handlers, properties and scripts may be defined here.
    bool mAtScriptLevel = true;
    /// Words of the language that are variables in the handler being read.
    std::set<std::string_view> mWordVariables;
    /// Words of the language that the script uses as names of handlers. Before a parenthesis such a word is a call.
    std::set<std::string_view> mWordHandlers;
    std::size_t mDepth = 0;
    std::size_t mBlocks = 0; // that are being read
};

} // namespace quoddle::syntax
