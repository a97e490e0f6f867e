#include "ui/mnemonics.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QShortcutEvent>

namespace carvello {

namespace {

class CMnemonicFilter : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous()) return false;
    if (auto* pButton = qobject_cast<QAbstractButton*>(watched)) {
      if (pButton->isCheckable()) pButton->setFocus(Qt::ShortcutFocusReason);
      pButton->click();
      return true;
    }
    if (const auto* pLabel = qobject_cast<QLabel*>(watched)) {
      if (auto* pEdit = qobject_cast<QLineEdit*>(pLabel->buddy())) pEdit->selectAll();
    }
    return false;
  }
};

}  // namespace

void MakeMnemonicsImmediate(QWidget& dialog) {
  auto* pFilter = new CMnemonicFilter(&dialog);
  for (QAbstractButton* pButton : dialog.findChildren<QAbstractButton*>()) pButton->installEventFilter(pFilter);
  for (QLabel* pLabel : dialog.findChildren<QLabel*>()) pLabel->installEventFilter(pFilter);
}

}  // namespace carvello
