#include "ui/translations.h"

#include <QCoreApplication>
#include <QTranslator>
#include <memory>

#include "ui/resources.h"

namespace carvello {

namespace {

constexpr char kVariable[] = "CARVELLO_LANGUAGE";

// "de" of "de_AT.UTF-8" and of "de-AT".
QString CodeOf(const QString& name) {
  return QString(name).replace(QLatin1Char('-'), QLatin1Char('_')).section(QLatin1Char('_'), 0, 0).section('.', 0, 0);
}

}  // namespace

QStringList Languages() {
  return {QStringLiteral("de"), QStringLiteral("fr")};
}

QString LanguageCode(const QString& wanted, const QStringList& preferred) {
  const QString chosen = CodeOf(wanted).toLower();
  if (!chosen.isEmpty()) return Languages().contains(chosen) ? chosen : QString();
  for (const QString& name : preferred) {
    const QString code = CodeOf(name).toLower();
    if (Languages().contains(code)) return code;
    // Who has English before another language means it.
    if (code == QLatin1String("en") || code == QLatin1String("c")) break;
  }
  return {};
}

void UseLanguage(QCoreApplication& app, const QString& code) {
  if (code.isEmpty()) return;
  UseResources();
  // The newest is asked first: what the program says goes before what the toolkit says.
  for (const char* catalogue : {"qtbase", "carvello"}) {
    auto pTranslator = std::make_unique<QTranslator>(&app);
    if (!pTranslator->load(QStringLiteral(":/translations/%1_%2.qm").arg(QLatin1String(catalogue), code))) continue;
    QCoreApplication::installTranslator(pTranslator.release());
  }
}

void UseLanguageOfUser(QCoreApplication& app) {
  UseLanguage(app, LanguageCode(qEnvironmentVariable(kVariable), QLocale::system().uiLanguages()));
}

}  // namespace carvello
