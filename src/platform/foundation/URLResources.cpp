// SPDX-License-Identifier: MIT
#include "platform/foundation/URLResources.h"

#include "platform/foundation/FileTypes.h"

#include <QFileInfo>

namespace quoddle {

PredicateValues resourceValuesOfFile(const QString& path) {
    auto known = std::make_shared<QVariantMap>();
    return [path, known](const QString& key) -> QVariant {
        if (key == NSURLPathKey)
            return path;
        if (const auto value = known->constFind(key); value != known->constEnd())
            return *value;
        QVariant value;
        if (key == NSURLIsDirectoryKey || key == NSURLIsPackageKey) {
            const QFileInfo info(path);
            const bool isDirectory = info.isDir() && !info.isSymLink();
            value = key == NSURLIsDirectoryKey ? isDirectory : isFilePackage(path, isDirectory);
        } else if (key == NSURLTypeIdentifierKey) {
            value = typeIdentifierOfFile(path);
        }
        known->insert(key, value);
        return value;
    };
}

std::optional<std::string> pathOfExistingFile(const QUrl& url) {
    if (!url.isLocalFile() || !QFileInfo::exists(url.toLocalFile()))
        return {};
    return QFileInfo(url.toLocalFile()).absoluteFilePath().toStdString();
}

} // namespace quoddle
