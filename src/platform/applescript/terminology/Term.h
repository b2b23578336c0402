// SPDX-License-Identifier: MIT
// A term: the words by which a dictionary names a four-character code, and what kind of thing the code is. Terms come from a TermSource,
// which is one dictionary: one that is compiled in or an application's.
//
// Decision: terms are plain records, so that the dictionaries that are compiled in cost nothing at start; an application's dictionary
// builds the same records at run time. A term owns nothing: its dictionary owns the words.
#pragma once

#include "platform/base/FourCharCode.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace quoddle {

enum class TermKind : std::uint8_t {
    Class,    // "text item": code
    Plural,   // "text items": code of the class
    Property, // "length": code
    Constant, // "case": enumeration, value
    Event,    // "display dialog": event class, event id
};

/// A labelled parameter of a command. While a command is read its labels are matched before any other words.
struct ParameterTerm {
    std::string_view words;
    FourCharCode code = 0;
    FourCharCode type = 0;
};

/// The parts of a command, beside its codes, that compiled scripts store, and its parameters.
struct EventTerm {
    FourCharCode replyType = 0;
    std::uint32_t replyFlags = 0;
    std::uint32_t directFlags = 0;
    FourCharCode directType = 0;
    std::span<const ParameterTerm> parameters;
};

struct Term {
    /// As printed; parts are separated by single blanks. Compared without regard to case.
    std::string_view words;
    TermKind kind = TermKind::Class;
    /// The code that the words stand for: a constant's value, an event's ID.
    FourCharCode code = 0;
    /// The enumeration of a constant, the event class of an event; 0 for the rest.
    FourCharCode group = 0;
    /// Null unless the term is an event.
    const EventTerm* event = nullptr;
    /// Of a property whose value is true or false: `x is frontmost` then asks for it.
    bool boolean = false;
    /// The parser understands a synonym, the printer never uses it.
    bool synonym = false;
    /// Position in the dictionary. Of a class and a property with the same words the later one is meant.
    std::uint16_t order = 0;
};

class TermSource {
public:
    virtual ~TermSource() = default;

    /// All terms, sorted by words. Valid as long as the source.
    virtual std::span<const Term> terms() const = 0;

    /// Every term whose first word is `word` (lower case). Valid as long as the source.
    virtual std::span<const Term> startingWith(std::string_view word) const = 0;

    /// The term that names a code when printing; nullptr when there is none. `group` counts for constants and events only; a constant asked
    /// for with group 0 may be of any enumeration.
    virtual const Term* find(TermKind kind, FourCharCode code, FourCharCode group = 0) const = 0;
};

const TermSource& languageTerms();
const TermSource& standardAdditionsTerms();

} // namespace quoddle
