// SPDX-License-Identifier: MIT
#include "platform/base/DateText.h"

#include "platform/base/Text.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <vector>

namespace quoddle {

namespace {

constexpr std::array<std::u16string_view, 12> kMonths = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
                                                         u"July",    u"August",   u"September", u"October", u"November", u"December"};
constexpr std::array<std::u16string_view, 7> kWeekdays = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                          u"Thursday", u"Friday", u"Saturday"};
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kDays1904 = kSecondsFrom1904To1970 / kSecondsPerDay;

struct CivilDate {
    std::int64_t year;
    int month, day;
};

// Proleptic Gregorian calendar, counted in eras of 400 years that begin on March 1.
std::int64_t daysFromCivil(std::int64_t year, int month, int day) {
    year -= month <= 2;
    std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    std::int64_t yearOfEra = year - era * 400;
    std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

CivilDate civilFromDays(std::int64_t days) {
    days += 719468;
    std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    std::int64_t dayOfEra = days - era * 146097;
    std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    std::int64_t shifted = (5 * dayOfYear + 2) / 153;
    int month = static_cast<int>(shifted < 10 ? shifted + 3 : shifted - 9);
    return {yearOfEra + era * 400 + (month <= 2), month, static_cast<int>(dayOfYear - (153 * shifted + 2) / 5 + 1)};
}

std::u16string integer(std::int64_t value) {
    return utf16FromUTF8(std::to_string(value));
}

std::u16string twoDigits(std::int64_t value) {
    return (value < 10 ? u"0" : u"") + integer(value);
}

/// A word, a number or a separator of a date text.
struct Piece {
    std::u16string word;
    std::int64_t number = -1;
    std::size_t digits = 0;
    char16_t before = 0; // the separator in front of the piece, not counting blanks
};

bool isLetter(char16_t c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::vector<Piece> piecesOf(std::u16string_view text) {
    std::vector<Piece> pieces;
    char16_t separator = 0;
    for (std::size_t i = 0; i < text.size();) {
        Piece piece;
        piece.before = separator;
        if (text[i] >= '0' && text[i] <= '9') {
            for (piece.number = 0; i < text.size() && text[i] >= '0' && text[i] <= '9' && piece.digits < 9; ++i, ++piece.digits)
                piece.number = piece.number * 10 + (text[i] - '0');
        } else if (isLetter(text[i])) {
            for (; i < text.size() && isLetter(text[i]); ++i)
                piece.word += static_cast<char16_t>(text[i] | 0x20);
        } else {
            if (text[i] > 0x20 && text[i] != 0xA0 && text[i] != 0x202F)
                separator = text[i];
            ++i;
            continue;
        }
        separator = 0;
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

template<std::size_t N>
int indexOfName(const std::array<std::u16string_view, N>& names, std::u16string_view word) {
    for (std::size_t i = 0; i < N && word.size() >= 3; ++i) {
        auto lower = [](char16_t c) { return static_cast<char16_t>(c | 0x20); };
        if (word.size() <= names[i].size() && std::ranges::equal(names[i].substr(0, word.size()), word, {}, lower))
            return static_cast<int>(i);
    }
    return -1;
}

/// The parts of a date that have been read so far.
struct Fields {
    std::vector<Piece> numbers; // the date's numbers without the time
    int month = 0;
    std::int64_t hour = -1, minute = 0, second = 0;
    int half = 0; // 1 for AM, 2 for PM
    bool valid = true;

    void takeWord(std::u16string_view word) {
        if (word == u"am" || word == u"pm")
            half = word == u"am" ? 1 : 2;
        else if (int name = indexOfName(kMonths, word); name >= 0)
            month = name + 1;
        else if (indexOfName(kWeekdays, word) < 0 && word != u"at" && word != u"t" && word != u"a" && word != u"p" && word != u"m" &&
                 word != u"st" && word != u"nd" && word != u"rd" && word != u"th" && word != u"of")
            valid = false;
    }
};

std::int64_t fullYear(const Piece& piece) {
    return piece.digits > 2 ? piece.number : piece.number + (piece.number < 90 ? 2000 : 1900);
}

std::optional<CivilDate> dateOf(const Fields& fields, std::int64_t now) {
    CivilDate today = civilFromDays((now >= 0 ? now : now - kSecondsPerDay + 1) / kSecondsPerDay - kDays1904);
    const auto& n = fields.numbers;
    CivilDate date = today;
    if (fields.month) {
        if (n.empty() || n.size() > 2)
            return std::nullopt;
        bool yearFirst = n[0].digits > 2;
        date = {today.year, fields.month, static_cast<int>(n[0].number)};
        if (yearFirst)
            date = {n[0].number, fields.month, n.size() == 2 ? static_cast<int>(n[1].number) : 1};
        else if (n.size() == 2)
            date.year = fullYear(n[1]);
    } else if (n.size() == 3 && n[0].digits > 2) {
        date = {n[0].number, static_cast<int>(n[1].number), static_cast<int>(n[2].number)};
    } else if (n.size() == 2 || n.size() == 3) {
        date = {n.size() == 3 ? fullYear(n[2]) : today.year, static_cast<int>(n[0].number), static_cast<int>(n[1].number)};
        if (date.month > 12)
            std::swap(date.month, date.day);
    } else if (!n.empty()) {
        return std::nullopt;
    }
    if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31 || date.year > 29999)
        return std::nullopt;
    return date;
}

} // namespace

std::int64_t daysFromDate(std::int64_t year, int month, int day) {
    return daysFromCivil(year, month, day) + kDays1904;
}

std::int64_t currentSeconds() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return daysFromDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) * kSecondsPerDay + local.tm_hour * 3600 + local.tm_min * 60 +
           local.tm_sec;
}

std::u16string textOfDate(std::int64_t seconds) {
    constexpr std::int64_t kFarthest = kSecondsPerDay * 366 * 30000; // beyond these years the calendar's own arithmetic would overflow
    seconds = std::clamp(seconds, -kFarthest, kFarthest);
    std::int64_t days = (seconds >= 0 ? seconds : seconds - kSecondsPerDay + 1) / kSecondsPerDay;
    std::int64_t time = seconds - days * kSecondsPerDay;
    CivilDate civil = civilFromDays(days - kDays1904);
    auto weekday = static_cast<std::size_t>(((days + 5) % 7 + 7) % 7); // 1904-01-01 was a Friday
    std::int64_t hour = time / 3600;
    std::u16string out(kWeekdays[weekday]);
    out.append(u", ").append(kMonths[static_cast<std::size_t>(civil.month - 1)]).append(u" ").append(integer(civil.day));
    out.append(u", ").append(integer(civil.year)).append(u" at ").append(integer(hour % 12 == 0 ? 12 : hour % 12));
    out.append(u":").append(twoDigits(time / 60 % 60)).append(u":").append(twoDigits(time % 60));
    return out.append(hour < 12 ? u" AM" : u" PM");
}

std::optional<std::int64_t> dateOfText(std::u16string_view text, std::int64_t now) {
    constexpr std::size_t kLongest = 400; // no date has so many characters
    if (text.size() > kLongest)
        return std::nullopt;
    Fields fields;
    std::vector<Piece> pieces = piecesOf(text);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& piece = pieces[i];
        bool colonFollows = i + 1 < pieces.size() && pieces[i + 1].before == ':' && pieces[i + 1].number >= 0;
        bool halfFollows = i + 1 < pieces.size() && (pieces[i + 1].word == u"am" || pieces[i + 1].word == u"pm");
        if (piece.number < 0) {
            fields.takeWord(piece.word);
        } else if (fields.hour < 0 && (colonFollows || halfFollows)) {
            fields.hour = piece.number;
            if (colonFollows)
                fields.minute = pieces[++i].number;
            if (i + 1 < pieces.size() && pieces[i + 1].before == ':' && pieces[i + 1].number >= 0)
                fields.second = pieces[++i].number;
        } else {
            fields.numbers.push_back(piece);
        }
    }
    if (fields.half && fields.hour >= 0 && fields.hour <= 12)
        fields.hour = fields.hour % 12 + (fields.half == 2 ? 12 : 0);
    std::int64_t hour = std::max<std::int64_t>(fields.hour, 0);
    if (!fields.valid || (fields.numbers.empty() && fields.hour < 0) || hour > 23 || fields.minute > 59 || fields.second > 59)
        return std::nullopt;
    auto civil = dateOf(fields, now);
    if (!civil)
        return std::nullopt;
    return daysFromDate(civil->year, civil->month, civil->day) * kSecondsPerDay + hour * 3600 + fields.minute * 60 + fields.second;
}

} // namespace quoddle
