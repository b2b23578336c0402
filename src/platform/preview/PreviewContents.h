// SPDX-License-Identifier: MIT
// The contents of a file that this process reads for a preview: its text, with or without formats. Pictures and pages are only recognized
// here; PictureProcess decodes them.
// Decision: a file that cannot be shown is no error; it has a card with its facts and, if there is one, the reason.
// Any thread.
#pragma once

#include "platform/preview/FileFacts.h"

#include <memory>

#include <QTextDocument>

namespace quoddle {

enum class PreviewKind { Card, Picture, Pages, Text, RichText };

struct PreviewContents {
    PreviewKind kind = PreviewKind::Card;
    FileFacts facts;
    QString text;                            // for PreviewKind::Text
    bool isSource = false;                   // shown in a font of fixed width, so that columns line up
    bool isCut = false;                      // the file has more text
    std::shared_ptr<QTextDocument> richText; // for PreviewKind::RichText; used and released on the thread given to previewContentsOfFile()
    QString notice;                          // for PreviewKind::Card: why no more is shown; empty when there was no error
};

/// The kind of preview to expect for the type of a file.
PreviewKind previewKindOf(const FileFacts& facts);
/// Reads as much of the file as a preview shows. A formatted text is moved to `thread`, where it must be used and released.
PreviewContents previewContentsOfFile(const QString& path, const std::atomic<bool>& isCancelled, QThread* thread);

} // namespace quoddle
