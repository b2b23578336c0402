// SPDX-License-Identifier: MIT
// The language in which the programs speak, and their own texts in it.
// One decision: there is one such language in a process, the first of the user's that our texts are written in; all texts are then in that
// one, also the toolkit's. What an applet brings itself comes before and is chosen by its bundle.
#pragma once

#include <QString>
#include <QStringList>

namespace quoddle {

/// The user's languages as tags ("de-AT"), best first. Any thread.
QStringList userLanguages();

/// "de", "en", "es", "fr" or "ja"; "en" when none of them is among the user's. Any thread.
QString interfaceLanguage();

/// All languages that interfaceLanguage() may answer.
QStringList interfaceLanguages();

/// One of the texts with keys, of the table "Localizable", in a language that need not be the user's; empty when it is not linked to the
/// program. Any thread.
QString textInLanguage(const QString& language, const QString& key);

/// Makes translated texts come in that language, and the bundles' fallback texts too. Main thread, once, when the application object is
/// there. Texts that are not linked to the program, and the toolkit's where they are not installed, stay English.
void installTranslations();

} // namespace quoddle
