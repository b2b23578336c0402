// SPDX-License-Identifier: MIT
// The part of a file that a preview can read in this process: its text, with or without formats. Pictures and pages are not read
// here, only told from the rest: they come from PictureProcess.
// One decision: what cannot be shown is no error; it has its facts, and a reason where there is one to give.
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
    QString text;                            // for Text
    bool isSource = false;                   // its columns matter
    bool isCut = false;                      // there is more of it
    std::shared_ptr<QTextDocument> richText; // for RichText; on the thread that was asked for
    QString notice;                          // for Card: why there is no more than that; empty when nothing went wrong
};

/// The kind of preview that the type of a file promises.
PreviewKind previewKindOf(const FileFacts& facts);
/// Reads as much of the file as a preview shows. A document with formats comes on `thread`, where it must be used and
/// released.
PreviewContents previewContentsOfFile(const QString& path, const std::atomic<bool>& isCancelled, QThread* thread);

} // namespace quoddle
