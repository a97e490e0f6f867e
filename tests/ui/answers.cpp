#include "ui/answers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>

namespace carvello::test {

CAnswers::CAnswers() {
  m_timer.setInterval(5);
  connect(&m_timer, &QTimer::timeout, this, &CAnswers::LookForDialog);
  m_timer.start();
}

void CAnswers::LookForDialog() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (dialog == nullptr || !dialog->isVisible()) return;

  auto* box = qobject_cast<QMessageBox*>(dialog);
  if (box == nullptr) {
    if (m_actions.empty()) {
      ++m_nUnexpected;
      dialog->reject();
      return;
    }
    const auto action = std::move(m_actions.front());
    m_actions.pop_front();
    action(*dialog);
    return;
  }

  m_shown.push_back({box->windowTitle(), box->text(), box->icon(), box->standardButtons()});
  if (m_answers.empty() || box->button(m_answers.front()) == nullptr) {
    ++m_nUnexpected;
    QTest::keyClick(box, Qt::Key_Escape);
    return;
  }
  QAbstractButton* button = box->button(m_answers.front());
  m_answers.pop_front();
  QTest::mouseClick(button, Qt::LeftButton);
}

void CAnswers::ChooseFile(const std::string& path) {
  Do([path](QDialog& dialog) { TypePath(dialog, path); });
}

void TypePath(QDialog& dialog, const std::string& path) {
  auto* pField = dialog.findChild<QLineEdit*>("fileNameEdit");
  QVERIFY2(pField != nullptr, "no file dialog");
  pField->setText(QString::fromStdString(path));
  dialog.accept();
}

}  // namespace carvello::test
