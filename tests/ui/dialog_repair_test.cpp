// Recordings that their recorder could not end: open as far as they go, and repaired from the window.
#include <QDir>
#include <QFile>
#include <QPushButton>

#include "ui/dialog_fixture.h"
#include "ui/offer_strip.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class DialogRepairTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void ASoundRecordingOffersNothing();
  void ADamagedRecordingIsOpenAndOffersItsRepair();
  void InPlaceTheFileIsRightAfterwards();
  void IntoAFolderTheCopyIsOpenedAndTheFileStays();
  void CancelChangesNothing();
  void AFileThatStandsInTheFolderIsTold();

 private:
  // Its sizes were never made final.
  std::string WriteDamaged() {
    const std::string path = m_pFixture->WriteInput({.nSeconds = 10}, "crashed.wav");
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadWrite)) qFatal("no file");
    const QByteArray head = file.read(4096);
    file.seek(4);
    file.write(QByteArray(4, '\0'));
    file.seek(head.indexOf("data") + 4);
    file.write(QByteArray(4, '\0'));
    return path;
  }
  static QByteArray Head(const std::string& path) {
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray();
  }
  COfferStrip& Strip() { return *m_pFixture->Dialog().findChild<COfferStrip*>("stripRepair"); }
  void Repair() { QTest::mouseClick(Strip().findChild<QPushButton*>(), Qt::LeftButton); }

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogRepairTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void DialogRepairTest::ASoundRecordingOffersNothing() {
  m_pFixture->OpenReady();
  QVERIFY(!Strip().IsOffering());
}

void DialogRepairTest::ADamagedRecordingIsOpenAndOffersItsRepair() {
  m_pFixture->Open();
  m_pFixture->SetPath(1000, WriteDamaged());
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:00:10"));
  QVERIFY(Strip().IsOffering());
  QVERIFY2(Strip().accessibleName().startsWith("Damaged: "), qPrintable(Strip().accessibleName()));
  QVERIFY(Strip().accessibleName().size() > 20);
  QVERIFY(!m_pFixture->Log().filter("[WARNING]").isEmpty());
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  QVERIFY(!Strip().IsOffering());
}

void DialogRepairTest::InPlaceTheFileIsRightAfterwards() {
  const std::string path = WriteDamaged();
  m_pFixture->Open();
  m_pFixture->SetPath(1000, path);
  m_pFixture->Answers().Give(QMessageBox::Apply);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Repair();
  QTRY_VERIFY(m_pFixture->Answers().AllUsed());
  QCOMPARE(m_pFixture->Answers().Shown().back().text, QString("Files repaired: 1"));
  QVERIFY(!Strip().IsOffering());
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:00:10"));
  QVERIFY2(m_pFixture->Log().filter("[WARNING]").isEmpty(), "what was known of the file is looked at anew");
  QCOMPARE(m_pFixture->Log().last(), QString::fromStdString("Repaired: " + path));
  QCOMPARE(Head(path), Head(m_pFixture->WriteInput({.nSeconds = 10}, "crashed.wav")));
}

void DialogRepairTest::IntoAFolderTheCopyIsOpenedAndTheFileStays() {
  const std::string path = WriteDamaged();
  const QByteArray before = Head(path);
  m_pFixture->Open();
  m_pFixture->SetPath(1000, path);
  m_pFixture->Answers().Give(QMessageBox::SaveAll);
  m_pFixture->Answers().ChooseFile(m_pFixture->OutputFolder());
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Repair();
  QTRY_VERIFY(m_pFixture->Answers().AllUsed());
  QCOMPARE(Head(path), before);
  const QString shown = m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path();
  QCOMPARE(QDir::fromNativeSeparators(shown),
           QDir::fromNativeSeparators(QString::fromStdString(m_pFixture->OutputFolder())) + "/crashed.wav");
  QCOMPARE(m_pFixture->Text(1007), QString("0d 00:00:10"));
  QVERIFY(!Strip().IsOffering());
}

void DialogRepairTest::CancelChangesNothing() {
  const std::string path = WriteDamaged();
  const QByteArray before = Head(path);
  m_pFixture->Open();
  m_pFixture->SetPath(1000, path);
  m_pFixture->Answers().Give(QMessageBox::Cancel);
  Repair();
  QVERIFY(m_pFixture->Answers().AllUsed());
  QCOMPARE(Head(path), before);
  QVERIFY(Strip().IsOffering());
}

void DialogRepairTest::AFileThatStandsInTheFolderIsTold() {
  const std::string path = WriteDamaged();
  m_pFixture->WriteInput({}, "out/crashed.wav");
  m_pFixture->Open();
  m_pFixture->SetPath(1000, path);
  m_pFixture->Answers().Give(QMessageBox::SaveAll);
  m_pFixture->Answers().ChooseFile(m_pFixture->OutputFolder());
  m_pFixture->Answers().Give(QMessageBox::Ok);
  Repair();
  QTRY_VERIFY(m_pFixture->Answers().AllUsed());
  QVERIFY2(m_pFixture->Answers().Shown().back().text.contains("Files repaired: 0"), "told");
  QCOMPARE(m_pFixture->Answers().Shown().back().icon, QMessageBox::Critical);
  QVERIFY(m_pFixture->Log().last().startsWith("[ERROR] "));
  QCOMPARE(m_pFixture->Control<CMyMFCEditBrowseCtrl>(1000).Path().toStdString(), path);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogRepairTest)
#include "dialog_repair_test.moc"
