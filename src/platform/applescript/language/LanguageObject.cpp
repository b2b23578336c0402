// SPDX-License-Identifier: MIT
#include "platform/applescript/language/References.h"

#include "platform/applescript/language/Coercion.h"
#include "platform/base/Text.h"

#include <numbers>

namespace quoddle::language {

using namespace machine;

namespace {

constexpr FourCharCode kDelimiters = "txdl"_4cc;

} // namespace

Script* makeLanguageObject(Machine& machine) {
    Heap& heap = machine.heap();
    Script* object = heap.make<Script>();
    const auto text = [&](std::u16string_view characters) { return Value::object(heap.text(characters)); };
    List* delimiters = heap.list(1);
    (void)heap.append(delimiters, text(u""));
    const struct {
        FourCharCode code;
        Value value;
    } kProperties[] = {
        {"ret "_4cc, text(u"\r")},
        {"lnfd"_4cc, text(u"\n")},
        {"tab "_4cc, text(u"\t")},
        {"spac"_4cc, text(u" ")},
        {"quot"_4cc, text(u"\"")},
        {"pi  "_4cc, Value::real(std::numbers::pi)},
        {"min "_4cc, Value::integer(60)},
        {"hour"_4cc, Value::integer(3600)},
        {"days"_4cc, Value::integer(86400)},
        {"week"_4cc, Value::integer(604800)},
        {"ascr"_4cc, Value::object(object)},
        {"pnam"_4cc, text(u"AppleScript")},
        {"vers"_4cc, text(utf16FromUTF8(kVersion))},
        {kDelimiters, Value::object(delimiters)},
        {"ppgt"_4cc, Value::integer(0)},
        {"ppgc"_4cc, Value::integer(0)},
        {"ppgd"_4cc, text(u"")},
        {"ppga"_4cc, text(u"")},
        {"prln"_4cc, Value::integer(0)},
        {"prdp"_4cc, Value::integer(0)},
    };
    for (const auto& property : kProperties)
        object->set(Value::code(property.code), property.value);
    return object;
}

std::vector<std::u16string> textItemDelimiters(Machine& machine) {
    std::vector<std::u16string> delimiters;
    const auto add = [&](Value value) {
        // References and numbers may be delimiters, too; a value that has no text separates nothing.
        if (const Value known = follow(machine, value); known.isFailure())
            machine.error() = ScriptError();
        else if (const Text* text = textOf(machine, known))
            delimiters.emplace_back(text->view());
    };
    const Value* value = machine.appleScript()->find(Value::code(kDelimiters));
    const Value known = value ? follow(machine, *value) : Value();
    if (const List* list = as<List>(known))
        for (std::uint32_t i = 0; i < list->count; ++i)
            add(list->items[i]);
    else
        add(known);
    if (delimiters.empty())
        delimiters.emplace_back();
    return delimiters;
}

} // namespace quoddle::language
