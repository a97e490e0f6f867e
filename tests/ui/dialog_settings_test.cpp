#include <QAction>
#include <QCheckBox>
#include <ctime>

#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class DialogSettingsTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup() { m_pFixture.reset(); }

  void UtcIsOnByDefaultAndSavedWhenClicked();
  void OnePassIsOffByDefaultSavedWhenClickedAndReadAtStartUp();
  void CountingFramesIsOffByDefaultSavedWhenChosenAndReadAtStartUp();
  void UtcIsReadAtStartUp();
  void InputFileIsSavedAfterASuccessfulSelectionOnly();
  void InputFileIsSelectedAtStartUp();
  void AnInputFileThatIsGoneIsIgnoredAtStartUp();
  void OutputFolderIsSavedAtEveryChange();
  void OutputFolderIsReadAtStartUp();
  void AnOutputFolderThatIsGoneIsIgnoredAtStartUp();
  void ChoicesAreSavedOnAddOnly();
  void ChoicesAreReadAtEveryInputSelection();
  void ChoicesStayAsTheyAreWhereNothingWasSaved();
  void ASavedBandwidthThatIsNotOfferedSelectsNothingElse();
  void ARefusedEntrySavesNothing();

 private:
  template <class T>
  T Read(const char* name, T otherwise) {
    m_pFixture->Settings().Read(name, otherwise);
    return otherwise;
  }
  bool IsSaved(const char* name) {
    int number = 0;
    std::string text;
    std::int64_t wide = 0;
    const CMySettingsStore settings = m_pFixture->Settings();
    return settings.Read(name, number) || settings.Read(name, text) || settings.Read(name, wide);
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogSettingsTest::UtcIsOnByDefaultAndSavedWhenClicked() {
  m_pFixture->OpenReady();
  QVERIFY(m_pFixture->Control<QAbstractButton>(1034).isChecked());
  QVERIFY(!IsSaved("UTC"));
  m_pFixture->Click(1034);
  QCOMPARE(Read("UTC", 7), 0);
  m_pFixture->Click(1034);
  QCOMPARE(Read("UTC", 7), 1);
}

void DialogSettingsTest::OnePassIsOffByDefaultSavedWhenClickedAndReadAtStartUp() {
  const auto box = [this] { return m_pFixture->Dialog().findChild<QCheckBox*>("checkOnePass"); };
  m_pFixture->OpenReady();
  QVERIFY(box() != nullptr && !box()->isChecked());
  QVERIFY(!IsSaved("OnePass"));
  box()->click();
  QCOMPARE(Read("OnePass", 7), 1);
  m_pFixture->Open();
  QVERIFY(box()->isChecked());
  QVERIFY(m_pFixture->Text(1027).startsWith("Maximum entries: 1000, current: 0"));
  QVERIFY(m_pFixture->Log().contains("Processors: 2, max entries: 1000"));
  box()->click();
  QCOMPARE(Read("OnePass", 7), 0);
  m_pFixture->Open();
  QVERIFY(!box()->isChecked());
}

void DialogSettingsTest::CountingFramesIsOffByDefaultSavedWhenChosenAndReadAtStartUp() {
  const auto choice = [this]() -> QAction* {
    for (QAction* pAction : m_pFixture->Dialog().findChild<CJobMenu*>()->actions()) {
      if (pAction->text().remove('&') == "Count Frames in RF64 Files") return pAction;
    }
    return nullptr;
  };
  m_pFixture->OpenReady();
  QVERIFY(choice() != nullptr && choice()->isCheckable() && !choice()->isChecked());
  QVERIFY(!IsSaved("Ds64Frames"));
  choice()->trigger();
  QCOMPARE(Read("Ds64Frames", 7), 1);
  m_pFixture->Open();
  QVERIFY(choice()->isChecked());
  choice()->trigger();
  QCOMPARE(Read("Ds64Frames", 7), 0);
  m_pFixture->Open();
  QVERIFY(!choice()->isChecked());
}

void DialogSettingsTest::UtcIsReadAtStartUp() {
  m_pFixture->Settings().Write("UTC", 0);
  m_pFixture->Open();
  QVERIFY(!m_pFixture->Control<QAbstractButton>(1034).isChecked());
}

void DialogSettingsTest::InputFileIsSavedAfterASuccessfulSelectionOnly() {
  m_pFixture->Open();
  QVERIFY(!IsSaved("InputFile"));
  const std::string good = m_pFixture->WriteInput();
  m_pFixture->SetPath(1000, good);
  QCOMPARE(Read<std::string>("InputFile", ""), good);
  m_pFixture->SetPath(1000, m_pFixture->Folder() / "none.wav");
  QCOMPARE(Read<std::string>("InputFile", ""), good);
}

void DialogSettingsTest::InputFileIsSelectedAtStartUp() {
  const std::string input = m_pFixture->WriteInput();
  m_pFixture->Settings().Write("InputFile", input);
  m_pFixture->Open();
  QCOMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path().toStdString(), input);
  QCOMPARE(m_pFixture->Text(1001), QString("7.100 MHz"));
}

void DialogSettingsTest::AnInputFileThatIsGoneIsIgnoredAtStartUp() {
  m_pFixture->Settings().Write("InputFile", m_pFixture->Folder() / "none.wav");
  m_pFixture->Open();
  QVERIFY(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path().isEmpty());
  QCOMPARE(m_pFixture->Log().size(), 2);
}

void DialogSettingsTest::OutputFolderIsSavedAtEveryChange() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  QVERIFY(!IsSaved("OutputFolder"));
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  QCOMPARE(Read<std::string>("OutputFolder", "-"), m_pFixture->OutputFolder());
  m_pFixture->SetPath(1009, "/nowhere at all");
  QCOMPARE(Read<std::string>("OutputFolder", "-"), std::string("/nowhere at all"));
  m_pFixture->SetPath(1009, "");
  QCOMPARE(Read<std::string>("OutputFolder", "-"), std::string());
}

void DialogSettingsTest::OutputFolderIsReadAtStartUp() {
  m_pFixture->Settings().Write("OutputFolder", m_pFixture->OutputFolder());
  m_pFixture->Open();
  QCOMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path().toStdString(), m_pFixture->OutputFolder());
  QVERIFY(m_pFixture->Control(1033).isEnabled());
}

void DialogSettingsTest::AnOutputFolderThatIsGoneIsIgnoredAtStartUp() {
  m_pFixture->Settings().Write("OutputFolder", m_pFixture->Folder() / "none");
  m_pFixture->Open();
  QVERIFY(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1009).Path().isEmpty());
  QVERIFY(!m_pFixture->Control(1033).isEnabled());
}

void DialogSettingsTest::ChoicesAreSavedOnAddOnly() {
  m_pFixture->OpenReady();
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Click(1013);
  m_pFixture->SetFrequency(7'123'456);
  for (const char* name : {"Bandwidth", "Format", "SampleSize", "CentreFreq"}) QVERIFY(!IsSaved(name));
  m_pFixture->Click(1015);
  QCOMPARE(Read("Bandwidth", -1), 10'000);
  QCOMPARE(Read("Format", -1), 0);
  QCOMPARE(Read("SampleSize", -1), 1);
  QCOMPARE(Read("CentreFreq", std::int64_t{-1}), std::int64_t{7'123'456});
  QVERIFY(!IsSaved("BandwidthTyped"));
  m_pFixture->Choose(1014, "1 GB");
  m_pFixture->Click(1012);
  m_pFixture->Click(1015);
  QCOMPARE(Read("Format", -1), 1000);
  QCOMPARE(Read("SampleSize", -1), 0);
}

void DialogSettingsTest::ChoicesAreReadAtEveryInputSelection() {
  {
    CMySettingsStore settings = m_pFixture->Settings();
    settings.Write("Bandwidth", 10'000);
    settings.Write("Format", 1000);
    settings.Write("SampleSize", 1);
    settings.Write("CentreFreq", std::int64_t{7'123'456});
  }
  m_pFixture->OpenReady();
  for (int selection = 0; selection < 2; ++selection) {
    QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentText(), QString("10 kHz"));
    QCOMPARE(m_pFixture->Control<QComboBox>(1014).currentText(), QString("1 GB"));
    QVERIFY(m_pFixture->Control<QAbstractButton>(1013).isChecked());
    QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{7'123'456});
    m_pFixture->Choose(1011, "20 kHz");
    m_pFixture->Choose(1014, "100 MB");
    m_pFixture->Click(1012);
    m_pFixture->SetFrequency(1);
    m_pFixture->SetPath(1000, m_pFixture->WriteInput({}, "other.wav"));
  }
}

void DialogSettingsTest::ChoicesStayAsTheyAreWhereNothingWasSaved() {
  m_pFixture->OpenReady({.nSampleRate = 2'000'000, .nSeconds = 10});
  QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentText(), QString("1000 kHz"));
  m_pFixture->Choose(1014, "1 GB");
  m_pFixture->Click(1013);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav"));
  QCOMPARE(m_pFixture->Control<QComboBox>(1014).currentText(), QString("1 GB"));
  QVERIFY(m_pFixture->Control<QAbstractButton>(1013).isChecked());
  QCOMPARE(m_pFixture->Control<CMyMFCMaskedEdit>(1010).Frequency(), std::int64_t{3'500'000});
}

void DialogSettingsTest::ASavedBandwidthThatIsNotOfferedSelectsNothingElse() {
  m_pFixture->Settings().Write("Bandwidth", 12'345);
  m_pFixture->OpenReady({.nSampleRate = 2'000'000, .nSeconds = 10});
  QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentText(), QString("1000 kHz"));
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nSampleRate = 192'000}, "other.wav"));
  QCOMPARE(m_pFixture->Control<QComboBox>(1011).currentIndex(), -1);
}

void DialogSettingsTest::ARefusedEntrySavesNothing() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1084);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1015);
  QVERIFY(m_pFixture->Answers().AllUsed());
  for (const char* name : {"Bandwidth", "Format", "SampleSize", "CentreFreq"}) QVERIFY(!IsSaved(name));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogSettingsTest)
#include "dialog_settings_test.moc"
