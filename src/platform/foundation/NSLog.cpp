// SPDX-License-Identifier: MIT
#include "platform/foundation/NSLog.h"

#include <QLocale>
#include <QLoggingCategory>
#include <QMetaType>
#include <syslog.h>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcQuoddle, "quoddle", QtInfoMsg)

const QLoggingCategory& traceCategory() {
    static const QLoggingCategory sCategory("quoddle.trace", qEnvironmentVariableIsEmpty("QUODDLE_DEBUG") ? QtWarningMsg : QtInfoMsg);
    return sCategory;
}

constexpr int kMaxDescriptionDepth = 16;

QString descriptionOf(const QVariant& value, int depth = 0) {
    if (!value.isValid() || value.isNull())
        return u"(null)"_s;
    if (depth > kMaxDescriptionDepth)
        return u"…"_s;
    if (value.typeId() == QMetaType::QVariantMap) {
        QString text = u"{"_s;
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            text += u" %1 = %2;"_s.arg(it.key(), descriptionOf(*it, depth + 1));
        return text + u" }"_s;
    }
    if (value.typeId() == QMetaType::QVariantList || value.typeId() == QMetaType::QStringList) {
        QStringList items;
        for (const QVariant& item : value.toList())
            items += descriptionOf(item, depth + 1);
        return u"("_s + items.join(u", "_s) + u")"_s;
    }
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? u"1"_s : u"0"_s;
    return value.toString();
}

/// A placeholder of a format: where it ends, which argument it takes and how the argument is written.
struct Placeholder {
    qsizetype end = 0;
    qsizetype position = -1; // the index given by "%2$" (1 there); -1 for the next argument in order
    char16_t conversion = 0; // 0 when the text is not a placeholder
};

Placeholder placeholderAt(QStringView format, qsizetype percent) {
    Placeholder found;
    qsizetype at = percent + 1;
    qsizetype digits = at;
    while (digits < format.size() && digits - at < 4 && format[digits] >= u'0' && format[digits] <= u'9')
        ++digits;
    if (digits > at && digits < format.size() && format[digits] == u'$') {
        found.position = format.mid(at, digits - at).toInt() - 1;
        at = digits + 1;
    }
    while (at < format.size() && (format[at] == u'l' || format[at] == u'q' || format[at] == u'h'))
        ++at;
    if (at < format.size() && QStringView(u"@diuf%").contains(format[at])) {
        found.conversion = format[at].unicode();
        found.end = at + 1;
    }
    return found;
}

QString converted(const QVariant& argument, char16_t conversion) {
    switch (conversion) {
    case u'd':
    case u'i':
        return argument.isValid() ? QString::number(argument.toLongLong()) : u"(null)"_s;
    case u'u':
        return argument.isValid() ? QString::number(argument.toULongLong()) : u"(null)"_s;
    case u'f':
        return argument.isValid() ? QLocale::c().toString(argument.toDouble(), 'f', 6) : u"(null)"_s;
    default:
        return descriptionOf(argument);
    }
}

} // namespace

QString stringWithFormat(const QString& format, const QVariantList& arguments) {
    QString text;
    qsizetype next = 0;
    for (qsizetype at = 0; at < format.size();) {
        if (format[at] != u'%') {
            text += format[at++];
            continue;
        }
        const Placeholder placeholder = placeholderAt(format, at);
        if (!placeholder.conversion) {
            text += format[at++];
            continue;
        }
        if (placeholder.conversion == u'%')
            text += u'%';
        else
            text += converted(arguments.value(placeholder.position >= 0 ? placeholder.position : next++), placeholder.conversion);
        at = placeholder.end;
    }
    return text;
}

void NSLog(const QString& format, const QVariantList& arguments) {
    qCInfo(lcQuoddle).noquote() << stringWithFormat(format, arguments);
}

void NSLogTrace(const QString& format, const QVariantList& arguments) {
    const QString line = stringWithFormat(format, arguments);
    if (traceCategory().isInfoEnabled())
        qCInfo(traceCategory).noquote() << line;
    else
        ::syslog(LOG_USER | LOG_DEBUG, "%s", line.toUtf8().constData());
}

bool NSLogIsTracing() {
    return traceCategory().isInfoEnabled();
}

} // namespace quoddle
