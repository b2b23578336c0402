// SPDX-License-Identifier: MIT
#include "platform/foundation/Translations.h"

#include "platform/foundation/NSBundle.h"
#include "platform/foundation/Plist.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLanguages[] = {"en"_L1, "de"_L1, "es"_L1, "fr"_L1, "ja"_L1};

QHash<QString, QString> ownStrings(const QString& language, const QString& table) {
    QFile file(u":/quoddle/%1.lproj/%2.strings"_s.arg(language, table));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    auto strings = Plist::readStrings(file.readAll());
    return strings ? *strings : QHash<QString, QString>();
}

void install(const QString& file) {
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    if (translator->load(file) && QCoreApplication::installTranslator(translator.get()))
        translator.release(); // the application's
}

} // namespace

QStringList userLanguages() {
    // Only the system's locale has the user's list of languages; a locale that the program has set as the default has just its own.
    const QLocale locale;
    return locale == QLocale::system() ? QLocale::system().uiLanguages() : locale.uiLanguages();
}

QString interfaceLanguage() {
    for (const QString& tag : userLanguages())
        for (const QLatin1StringView language : kLanguages)
            if (tag == language || tag.startsWith(language + u'-'))
                return language;
    return kLanguages[0];
}

QStringList interfaceLanguages() {
    return QStringList(std::begin(kLanguages), std::end(kLanguages));
}

QString textInLanguage(const QString& language, const QString& key) {
    return ownStrings(language, u"Localizable"_s).value(key);
}

void installTranslations() {
    const QString language = interfaceLanguage();
    for (const QString& table : {u"Localizable"_s, u"MainMenu"_s}) {
        auto strings = ownStrings(kLanguages[0], table);
        strings.insert(ownStrings(language, table));
        NSBundle::setFallbackStrings(table, strings);
    }
    if (language == kLanguages[0])
        return;
    install(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + u"/qtbase_"_s + language + u".qm"_s);
    install(u":/quoddle/translations/quoddle_"_s + language + u".qm"_s);
}

} // namespace quoddle
