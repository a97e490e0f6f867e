#include "ui/my_masked_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QSignalSpy>

#include "ui/ui_test.h"

namespace carvello {

class MyMaskedEditTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void ShowsASingle0ForTheFrequency0AndReadsItBack();
  void Shows7100000AndReadsItBack();
  void TypingKeys_data();
  void TypingKeys();
  void TypingOverASelectionReplacesIt();
  void TellsEveryChangeOfTheText();
  void ArrowKeysStepOverPoints();
  void ArrowKeysWithShiftSelect();
  void HomeGoesToTheFirstDigitAndEndBehindTheLast();
  void UndoBringsTheFrequencyBack();
  void PastesFrequencies_data();
  void PastesFrequencies();
  void PastingSomethingElseChangesNothing();
  void CopiesTheWholeFrequencySoThatItCanBePasted();
  void CutsASelection();
  void TakesADroppedText();
  void TakesDigitsFromAnInputMethod();
  void AlignsMegahertzOfATextThatWasSetFromOutside();
  void KeepsItsShapeWhenSomethingElseEditsIt();
  void ShowsAllPlaces();

 private:
  // Key presses by name: digits and points as they are, others in angle brackets.
  void Press(const QString& keys);

  std::unique_ptr<CMyMFCMaskedEdit> m_pEdit;
};

void MyMaskedEditTest::init() {
  m_pEdit = std::make_unique<CMyMFCMaskedEdit>();
  m_pEdit->show();
  m_pEdit->setFocus();
}

void MyMaskedEditTest::Press(const QString& keys) {
  const QHash<QString, std::pair<Qt::Key, Qt::KeyboardModifiers>> named = {
      {"all", {Qt::Key_A, Qt::ControlModifier}}, {"bs", {Qt::Key_Backspace, Qt::NoModifier}},
      {"del", {Qt::Key_Delete, Qt::NoModifier}}, {"home", {Qt::Key_Home, Qt::NoModifier}},
      {"end", {Qt::Key_End, Qt::NoModifier}},    {"left", {Qt::Key_Left, Qt::NoModifier}},
      {"right", {Qt::Key_Right, Qt::NoModifier}}};
  for (qsizetype i = 0; i < keys.size(); ++i) {
    if (keys[i] != '<') {
      QTest::keyClick(m_pEdit.get(), keys[i].toLatin1());
      continue;
    }
    const qsizetype end = keys.indexOf('>', i);
    const QString name = keys.mid(i + 1, end - i - 1);
    QVERIFY2(named.contains(name), qPrintable(name));
    QTest::keyClick(m_pEdit.get(), named[name].first, named[name].second);
    i = end;
  }
}

void MyMaskedEditTest::ShowsASingle0ForTheFrequency0AndReadsItBack() {
  m_pEdit->SetFrequency(0);
  QCOMPARE(m_pEdit->text(), "_____.___.__0");
  QCOMPARE(m_pEdit->Frequency(), 0);
}

void MyMaskedEditTest::Shows7100000AndReadsItBack() {
  m_pEdit->SetFrequency(7'100'000);
  QCOMPARE(m_pEdit->text(), "____7.100.000");
  QCOMPARE(m_pEdit->Frequency(), 7'100'000);
}

void MyMaskedEditTest::TypingKeys_data() {
  QTest::addColumn<QString>("start");
  QTest::addColumn<QString>("keys");
  QTest::addColumn<QString>("text");
  QTest::addColumn<int>("caret");
  QTest::newRow("MHz grow to the left") << ""
                                        << "<all>14"
                                        << "___14.___.___" << 5;
  QTest::newRow("a point goes on to kHz") << ""
                                          << "<all>14.2"
                                          << "___14.2__.___" << 7;
  QTest::newRow("a comma does, too") << ""
                                     << "<all>7,1"
                                     << "____7.1__.___" << 7;
  QTest::newRow("three groups") << ""
                                << "<all>7.100.5"
                                << "____7.100.5__" << 11;
  QTest::newRow("points are stepped over while typing") << ""
                                                        << "<all>7.100500"
                                                        << "____7.100.500" << 13;
  QTest::newRow("a full MHz group goes on to kHz") << ""
                                                   << "<all>123456"
                                                   << "12345.6__.___" << 7;
  QTest::newRow("behind the last place nothing happens") << ""
                                                         << "<all>7.1000009"
                                                         << "____7.100.000" << 13;
  QTest::newRow("letters are no digits") << ""
                                         << "<all>7a b-1"
                                         << "___71.___.___" << 5;
  QTest::newRow("over the 0 of a fresh field") << "0"
                                               << "<home>7"
                                               << "____7.___.__0" << 5;
  QTest::newRow("typing overwrites") << "14200000"
                                     << "<home>21350"
                                     << "___21.350.000" << 9;
  QTest::newRow("typing overwrites in kHz") << "14200000"
                                            << "<home>.35"
                                            << "___14.350.000" << 8;
  QTest::newRow("a digit before the first one") << "4200000"
                                                << "<home><left>1"
                                                << "___14.200.000" << 4;
  QTest::newRow("Backspace empties the last place") << "7100500"
                                                    << "<end><bs>"
                                                    << "____7.100.50_" << 12;
  QTest::newRow("Backspace steps over points") << "7100500"
                                               << "<end><bs><bs><bs><bs>"
                                               << "____7.10_.___" << 8;
  QTest::newRow("Backspace pulls MHz to the right") << "714100000"
                                                    << "<home><right><bs>"
                                                    << "___14.100.000" << 3;
  QTest::newRow("a digit takes the place of an erased one") << "714100000"
                                                            << "<home><right><bs>8"
                                                            << "__814.100.000" << 3;
  QTest::newRow("MHz erased and typed again") << "7100000"
                                              << "<home>.<bs>14"
                                              << "___14.100.000" << 5;
  QTest::newRow("Backspace at the left end") << "7100000"
                                             << "<home><left><left><left><left><bs>"
                                             << "____7.100.000" << 0;
  QTest::newRow("Delete empties the next place") << "7100500"
                                                 << "<home>.<del>"
                                                 << "____7._00.500" << 7;
  QTest::newRow("Delete goes on") << "7123456"
                                  << "<home>.<del><del><del><del>"
                                  << "____7.___._56" << 11;
  QTest::newRow("Delete in MHz pulls to the right") << "714100000"
                                                    << "<home><del>"
                                                    << "___14.100.000" << 3;
  QTest::newRow("Delete in front of MHz takes the first digit") << "714100000"
                                                                << "<home><left><del>"
                                                                << "___14.100.000" << 3;
  QTest::newRow("Delete at the end") << "7100000"
                                     << "<end><del>"
                                     << "____7.100.000" << 13;
  QTest::newRow("Delete of everything") << "7100000"
                                        << "<all><del>"
                                        << "_____.___.___" << 5;
  QTest::newRow("everything deleted and typed anew") << "7100000"
                                                     << "<all><bs>14.2"
                                                     << "___14.2__.___" << 7;
  QTest::newRow("points do nothing in the last group") << "7100000"
                                                       << "<home>...."
                                                       << "____7.100.000" << 10;
}

void MyMaskedEditTest::TypingKeys() {
  QFETCH(QString, start);
  QFETCH(QString, keys);
  QFETCH(QString, text);
  QFETCH(int, caret);
  if (!start.isEmpty()) m_pEdit->SetFrequency(start.toLongLong());
  Press(keys);
  QCOMPARE(m_pEdit->text(), text);
  QCOMPARE(m_pEdit->cursorPosition(), caret);
}

void MyMaskedEditTest::TypingOverASelectionReplacesIt() {
  m_pEdit->SetFrequency(14'200'500);
  m_pEdit->setSelection(6, 3);
  Press("3");
  QCOMPARE(m_pEdit->text(), "___14.3__.500");
  m_pEdit->setSelection(5, 4);
  Press("7");
  QCOMPARE(m_pEdit->text(), "___14.7__.500");
}

void MyMaskedEditTest::TellsEveryChangeOfTheText() {
  const QSignalSpy spy(m_pEdit.get(), &CMyMFCMaskedEdit::FrequencyChanged);
  m_pEdit->SetFrequency(7'100'000);
  QCOMPARE(spy.count(), 1);
  m_pEdit->SetFrequency(7'100'000);
  QCOMPARE(spy.count(), 1);
  Press("<home>8");
  QCOMPARE(spy.count(), 2);
  QCOMPARE(m_pEdit->Frequency(), 8'100'000);
  Press("<end><bs>");
  QCOMPARE(spy.count(), 3);
  // A place left empty reads as the 0 that stood there, but it is another text.
  QCOMPARE(m_pEdit->Frequency(), 8'100'000);
}

void MyMaskedEditTest::ArrowKeysStepOverPoints() {
  m_pEdit->SetFrequency(7'100'000);
  QList<int> carets;
  for (int i = 0; i < 8; ++i) {
    carets.append(m_pEdit->cursorPosition());
    Press("<right>");
  }
  QCOMPARE(carets, (QList<int>{4, 6, 7, 8, 10, 11, 12, 13}));
  carets.clear();
  for (int i = 0; i < 8; ++i) {
    carets.append(m_pEdit->cursorPosition());
    Press("<left>");
  }
  QCOMPARE(carets, (QList<int>{13, 12, 11, 10, 8, 7, 6, 4}));
}

void MyMaskedEditTest::ArrowKeysWithShiftSelect() {
  m_pEdit->SetFrequency(7'123'000);
  Press("<right>");
  for (int i = 0; i < 3; ++i) QTest::keyClick(m_pEdit.get(), Qt::Key_Right, Qt::ShiftModifier);
  QCOMPARE(m_pEdit->selectedText(), "123.");
  QTest::keyClick(m_pEdit.get(), Qt::Key_Left, Qt::ShiftModifier);
  QCOMPARE(m_pEdit->selectedText(), "12");
  Press("<left>");
  QVERIFY(!m_pEdit->hasSelectedText());
  QCOMPARE(m_pEdit->cursorPosition(), 6);
}

void MyMaskedEditTest::HomeGoesToTheFirstDigitAndEndBehindTheLast() {
  m_pEdit->SetFrequency(14'200'000);
  Press("<end>");
  QCOMPARE(m_pEdit->cursorPosition(), 13);
  Press("<home>");
  QCOMPARE(m_pEdit->cursorPosition(), 3);
  QTest::keyClick(m_pEdit.get(), Qt::Key_End);
  QTest::keyClick(m_pEdit.get(), Qt::Key_Home, Qt::ShiftModifier);
  QCOMPARE(m_pEdit->selectedText(), "14.200.000");
}

void MyMaskedEditTest::UndoBringsTheFrequencyBack() {
  m_pEdit->SetFrequency(7'100'000);
  Press("<home>8");
  QCOMPARE(m_pEdit->text(), "____8.100.000");
  QTest::keySequence(m_pEdit.get(), QKeySequence::Undo);
  QCOMPARE(m_pEdit->text(), "____7.100.000");
}

void MyMaskedEditTest::PastesFrequencies_data() {
  QTest::addColumn<QString>("clipboard");
  QTest::newRow("7.1 MHz") << "7.1 MHz";
  QTest::newRow("7100 kHz") << "7100 kHz";
  QTest::newRow("7100000") << "7100000";
  QTest::newRow("7,100,000 Hz") << "7,100,000 Hz";
}

void MyMaskedEditTest::PastesFrequencies() {
  QFETCH(QString, clipboard);
  QApplication::clipboard()->setText(clipboard);
  m_pEdit->SetFrequency(14'200'000);
  QTest::keySequence(m_pEdit.get(), QKeySequence::Paste);
  QCOMPARE(m_pEdit->text(), "____7.100.000");
}

void MyMaskedEditTest::PastingSomethingElseChangesNothing() {
  QApplication::clipboard()->setText("not a frequency");
  m_pEdit->SetFrequency(14'200'000);
  QTest::keySequence(m_pEdit.get(), QKeySequence::Paste);
  QCOMPARE(m_pEdit->text(), "___14.200.000");
}

void MyMaskedEditTest::CopiesTheWholeFrequencySoThatItCanBePasted() {
  for (const std::int64_t frequency : {500'000, 7'100'000, 5}) {
    m_pEdit->SetFrequency(frequency);
    Press("<all>");
    QTest::keySequence(m_pEdit.get(), QKeySequence::Copy);
    m_pEdit->SetFrequency(1);
    QTest::keySequence(m_pEdit.get(), QKeySequence::Paste);
    QCOMPARE(m_pEdit->Frequency(), frequency);
  }
  QCOMPARE(QApplication::clipboard()->text(), "0.000.005");
}

void MyMaskedEditTest::CutsASelection() {
  m_pEdit->SetFrequency(7'123'000);
  m_pEdit->setSelection(6, 2);
  QTest::keySequence(m_pEdit.get(), QKeySequence::Cut);
  QCOMPARE(QApplication::clipboard()->text(), "12");
  QCOMPARE(m_pEdit->text(), "____7.__3.000");
}

void MyMaskedEditTest::TakesADroppedText() {
  QMimeData data;
  data.setText("3.5 MHz");
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_pEdit.get(), &enter);
  QVERIFY(enter.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_pEdit.get(), &drop);
  QCOMPARE(m_pEdit->text(), "____3.500.000");
}

void MyMaskedEditTest::TakesDigitsFromAnInputMethod() {
  m_pEdit->selectAll();
  for (const char* committed : {"1", "4"}) {
    QInputMethodEvent event;
    event.setCommitString(committed);
    QApplication::sendEvent(m_pEdit.get(), &event);
  }
  QCOMPARE(m_pEdit->text(), "___14.___.___");
}

void MyMaskedEditTest::AlignsMegahertzOfATextThatWasSetFromOutside() {
  m_pEdit->setText("7____.100.000");
  QCOMPARE(m_pEdit->Frequency(), 7'100'000);
  m_pEdit->clear();
  QCOMPARE(m_pEdit->Frequency(), 0);
  Press("14");
  QCOMPARE(m_pEdit->text(), "___14.___.___");
}

void MyMaskedEditTest::KeepsItsShapeWhenSomethingElseEditsIt() {
  m_pEdit->SetFrequency(7'100'000);
  m_pEdit->setCursorPosition(13);
  m_pEdit->backspace();
  m_pEdit->insert("xyz");
  QCOMPARE(m_pEdit->text().size(), 13);
  QCOMPARE(m_pEdit->text()[5], '.');
  QCOMPARE(m_pEdit->text()[9], '.');
}

void MyMaskedEditTest::ShowsAllPlaces() {
  QVERIFY(m_pEdit->sizeHint().width() > m_pEdit->fontMetrics().horizontalAdvance("99999.999.999"));
  QCOMPARE(m_pEdit->minimumSizeHint(), m_pEdit->sizeHint());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MyMaskedEditTest)
#include "my_masked_edit_test.moc"
