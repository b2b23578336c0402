// SPDX-License-Identifier: MIT
// What scripts copy (descriptors) as what other programs take (data under MIME types), and back.
//
// Decision: beside the types that everybody knows, everything is offered in a form of our own, so that one script gets from another what
// that has copied: a list, a record, a date.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QStringList>

namespace quoddle {

/// Data under MIME types, the best one first.
using ClipboardData = std::vector<std::pair<QString, QByteArray>>;

/// Text under "text/plain" is UTF-8. Rich text without a plain one gets that, a picture is offered as PNG too, files as their list and
/// their paths. A thread with fonts, if there is rich text.
ClipboardData dataFromForms(const std::vector<AEDesc>& forms);

/// `get` is called only for types of `offered`, and only for what can make the class `wanted` (0: for everything that is offered, except
/// pictures converted into other kinds). Whatever it answers is taken as hostile. The best form first.
std::vector<AEDesc> formsFromData(const QStringList& offered, const std::function<QByteArray(const QString& type)>& get, DescType wanted);

} // namespace quoddle
