// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Display.h"

#include "platform/applescript/image/Opcode.h"
#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/syntax/Keyword.h"
#include "platform/applescript/syntax/SourceText.h"
#include "platform/applescript/terminology/Terminology.h"
#include "platform/base/DateText.h"
#include "platform/base/RealText.h"
#include "platform/base/Text.h"

#include <unicode/utf16.h>

namespace quoddle::language {

using namespace machine;
namespace sourcetext = syntax::sourcetext;

namespace {

constexpr std::size_t kMaximumDepth = 60;
constexpr std::size_t kMaximumLength = std::size_t(1) << 26; // large, because the output of a script may be data for another program
constexpr std::size_t kMaximumLengthInMessages = 1000;

const Terminology& terms() {
    static const Terminology kTerms;
    return kTerms;
}

std::u16string wordsOf(const Term& term) {
    return utf16FromUTF8(term.words);
}

std::u16string className(const Terminology& terms, FourCharCode code) {
    const Term* term = terms.name(code, {TermKind::Class, TermKind::Property, TermKind::Constant});
    return term ? wordsOf(*term) : sourcetext::rawCode(u"class", bytesOf(code));
}

/// The plural of a class, such as "characters", or the singular when it has none.
std::u16string pluralName(const Terminology& terms, FourCharCode code) {
    const Term* term = terms.name(code, {TermKind::Plural});
    return term ? wordsOf(*term) : className(terms, code);
}

/// The name of a property, whose key is a symbol or a code.
std::u16string propertyName(const Terminology& terms, Value key) {
    if (const Symbol* symbol = as<Symbol>(key)) {
        const bool barred = syntax::isReserved(syntax::keywordOf(symbol->key)) || terms.isTerm(symbol->key);
        return sourcetext::identifier(symbol->key, symbol->spelling, barred);
    }
    const Term* term = terms.name(key.asCode(), {TermKind::Property, TermKind::Class});
    return term ? wordsOf(*term) : sourcetext::rawCode(u"class", bytesOf(key.asCode()));
}

std::u16string wordsFor(const Terminology& terms, Value value) {
    if (const EventName* event = as<EventName>(value)) {
        const Term* term = terms.event(event->eventClass, event->eventID);
        return term ? wordsOf(*term) : sourcetext::rawCode(u"event", event->bytes.substr(0, 8));
    }
    const FourCharCode code = value.asCode();
    if (value.isConstant()) {
        const Term* term = terms.name(code, {TermKind::Constant});
        return term ? wordsOf(*term) : sourcetext::rawCode(u"constant", "****" + bytesOf(code));
    }
    if (value.isMissing())
        return u"missing value";
    return value.isCode() ? className(terms, code) : std::u16string();
}

const Application* applicationOf(const Specifier* specifier) {
    for (std::size_t depth = 0; specifier && depth < kMaximumDepth; ++depth) {
        if (const Application* application = as<Application>(specifier->container))
            return application;
        specifier = as<Specifier>(specifier->container);
    }
    return nullptr;
}

/// The operators with two sides that the conditions of a filter have, as the instructions that make them.
constexpr std::pair<Opcode, std::u16string_view> kTestWords[] = {
    {Opcode::TestEqual, u"="},
    {Opcode::TestNotEqual, u"≠"},
    {Opcode::TestGreater, u">"},
    {Opcode::TestGreaterOrEqual, u"≥"},
    {Opcode::TestLess, u"<"},
    {Opcode::TestLessOrEqual, u"≤"},
    {Opcode::TestStartsWith, u"starts with"},
    {Opcode::TestEndsWith, u"ends with"},
    {Opcode::TestContains, u"contains"},
    {Opcode::TestAnd, u"and"},
    {Opcode::TestOr, u"or"},
};

class Displayer {
public:
    /// `forPeople` shows texts and names without quotes, lists and records without braces.
    Displayer(Machine& machine, bool forPeople, std::size_t maximumLength = kMaximumLength)
        : mMachine(machine), mForPeople(forPeople), mMaximumLength(maximumLength) {}

    void value(Value value);
    std::u16string take() { return std::move(mOut); }

private:
    void object(const HeapObject* object);
    void list(const List* list);
    void record(const Record* record);
    void test(const Specifier* test);
    void specifier(const Specifier* specifier);
    void chain(const Specifier* specifier);
    void element(Value elementClass, Value index);
    bool showsContainer(const Specifier* specifier) const;
    /// The name of a thing, as it stands behind the thing's class.
    std::u16string named(const std::u16string& name) const { return mForPeople ? name : sourcetext::quoted(name); }

    Machine& mMachine;
    const bool mForPeople;
    const std::size_t mMaximumLength;
    std::u16string mOut;
    std::size_t mDepth = 0;
    const Terminology* mTerms = &terms();
};

void Displayer::value(Value value) {
    if (mDepth > kMaximumDepth || mOut.size() > mMaximumLength) {
        mOut += u"…";
        return;
    }
    ++mDepth;
    if (value.isInteger())
        mOut += sourcetext::integer(value.asInteger());
    else if (value.isReal())
        mOut += sourceOfReal(value.asReal());
    else if (value.isBoolean())
        mOut += value.isTrue() ? u"true" : u"false";
    else if (value.isCode() || value.isConstant())
        mOut += wordsFor(*mTerms, value);
    else if (value.isObject())
        object(value.asObject());
    --mDepth;
}

void Displayer::list(const List* list) {
    const bool linked = list->flags & List::kLinked;
    if (!mForPeople)
        mOut += linked ? u'[' : u'{';
    for (std::uint32_t i = 0; i < list->count && mOut.size() <= mMaximumLength; ++i) {
        if (i > 0)
            mOut += u", ";
        value(list->items[i]);
    }
    if (!mForPeople)
        mOut += linked ? u']' : u'}';
}

void Displayer::record(const Record* record) {
    if (!mForPeople)
        mOut += u'{';
    bool first = true;
    for (const Record::Entry& entry : record->entries) {
        if (!first)
            mOut += u", ";
        first = false;
        mOut += propertyName(*mTerms, entry.key) + u":";
        value(entry.value);
    }
    if (!mForPeople)
        mOut += u'}';
}

void Displayer::element(Value elementClass, Value index) {
    if (index == Value::integer(-1)) {
        mOut += u"last " + className(*mTerms, elementClass.asCode());
        return;
    }
    mOut += className(*mTerms, elementClass.asCode()) + u" ";
    value(index);
}

/// The examined object of a filter is not shown as a container. The running script is one only of its variables.
bool Displayer::showsContainer(const Specifier* specifier) const {
    if (specifier->container.isUndefined())
        return false;
    if (const Specifier* outer = as<Specifier>(specifier->container); outer && outer->form == Specifier::Form::Examined)
        return false;
    const Script* script = as<Script>(specifier->container);
    return !script || is<Symbol>(script->name) || specifier->flags & Specifier::kIsReference;
}

void Displayer::test(const Specifier* test) {
    const auto operation = static_cast<Opcode>(test->a.isInteger() ? test->a.asInteger() : 0);
    if (operation == Opcode::TestNot) {
        mOut += u"not ";
        value(test->container);
        return;
    }
    value(test->container);
    const auto word = std::find_if(std::begin(kTestWords), std::end(kTestWords), [&](const auto& row) { return row.first == operation; });
    mOut += word == std::end(kTestWords) ? u" … " : u" " + std::u16string(word->second) + u" ";
    value(test->b);
}

/// Shows a reference to an application's object in the application's own words.
void Displayer::specifier(const Specifier* specifier) {
    const Application* application = mMachine.host().terms && mTerms == &terms() ? applicationOf(specifier) : nullptr;
    const TermSource* source = application ? mMachine.host().terms(*application) : nullptr;
    if (!source)
        return chain(specifier);
    Terminology words;
    words.push(source);
    mTerms = &words;
    chain(specifier);
    mTerms = &terms();
}

void Displayer::chain(const Specifier* specifier) {
    bool hasContainer = true;
    switch (specifier->form) {
    case Specifier::Form::Property:
        if (is<Symbol>(specifier->a) || specifier->a.isCode())
            mOut += propertyName(*mTerms, specifier->a);
        else
            value(specifier->a);
        break;
    case Specifier::Form::Every:
        mOut += u"every " + className(*mTerms, specifier->a.asCode());
        break;
    case Specifier::Form::Some:
        mOut += u"some " + className(*mTerms, specifier->a.asCode());
        break;
    case Specifier::Form::Element:
        element(specifier->a, specifier->b);
        break;
    case Specifier::Form::ElementByKey:
        mOut += className(*mTerms, specifier->a.asCode()) + (specifier->c.asCode() == "ID  "_4cc ? u" id " : u" ");
        value(specifier->b);
        break;
    case Specifier::Form::Filter:
        value(specifier->container);
        mOut += u" whose ";
        value(specifier->a);
        hasContainer = false;
        break;
    case Specifier::Form::Range:
        mOut += pluralName(*mTerms, specifier->a.asCode()) + u" ";
        value(specifier->b);
        mOut += u" thru ";
        value(specifier->c);
        break;
    case Specifier::Form::Before:
    case Specifier::Form::After:
        if (specifier->a.asCode() != kInsertionLocation)
            mOut += className(*mTerms, specifier->a.asCode()) + u" ";
        mOut += specifier->form == Specifier::Form::Before ? u"before " : u"after ";
        value(specifier->container);
        hasContainer = false;
        break;
    case Specifier::Form::Beginning:
        mOut += u"beginning";
        break;
    case Specifier::Form::End:
        mOut += u"end";
        break;
    case Specifier::Form::Middle:
        mOut += u"middle " + className(*mTerms, specifier->a.asCode());
        break;
    case Specifier::Form::Examined:
        mOut += u"it";
        hasContainer = false;
        break;
    case Specifier::Form::Test:
        test(specifier);
        hasContainer = false;
        break;
    }
    if (!hasContainer || !showsContainer(specifier))
        return;
    mOut += u" of ";
    value(specifier->container);
}

void Displayer::object(const HeapObject* object) {
    switch (object->type) {
    case HeapType::Symbol:
        mOut += propertyName(*mTerms, Value::object(object));
        break;
    case HeapType::EventName:
        mOut += wordsFor(*mTerms, Value::object(object));
        break;
    case HeapType::Text:
        if (mForPeople)
            mOut += static_cast<const Text*>(object)->view();
        else
            mOut += sourcetext::quoted(static_cast<const Text*>(object)->view());
        break;
    case HeapType::List:
        list(static_cast<const List*>(object));
        break;
    case HeapType::Record:
        record(static_cast<const Record*>(object));
        break;
    case HeapType::Date:
        mOut += u"date " + named(textOfDate(static_cast<const Date*>(object)->seconds));
        break;
    case HeapType::Data: {
        const auto* data = static_cast<const Data*>(object);
        if (isFile(Value::object(object)))
            mOut += (data->dataType == "alis"_4cc ? u"alias " : u"file ") + named(hfsPath(*data));
        else if (const auto amount = amountOf(Value::object(object)))
            mOut += className(*mTerms, data->dataType) + u" " + sourceOfReal(*amount);
        else
            mOut += sourcetext::rawData(bytesOf(data->dataType) + data->bytes);
        break;
    }
    case HeapType::Application: {
        const auto* application = static_cast<const Application*>(object);
        if (!application->identifier.empty())
            mOut += u"application id " + named(application->identifier);
        else
            mOut += application->name.empty() ? u"current application" : u"application " + named(application->name);
        break;
    }
    case HeapType::Specifier:
        specifier(static_cast<const Specifier*>(object));
        break;
    case HeapType::Handler: {
        const auto* handler = static_cast<const Handler*>(object);
        mOut += u"«handler ";
        if (!handler->source->children.empty())
            value(mMachine.literal(handler->source->children[0], handler->store));
        mOut += u"»";
        break;
    }
    case HeapType::Script: {
        const Value name = static_cast<const Script*>(object)->name;
        mOut += u"«script";
        if (const Symbol* symbol = as<Symbol>(name))
            mOut += u" " + utf16FromUTF8(symbol->spelling);
        else if (object == mMachine.appleScript())
            mOut += u" AppleScript";
        mOut += u"»";
        break;
    }
    case HeapType::Environment:
    case HeapType::Stored:
        mOut += u"«data»";
        break;
    }
}

} // namespace

std::u16string display(Machine& machine, Value value) {
    Displayer displayer(machine, false);
    displayer.value(value);
    return displayer.take();
}

std::u16string inMessage(Machine& machine, Value value) {
    Displayer displayer(machine, false, kMaximumLengthInMessages);
    displayer.value(value);
    std::u16string text = displayer.take();
    if (text.size() > kMaximumLengthInMessages) {
        text.resize(kMaximumLengthInMessages);
        if (U16_IS_LEAD(text.back()))
            text.pop_back();
        text += u'…';
    }
    return text;
}

std::u16string humanDisplay(Machine& machine, Value value) {
    Displayer displayer(machine, true);
    displayer.value(value);
    return displayer.take();
}

bool isKnownProperty(FourCharCode code) {
    return terms().name(code, {TermKind::Property});
}

std::u16string termFor(Value value) {
    return wordsFor(terms(), value);
}

} // namespace quoddle::language
