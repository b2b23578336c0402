// SPDX-License-Identifier: MIT
#include "engine/FileReference.h"

#include <QFileInfo>

namespace quoddle {

std::optional<std::string> fileReferenceFromURL(const QUrl& url) {
    if (!url.isLocalFile() || !QFileInfo::exists(url.toLocalFile()))
        return {};
    return QFileInfo(url.toLocalFile()).absoluteFilePath().toStdString();
}

} // namespace quoddle
