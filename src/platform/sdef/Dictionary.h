// SPDX-License-Identifier: MIT
// A scripting definition (.sdef) describes what scripts can tell an application: its classes with properties and elements, its commands,
// enumerations and types, as plain values.
//
// Decision: definitions stand in the order of the file, with what is included in its place, because the order decides between definitions
// that share a word. What definitions mean for scripts (which words, which codes) is decided elsewhere; nothing is merged here: an
// extension of a class stays a definition of its own.
#pragma once

#include "platform/base/FourCharCode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quoddle::sdef {

/// Names a class, a record type, a value type, an enumeration or one of the types that every dictionary knows ("text", "specifier").
struct Type {
    std::string name;
    bool isList = false;
};

/// Another word for a definition, another code, or both.
struct Synonym {
    std::string name;            // empty: only another code
    FourCharCode eventClass = 0; // of a command
    FourCharCode code = 0;       // 0: only another word
    bool hidden = false;
};

struct Named {
    std::string name;
    bool hidden = false;
    std::vector<Synonym> synonyms;
};

enum class Access : std::uint8_t { ReadWrite, Read, Write };

struct Property : Named {
    FourCharCode code = 0;
    std::vector<Type> types; // alternatives
    Access access = Access::ReadWrite;
    /// Part of the record that `properties` answers.
    bool inProperties = true;
    /// Stands for the object itself where a value is asked for.
    bool isContents = false;
};

struct Element {
    std::string type;
    Access access = Access::ReadWrite;
    bool hidden = false;
    /// "index", "name", "id", "range", "relative", "test"; empty: all that make sense.
    std::vector<std::string> keyForms;
};

struct Class : Named {
    FourCharCode code = 0; // 0 for an extension
    std::string plural;    // empty: none is written
    std::string inherits;
    /// Adds to the class of this name, which stands here or in the language.
    bool isExtension = false;
    std::vector<Property> properties;
    std::vector<Element> elements;
    std::vector<std::string> respondsTo;
};

struct Parameter : Named {
    FourCharCode code = 0;
    std::vector<Type> types; // alternatives
    bool isOptional = false;
    /// The command only reads what the parameter names.
    bool isReadOnly = false;
    /// The flags that compiled scripts store for it, where they are not those that follow from the rest.
    std::optional<std::uint32_t> storedFlags = {};
};

struct Command : Named {
    FourCharCode eventClass = 0;
    FourCharCode eventID = 0;
    bool isEvent = false; // sent by the application, handled by scripts
    std::optional<Parameter> direct;
    std::vector<Parameter> parameters;
    std::vector<Type> result; // alternatives; empty: none
    std::optional<std::uint32_t> storedResultFlags = {};
};

struct Enumerator : Named {
    FourCharCode code = 0;
};

struct Enumeration : Named {
    FourCharCode code = 0;
    std::vector<Enumerator> enumerators;
};

struct RecordType : Named {
    FourCharCode code = 0;
    std::string plural; // empty: none is written
    std::vector<Property> properties;
};

struct ValueType : Named {
    FourCharCode code = 0;
    std::string plural; // empty: none is written
};

using Definition = std::variant<Class, Command, Enumeration, RecordType, ValueType>;

struct Suite {
    std::string name;
    bool hidden = false;
    std::vector<Definition> definitions;
};

struct Dictionary {
    std::string title;
    std::vector<Suite> suites;
    /// Absolute paths of all files that were read for it, its own first.
    std::vector<std::string> files;
};

} // namespace quoddle::sdef
