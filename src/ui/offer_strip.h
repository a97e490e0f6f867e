// COfferStrip: a line that offers something: what it is about, a button that does it, and one that does without. It
// takes no room while there is nothing to offer, asks nothing and takes no keyboard away.
#pragma once

#include <QFrame>

class QLabel;
class QPushButton;
class QToolButton;

namespace carvello {

class COfferStrip : public QFrame {
  Q_OBJECT

 public:
  explicit COfferStrip(QWidget* pParent = nullptr);

  // `button` with its mnemonic.
  void Offer(const QString& text, const QString& button);
  void Clear();
  bool IsOffering() const { return !isHidden(); }

 signals:
  void Taken();
  void Dismissed();  // the strip is cleared already

 protected:
  void keyPressEvent(QKeyEvent* event) override;  // Escape in it dismisses

 private:
  void Dismiss();

  QLabel* m_pText;
  QPushButton* m_pTake;
  QToolButton* m_pDismiss;
};

}  // namespace carvello
