// SPDX-License-Identifier: MIT
// The printer's internals: a text that grows token by token, each with its kind, and one function for each part of the grammar.
#pragma once

#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/OperatorTable.h"
#include "platform/applescript/syntax/Printer.h"
#include "platform/applescript/terminology/Terminology.h"

#include <span>

namespace quoddle::syntax {

class Printer {
public:
    Printer(const Object* tree, const PrintOptions& options);

    std::u16string print(const Object* tree);

private:
    using Kind = PrintedKind;

    // --- text (Printer.cpp)
    void put(Kind kind, std::u16string_view text);
    void put(Kind kind, std::string_view utf8);
    void keyword(std::string_view word) { put(Kind::Keyword, word); }
    /// Puts a blank, unless a line has just begun.
    void blank();
    void newline();
    /// Puts the mark that continues a line, and the indentation of the next line.
    void lineBreak();
    /// Tells where a node was printed: from `start` to the end of the text as yet.
    void notePlace(const Object* node, std::size_t start);

    // --- words (PrintWords.cpp)
    void name(const Object* identifierOrCode);
    void identifier(std::string_view key, std::string_view spelling);
    void term(const Object* code, Terminology::Kinds kinds, std::u16string_view rawKind);
    void className(const Object* code);
    /// False when the class has no plural form; the caller then writes `every`.
    bool pluralName(const Object* code);
    bool hasPlural(const Object* code) const;
    void value(const Object* literal);
    void data(const Object* object);
    void constant(const Object* code);
    static const Object* withoutSource(const Object* code);

    // --- statements (PrintStatements.cpp)
    void line(const Object* line);
    void lines(const Object* body);
    void body(const Object* body, const char* end);
    void comment(const Object* line);
    void statement(const Object* node);
    void statementBody(const Object* node);
    void simpleStatement(const Object* node);
    void assignment(const Object* node);
    void scriptObject(const Object* node);
    void oneLine(const Object* node);
    void target(const Object* node);
    void names(const Object* list);
    void handler(const Object* node);
    void heading(const Object* call);
    void parameter(const Object* node);
    void handlerName(const Object* call, bool atEnd);
    void errorLabels(const Object* node);
    void useStatement(const Object* node);

    // --- blocks (PrintBlocks.cpp)
    void ifStatement(const Object* node);
    void tellStatement(const Object* node);
    void repeatStatement(const Object* node);
    void tryStatement(const Object* node);
    void consideringStatement(const Object* node);
    void considerations(const Object* list);
    void withStatement(const Object* node);
    void usingStatement(const Object* node);
    bool push(const Object* target);

    // --- expressions (PrintExpressions.cpp)
    /// Puts parentheses around an expression that binds less tightly than `minimum`.
    void expression(const Object* node, Level minimum = Level::Or);
    void expressionBody(const Object* node, Level minimum);
    /// Prints an expression that text follows, so that a command in it needs parentheses.
    void headExpression(const Object* node, Level minimum = Level::Or);
    /// Prints an expression between brackets or at the end of a statement.
    void closedExpression(const Object* node, Level minimum = Level::Or);
    void wrapper(const Object* line, Level minimum);
    void operators(const Object* node);
    void operatorWords(const OperatorRow& row);
    bool asking(const Object* node);
    void items(const Object* list);
    void fields(const Object* record);
    void collection(const Object* node);
    void prefixed(const Object* node);
    Level levelOf(const Object* node) const;

    // --- references (PrintReferences.cpp)
    void of(const Object* node);
    void part(const Object* node, bool targeted);
    void container(const Object* node);
    void owner(const Object* node);
    void element(const Object* node);
    void index(const Object* node);
    void range(const Object* node);
    void ordinal(const Object* node);
    void relation(const Object* part, const Object* container);

    // --- calls (PrintCalls.cpp)
    void call(const Object* node, bool targeted = false);
    void command(const Object* node);
    void commandLabels(const Object* labels, const EventTerm* term);
    void label(const Object* key, const Object* value, const EventTerm* term, bool last);
    void arguments(const Object* list);
    bool interleaved(const Object* call, bool heading);
    void userLabels(const Object* labels);
    /// Whether an expression shows, outside brackets, an operator or a container word that is also a label of the command.
    bool exposes(const Object* node, const EventTerm* term) const;
    static std::vector<std::string_view> segments(const Object* identifier);

    /// More than the depth of any tree from the parser. Deeper parts are left out.
    static constexpr std::size_t kMaxDepth = 800;

    const PrintOptions& mOptions;
    Terminology mTerms;
    bool mUsesAdditions;
    std::u16string mText;
    std::size_t mIndent = 0;
    std::size_t mDepth = 0;
    /// Whether nothing follows that a command would take for its parameter, so that a command needs no parentheses here.
    bool mTail = true;
};

} // namespace quoddle::syntax
