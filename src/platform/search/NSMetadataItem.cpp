// SPDX-License-Identifier: MIT
#include "platform/foundation/FileTypes.h"
#include "platform/foundation/UTType.h"
#include "platform/search/NSMetadataQuery.h"

namespace quoddle {

QVariant NSMetadataItem::valueForAttribute(const QString& key) const {
    if (key == NSMetadataItemPathKey)
        return mPath;
    if (key == NSMetadataItemFSNameKey)
        return mPath.mid(mPath.lastIndexOf(u'/') + 1);
    if (key == NSMetadataItemContentTypeKey)
        return typeIdentifierOfFile(mPath);
    if (key == NSMetadataItemContentTypeTreeKey)
        return UTTypeCopyConformances(typeIdentifierOfFile(mPath));
    return {};
}

} // namespace quoddle
