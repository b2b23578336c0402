// SPDX-License-Identifier: MIT
// Chooses among the pictures of a file, such as the sizes of an icon or the pages of a document, by what their headers say.
//
// Decision: what is not needed is not decoded, and all that is decoded of a file with several pictures has no more pixels than a single
// picture may have: a file of some kilobytes can hold any number of pictures that take a second each.
// Main thread only.
#pragma once

#include <QImage>

namespace quoddle {

class ImageFile;

/// At most `most` pictures of different sizes, the largest first, made smaller where they are larger than `extent` pixels to a side. Those
/// that are just large enough come before larger ones, which take longer, and these before those that are too small. None when none can be
/// read. The log says, by `name`, why there is none, or that one was too large to be read.
QList<QImage> bestPictures(ImageFile& file, const QString& name, int extent, int most);

} // namespace quoddle
