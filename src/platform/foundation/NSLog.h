// SPDX-License-Identifier: MIT
// Diagnostic lines and the platform's text formats, which diagnostics and localised texts share.
// One decision: a line goes through Qt's message handler (category "quoddle"), so that tests, journals and terminals see the same text.
#pragma once

#include <QString>
#include <QVariant>

namespace quoddle {

/// Fills the placeholders of `format` in order: %@ (any value), %d %i %ld %lld %u %lu (integers), %f, %% (a percent sign).
/// "%2$@" takes the second argument. A placeholder without argument, or with an empty QVariant, prints as "(null)".
/// Anything else after a percent sign stays as it is, for the format may come from a bundle and must not be trusted.
QString stringWithFormat(const QString& format, const QVariantList& arguments);

/// What went wrong. Any thread.
void NSLog(const QString& format, const QVariantList& arguments = {});
/// What happens in the course of things: goes to the system's log, or, for whoever looks for a fault, where NSLog's lines go, with
/// QUODDLE_DEBUG in the environment or the category "quoddle.trace" switched on. Any thread.
void NSLogTrace(const QString& format, const QVariantList& arguments = {});
/// Whether somebody looks for a fault: for traces that cost something to put together.
bool NSLogIsTracing();

} // namespace quoddle
