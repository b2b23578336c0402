// SPDX-License-Identifier: MIT
// The compact form of a dictionary: its terms in the order in which they are searched, so that nothing is left to be sorted.
//
// Numbers have four bytes, the highest first; words a length in front. A form that was cut off or changed is recognised as far as memory is
// concerned: every length and every position is checked.
#include "platform/applescript/terminology/TermDictionary.h"

namespace quoddle {

namespace {

constexpr std::uint32_t kNoEvent = 0xFFFFFFFF;
constexpr std::uint32_t kMaximumTerms = 1'000'000;
constexpr std::uint8_t kBoolean = 1, kSynonym = 2;

void putNumber(std::string& out, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out += static_cast<char>(number >> shift);
}

void putWords(std::string& out, std::string_view words) {
    putNumber(out, static_cast<std::uint32_t>(words.size()));
    out += words;
}

class Cursor {
public:
    explicit Cursor(std::string_view bytes) : mBytes(bytes) {}

    bool failed() const { return mFailed; }
    bool atEnd() const { return mBytes.empty(); }

    std::string_view take(std::size_t count) {
        mFailed = mFailed || count > mBytes.size();
        const std::string_view taken = mFailed ? std::string_view() : mBytes.substr(0, count);
        mBytes.remove_prefix(taken.size());
        return taken;
    }

    std::uint32_t number() {
        std::uint32_t value = 0;
        for (const char c : take(4))
            value = value << 8 | static_cast<unsigned char>(c);
        return value;
    }

    std::uint8_t byte() {
        const std::string_view taken = take(1);
        return taken.empty() ? std::uint8_t(0) : static_cast<std::uint8_t>(taken[0]);
    }

    std::string_view words() { return take(number()); }

    /// A number of things of at least `size` bytes each.
    std::uint32_t count(std::size_t size) {
        const std::uint32_t value = number();
        mFailed = mFailed || value > kMaximumTerms || value * size > mBytes.size();
        return mFailed ? 0 : value;
    }

private:
    std::string_view mBytes;
    bool mFailed = false;
};

} // namespace

std::string TermDictionary::compactForm() const {
    std::string out;
    putNumber(out, static_cast<std::uint32_t>(mEvents.size()));
    for (const EventTerm& event : mEvents) {
        for (const std::uint32_t number : {event.replyType, event.replyFlags, event.directFlags, event.directType})
            putNumber(out, number);
        putNumber(out, static_cast<std::uint32_t>(event.parameters.size()));
        for (const ParameterTerm& parameter : event.parameters) {
            putWords(out, parameter.words);
            putNumber(out, parameter.code);
            putNumber(out, parameter.type);
        }
    }
    putNumber(out, static_cast<std::uint32_t>(mTerms.size()));
    for (const Term& term : mTerms) {
        putWords(out, term.words);
        out += static_cast<char>(term.kind);
        out += static_cast<char>((term.boolean ? kBoolean : 0) | (term.synonym ? kSynonym : 0));
        putNumber(out, term.code);
        putNumber(out, term.group);
        putNumber(out, term.order);
        const auto event = std::ranges::find(mEvents, term.event, [](const EventTerm& each) { return &each; });
        putNumber(out, term.event ? static_cast<std::uint32_t>(event - mEvents.begin()) : kNoEvent);
    }
    for (const Term* term : mByCode)
        putNumber(out, static_cast<std::uint32_t>(term - mTerms.data()));
    return out;
}

std::unique_ptr<TermDictionary> TermDictionary::fromCompactForm(std::string bytes) {
    auto made = std::make_unique<TermDictionary>();
    made->mCompactForm = std::move(bytes);
    Cursor in(made->mCompactForm);
    for (std::uint32_t left = in.count(20); left > 0 && !in.failed(); --left) {
        EventTerm& event = made->mEvents.emplace_back();
        for (std::uint32_t* number : {&event.replyType, &event.replyFlags, &event.directFlags, &event.directType})
            *number = in.number();
        std::vector<ParameterTerm>& parameters = made->mParameters.emplace_back(in.count(12));
        for (ParameterTerm& parameter : parameters) {
            parameter.words = in.words();
            parameter.code = in.number();
            parameter.type = in.number();
        }
        event.parameters = parameters;
    }
    made->mTerms.resize(in.count(22));
    for (Term& term : made->mTerms) {
        term.words = in.words();
        const std::uint8_t kind = in.byte(), flags = in.byte();
        term.kind = static_cast<TermKind>(kind);
        term.boolean = flags & kBoolean;
        term.synonym = flags & kSynonym;
        term.code = in.number();
        term.group = in.number();
        term.order = static_cast<std::uint16_t>(in.number());
        const std::uint32_t event = in.number();
        const bool isEvent = kind == static_cast<std::uint8_t>(TermKind::Event);
        if (in.failed() || kind > static_cast<std::uint8_t>(TermKind::Event) || term.words.empty() ||
            (isEvent ? event >= made->mEvents.size() : event != kNoEvent))
            return nullptr;
        term.event = isEvent ? &made->mEvents[event] : nullptr;
    }
    for (std::size_t i = 0; i < made->mTerms.size(); ++i) {
        const std::uint32_t at = in.number();
        if (in.failed() || at >= made->mTerms.size())
            return nullptr;
        made->mByCode.push_back(&made->mTerms[at]);
    }
    return in.failed() || !in.atEnd() ? nullptr : std::move(made);
}

} // namespace quoddle
