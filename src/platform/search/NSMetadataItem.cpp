// SPDX-License-Identifier: MIT
#include "platform/search/NSMetadataItem.h"

#include "platform/foundation/FileTypes.h"
#include "platform/foundation/UTType.h"

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
    if (key == NSMetadataQueryResultContentRelevanceAttribute && mRelevance != 0)
        return mRelevance;
    return {};
}

} // namespace quoddle
