#include "ui/mnemonics.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ui/my_masked_edit.h"
#include "ui/ui_test.h"

namespace carvello {

class MnemonicsTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void AButtonActsOnWhatTheFieldsHoldNow();
  void ADisabledButtonDoesNothing();
  void ACheckBoxChangesAndTakesTheFocus();
  void AFieldBeginsAnewAlsoWhenItHasTheFocus();
  void NoFieldTakesTheLetterOfADisabledButton();

 private:
  std::unique_ptr<QDialog> m_pDialog;
  CMyMFCMaskedEdit* m_pField = nullptr;
  QPushButton* m_pButton = nullptr;
  QCheckBox* m_pBox = nullptr;
};

void MnemonicsTest::init() {
  m_pDialog = std::make_unique<QDialog>();
  auto* label = new QLabel("&Centre", m_pDialog.get());
  m_pField = new CMyMFCMaskedEdit(m_pDialog.get());
  label->setBuddy(m_pField);
  m_pButton = new QPushButton("&Add", m_pDialog.get());
  m_pBox = new QCheckBox("&UTC", m_pDialog.get());
  auto* layout = new QVBoxLayout(m_pDialog.get());
  for (QWidget* widget : std::initializer_list<QWidget*>{label, m_pField, m_pButton, m_pBox}) layout->addWidget(widget);
  MakeMnemonicsImmediate(*m_pDialog);
  m_pDialog->show();
  m_pDialog->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(m_pDialog.get()));
}

void MnemonicsTest::AButtonActsOnWhatTheFieldsHoldNow() {
  std::vector<std::int64_t> added;
  connect(m_pButton, &QPushButton::clicked, this, [&] { added.push_back(m_pField->Frequency()); });
  for (const char* typed : {"7.1", "14.2"}) {
    QTest::keyClick(m_pDialog.get(), Qt::Key_C, Qt::AltModifier);
    QTest::keyClicks(m_pField, typed);
    QTest::keyClick(m_pDialog.get(), Qt::Key_A, Qt::AltModifier);
  }
  QCOMPARE(added, (std::vector<std::int64_t>{7'100'000, 14'200'000}));
}

void MnemonicsTest::ADisabledButtonDoesNothing() {
  int clicks = 0;
  connect(m_pButton, &QPushButton::clicked, this, [&] { ++clicks; });
  m_pButton->setEnabled(false);
  QTest::keyClick(m_pDialog.get(), Qt::Key_A, Qt::AltModifier);
  QCOMPARE(clicks, 0);
}

void MnemonicsTest::ACheckBoxChangesAndTakesTheFocus() {
  m_pField->setFocus();
  QTest::keyClick(m_pDialog.get(), Qt::Key_U, Qt::AltModifier);
  QVERIFY(m_pBox->isChecked());
  QVERIFY(m_pBox->hasFocus());
}

void MnemonicsTest::AFieldBeginsAnewAlsoWhenItHasTheFocus() {
  m_pField->setFocus();
  m_pField->SetFrequency(7'100'000);
  QVERIFY(!m_pField->hasSelectedText());
  QTest::keyClick(m_pDialog.get(), Qt::Key_C, Qt::AltModifier);
  QCOMPARE(m_pField->selectedText(), m_pField->text());
}

void MnemonicsTest::NoFieldTakesTheLetterOfADisabledButton() {
  m_pButton->setEnabled(false);
  QLineEdit path(m_pDialog.get());
  QComboBox bandwidth(m_pDialog.get());
  bandwidth.setEditable(true);
  QSpinBox number(m_pDialog.get());
  QDialog& dialog = *m_pDialog;
  MakeMnemonicsImmediate(dialog);
  for (QWidget* pField : std::initializer_list<QWidget*>{&path, &bandwidth, &number}) {
    pField->show();
    pField->setFocus();
    QTest::keyClick(pField, Qt::Key_7, Qt::AltModifier, 0);
    QTest::keyClick(pField, Qt::Key_A, Qt::AltModifier, 0);
    QTest::keyClick(pField, Qt::Key_1);
  }
  QCOMPARE(path.text(), QString("1"));
  QCOMPARE(bandwidth.currentText(), QString("1"));
  QCOMPARE(number.text(), QString("10"));  // before the 0 that it held
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MnemonicsTest)
#include "mnemonics_test.moc"
