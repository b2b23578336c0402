// SPDX-License-Identifier: MIT
// Takes Rich Text Format apart into its signs: groups, control words, bytes of text. Knows what they look like, not what they mean.
#pragma once

#include <QByteArray>

namespace quoddle {

struct RTFToken {
    enum class Kind { End, GroupBegin, GroupEnd, Control, Text };
    Kind kind = Kind::End;
    QByteArray word; // of a control word; a control symbol is a word of that one character; "'" has its byte as the parameter
    int parameter = 0;
    bool hasParameter = false;
    QByteArray text; // bytes in the code page in force
};

class RTFTokenizer {
public:
    explicit RTFTokenizer(QByteArray bytes) : mBytes(std::move(bytes)) {}
    RTFToken next();
    /// Skips bytes that belong to the control word before.
    void skip(qsizetype count) { mAt = std::min(mBytes.size(), mAt + std::max<qsizetype>(count, 0)); }

private:
    RTFToken control();
    RTFToken hexByte();

    const QByteArray mBytes;
    qsizetype mAt = 0;
};

} // namespace quoddle
