// SPDX-License-Identifier: MIT
// How failed comparisons show Qt's texts.
#pragma once

#include <ostream>

#include <QString>
#include <QStringList>

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& texts, std::ostream* stream) {
    *stream << '(' << texts.join(QStringLiteral(", ")).toStdString() << ')';
}
