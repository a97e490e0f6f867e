#include "ui/about_dlg.h"

#include <QLabel>
#include <QPushButton>

#include "ui/resources.h"
#include "ui/ui_test.h"

namespace carvello {

class AboutDlgTest : public QObject {
  Q_OBJECT

 private slots:
  void ShowsNameVersionAndIcon();
  void OkCloses();
  void TheIconComesInAllSizes();
};

void AboutDlgTest::ShowsNameVersionAndIcon() {
  const CAboutDlg dialog;
  QCOMPARE(dialog.objectName(), "CAboutDlg");
  QCOMPARE(dialog.windowTitle(), "About Carvello");
  bool bText = false;
  bool bIcon = false;
  for (const QLabel* pLabel : dialog.findChildren<QLabel*>()) {
    bText = bText || pLabel->text() == "Carvello, Version 1.0";
    bIcon = bIcon || !pLabel->pixmap().isNull();
  }
  QVERIFY(bText);
  QVERIFY(bIcon);
}

void AboutDlgTest::OkCloses() {
  CAboutDlg dialog;
  dialog.show();
  auto* pOk = dialog.findChild<QPushButton*>("IDC_1");
  QVERIFY(pOk != nullptr);
  QCOMPARE(pOk->text(), "OK");
  QTest::mouseClick(pOk, Qt::LeftButton);
  QVERIFY(!dialog.isVisible());
}

void AboutDlgTest::TheIconComesInAllSizes() {
  const QIcon icon = ProgramIcon();
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    QVERIFY2(icon.availableSizes().contains(QSize(size, size)), qPrintable(QString::number(size)));
  }
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::AboutDlgTest)
#include "about_dlg_test.moc"
