// Parts of a recording, and what its files do not tell or tell wrongly: chosen, asked for, kept with the job.
#include <QAction>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include "jobs/job_file.h"
#include "support/sparse_file.h"
#include "ui/dialog_fixture.h"
#include "ui/facts_dlg.h"
#include "ui/job_menu.h"
#include "ui/offer_strip.h"
#include "ui/part_choice.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;
using test::WriteWholeFile;

namespace {

// Three minutes at 100 kHz on 7.1 MHz, then two on 14.2 MHz.
constexpr char kTwoParts[] =
    R"({"global": {"core:version": "1.2.5", "core:datatype": "ci8", "core:sample_rate": 100000},
  "captures": [
    {"core:sample_start": 0, "core:frequency": 7100000, "core:datetime": "2026-11-21T12:00:00Z"},
    {"core:sample_start": 18000000, "core:frequency": 14200000, "core:datetime": "2026-11-21T13:00:00Z"}],
  "annotations": []})";

}  // namespace

class DialogFactsTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();

  void ARecordingOfOnePartShowsNoChoice();
  void ThePartsOfARecordingAreShownAndTheFirstIsOpen();
  void AnotherPartIsChosenByKeysAndAnalysedAnew();
  void TheListOfAPartIsKeptForThatPart();
  void AJobOpensThePartThatItWasMadeFor();
  void UtcKeepsThePart();
  void ANewStartOpensTheSamePart();
  void WhatAChosenFileLacksIsAskedForAtOnce();
  void CancelLeavesTheWindowAsItWas();
  void WhatATypedPathLacksIsOnlyOffered();
  void WrongTextsAreToldBesideTheirFields();
  void AnEmptyFieldIsRefusedOnlyWhereTheFileDoesNotTell();
  void FactsOfAnyRecordingCanBeCorrected();
  void AnotherTimeZoneMovesTheStart();
  void AnEmptiedFieldIsLeftToTheFile();
  void WhatDoesNotFitTheFileIsToldAndOfferedToBeChanged();
  void AFileOfNoKnownKindOpensByItsSampleType();
  void FactsAreSavedWithAJobAndComeBackWithIt();
  void FactsOfOneInputAreNotThoseOfAnother();
  void FactsAreRememberedForTheNextStart();
  void StartsAreReadInTheirZone();
  void TheFileDialogOffersEveryKindOfFile();
  void EveryKindOfFileIsTakenWhereItIsDropped();

 private:
  std::string WriteText(const std::string& name, const std::string& text) {
    const std::string path = m_pFixture->Folder() / name;
    WriteWholeFile(path, text);
    return path;
  }
  // A path as a text of JSON takes it on every system.
  static std::string InJson(const std::string& path) {
    return QDir::fromNativeSeparators(QString::fromStdString(path)).toStdString();
  }
  std::string WriteZeros(const std::string& name, std::int64_t bytes) {
    const std::string path = WriteText(name, "");
    test::ExtendFile(path, static_cast<std::uint64_t>(bytes));
    return path;
  }
  std::string WriteTwoParts() {
    WriteZeros("two.sigmf-data", 60'000'000);
    return WriteText("two.sigmf-meta", kTwoParts);
  }
  QComboBox& Parts() { return *m_pFixture->Dialog().findChild<QComboBox*>("comboPart"); }
  COfferStrip& Strip() { return *m_pFixture->Dialog().findChild<COfferStrip*>("stripFacts"); }
  QAction& Action(const char* text) {
    for (QAction* pAction : m_pFixture->Dialog().findChild<CJobMenu*>()->actions()) {
      if (pAction->text() == text) return *pAction;
    }
    qFatal("no action %s", text);
  }
  void Correct() { Action("&Correct Facts of the Recording…").trigger(); }
  // What the user types into the next form, before OK; a null text leaves its field.
  struct STyped {
    const char* pszRate = nullptr;
    const char* pszCentre = nullptr;
    const char* pszStart = nullptr;
    const char* pszZone = nullptr;
    const char* pszKind = nullptr;
  };
  static void Type(QDialog& form, const STyped& typed) {
    const auto into = [&form](const char* name, const char* text) {
      if (text != nullptr) form.findChild<QLineEdit*>(name)->setText(text);
    };
    into("editRate", typed.pszRate);
    into("editCentre", typed.pszCentre);
    into("editStart", typed.pszStart);
    if (typed.pszZone != nullptr) form.findChild<QComboBox*>("comboZone")->setEditText(typed.pszZone);
    if (typed.pszKind == nullptr) return;
    auto& kinds = *form.findChild<QComboBox*>("comboKind");
    const int index = *typed.pszKind == '\0' ? 0 : kinds.findData(typed.pszKind);
    QVERIFY(index >= 0);
    kinds.setCurrentIndex(index);
  }
  void Answer(const STyped& typed) {
    m_pFixture->Answers().Do([typed](QDialog& form) {
      Type(form, typed);
      form.accept();
      QVERIFY2(!form.isVisible(), "the form has taken it");
      if (form.isVisible()) form.reject();
    });
  }
  // What stands beside the fields of a form, in their order.
  static QStringList Problems(const QDialog& form) {
    QStringList told;
    for (const QLabel* pLabel : form.findChildren<QLabel*>()) {
      if (pLabel->isVisible() && pLabel->font().bold()) told << pLabel->text();
    }
    return told;
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogFactsTest::init() {
  test::SetTimeZone("XXX-3");  // three hours ahead of UTC
  m_pFixture = std::make_unique<CDialogFixture>();
}

void DialogFactsTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogFactsTest::ARecordingOfOnePartShowsNoChoice() {
  m_pFixture->OpenReady();
  QVERIFY(!Parts().isVisible());
  QVERIFY(!Strip().isVisible());
}

void DialogFactsTest::ThePartsOfARecordingAreShownAndTheFirstIsOpen() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, WriteTwoParts());
  QVERIFY(Parts().isVisible());
  QCOMPARE(Parts().count(), 2);
  QCOMPARE(Parts().currentIndex(), 0);
  QVERIFY2(Parts().itemText(0).startsWith("1: 7.100 MHz, 100 kHz wide, "), qPrintable(Parts().itemText(0)));
  QVERIFY2(Parts().itemText(1).contains("13:00:00z, 2:00, "), qPrintable(Parts().itemText(1)));
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:03:00"));
  QVERIFY2(m_pFixture->Log().filter("--part").isEmpty(), "no word of the command line");
}

void DialogFactsTest::AnotherPartIsChosenByKeysAndAnalysedAnew() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, WriteTwoParts());
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  Parts().setFocus();
  QTest::keyClick(&Parts(), Qt::Key_Down);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:02:00"));
  QCOMPARE(Parts().currentIndex(), 1);
  QCOMPARE(m_pFixture->List().RowCount(), 0);
  QVERIFY2(!Parts().accessibleName().isEmpty(), "readers of the screen tell what it is");
}

void DialogFactsTest::TheListOfAPartIsKeptForThatPart() {
  const std::string path = WriteTwoParts();
  m_pFixture->Open();
  m_pFixture->SetPath(1000, path);
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  auto& strip = *m_pFixture->Dialog().findChild<COfferStrip*>("stripList");
  emit m_pFixture->Dialog().findChild<CPartChoice*>()->PartChosen(2);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  QVERIFY(!strip.IsOffering());
  emit m_pFixture->Dialog().findChild<CPartChoice*>()->PartChosen(1);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QTRY_VERIFY(strip.IsOffering());
}

void DialogFactsTest::AJobOpensThePartThatItWasMadeFor() {
  const std::string path = WriteTwoParts();
  const std::string job =
      WriteText("job.json", R"({"input": ")" + InJson(path) + R"(", "output": ")" + InJson(m_pFixture->OutputFolder()) +
                                R"(", "part": 2, "entries": [{"frequency": "14.2M", "bandwidth": 10000}]})");
  m_pFixture->Open();
  m_pFixture->SetPath(1000, path);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  m_pFixture->Answers().Give(QMessageBox::Open);
  emit m_pFixture->Dialog().findChild<CJobMenu*>()->FilePressed(job);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  QTRY_COMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogFactsTest::UtcKeepsThePart() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, WriteTwoParts());
  emit m_pFixture->Dialog().findChild<CPartChoice*>()->PartChosen(2);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  m_pFixture->Click(1034);
  QTRY_VERIFY(m_pFixture->Text(1005).endsWith(test::TimeText(16, 0, 0)));
  QCOMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  QVERIFY2(Parts().itemText(1).contains(test::TimeText(16, 0, 0)), qPrintable(Parts().itemText(1)));
}

void DialogFactsTest::ANewStartOpensTheSamePart() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, WriteTwoParts());
  emit m_pFixture->Dialog().findChild<CPartChoice*>()->PartChosen(2);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  m_pFixture->Open();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
}

void DialogFactsTest::WhatAChosenFileLacksIsAskedForAtOnce() {
  m_pFixture->Open();
  Answer({.pszRate = "2.4M", .pszCentre = "7.1 MHz", .pszStart = "2026-11-21 12:00:00.25", .pszZone = "+02:00"});
  m_pFixture->SetPath(1000, WriteZeros("bare.cs16", 48'000'000));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QCOMPARE(m_pFixture->Text(1002), QString("2.400 MHz"));
  QCOMPARE(m_pFixture->Text(1003), QString("16 bit"));
  QCOMPARE(m_pFixture->Text(1005), test::DateText(2026, 11, 21) + " 10:00:00z");
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:00:05"));
  QVERIFY(!Strip().IsOffering());
  QCOMPARE(m_pFixture->Log().last(),
           QString("As the user says: rate=2400000,centre=7100000,start_time=2026-11-21T10:00:00.25Z"));
}

void DialogFactsTest::CancelLeavesTheWindowAsItWas() {
  m_pFixture->Open();
  m_pFixture->Answers().Do([](QDialog& form) {
    Type(form, {.pszRate = "2.4M", .pszCentre = "7.1M", .pszStart = "2026-11-21 12:00"});
    form.reject();
  });
  m_pFixture->SetPath(1000, WriteZeros("bare.cs16", 48'000));
  QTRY_VERIFY(m_pFixture->Answers().AllUsed());
  QVERIFY(Strip().IsOffering());
  QCOMPARE(Strip().accessibleName(), QString("Not told by the file: sample rate, centre frequency, start"));
  QCOMPARE(m_pFixture->Text(1001), QString("-"));
  const QStringList log = m_pFixture->Log();
  QVERIFY(!log.filter("it does not tell its sample rate, its centre frequency and when it begins").isEmpty());
  // Of a recording that is open, too.
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  m_pFixture->Answers().Do([](QDialog& form) {
    Type(form, {.pszRate = "2.4M"});
    form.reject();
  });
  Correct();
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Text(1002), QString("96 kHz"));
}

void DialogFactsTest::WhatATypedPathLacksIsOnlyOffered() {
  const std::string path = WriteZeros("bare.cs16", 48'000'000);
  m_pFixture->Open();
  auto& field = m_pFixture->Control<QLineEdit>(1000);
  field.setText(QString::fromStdString(path.substr(0, path.size() - 1)));
  QTest::keyClick(&field, '6');
  QVERIFY(Strip().IsOffering());
  QTest::qWait(200);  // a form would have come, and been missed by the answers
  Answer({.pszRate = "48", .pszCentre = "-1k", .pszStart = "2026-11-21T12:00:00Z"});
  QTest::mouseClick(Strip().findChild<QPushButton*>(), Qt::LeftButton);
  QTRY_COMPARE(m_pFixture->Text(1002), QString("48 kHz"));
  QCOMPARE(m_pFixture->Text(1001), QString("-1 kHz"));
}

void DialogFactsTest::WrongTextsAreToldBesideTheirFields() {
  m_pFixture->Open();
  m_pFixture->Answers().Do([](QDialog& form) {
    Type(form, {.pszRate = "fast", .pszCentre = "7,1,1", .pszStart = "2026-02-30 12:00", .pszKind = "cu8"});
    form.accept();
    QVERIFY(form.isVisible());
    QCOMPARE(Problems(form).size(), 3);
    QVERIFY(Problems(form)[0].startsWith("No sample rate"));
    QVERIFY(Problems(form)[1].startsWith("No frequency"));
    QVERIFY(Problems(form)[2].startsWith("No date and time"));
    QCOMPARE(form.focusWidget(), form.findChild<QLineEdit*>("editRate"));
    QVERIFY(form.findChild<QLineEdit*>("editRate")->accessibleDescription().startsWith("No sample rate"));
    Type(form, {.pszRate = "1M", .pszCentre = "1M", .pszStart = "2026-02-28 12:00", .pszZone = "Berlin"});
    form.accept();
    QVERIFY(form.isVisible());
    QCOMPARE(Problems(form).size(), 1);
    QVERIFY(Problems(form)[0].startsWith("No time zone"));
    Type(form, {.pszZone = "-01:30"});
    form.accept();
    QVERIFY(!form.isVisible());
  });
  m_pFixture->SetPath(1000, WriteZeros("bare.iq", 2'000'000));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("1.000 MHz"));
  QCOMPARE(m_pFixture->Text(1005), test::DateText(2026, 2, 28) + " 13:30:00z");
  QCOMPARE(m_pFixture->Text(1003), QString("8 bit"));
}

void DialogFactsTest::AnEmptyFieldIsRefusedOnlyWhereTheFileDoesNotTell() {
  m_pFixture->Open();
  m_pFixture->Answers().Do([](QDialog& form) {
    form.accept();
    QCOMPARE(Problems(form),
             (QStringList{"The files do not tell it.", "The files do not tell it.", "The files do not tell it."}));
    Type(form, {.pszKind = ""});
    form.accept();
    QCOMPARE(Problems(form).size(), 3);
    form.reject();
  });
  m_pFixture->SetPath(1000, WriteZeros("bare.cs16", 48'000));
  QTRY_VERIFY(m_pFixture->Answers().AllUsed());
}

void DialogFactsTest::FactsOfAnyRecordingCanBeCorrected() {
  m_pFixture->OpenReady();
  m_pFixture->Answers().Do([](QDialog& form) {
    QCOMPARE(form.findChild<QLineEdit*>("editRate")->text(), QString("96 kHz"));
    QCOMPARE(form.findChild<QLineEdit*>("editCentre")->text(), QString("7.100 MHz"));
    QCOMPARE(form.findChild<QLineEdit*>("editStart")->text(), QString("2020-11-01 23:59:00"));
    QCOMPARE(form.findChild<QComboBox*>("comboKind")->currentData().toString(), QString("ci16_le"));
    Type(form, {.pszCentre = "14.2 MHz"});
    form.accept();
  });
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  QCOMPARE(m_pFixture->Text(1002), QString("96 kHz"));
  QCOMPARE(m_pFixture->Log().last(), QString("As the user says: centre=14200000"));
  // It counts for what is cut, too.
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  QVERIFY2(m_pFixture->Row(0).join('|').contains("14.200 MHz"), qPrintable(m_pFixture->Row(0).join('|')));
}

void DialogFactsTest::AnotherTimeZoneMovesTheStart() {
  m_pFixture->OpenReady();
  Answer({.pszZone = "+02:00"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1005), test::DateText(2020, 11, 1) + " 21:59:00z");
  Answer({.pszZone = "Local time"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1005), test::DateText(2020, 11, 1) + " 18:59:00z");
}

void DialogFactsTest::AnEmptiedFieldIsLeftToTheFile() {
  m_pFixture->OpenReady();
  Answer({.pszRate = "48 kHz", .pszCentre = "14.2 MHz"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  Answer({.pszCentre = ""});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QCOMPARE(m_pFixture->Text(1002), QString("48 kHz"));
}

void DialogFactsTest::WhatDoesNotFitTheFileIsToldAndOfferedToBeChanged() {
  m_pFixture->OpenReady();
  Answer({.pszKind = "cf64_le"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("-"));
  QVERIFY(m_pFixture->Log().last().contains("its frames have 4 bytes, those of cf64_le have 16"));
  QVERIFY(Strip().IsOffering());
  m_pFixture->Answers().Do([](QDialog& form) {
    QCOMPARE(form.findChild<QComboBox*>("comboKind")->currentData().toString(), QString("cf64_le"));
    Type(form, {.pszKind = ""});
    form.accept();
  });
  QTest::mouseClick(Strip().findChild<QPushButton*>(), Qt::LeftButton);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QVERIFY(!Strip().IsOffering());
}

void DialogFactsTest::AFileOfNoKnownKindOpensByItsSampleType() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, WriteZeros("samples.dat2", 800'000));
  QCOMPARE(m_pFixture->Text(1001), QString("-"));
  Answer({.pszRate = "100k", .pszCentre = "7.1M", .pszStart = "2026-11-21 12:00:00", .pszKind = "cf32_be"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1007), QString("0d 00:00:01"));
}

void DialogFactsTest::FactsAreSavedWithAJobAndComeBackWithIt() {
  const std::string path = WriteZeros("bare.cs16", 48'000'000);
  const std::string job = m_pFixture->Folder() / "job.json";
  m_pFixture->Open();
  Answer({.pszRate = "2.4M", .pszCentre = "7.1 MHz", .pszStart = "2026-11-21 12:00:00.25"});
  m_pFixture->SetPath(1000, path);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  m_pFixture->Answers().ChooseFile(job);
  Action("Save &As…").trigger();
  QTRY_VERIFY(QFileInfo::exists(QString::fromStdString(job)));
  SJobFile saved;
  std::string error;
  QVERIFY2(ReadJobFile(job, saved, error), error.c_str());
  QCOMPARE(saved.given.nSampleRate.value_or(0), 2'400'000U);
  QCOMPARE(saved.given.nCentre.value_or(0), 7'100'000);
  QVERIFY(saved.given.start == (SExactTime{1'795'262'400, 250'000'000}));

  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
  m_pFixture->Answers().Give(QMessageBox::Open);
  emit m_pFixture->Dialog().findChild<CJobMenu*>()->FilePressed(job);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  QTRY_COMPARE(m_pFixture->List().RowCount(), 1);
}

void DialogFactsTest::FactsOfOneInputAreNotThoseOfAnother() {
  m_pFixture->OpenReady();
  Answer({.pszCentre = "14.2 MHz"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav"));
  QCOMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
}

void DialogFactsTest::FactsAreRememberedForTheNextStart() {
  m_pFixture->OpenReady();
  Answer({.pszCentre = "14.2 MHz"});
  Correct();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  m_pFixture->Open();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("14.200 MHz"));
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav"));
  m_pFixture->Open();
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
}

void DialogFactsTest::StartsAreReadInTheirZone() {
  const STimeZone utc;
  const STimeZone ahead{false, 7200};
  const STimeZone local{true, 0};  // XXX-3
  QCOMPARE(ReadStart("2026-11-21 12:00:00", utc)->nSeconds, 1'795'262'400);
  QCOMPARE(ReadStart(" 2026-11-21T12:00 ", utc)->nSeconds, 1'795'262'400);
  QCOMPARE(ReadStart("2026-11-21 12:00:00", ahead)->nSeconds, 1'795'255'200);
  QCOMPARE(ReadStart("2026-11-21 12:00:00", local)->nSeconds, 1'795'251'600);
  QCOMPARE(ReadStart("2026-11-21 12:00:00z", ahead)->nSeconds, 1'795'262'400);
  QCOMPARE(ReadStart("2026-11-21 12:00:00 +02:00", utc)->nSeconds, 1'795'255'200);
  QCOMPARE(ReadStart("2026-11-21 12:00:00,5", utc)->nNanoseconds, 500'000'000U);
  for (const char* none : {"", "12:00", "2026-11-21", "2026-13-01 12:00", "1970-01-01 00:00", "2107-01-01 00:00",
                           "2026-11-21 24:00", "2026-11-21 12:00:00.1234567891", "now"}) {
    QVERIFY2(!ReadStart(none, ahead), none);
  }
}

void DialogFactsTest::TheFileDialogOffersEveryKindOfFile() {
  m_pFixture->Open();
  QStringList filters;
  m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).SetChooser(
      [&filters](QWidget*, const CMyMFCEditBrowseCtrl::SBrowse& browse, const QString&) {
        filters = browse.nameFilters;
        return QString();
      });
  QTest::mouseClick(m_pFixture->Dialog().findChild<QWidget*>("IDC_1000_browse"), Qt::LeftButton);
  QVERIFY(filters.size() > 2);
  QVERIFY(filters[0].startsWith("WAV recording files"));
  QVERIFY(filters[1].startsWith("Winradio files"));
  const QString all = filters.mid(0, filters.size() - 1).join(' ').toLower();
  for (const char* ending : {"sigmf-meta", "sigmf-data", "sigmf", "sigmf-collection", "sdriq", "cf32", "cs16", "cu8",
                             "cfile", "iq", "c16", "c8"}) {
    // Letters of either case where that matters: "*.[cC][uU]8".
    QString pattern;
    for (const QChar c : QString(ending)) pattern += c.isLetter() ? QString("[%1%1]").arg(c) : QString(c);
    QVERIFY2(all.contains("*." + pattern) || all.contains("*." + QString(ending)), ending);
  }
  QVERIFY2(filters.last().contains("(*)"), qPrintable(filters.last()));
}

void DialogFactsTest::EveryKindOfFileIsTakenWhereItIsDropped() {
  m_pFixture->Open();
  const QString path = QString::fromStdString(WriteTwoParts());
  const auto drop = [this](const QString& file) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_pFixture->Dialog(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent dropped(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_pFixture->Dialog(), &dropped);
  };
  drop(path);
  QTRY_COMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
  // What a dropped file lacks is asked for.
  Answer({.pszRate = "2.4M", .pszCentre = "3.5 MHz", .pszStart = "2026-11-21 12:00:00"});
  drop(QString::fromStdString(WriteZeros("bare.cs16", 48'000'000)));
  QTRY_COMPARE(m_pFixture->Text(1001), QString("3.500 MHz"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogFactsTest)
#include "dialog_facts_test.moc"
