// SPDX-License-Identifier: MIT
#include "platform/preview/FileFacts.h"

#include "platform/foundation/DefaultApplication.h"
#include "platform/foundation/FileTypes.h"
#include "platform/foundation/UTType.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMostItems = 10'000;

QString capitalized(const QString& text) {
    return text.isEmpty() ? text : text.first(1).toUpper() + text.sliced(1);
}

QString kindOf(const QFileInfo& info, const FileFacts& facts) {
    if (UTTypeConformsTo(facts.type, u"com.apple.application"_s))
        return QCoreApplication::translate("FileFacts", "Application");
    if (facts.isPackage && facts.type == "com.apple.rtfd"_L1)
        return QCoreApplication::translate("FileFacts", "Rich text document with attachments");
    if (facts.isDirectory)
        return facts.isPackage ? QCoreApplication::translate("FileFacts", "Package") : QCoreApplication::translate("FileFacts", "Folder");
    if (!info.isFile())
        return QCoreApplication::translate("FileFacts", "Special file");
    const QMimeType type = QMimeDatabase().mimeTypeForFile(info);
    return type.isDefault() || type.comment().isEmpty() ? QCoreApplication::translate("FileFacts", "Document")
                                                        : capitalized(type.comment());
}

void countItems(FileFacts& facts, const std::atomic<bool>& isCancelled) {
    if (!QFileInfo(facts.path).isReadable())
        return;
    facts.itemCount = 0;
    QDirIterator items(facts.path, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    for (; items.hasNext() && !facts.hasMoreItems && !isCancelled; items.next()) {
        facts.hasMoreItems = facts.itemCount == kMostItems;
        facts.itemCount += facts.hasMoreItems ? 0 : 1;
    }
}

QString sizeText(qint64 size, const QLocale& locale) {
    return size == 1 ? QCoreApplication::translate("FileFacts", "1 byte") : locale.formattedDataSize(size, 1, QLocale::DataSizeSIFormat);
}

QString itemsText(const FileFacts& facts, const QLocale& locale) {
    if (facts.hasMoreItems)
        return QCoreApplication::translate("FileFacts", "More than %1 items").arg(locale.toString(facts.itemCount));
    const int count = static_cast<int>(facts.itemCount);
    return count == 1 ? QCoreApplication::translate("FileFacts", "1 item")
                      : QCoreApplication::translate("FileFacts", "%Ln items", "", count);
}

} // namespace

FileFacts factsOfFile(const QString& path, const std::atomic<bool>& isCancelled) {
    FileFacts facts;
    facts.path = path;
    facts.name = displayNameOfFile(path);
    const QFileInfo info(path);
    if (!info.exists())
        return facts;
    facts.type = typeIdentifierOfFile(info.isSymLink() ? info.canonicalFilePath() : path);
    facts.isDirectory = info.isDir();
    facts.isPackage = isFilePackage(path, facts.isDirectory);
    facts.kind = kindOf(info, facts);
    facts.created = info.birthTime();
    facts.modified = info.lastModified();
    if (info.isFile())
        facts.size = info.size();
    if (facts.isDirectory && !facts.isPackage)
        countItems(facts, isCancelled);
    facts.opener = defaultApplicationOfFile(path);
    return facts;
}

QStringList FileFacts::lines() const {
    QStringList all;
    if (!exists())
        return all;
    const QLocale locale;
    all << kind;
    if (size >= 0)
        all << sizeText(size, locale);
    if (itemCount >= 0)
        all << itemsText(*this, locale);
    if (created.isValid())
        all << QCoreApplication::translate("FileFacts", "Created %1").arg(locale.toString(created, QLocale::ShortFormat));
    if (modified.isValid())
        all << QCoreApplication::translate("FileFacts", "Modified %1").arg(locale.toString(modified, QLocale::ShortFormat));
    return all;
}

} // namespace quoddle
