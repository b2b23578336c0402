// SPDX-License-Identifier: MIT
// Reads and writes property lists in XML.
#include "platform/foundation/PlistReaders.h"

#include <cmath>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace quoddle::Plist {

using namespace Qt::StringLiterals;

namespace {

class XMLReader {
public:
    template<class Source>
    explicit XMLReader(const Source& source) : mXML(source) {}

    Value readDocument() {
        if (!mXML.readNextStartElement())
            return broken(u"no element"_s);
        if (mXML.name() != "plist"_L1)
            return readValue(0);
        if (!mXML.readNextStartElement())
            return broken(u"an empty plist"_s);
        Value value = readValue(0);
        if (value && mXML.readNextStartElement())
            return broken(u"a second value"_s);
        return mXML.hasError() && value ? Value(broken({})) : value;
    }

private:
    /// Prefers the XML parser's own error message, which says more than ours.
    Failure<QString> broken(const QString& what) {
        return failure(u"line %1: %2"_s.arg(mXML.lineNumber()).arg(mXML.hasError() ? mXML.errorString() : what));
    }

    Value readValue(int depth) {
        if (depth >= kMaxDepth)
            return tooDeep();
        if (++mNodes > kMaxNodes)
            return tooMany();
        const QString name = mXML.name().toString();
        if (name == "dict"_L1)
            return readDictionary(depth);
        if (name == "array"_L1)
            return readArray(depth);
        const QString text = mXML.readElementText();
        if (mXML.hasError())
            return broken({});
        return readScalar(name, text);
    }

    Value readDictionary(int depth) {
        QVariantMap map;
        while (mXML.readNextStartElement()) {
            if (mXML.name() != "key"_L1)
                return broken(u"<%1> where a key belongs"_s.arg(mXML.name()));
            const QString key = mXML.readElementText();
            if (!mXML.readNextStartElement())
                return broken(u"the key \"%1\" has no value"_s.arg(key.left(80)));
            Value value = readValue(depth + 1);
            if (!value)
                return value;
            map.insert(key, *value);
        }
        return mXML.hasError() ? Value(broken({})) : Value(QVariant(map));
    }

    Value readArray(int depth) {
        QVariantList list;
        while (mXML.readNextStartElement()) {
            Value value = readValue(depth + 1);
            if (!value)
                return value;
            list.append(*value);
        }
        return mXML.hasError() ? Value(broken({})) : Value(QVariant(list));
    }

    Value readScalar(const QString& name, const QString& text) {
        if (name == "string"_L1)
            return QVariant(text);
        if (name == "true"_L1 || name == "false"_L1)
            return QVariant(name == "true"_L1);
        if (name == "integer"_L1)
            return readInteger(text.trimmed());
        if (name == "real"_L1)
            return readReal(text.trimmed());
        if (name == "date"_L1) {
            const QDateTime date = QDateTime::fromString(text.trimmed(), Qt::ISODate);
            return date.isValid() ? Value(QVariant(date.toUTC())) : Value(broken(u"bad date"_s));
        }
        if (name == "data"_L1) {
            QByteArray base64 = text.toLatin1();
            base64.removeIf([](char c) { return QChar::isSpace(static_cast<unsigned char>(c)); });
            auto decoded = QByteArray::fromBase64Encoding(std::move(base64), QByteArray::AbortOnBase64DecodingErrors);
            return decoded ? Value(QVariant(decoded.decoded)) : Value(broken(u"bad data"_s));
        }
        return broken(u"unknown element <%1>"_s.arg(name.left(80)));
    }

    Value readInteger(QString text) {
        const bool negative = text.startsWith(u'-');
        if (negative || text.startsWith(u'+'))
            text.remove(0, 1);
        const bool hexadecimal = text.startsWith("0x"_L1, Qt::CaseInsensitive);
        bool ok = false;
        const qulonglong magnitude = hexadecimal ? text.mid(2).toULongLong(&ok, 16) : text.toULongLong(&ok, 10);
        constexpr qulonglong kMaxPositive = std::numeric_limits<qlonglong>::max();
        if (!ok || (negative && magnitude > kMaxPositive + 1))
            return broken(u"bad integer"_s);
        if (negative)
            return QVariant(static_cast<qlonglong>(~magnitude + 1));
        return magnitude <= kMaxPositive ? QVariant(static_cast<qlonglong>(magnitude)) : QVariant(magnitude);
    }

    Value readReal(const QString& text) {
        const QString word = text.toLower();
        const QString bare = word.startsWith(u'+') || word.startsWith(u'-') ? word.mid(1) : word;
        const double sign = word.startsWith(u'-') ? -1 : 1;
        if (bare == "inf"_L1 || bare == "infinity"_L1)
            return QVariant(sign * HUGE_VAL);
        if (bare == "nan"_L1)
            return QVariant(std::nan(""));
        bool ok = false;
        const double number = text.toDouble(&ok);
        return ok ? Value(QVariant(number)) : Value(broken(u"bad real number"_s));
    }

    QXmlStreamReader mXML;
    qsizetype mNodes = 0;
};

class XMLWriter {
public:
    Result<QByteArray, QString> write(const QVariant& value) {
        mXML.setAutoFormatting(true);
        mXML.setAutoFormattingIndent(-1); // indents with tabs, as other tools do
        mXML.writeStartDocument();
        mXML.writeDTD(u"<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"_s);
        mXML.writeStartElement(u"plist"_s);
        mXML.writeAttribute(u"version"_s, u"1.0"_s);
        const QString error = writeValue(value, 0);
        mXML.writeEndDocument();
        if (!error.isEmpty())
            return failure(error);
        return mBytes;
    }

private:
    /// Returns an error message; empty when all went well.
    QString writeValue(const QVariant& value, int depth) {
        if (depth >= kMaxDepth)
            return tooDeep().error;
        if (++mNodes > kMaxNodes)
            return tooMany().error;
        switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return writeDictionary(value.toMap(), depth);
        case QMetaType::QVariantList:
        case QMetaType::QStringList:
            return writeArray(value.toList(), depth);
        case QMetaType::Bool:
            mXML.writeEmptyElement(value.toBool() ? u"true"_s : u"false"_s);
            return {};
        default:
            return writeScalar(value);
        }
    }

    QString writeDictionary(const QVariantMap& map, int depth) {
        mXML.writeStartElement(u"dict"_s);
        for (auto it = map.begin(); it != map.end(); ++it) {
            mXML.writeTextElement(u"key"_s, it.key());
            if (QString error = writeValue(*it, depth + 1); !error.isEmpty())
                return error;
        }
        mXML.writeEndElement();
        return {};
    }

    QString writeArray(const QVariantList& list, int depth) {
        mXML.writeStartElement(u"array"_s);
        for (const QVariant& item : list)
            if (QString error = writeValue(item, depth + 1); !error.isEmpty())
                return error;
        mXML.writeEndElement();
        return {};
    }

    QString writeScalar(const QVariant& value) {
        switch (value.typeId()) {
        case QMetaType::QString:
            mXML.writeTextElement(u"string"_s, value.toString());
            return mXML.hasError() ? u"a text that XML cannot hold"_s : QString();
        case QMetaType::QByteArray:
            mXML.writeTextElement(u"data"_s, QString::fromLatin1(value.toByteArray().toBase64()));
            return {};
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::ULong:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
            mXML.writeTextElement(u"integer"_s, value.toString());
            return {};
        case QMetaType::Double:
        case QMetaType::Float:
            mXML.writeTextElement(u"real"_s, realText(value.toDouble()));
            return {};
        case QMetaType::QDateTime:
            mXML.writeTextElement(u"date"_s, value.toDateTime().toUTC().toString(u"yyyy-MM-dd'T'HH:mm:ss'Z'"_s));
            return {};
        default:
            return u"a value of type %1"_s.arg(QLatin1StringView(value.typeName()));
        }
    }

    static QString realText(double number) {
        if (std::isnan(number))
            return u"nan"_s;
        if (std::isinf(number))
            return number > 0 ? u"+infinity"_s : u"-infinity"_s;
        return QString::number(number, 'g', QLocale::FloatingPointShortest);
    }

    QByteArray mBytes;
    QXmlStreamWriter mXML{&mBytes};
    qsizetype mNodes = 0;
};

} // namespace

Value readXML(const QByteArray& bytes) {
    return XMLReader(bytes).readDocument();
}

Value readXML(const QString& text) {
    return XMLReader(text).readDocument();
}

Result<QByteArray, QString> writeXML(const QVariant& value) {
    return XMLWriter().write(value);
}

} // namespace quoddle::Plist
