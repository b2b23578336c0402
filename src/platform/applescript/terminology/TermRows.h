// SPDX-License-Identifier: MIT
// How the dictionaries that are compiled in are written down: short rows, one list for each kind of term. The C++ compiler merges and sorts
// them.
#pragma once

#include "platform/applescript/terminology/TermTable.h"

namespace quoddle::termrows {

struct ClassRow {
    std::string_view words;
    std::string_view plural; // empty when the class has no plural
    FourCharCode code;
    bool synonym = false;
};

enum class Holds : bool { Anything, TrueOrFalse };

struct PropertyRow {
    std::string_view words;
    FourCharCode code;
    Holds holds = Holds::Anything;
};

struct ConstantRow {
    std::string_view words;
    FourCharCode enumeration;
    FourCharCode value;
    bool synonym = false;
};

struct EventRow {
    std::string_view words;
    FourCharCode eventClass;
    FourCharCode eventID;
    EventTerm event;
};

/// Flags of replies and direct parameters, with the values that compiled scripts store.
constexpr std::uint32_t kRequired = 0;
constexpr std::uint32_t kAbsent = 0xFFFF8000; // the type is then `null`; with any other type the same bits mean optional
constexpr std::uint32_t kOptional = 0xFFFF8000;
constexpr std::uint32_t kList = 0x4000;
constexpr std::uint32_t kEnumerated = 0x2000;

template<std::size_t C, std::size_t P, std::size_t K, std::size_t E>
struct Rows {
    std::array<ClassRow, C> classes;
    std::array<PropertyRow, P> properties;
    std::array<ConstantRow, K> constants;
    std::array<EventRow, E> events;

    constexpr std::size_t plurals() const {
        return static_cast<std::size_t>(std::ranges::count_if(classes, [](const ClassRow& row) { return !row.plural.empty(); }));
    }
};

/// All rows as terms, sorted by words. N is the number of rows plus the number of plurals.
template<std::size_t N, class AnyRows>
consteval std::array<Term, N> merged(const AnyRows& rows) {
    std::array<Term, N> terms{};
    std::size_t n = 0;
    for (const ClassRow& row : rows.classes) {
        terms[n++] = {row.words, TermKind::Class, row.code, 0, nullptr, false, row.synonym};
        if (!row.plural.empty())
            terms[n++] = {row.plural, TermKind::Plural, row.code, 0, nullptr, false, row.synonym};
    }
    for (const PropertyRow& row : rows.properties)
        terms[n++] = {row.words, TermKind::Property, row.code, 0, nullptr, row.holds == Holds::TrueOrFalse, false};
    for (const ConstantRow& row : rows.constants)
        terms[n++] = {row.words, TermKind::Constant, row.value, row.enumeration, nullptr, false, row.synonym};
    for (const EventRow& row : rows.events)
        terms[n++] = {row.words, TermKind::Event, row.eventID, row.eventClass, &row.event, false, false};
    std::ranges::sort(terms, [](const Term& a, const Term& b) { return wordsLess(a.words, b.words); });
    return terms;
}

/// Indexes of terms in the order of kind, code and group, for finding the words of a code. Synonyms come after the words that are printed.
template<std::size_t N>
consteval std::array<std::uint16_t, N> indexByCode(const std::array<Term, N>& terms) {
    std::array<std::uint16_t, N> index{};
    for (std::size_t i = 0; i < N; ++i)
        index[i] = static_cast<std::uint16_t>(i);
    std::ranges::sort(index, [&](std::uint16_t a, std::uint16_t b) {
        const Term &x = terms[a], &y = terms[b];
        if (x.kind != y.kind)
            return x.kind < y.kind;
        if (x.code != y.code)
            return x.code < y.code;
        if (x.synonym != y.synonym)
            return y.synonym;
        return x.group != y.group ? x.group < y.group : a < b;
    });
    return index;
}

} // namespace quoddle::termrows
