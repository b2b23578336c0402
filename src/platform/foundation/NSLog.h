// SPDX-License-Identifier: MIT
// Log lines and the platform's text formats, which log lines and localised texts share.
// Decision: lines go through Qt's message handler (category "quoddle"), so that tests, journals and terminals see the same text.
#pragma once

#include <QString>
#include <QVariant>

namespace quoddle {

/// Fills the placeholders of `format` in order: %@ (any value), %d %i %ld %lld %u %lu (integers), %f, %% (a percent sign).
/// "%2$@" takes the second argument. A placeholder without argument, or with an empty QVariant, prints as "(null)".
/// Any other text after a percent sign stays unchanged, because the format may come from a bundle and is not trusted.
QString stringWithFormat(const QString& format, const QVariantList& arguments);

/// Logs an error or a warning. Any thread.
void NSLog(const QString& format, const QVariantList& arguments = {});
/// Logs an ordinary event to the system's log only, or, for somebody who looks for a fault, to where NSLog() writes: when QUODDLE_DEBUG is
/// set in the environment or the category "quoddle.trace" is switched on. Any thread.
void NSLogTrace(const QString& format, const QVariantList& arguments = {});
/// Whether traces go to NSLog()'s place; callers ask before they put together costly traces.
bool NSLogIsTracing();

} // namespace quoddle
