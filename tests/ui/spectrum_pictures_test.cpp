#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QImageReader>

#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumSuite;

class SpectrumPicturesTest : public CSpectrumSuite {
  Q_OBJECT

 private slots:
  void CopiesWhatIsSeenWithItsAxes();
  void SavesAPngFile();
  void CancellingSavesNothing();
  void AFileThatCannotBeWrittenIsTold();
  void ThePictureHasNoCursor();
};

void SpectrumPicturesTest::CopiesWhatIsSeenWithItsAxes() {
  QApplication::clipboard()->clear();
  m_pFixture->Key(Qt::Key_C, Qt::ControlModifier);
  const QImage picture = QApplication::clipboard()->image();
  QVERIFY(!picture.isNull());
  const QSize plot = m_pFixture->Part("plot").size() * m_pFixture->Window().devicePixelRatioF();
  QVERIFY(picture.width() > plot.width() && picture.height() > plot.height());
  QApplication::clipboard()->clear();
  m_pFixture->Press("buttonCopy");
  QCOMPARE(QApplication::clipboard()->image().size(), picture.size());
}

void SpectrumPicturesTest::SavesAPngFile() {
  const std::string path = m_pFixture->Folder() / "picture";
  m_pFixture->Answers().ChooseFile(path);
  m_pFixture->Key(Qt::Key_S, Qt::ControlModifier);
  const QString file = QString::fromStdString(path) + ".png";
  QTRY_VERIFY(QFile::exists(file));
  QImageReader reader(file);
  QCOMPARE(reader.format(), QByteArray("png"));
  QVERIFY(reader.read().width() > m_pFixture->Waterfall().width());
  QVERIFY(m_pFixture->Answers().AllUsed());
}

void SpectrumPicturesTest::CancellingSavesNothing() {
  m_pFixture->Answers().Do([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  m_pFixture->Press("buttonSave");
  QVERIFY(m_pFixture->Answers().AllUsed());
  QVERIFY(QDir(QString::fromStdString(m_pFixture->Folder().Path())).entryList({"*.png"}).isEmpty());
}

void SpectrumPicturesTest::AFileThatCannotBeWrittenIsTold() {
  m_pFixture->Answers().ChooseFile(m_pFixture->Folder() / "gone/picture.png");
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Press("buttonSave");
  QTRY_VERIFY(!m_pFixture->Answers().Shown().empty());
  QCOMPARE(m_pFixture->Answers().Shown()[0].caption, QString("Save Picture"));
  QVERIFY2(m_pFixture->Answers().Shown()[0].text.contains("gone/picture.png: "),
           qPrintable(m_pFixture->Answers().Shown()[0].text));
}

void SpectrumPicturesTest::ThePictureHasNoCursor() {
  m_pFixture->Key(Qt::Key_C, Qt::ControlModifier);
  const QImage without = QApplication::clipboard()->image();
  m_pFixture->Key(Qt::Key_Left);
  m_pFixture->Key(Qt::Key_C, Qt::ControlModifier);
  QVERIFY(QApplication::clipboard()->image() == without);
  QVERIFY(m_pFixture->Scene().Cursor());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumPicturesTest)
#include "spectrum_pictures_test.moc"
