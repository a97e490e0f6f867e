#include "ui/mnemonics.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcutEvent>

namespace carvello {

namespace {

class CMnemonicFilter : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) {
      const bool isField = qobject_cast<QLineEdit*>(watched) != nullptr ||
                           qobject_cast<QComboBox*>(watched) != nullptr ||
                           qobject_cast<QAbstractSpinBox*>(watched) != nullptr;
      if (!isField || !TypesALetter(*static_cast<QKeyEvent*>(event))) return false;
      event->ignore();
      return true;
    }
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

 private:
  // The underlined letter of what cannot be used at the moment would else be typed into the field.
  static bool TypesALetter(const QKeyEvent& event) {
    return event.modifiers() == Qt::AltModifier && !event.text().isEmpty() && event.text().at(0).isPrint();
  }
};

}  // namespace

void MakeMnemonicsImmediate(QWidget& dialog) {
  auto* pFilter = new CMnemonicFilter(&dialog);
  for (QAbstractButton* pButton : dialog.findChildren<QAbstractButton*>()) pButton->installEventFilter(pFilter);
  for (QLabel* pLabel : dialog.findChildren<QLabel*>()) pLabel->installEventFilter(pFilter);
  for (QLineEdit* pEdit : dialog.findChildren<QLineEdit*>()) pEdit->installEventFilter(pFilter);
  for (QComboBox* pBox : dialog.findChildren<QComboBox*>()) pBox->installEventFilter(pFilter);
  for (QAbstractSpinBox* pBox : dialog.findChildren<QAbstractSpinBox*>()) pBox->installEventFilter(pFilter);
}

}  // namespace carvello
