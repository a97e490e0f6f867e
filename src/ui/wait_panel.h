// CWaitPanel: lies over what would tell of an input, and tells what is waited for until it is there. Can give it up,
// and try it again.
#pragma once

#include <QFrame>
#include <string>

class QLabel;
class QLayout;
class QPushButton;

namespace carvello {

class CWaitPanel : public QFrame {
  Q_OBJECT

 public:
  // Hidden at first. Lies over the widgets of a layout of the parent's.
  CWaitPanel(const QLayout* pCovered, QWidget* pParent);

  QPushButton* Button() const { return m_pButton; }
  void ShowWaiting(const std::string& place);
  void ShowGivenUp(const std::string& place);

 signals:
  void GiveUpPressed();
  void TryAgainPressed();

 protected:
  bool eventFilter(QObject* pWatched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Show(const QString& text, const QString& button, bool waits);
  void ShowText();

  const QLayout* m_pCovered;
  QLabel* m_pLabel;
  QPushButton* m_pButton;
  QString m_text;
  bool m_bWaits = false;
};

}  // namespace carvello
