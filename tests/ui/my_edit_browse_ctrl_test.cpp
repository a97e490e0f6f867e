#include "ui/my_edit_browse_ctrl.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QToolTip>

#include "support/platform.h"
#include "ui/readable_colours.h"
#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

class MyEditBrowseCtrlTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void FiltersBecomeNameFilters_data();
  void FiltersBecomeNameFilters();
  void TextColoursStayReadable_data();
  void TextColoursStayReadable();
  void HasItsBackgroundAndAReadableTextInEveryTheme_data();
  void HasItsBackgroundAndAReadableTextInEveryTheme();
  void IsDarkInADarkTheme();
  void BrowsesForAFileFromThePresentPathOn();
  void BrowsesForAFolder();
  void AnEmptyAnswerLeavesThePath();
  void TellsEveryChangeOfTheText();
  void TheButtonCanBeReachedByKeyboard();
  void TheButtonStaysAtTheRightEndAndTextKeepsClearOfIt();
  void TakesADroppedText();
  void ShowsALongPathWithItsMiddleLeftOut();
  void ShowsTheTextItselfWhileItIsEdited();
  void TellsTheWholePathOfALongOne();

 private:
  std::unique_ptr<QTemporaryDir> m_pFolder;
  std::unique_ptr<QWidget> m_pWindow;
  CMyMFCEditBrowseCtrl* m_pField = nullptr;
};

void MyEditBrowseCtrlTest::init() {
  m_pFolder = std::make_unique<QTemporaryDir>();
  m_pWindow = std::make_unique<QWidget>();
  // Takes the focus, so that the field is not being edited at first.
  auto* pOther = new QLineEdit(m_pWindow.get());
  m_pField = new CMyMFCEditBrowseCtrl(m_pWindow.get());
  m_pField->setObjectName("IDC_1000");
  m_pField->setGeometry(0, 40, 300, 30);
  m_pWindow->resize(320, 100);
  m_pWindow->show();
  m_pWindow->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get()));
  pOther->setFocus();
}

void MyEditBrowseCtrlTest::FiltersBecomeNameFilters_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<bool>("caseMatters");
  QTest::addColumn<QStringList>("filters");
  const char* recordings = "WAV recording files (*.WAV)|*.WAV|Winradio files (*.DDC)|*.DDC||";
  QTest::newRow("where case matters") << recordings << true
                                      << QStringList{"WAV recording files (*.WAV) (*.[wW][aA][vV])",
                                                     "Winradio files (*.DDC) (*.[dD][dD][cC])"};
  QTest::newRow("where it does not") << recordings << false
                                     << QStringList{"WAV recording files (*.WAV) (*.WAV)",
                                                    "Winradio files (*.DDC) (*.DDC)"};
  QTest::newRow("several patterns") << "Both|*.a;*.b1||" << true << QStringList{"Both (*.[aA] *.[bB]1)"};
  QTest::newRow("all files") << "All|*.*||" << true << QStringList{"All (*.*)"};
  QTest::newRow("without the end mark") << "A|*.a" << false << QStringList{"A (*.a)"};
  QTest::newRow("a name without patterns") << "A" << false << QStringList{};
  QTest::newRow("nothing") << "" << false << QStringList{};
}

void MyEditBrowseCtrlTest::FiltersBecomeNameFilters() {
  QFETCH(QString, text);
  QFETCH(bool, caseMatters);
  QFETCH(QStringList, filters);
  QCOMPARE(NameFilters(text, caseMatters), filters);
}

void MyEditBrowseCtrlTest::TextColoursStayReadable_data() {
  QTest::addColumn<QColor>("background");
  QTest::addColumn<QColor>("wanted");
  QTest::addColumn<QColor>("text");
  const QColor cream(255, 250, 241);
  QTest::newRow("black on cream") << cream << QColor(Qt::black) << QColor(Qt::black);
  QTest::newRow("dark blue on cream") << cream << QColor(0, 0, 120) << QColor(0, 0, 120);
  QTest::newRow("white on cream") << cream << QColor(Qt::white) << QColor(Qt::black);
  QTest::newRow("light grey on cream") << cream << QColor(200, 200, 200) << QColor(Qt::black);
  QTest::newRow("black on black") << QColor(Qt::black) << QColor(Qt::black) << QColor(Qt::white);
}

void MyEditBrowseCtrlTest::TextColoursStayReadable() {
  QFETCH(QColor, background);
  QFETCH(QColor, wanted);
  QFETCH(QColor, text);
  QCOMPARE(ReadableTextColour(background, wanted), text);
}

void MyEditBrowseCtrlTest::HasItsBackgroundAndAReadableTextInEveryTheme_data() {
  QTest::addColumn<QColor>("tooltipText");
  QTest::addColumn<QColor>("text");
  QTest::newRow("light") << QColor(Qt::black) << QColor(Qt::black);
  QTest::newRow("light, brown") << QColor(60, 30, 0) << QColor(60, 30, 0);
  QTest::newRow("dark") << QColor(240, 240, 240) << QColor(Qt::black);
}

void MyEditBrowseCtrlTest::HasItsBackgroundAndAReadableTextInEveryTheme() {
  QFETCH(QColor, tooltipText);
  QFETCH(QColor, text);
  const QPalette tooltips = QToolTip::palette();
  QPalette other = tooltips;
  other.setColor(QPalette::ToolTipText, tooltipText);
  QToolTip::setPalette(other);
  const CMyMFCEditBrowseCtrl field;
  QToolTip::setPalette(tooltips);
  QCOMPARE(field.palette().color(QPalette::Active, QPalette::Base), QColor(255, 250, 241));
  QCOMPARE(field.palette().color(QPalette::Inactive, QPalette::Base), QColor(255, 250, 241));
  QCOMPARE(field.palette().color(QPalette::Active, QPalette::Text), text);
}

void MyEditBrowseCtrlTest::IsDarkInADarkTheme() {
  for (const test::STheme& theme : test::Themes()) {
    m_pWindow->setPalette(theme.palette);
    const QPalette palette = m_pField->palette();
    const bool dark = QString(theme.name) == "dark";
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
      const QColor background = palette.color(group, QPalette::Base);
      QCOMPARE(background, dark ? theme.palette.color(group, QPalette::Base) : QColor(255, 250, 241));
      QVERIFY(ContrastOf(palette.color(group, QPalette::Text), background) >= 4.5);
    }
  }
}

void MyEditBrowseCtrlTest::BrowsesForAFileFromThePresentPathOn() {
  m_pField->SetFileBrowse("WAV recording files (*.WAV)|*.WAV||");
  m_pField->SetPath("/from/here.wav");
  QWidget* pParent = nullptr;
  CMyMFCEditBrowseCtrl::SBrowse asked;
  QString from;
  m_pField->SetChooser([&](QWidget* parent, const CMyMFCEditBrowseCtrl::SBrowse& browse, const QString& path) {
    pParent = parent;
    asked = browse;
    from = path;
    return QString("/chosen/one.wav");
  });
  QTest::mouseClick(m_pField->BrowseButton(), Qt::LeftButton);
  QCOMPARE(pParent, m_pWindow.get());
  QVERIFY(!asked.bFolder);
  QCOMPARE(asked.nameFilters, NameFilters("WAV recording files (*.WAV)|*.WAV||", !platform::FileNamesEqual("a", "A")));
  QCOMPARE(from, "/from/here.wav");
  QCOMPARE(m_pField->Path(), QDir::toNativeSeparators("/chosen/one.wav"));
}

void MyEditBrowseCtrlTest::BrowsesForAFolder() {
  m_pField->SetFolderBrowse("Select the folder where the output files are created");
  CMyMFCEditBrowseCtrl::SBrowse asked;
  m_pField->SetChooser([&](QWidget*, const CMyMFCEditBrowseCtrl::SBrowse& browse, const QString&) {
    asked = browse;
    return QString("/out");
  });
  QTest::mouseClick(m_pField->BrowseButton(), Qt::LeftButton);
  QVERIFY(asked.bFolder);
  QCOMPARE(asked.title, "Select the folder where the output files are created");
  QCOMPARE(m_pField->Path(), QDir::toNativeSeparators("/out"));
}

void MyEditBrowseCtrlTest::AnEmptyAnswerLeavesThePath() {
  m_pField->SetFolderBrowse("Title");
  m_pField->SetPath("/kept");
  m_pField->SetChooser([](QWidget*, const CMyMFCEditBrowseCtrl::SBrowse&, const QString&) { return QString(); });
  QTest::mouseClick(m_pField->BrowseButton(), Qt::LeftButton);
  QCOMPARE(m_pField->Path(), "/kept");
}

void MyEditBrowseCtrlTest::TellsEveryChangeOfTheText() {
  const QSignalSpy spy(m_pField, &CMyMFCEditBrowseCtrl::PathChanged);
  m_pField->SetPath("/a");
  QCOMPARE(spy.count(), 1);
  m_pField->SetPath("/a");
  QCOMPARE(spy.count(), 1);
  m_pField->setFocus();
  QTest::keyClicks(m_pField, "/b");
  QCOMPARE(spy.count(), 3);
  QCOMPARE(m_pField->Path(), "/a/b");
}

void MyEditBrowseCtrlTest::TheButtonCanBeReachedByKeyboard() {
  m_pField->SetFolderBrowse("Title");
  int asked = 0;
  m_pField->SetChooser([&](QWidget*, const CMyMFCEditBrowseCtrl::SBrowse&, const QString&) {
    ++asked;
    return QString();
  });
  m_pField->setFocus();
  QTest::keyClick(m_pField, Qt::Key_Tab);
  QCOMPARE(QApplication::focusWidget(), m_pField->BrowseButton());
  QTest::keyClick(m_pField->BrowseButton(), Qt::Key_Space);
  QCOMPARE(asked, 1);
  QVERIFY(!m_pField->BrowseButton()->accessibleName().isEmpty());
  QCOMPARE(m_pField->BrowseButton()->objectName(), "IDC_1000_browse");
}

void MyEditBrowseCtrlTest::TheButtonStaysAtTheRightEndAndTextKeepsClearOfIt() {
  QVERIFY(!m_pField->BrowseButton()->isVisible());
  m_pField->SetFolderBrowse("Title");
  for (const int width : {300, 150}) {
    m_pField->resize(width, 30);
    const QRect button = m_pField->BrowseButton()->geometry();
    QVERIFY(m_pField->rect().contains(button));
    QVERIFY(width - button.right() < 6);
    QVERIFY(m_pField->textMargins().right() >= button.width());
  }
}

void MyEditBrowseCtrlTest::TakesADroppedText() {
  QMimeData data;
  data.setText("/typed/elsewhere");
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_pField, &enter);
  QVERIFY(enter.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_pField, &drop);
  QCOMPARE(m_pField->Path(), "/typed/elsewhere");
}

void MyEditBrowseCtrlTest::ShowsALongPathWithItsMiddleLeftOut() {
  // Two paths that differ in the middle only look the same, two that differ at the end do not.
  const QString start = "/recordings/" + QString(100, 'a');
  const QString end = QString(100, 'b') + "/file.wav";
  const auto picture = [this](const QString& path) {
    m_pField->SetPath(path);
    return m_pField->grab().toImage();
  };
  QCOMPARE(picture(start + "x" + end), picture(start + "y" + end));
  QVERIFY(picture(start + end) != picture(start + end + "e"));
  QVERIFY(picture(start + end) != picture("/other" + start + end));
  m_pField->SetPath(start + end);
  QCOMPARE(m_pField->text(), start + end);
}

void MyEditBrowseCtrlTest::ShowsTheTextItselfWhileItIsEdited() {
  const QString path = "/recordings/<b>" + QString(200, 'a') + "</b>/file.wav";
  m_pField->SetPath(path);
  const QImage resting = m_pField->grab().toImage();
  m_pField->setFocus();
  m_pField->setCursorPosition(0);
  QVERIFY(m_pField->grab().toImage() != resting);
  QTest::keyClick(m_pField, Qt::Key_End);
  QTest::keyClick(m_pField, Qt::Key_Backspace);
  QCOMPARE(m_pField->Path(), path.chopped(1));
}

void MyEditBrowseCtrlTest::TellsTheWholePathOfALongOne() {
  const QString path = "/recordings/<b>" + QString(200, 'a') + "</b>/file.wav";
  const auto hover = [this] {
    QHelpEvent event(QEvent::ToolTip, {5, 5}, m_pField->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(m_pField, &event);
    return test::ToolTipText();
  };
  m_pField->setToolTip("The recording");
  m_pField->SetPath(path);
  QCOMPARE(hover(), path);
  m_pField->SetPath("/short");
  QCOMPARE(hover(), "The recording");
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MyEditBrowseCtrlTest)
#include "my_edit_browse_ctrl_test.moc"
