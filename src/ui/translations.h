// The language that the window speaks. The sources are in English; resources/translations holds the others.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

class QCoreApplication;

namespace carvello {

// The code ("de") of the first of the languages that the user prefers for which there are texts; empty for English.
// `wanted`: what CARVELLO_LANGUAGE says, which goes before; a language without texts is English.
QString LanguageCode(const QString& wanted, const QStringList& preferred);

// The languages that there are texts of, besides English.
QStringList Languages();

// From here on, texts are in that language: the program's, and those of the toolkit's own windows.
void UseLanguage(QCoreApplication& app, const QString& code);

// As the environment and the desktop say.
void UseLanguageOfUser(QCoreApplication& app);

}  // namespace carvello
