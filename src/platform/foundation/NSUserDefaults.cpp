// SPDX-License-Identifier: MIT
#include "platform/foundation/NSUserDefaults.h"

#include <memory>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

QString& domainSlot() {
    static QString domain = u"applet"_s;
    return domain;
}

} // namespace

void setUserDefaultsDomain(const QString& domain) {
    QString name = domain.left(100);
    for (QChar& c : name)
        if (!c.isLetterOrNumber() && !u"-_."_s.contains(c))
            c = u'_';
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    if (!name.isEmpty())
        domainSlot() = name;
}

QSettings& standardUserDefaults() {
    static QSettings defaults(QSettings::IniFormat, QSettings::UserScope, u"quoddle"_s, domainSlot());
    return defaults;
}

} // namespace quoddle
