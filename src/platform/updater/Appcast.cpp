// SPDX-License-Identifier: MIT
#include "platform/updater/Appcast.h"

#include "platform/updater/VersionOrder.h"

#include <QCoreApplication>
#include <QXmlStreamReader>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaximumItems = 2000;
constexpr qsizetype kLongestVersion = 64;
constexpr qsizetype kLongestAddress = 2000;

class AppcastReader {
public:
    AppcastReader(const QByteArray& feed, const QUrl& source) : mXML(feed), mSource(source) {}

    Result<Appcast, QString> read() {
        while (!mXML.isStartElement() && !mXML.isDTD() && !mXML.hasError())
            mXML.readNext();
        if (mXML.hasError())
            return broken();
        // A document type declaration comes before the first element. It is refused, because its entities could expand to very much text.
        if (mXML.isDTD() || mXML.name() != "rss"_L1)
            return Failure{QCoreApplication::translate("Appcast", "It is no list of versions.")};
        while (mXML.readNextStartElement()) {
            if (mXML.name() == "channel"_L1)
                readChannel();
            else
                mXML.skipCurrentElement();
        }
        if (mXML.hasError())
            return broken();
        return std::move(mFeed);
    }

private:
    Failure<QString> broken() const {
        return {QCoreApplication::translate("Appcast", "The list of versions cannot be read: line %1: %2")
                    .arg(mXML.lineNumber())
                    .arg(mXML.errorString())};
    }

    QString text() { return mXML.readElementText(QXmlStreamReader::SkipChildElements).trimmed(); }

    /// The absolute URL; empty for any text that is no web address.
    QUrl address(const QString& text) const {
        const QUrl url = text.size() > kLongestAddress ? QUrl() : mSource.resolved(QUrl(text.trimmed(), QUrl::StrictMode));
        const bool isOfWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
        return !text.isEmpty() && url.isValid() && isOfWeb && !url.host().isEmpty() ? url : QUrl();
    }

    void readChannel() {
        while (mXML.readNextStartElement()) {
            if (mXML.name() == "item"_L1 && mFeed.items.size() < kMaximumItems)
                readItem();
            else if (mXML.name() == "link"_L1)
                mFeed.page = address(text());
            else
                mXML.skipCurrentElement();
        }
    }

    void readItem() {
        AppcastItem item;
        while (mXML.readNextStartElement()) {
            const QStringView name = mXML.name();
            if (name == "enclosure"_L1)
                readEnclosure(item);
            else if (name == "version"_L1)
                item.version = text();
            else if (name == "shortVersionString"_L1)
                item.displayVersion = text();
            else if (name == "minimumSystemVersion"_L1)
                item.minimumSystemVersion = text();
            else if (name == "releaseNotesLink"_L1)
                item.notesURL = address(text());
            else if (name == "link"_L1)
                item.page = address(text());
            else if (name == "description"_L1)
                item.description = text();
            else
                mXML.skipCurrentElement();
        }
        if (item.displayVersion.isEmpty() || item.displayVersion.size() > kLongestVersion)
            item.displayVersion = item.version;
        if (!item.version.isEmpty() && item.version.size() <= kLongestVersion)
            mFeed.items << item;
    }

    void readEnclosure(AppcastItem& item) {
        for (const QXmlStreamAttribute& attribute : mXML.attributes()) {
            const QStringView name = attribute.name();
            const QString value = attribute.value().trimmed().toString();
            if (name == "url"_L1)
                item.archive = address(value);
            else if (name == "length"_L1)
                item.archiveLength = value.toLongLong();
            else if (name == "edSignature"_L1)
                item.signature = value.toLatin1();
            else if (name == "version"_L1)
                item.version = value;
            else if (name == "shortVersionString"_L1)
                item.displayVersion = value;
            else if (name == "os"_L1)
                item.operatingSystem = value;
        }
        mXML.skipCurrentElement();
    }

    QXmlStreamReader mXML;
    const QUrl mSource;
    Appcast mFeed;
};

bool isForUs(const AppcastItem& item, const QString& systemVersion) {
    if (item.operatingSystem.isEmpty())
        return true;
    return item.operatingSystem.compare("linux"_L1, Qt::CaseInsensitive) == 0 &&
           versionOrder(item.minimumSystemVersion, systemVersion) <= 0;
}

} // namespace

Result<Appcast, QString> readAppcast(const QByteArray& feed, const QUrl& source) {
    if (feed.size() > kMaximumFeedSize)
        return Failure{QCoreApplication::translate("Appcast", "The list of versions is too long.")};
    return AppcastReader(feed, source).read();
}

std::optional<AppcastItem> newestItem(const Appcast& feed, const QString& installedVersion, const QString& systemVersion) {
    const AppcastItem* newest = nullptr;
    for (const AppcastItem& item : feed.items) {
        if (!isForUs(item, systemVersion) || versionOrder(item.version, installedVersion) <= 0)
            continue;
        if (!newest || versionOrder(item.version, newest->version) > 0)
            newest = &item;
    }
    return newest ? std::optional(*newest) : std::nullopt;
}

} // namespace quoddle
