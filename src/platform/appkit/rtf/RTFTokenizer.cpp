// SPDX-License-Identifier: MIT
#include "platform/appkit/rtf/RTFTokenizer.h"

namespace quoddle {

namespace {

constexpr int kMaximumWord = 32;
constexpr int kMaximumParameter = 100'000'000;

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isPlain(char c) {
    return c != '\\' && c != '{' && c != '}' && c != '\r' && c != '\n';
}

} // namespace

RTFToken RTFTokenizer::next() {
    while (mAt < mBytes.size() && (mBytes[mAt] == '\r' || mBytes[mAt] == '\n'))
        ++mAt; // line ends mean nothing
    RTFToken token;
    if (mAt >= mBytes.size())
        return token;
    switch (mBytes[mAt]) {
    case '{':
        ++mAt;
        token.kind = RTFToken::Kind::GroupBegin;
        return token;
    case '}':
        ++mAt;
        token.kind = RTFToken::Kind::GroupEnd;
        return token;
    case '\\':
        ++mAt;
        return control();
    default:
        break;
    }
    const qsizetype start = mAt;
    while (mAt < mBytes.size() && isPlain(mBytes[mAt]))
        ++mAt;
    token.kind = RTFToken::Kind::Text;
    token.text = mBytes.mid(start, mAt - start);
    return token;
}

RTFToken RTFTokenizer::control() {
    RTFToken token;
    if (mAt >= mBytes.size())
        return token;
    token.kind = RTFToken::Kind::Control;
    if (!isLetter(mBytes[mAt])) {
        token.word = mBytes.mid(mAt++, 1);
        return token.word == "'" ? hexByte() : token;
    }
    const qsizetype start = mAt;
    while (mAt < mBytes.size() && isLetter(mBytes[mAt]) && mAt - start < kMaximumWord)
        ++mAt;
    token.word = mBytes.mid(start, mAt - start);
    const bool negative = mAt + 1 < mBytes.size() && mBytes[mAt] == '-' && isDigit(mBytes[mAt + 1]);
    if (negative)
        ++mAt;
    for (; mAt < mBytes.size() && isDigit(mBytes[mAt]); ++mAt) {
        token.hasParameter = true;
        token.parameter = std::min(token.parameter * 10LL + (mBytes[mAt] - '0'), static_cast<long long>(kMaximumParameter));
    }
    if (negative)
        token.parameter = -token.parameter;
    if (mAt < mBytes.size() && mBytes[mAt] == ' ')
        ++mAt; // the blank ends the word and is no text
    return token;
}

RTFToken RTFTokenizer::hexByte() {
    RTFToken token;
    token.kind = RTFToken::Kind::Text;
    bool isNumber = false;
    const int byte = mBytes.mid(mAt, 2).toInt(&isNumber, 16);
    mAt = std::min(mBytes.size(), mAt + 2);
    if (isNumber)
        token.text = QByteArray(1, static_cast<char>(byte));
    return token;
}

} // namespace quoddle
