// CAnswers: answers message boxes in the place of the user, and keeps what they showed.
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace carvello::test {

struct SShownBox {
  QString caption;
  QString text;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  QMessageBox::StandardButtons buttons;
};

class CAnswers : public QObject {
  Q_OBJECT

 public:
  CAnswers();

  // The button that the user clicks on the next box that has no answer yet.
  void Give(QMessageBox::StandardButton button) { m_answers.push_back(button); }
  // What the user does in the next modal dialog that is no message box; it must close it.
  void Do(std::function<void(QDialog&)> action) { m_actions.push_back(std::move(action)); }
  // The path that the user types into the next file dialog.
  void ChooseFile(const std::string& path);

  // All boxes shown, in order. A box that no answer was given for was closed with the Escape key.
  const std::vector<SShownBox>& Shown() const { return m_shown; }
  // Whether every answer and action was needed, and none was missing.
  bool AllUsed() const { return m_answers.empty() && m_actions.empty() && m_nUnexpected == 0; }

 private:
  void LookForDialog();

  QTimer m_timer;
  std::deque<QMessageBox::StandardButton> m_answers;
  std::deque<std::function<void(QDialog&)>> m_actions;
  std::vector<SShownBox> m_shown;
  int m_nUnexpected = 0;
};

// Into a file dialog, which it closes. A dialog's own selectFile() does nothing once its field has the focus.
void TypePath(QDialog& dialog, const std::string& path);

}  // namespace carvello::test
