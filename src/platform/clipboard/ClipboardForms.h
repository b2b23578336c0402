// SPDX-License-Identifier: MIT
// Converts what scripts copy (descriptors) to what other programs read (data under MIME types), and back.
//
// Decision: beside the common types, everything is also offered in a form of our own, so that one script gets exactly what another has
// copied: a list, a record, a date.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QStringList>

namespace quoddle {

/// Data under MIME types, the best type first.
using ClipboardData = std::vector<std::pair<QString, QByteArray>>;

/// Text under "text/plain" is UTF-8. Rich text is also offered as plain text unless there is one, a picture also as PNG, files as a list of
/// files and as paths. Rich text needs a thread that may use fonts.
ClipboardData dataFromForms(const std::vector<AEDesc>& forms);

/// `get` is called only for types in `offered`, and only for those from which the class `wanted` can be made (0: for all types, except that
/// pictures are not converted to other kinds). The data is not trusted. Returns the best form first.
std::vector<AEDesc> formsFromData(const QStringList& offered, const std::function<QByteArray(const QString& type)>& get, DescType wanted);

} // namespace quoddle
