// SPDX-License-Identifier: MIT
// Prints Qt's types in the messages of failed comparisons.
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
