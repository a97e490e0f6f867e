// The window in the language that CARVELLO_LANGUAGE names, German or French.
#include <QMessageBox>
#include <QPushButton>

#include "ui/carvello_app.h"
#include "ui/dialog_fixture.h"
#include "ui/english_texts.h"
#include "ui/outcome_label.h"
#include "ui/translations.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class LanguageTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();
  void TheEnvironmentGoesBeforeTheDesktop_data();
  void TheEnvironmentGoesBeforeTheDesktop();
  void TheFormIsTranslated();
  void TheToolkitsOwnButtonsAreTranslated();
  void MessageBoxesAreTranslated();
  void HintsAndOutcomesAreTranslatedAndTheLogIsNot();
  void ChoicesAndTitlesAreTranslatedAndFileNamesAreNot();
  void MadeUpTextsAreTranslated_data();
  void MadeUpTextsAreTranslated();
  void NoTwoControlsOfTheWindowHaveTheSameLetter();

 private:
  static QString Of(const char* german, const char* french) {
    return QString::fromUtf8(qgetenv("CARVELLO_LANGUAGE") == "de" ? german : french);
  }
  // The default locale's numbers are the same in both.
  std::unique_ptr<CDialogFixture> m_pFixture;
};

void LanguageTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void LanguageTest::TheEnvironmentGoesBeforeTheDesktop_data() {
  QTest::addColumn<QString>("wanted");
  QTest::addColumn<QStringList>("preferred");
  QTest::addColumn<QString>("code");
  QTest::newRow("neither") << "" << QStringList() << "";
  QTest::newRow("the desktop's") << "" << QStringList{"de-AT", "de", "en-US"} << "de";
  QTest::newRow("the desktop's, another") << "" << QStringList{"fr-CA"} << "fr";
  QTest::newRow("English before German") << "" << QStringList{"en-GB", "en", "de-DE"} << "";
  QTest::newRow("unknown before German") << "" << QStringList{"sv-SE", "sv", "de-DE"} << "de";
  QTest::newRow("unknown") << "" << QStringList{"sv-SE"} << "";
  QTest::newRow("plain") << "" << QStringList{"C", "de"} << "";
  QTest::newRow("wanted") << "fr" << QStringList{"de-AT"} << "fr";
  QTest::newRow("wanted in full") << "de_CH.UTF-8" << QStringList{"en-US"} << "de";
  QTest::newRow("wanted in capitals") << "DE" << QStringList{"en-US"} << "de";
  QTest::newRow("English wanted") << "en" << QStringList{"de-AT"} << "";
  QTest::newRow("wanted without texts") << "sv" << QStringList{"de-AT"} << "";
}

void LanguageTest::TheEnvironmentGoesBeforeTheDesktop() {
  QFETCH(QString, wanted);
  QFETCH(QStringList, preferred);
  QFETCH(QString, code);
  QCOMPARE(LanguageCode(wanted, preferred), code);
}

void LanguageTest::TheFormIsTranslated() {
  m_pFixture->OpenReady();
  QCOMPARE(m_pFixture->Dialog().findChild<QLabel*>("label_1005")->text(), Of("Beginn:", "Début :"));
  QCOMPARE(m_pFixture->Control(1018).toolTip(), Of("Die Ausgaben machen", "Faire les sorties"));
  QCOMPARE(m_pFixture->Control(1001).accessibleName(),
           Of("Mittenfrequenz: 7.100 MHz", "Fréquence centrale : 7.100 MHz"));
}

void LanguageTest::TheToolkitsOwnButtonsAreTranslated() {
  const QMessageBox box(QMessageBox::Critical, {}, {}, QMessageBox::Yes | QMessageBox::Cancel);
  QCOMPARE(box.button(QMessageBox::Yes)->text().remove('&'), Of("Ja", "Oui"));
  QCOMPARE(box.button(QMessageBox::Cancel)->text().remove('&'), Of("Abbrechen", "Annuler"));
}

void LanguageTest::MessageBoxesAreTranslated() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1084);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->Answers().Shown()[0].text,
           Of("Die Dauer darf nicht null sein.", "La durée ne peut pas être nulle."));
  QCOMPARE(m_pFixture->Answers().Shown()[0].caption, Of("Ende", "Fin"));
}

void LanguageTest::HintsAndOutcomesAreTranslatedAndTheLogIsNot() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->SetFrequency(9'000'000);
  m_pFixture->Click(1015);
  const QString hint = m_pFixture->Dialog().findChild<QLabel*>("labelHint")->text();
  QVERIFY2(hint.startsWith(Of("Ganz außerhalb von 7.0", "Entièrement hors de 7.0")), qPrintable(hint));
  m_pFixture->Click(1018);
  QTRY_VERIFY_WITH_TIMEOUT(!m_pFixture->Control(1019).isEnabled(), 300'000);
  QCOMPARE(m_pFixture->Dialog().findChild<COutcomeLabel*>("labelOutcome")->text(),
           Of("1 von 1 Ausgaben geschrieben", "1 sorties écrites sur 1"));
  QCOMPARE(m_pFixture->Row(0).last(), Of("fertig", "fait"));
  QTRY_VERIFY2(m_pFixture->Log().join('\n').contains("Closed"), qPrintable(m_pFixture->Log().join('\n')));
  QVERIFY(m_pFixture->Log().join('\n').contains("Ready"));
}

void LanguageTest::ChoicesAndTitlesAreTranslatedAndFileNamesAreNot() {
  m_pFixture->OpenReady();
  QCOMPARE(m_pFixture->Choices(1014)[2], Of("Eine Datei (RF64)", "Un fichier (RF64)"));
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().Title(4), Of("Dateiname", "Nom du fichier"));
  QVERIFY(m_pFixture->Row(0)[4].endsWith("f=7.100 MHz, bw=10 kHz.wav"));
  QCOMPARE(m_pFixture->Text(1027), Of("Einträge höchstens: 8, jetzt: 1", "Entrées maximum : 8, actuelles : 1"));
}

void LanguageTest::MadeUpTextsAreTranslated_data() {
  QTest::addColumn<QString>("english");
  QTest::addColumn<QString>("shown");
  const auto row = [](const char* english, const QString& shown) { QTest::newRow(english) << english << shown; };
  row("7 of 8 outputs written, 1 failed, 2 not begun",
      Of("7 von 8 Ausgaben geschrieben, 1 gescheitert, 2 nicht begonnen",
         "7 sorties écrites sur 8, 1 en échec, 2 non commencées"));
  row("1 of 2 outputs failed:\n\na, done.wav: Error writing 4096 bytes - %1 full",
      Of("1 von 2 Ausgaben gescheitert:\n\na, done.wav: Fehler beim Schreiben von 4096 Bytes - %1 full",
         "1 sorties sur 2 ont échoué :\n\na, done.wav: Erreur d'écriture de 4096 octets - %1 full"));
  row("In the list already; not taken over: folder",
      Of("Schon in der Liste; nicht übernommen: Ordner", "Déjà dans la liste ; non repris : dossier"));
  row("The bandwidth 0 is out of range.; see the log",
      Of("Die Bandbreite 0 ist außerhalb des Bereichs.; siehe Protokoll",
         "La largeur de bande 0 est hors limites. ; voir le journal"));
  row("what nobody knows, and more", "what nobody knows, and more");
  row("/home/done/x: y: cannot be read", "/home/done/x: y: " + Of("kann nicht gelesen werden", "ne peut pas être lu"));
  row("failed: a 000.wav is not finished: 20 of 30 frames",
      Of("gescheitert: a 000.wav ist nicht fertig: 20 von 30 Abtastwerten",
         "échec : a 000.wav n'est pas terminé : 20 échantillons sur 30"));
  row("a.wav: samples written: 20, due: 30",
      Of("a.wav: geschriebene Abtastwerte: 20, nötig: 30", "a.wav: échantillons écrits : 20, attendus : 30"));
  row("/tmp/a: b.wav: reading stopped at byte 4 of its 8 sample bytes - the file ends too early",
      Of("/tmp/a: b.wav: Lesen endete bei Byte 4 von 8 Bytes an Abtastwerten - die Datei endet zu früh",
         "/tmp/a: b.wav: lecture arrêtée à l'octet 4 de ses 8 octets d'échantillons - le fichier finit trop tôt"));
  row("my job.json: entry 3: bits \"8\" cannot be read. Accepted: 16 or 32",
      Of("my job.json: Eintrag 3: bits „8“ ist nicht zu lesen. Möglich: 16 oder 32",
         "my job.json : entrée 3: bits « 8 » ne peut pas être lu. Accepté : 16 ou 32"));
  row("", "");
  row("\n", "\n");
  row("45%", "45%");
}

void LanguageTest::MadeUpTextsAreTranslated() {
  QFETCH(QString, english);
  QFETCH(QString, shown);
  QCOMPARE(InLanguage(english.toStdString()), shown);
}

void LanguageTest::NoTwoControlsOfTheWindowHaveTheSameLetter() {
  m_pFixture->OpenReady();
  QMap<QString, QString> letters;
  for (const QWidget* pWidget : m_pFixture->Dialog().findChildren<QWidget*>()) {
    QString text;
    if (const auto* pLabel = qobject_cast<const QLabel*>(pWidget); pLabel != nullptr && pLabel->buddy() != nullptr) {
      text = pLabel->text();
    }
    if (const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget)) text = pButton->text();
    const QString letter = QKeySequence::mnemonic(text).toString();
    if (letter.isEmpty()) continue;
    QVERIFY2(!letters.contains(letter), qPrintable(letter + ": " + letters[letter] + ", " + text));
    letters[letter] = text;
  }
  QVERIFY(letters.size() >= 18);
}

}  // namespace carvello

int main(int argc, char** argv) {
  return carvello::test::RunUiTest(
      argc, argv, [] { return std::make_unique<carvello::LanguageTest>(); },
      [](int& count, char** arguments) { return std::make_unique<carvello::CCarvelloApp>(count, arguments); });
}
#include "language_test.moc"
