// SPDX-License-Identifier: MIT
// Names and values: identifiers with bars where they need them, terms, raw codes where there is no word, literals.
#include "platform/applescript/image/Block.h"
#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/applescript/syntax/PrinterState.h"
#include "platform/applescript/syntax/SourceText.h"

#include "platform/base/DateText.h"
#include "platform/base/RealText.h"
#include "platform/base/Text.h"

namespace quoddle::syntax {

/// The bare code of a term; a term that a `use`d application or library defines is stored with its source.
const Object* Printer::withoutSource(const Object* code) {
    return code->isBlock(block::SourcedTerm) && !code->children.empty() ? code->children[0] : code;
}

void Printer::identifier(std::string_view key, std::string_view spelling) {
    bool barred = isReserved(keywordOf(key)) || mTerms.isTerm(key);
    put(Kind::Identifier, sourcetext::identifier(key, spelling, barred));
}

/// Prints the name of a variable or property, or a record's label.
void Printer::name(const Object* object) {
    object = withoutSource(object);
    if (object->kind == ObjectKind::Identifier)
        identifier(object->bytes, object->spelling);
    else if (object->kind == ObjectKind::Code)
        term(object, {TermKind::Property, TermKind::Class}, u"class");
    else
        expression(object);
}

void Printer::term(const Object* code, Terminology::Kinds kinds, std::u16string_view rawKind) {
    code = withoutSource(code);
    if (code->kind == ObjectKind::Identifier) {
        identifier(code->bytes, code->spelling);
        return;
    }
    if (const Term* found = code->kind == ObjectKind::Code ? mTerms.name(code->code(), kinds) : nullptr)
        put(Kind::Term, found->words);
    else
        put(Kind::Term, sourcetext::rawCode(rawKind, code->bytes.substr(0, 4)));
}

void Printer::className(const Object* code) {
    term(code, {TermKind::Class, TermKind::Property}, u"class");
}

bool Printer::hasPlural(const Object* code) const {
    code = withoutSource(code);
    return code->kind == ObjectKind::Code && mTerms.name(code->code(), {TermKind::Plural});
}

bool Printer::pluralName(const Object* code) {
    if (!hasPlural(code))
        return false;
    put(Kind::Term, mTerms.name(withoutSource(code)->code(), {TermKind::Plural})->words);
    return true;
}

void Printer::constant(const Object* code) {
    FourCharCode enumeration = code->code(0), value = code->code(1);
    if (const Term* found = mTerms.name(value, {TermKind::Constant}, enumeration))
        put(Kind::Term, found->words);
    else
        put(Kind::Term, sourcetext::rawCode(u"constant", code->bytes));
}

void Printer::value(const Object* object) {
    object = withoutSource(object);
    switch (object->kind) {
    case ObjectKind::Integer:
        put(Kind::Literal, sourcetext::integer(object->integer));
        return;
    case ObjectKind::Real:
        put(Kind::Literal, exactSourceOfReal(object->real));
        return;
    case ObjectKind::Boolean:
        put(Kind::Term, object->boolean ? u"true" : u"false");
        return;
    case ObjectKind::Text:
        put(Kind::Literal, sourcetext::quoted(object->text));
        return;
    case ObjectKind::Identifier:
        identifier(object->bytes, object->spelling);
        return;
    case ObjectKind::Code:
        if (object->isCode(CodeTag::Constant))
            constant(object);
        else
            className(object);
        return;
    case ObjectKind::List:
        put(Kind::Plain, u"{");
        items(object);
        put(Kind::Plain, u"}");
        return;
    case ObjectKind::Block:
        if (object->isBlock(block::OptionalParameterNode) && object->children.size() > 4) {
            expression(object->children[2]);
            put(Kind::Plain, u" : ");
            expression(object->children[4]);
        } else if (object->isBlock(block::Property) && object->children.size() == 2) {
            value(object->children[1]);
            keyword(" of ");
            value(object->children[0]);
        }
        return;
    case ObjectKind::Data:
        data(object);
        return;
    default:
        expression(object);
    }
}

/// Prints a Data object: an application by its name, a date as a date literal, other data raw.
void Printer::data(const Object* object) {
    if (object->tag == kApplicationTag) {
        put(Kind::Term, u"application ");
        put(Kind::Literal, sourcetext::quoted(applicationName(object->bytes)));
    } else if (object->bytes.starts_with("ldt ") && object->bytes.size() == 12) {
        std::uint64_t bits = 0;
        for (char c : object->bytes.substr(4))
            bits = bits << 8 | static_cast<unsigned char>(c);
        put(Kind::Term, u"date ");
        put(Kind::Literal, sourcetext::quoted(textOfDate(static_cast<std::int64_t>(bits))));
    } else {
        put(Kind::Literal, sourcetext::rawData(object->bytes));
    }
}

} // namespace quoddle::syntax
