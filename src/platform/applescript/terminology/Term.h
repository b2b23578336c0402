// SPDX-License-Identifier: MIT
// A term: the words by which a dictionary names a four-character code, and what kind of thing the code is.
//
// Terms are plain records so that the dictionaries that are compiled in cost nothing at start; an application's dictionary builds the same
// records at run time. They own nothing: the dictionary they come from does.
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

/// A labelled parameter of a command. Labels are matched before anything else while the command is read.
struct ParameterTerm {
    std::string_view words;
    FourCharCode code = 0;
    FourCharCode type = 0;
};

/// The parts of a command that compiled scripts store beside its codes, and its parameters.
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
    /// What it stands for; of an enumeration's constant the value, of an event its id.
    FourCharCode code = 0;
    /// The enumeration of a constant, the event class of an event; 0 for the rest.
    FourCharCode group = 0;
    /// Only of events.
    const EventTerm* event = nullptr;
    /// The property is true or false, so that `x is frontmost` asks for it.
    bool boolean = false;
    /// Understood, never printed.
    bool synonym = false;
    /// Where it stands in its dictionary: of a class and a property with the same words the later one is meant.
    std::uint16_t order = 0;
};

} // namespace quoddle
