// SPDX-License-Identifier: MIT
// Chooses among the pictures of a file, such as the sizes of an icon or the pages of a document, by what their headers say.
//
// Decision: pictures that are not needed are not decoded, and all that are decoded of one file together have no more pixels than a single
// picture may have: a file of some kilobytes can hold any number of pictures that take a second each.
// Main thread only.
#pragma once

#include <QImage>

namespace quoddle {

class ImageFile;

/// At most `most` pictures of different sizes, the largest first; pictures larger than `extent` pixels to a side are made smaller, and
/// drawings of lines are made as large as icons are shown, because their own size says nothing about their quality. Pictures
/// that are just large enough are preferred to larger ones, which take longer to decode, and larger ones to pictures that are too small.
/// The list is empty when no picture can be read. The log then says why, and it says so when a picture was too large to be read; there the
/// file is called `name`.
QList<QImage> bestPictures(ImageFile& file, const QString& name, int extent, int most);

} // namespace quoddle
