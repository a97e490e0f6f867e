#include "ui/message_boxes.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>

#include "ui/answers.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CAnswers;

class MessageBoxesTest : public QObject {
  Q_OBJECT

 private slots:
  void ShowsCaptionTextIconAndButtons_data();
  void ShowsCaptionTextIconAndButtons();
  void GivesTheAnswerOfTheButton_data();
  void GivesTheAnswerOfTheButton();
  void EscapeIsTheMostHarmlessAnswer_data();
  void EscapeIsTheMostHarmlessAnswer();
  void ShowsMarkupInATextAsItStands();
  void EscapesWhatWouldBeObeyed();
  void IsNoWiderThanTheScreenWhateverItNames();
};

void MessageBoxesTest::ShowsCaptionTextIconAndButtons_data() {
  QTest::addColumn<int>("buttons");
  QTest::addColumn<int>("icon");
  QTest::addColumn<int>("shownButtons");
  QTest::addColumn<int>("shownIcon");
  const auto row = [](const char* name, EButtons buttons, EIcon icon, QMessageBox::StandardButtons shownButtons,
                      QMessageBox::Icon shownIcon) {
    QTest::newRow(name) << static_cast<int>(buttons) << static_cast<int>(icon) << static_cast<int>(shownButtons)
                        << static_cast<int>(shownIcon);
  };
  row("stop", EButtons::Ok, EIcon::Stop, QMessageBox::Ok, QMessageBox::Critical);
  row("exclamation", EButtons::YesNo, EIcon::Exclamation, QMessageBox::Yes | QMessageBox::No, QMessageBox::Warning);
  row("question", EButtons::YesNoCancel, EIcon::Question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
      QMessageBox::Question);
}

void MessageBoxesTest::ShowsCaptionTextIconAndButtons() {
  QFETCH(int, buttons);
  QFETCH(int, icon);
  QFETCH(int, shownButtons);
  QFETCH(int, shownIcon);
  CAnswers answers;
  answers.Give(static_cast<EButtons>(buttons) == EButtons::Ok ? QMessageBox::Ok : QMessageBox::Yes);
  ShowMessageBox(nullptr,
                 {"Start", "First line.\n\nContinue?", static_cast<EButtons>(buttons), static_cast<EIcon>(icon)});
  QVERIFY(answers.AllUsed());
  QCOMPARE(answers.Shown().size(), std::size_t{1});
  QCOMPARE(answers.Shown()[0].caption, QString("Start"));
  QCOMPARE(answers.Shown()[0].text, QString("First line.\n\nContinue?"));
  QCOMPARE(static_cast<int>(answers.Shown()[0].buttons), shownButtons);
  QCOMPARE(static_cast<int>(answers.Shown()[0].icon), shownIcon);
}

void MessageBoxesTest::GivesTheAnswerOfTheButton_data() {
  QTest::addColumn<int>("buttons");
  QTest::addColumn<int>("clicked");
  QTest::addColumn<int>("answer");
  const auto row = [](const char* name, EButtons buttons, QMessageBox::StandardButton clicked, EAnswer answer) {
    QTest::newRow(name) << static_cast<int>(buttons) << static_cast<int>(clicked) << static_cast<int>(answer);
  };
  row("OK", EButtons::Ok, QMessageBox::Ok, EAnswer::Ok);
  row("Yes of two", EButtons::YesNo, QMessageBox::Yes, EAnswer::Yes);
  row("No of two", EButtons::YesNo, QMessageBox::No, EAnswer::No);
  row("Yes of three", EButtons::YesNoCancel, QMessageBox::Yes, EAnswer::Yes);
  row("No of three", EButtons::YesNoCancel, QMessageBox::No, EAnswer::No);
  row("Cancel", EButtons::YesNoCancel, QMessageBox::Cancel, EAnswer::Cancel);
}

void MessageBoxesTest::GivesTheAnswerOfTheButton() {
  QFETCH(int, buttons);
  QFETCH(int, clicked);
  QFETCH(int, answer);
  CAnswers answers;
  answers.Give(static_cast<QMessageBox::StandardButton>(clicked));
  const EAnswer given = ShowMessageBox(nullptr, {"Start", "?", static_cast<EButtons>(buttons), EIcon::Question});
  QCOMPARE(static_cast<int>(given), answer);
  QVERIFY(answers.AllUsed());
}

void MessageBoxesTest::EscapeIsTheMostHarmlessAnswer_data() {
  QTest::addColumn<int>("buttons");
  QTest::addColumn<int>("answer");
  QTest::newRow("OK") << static_cast<int>(EButtons::Ok) << static_cast<int>(EAnswer::Ok);
  QTest::newRow("Yes and No") << static_cast<int>(EButtons::YesNo) << static_cast<int>(EAnswer::No);
  QTest::newRow("with Cancel") << static_cast<int>(EButtons::YesNoCancel) << static_cast<int>(EAnswer::Cancel);
}

void MessageBoxesTest::EscapeIsTheMostHarmlessAnswer() {
  QFETCH(int, buttons);
  QFETCH(int, answer);
  CAnswers answers;  // no answer given: Escape
  const EAnswer given = ShowMessageBox(nullptr, {"Start", "?", static_cast<EButtons>(buttons), EIcon::Question});
  QCOMPARE(static_cast<int>(given), answer);
}

void MessageBoxesTest::EscapesWhatWouldBeObeyed() {
  CAnswers answers;
  answers.Give(QMessageBox::Ok);
  ShowMessageBox(nullptr, {"Start", "a\u202Egpj.exe\n\x1B", EButtons::Ok, EIcon::Stop});
  QCOMPARE(answers.Shown()[0].text, QString("a\\u202Egpj.exe\n\\x1B"));
}

void MessageBoxesTest::IsNoWiderThanTheScreenWhateverItNames() {
  const std::string path = "/" + std::string(1500, 'x') + "/a.wav";
  CAnswers answers;
  answers.Give(QMessageBox::Ok);
  QRect box, screen, text;
  int needed = 0;
  QTimer::singleShot(0, this, [&] {
    const QWidget* pBox = QApplication::activeModalWidget();
    const auto* pLabel = pBox->findChild<QLabel*>("qt_msgbox_label");
    box = pBox->geometry();
    screen = pBox->screen()->availableGeometry();
    text = pLabel->geometry();
    needed =
        pLabel->fontMetrics().boundingRect(QRect(0, 0, text.width(), 0), Qt::TextWrapAnywhere, pLabel->text()).height();
  });
  ShowMessageBox(nullptr, {"Carvello", "1 of 1 outputs failed:\n\n" + path, EButtons::Ok, EIcon::Stop});
  QVERIFY(!text.isEmpty());
  QVERIFY2(box.width() <= screen.width(), qPrintable(QString::number(box.width())));
  QVERIFY2(text.height() >= needed && text.right() < box.width(), qPrintable(QString::number(text.height())));
}

void MessageBoxesTest::ShowsMarkupInATextAsItStands() {
  CAnswers answers;
  answers.Give(QMessageBox::Ok);
  Qt::TextFormat format = Qt::AutoText;
  QTimer::singleShot(0, this, [&] {
    if (const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) format = box->textFormat();
  });
  ShowMessageBox(nullptr, {"Open File", "/a <b>name</b>", EButtons::Ok, EIcon::Stop});
  QCOMPARE(format, Qt::PlainText);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MessageBoxesTest)
#include "message_boxes_test.moc"
