#include "ui/message_boxes.h"

#include <QMessageBox>

#include "support/text.h"
#include "ui/english_texts.h"

namespace carvello {

namespace {

QMessageBox::Icon IconOf(EIcon icon) {
  switch (icon) {
    case EIcon::Question:
      return QMessageBox::Question;
    case EIcon::Exclamation:
      return QMessageBox::Warning;
    case EIcon::Stop:
      break;
  }
  return QMessageBox::Critical;
}

QMessageBox::StandardButtons ButtonsOf(EButtons buttons) {
  switch (buttons) {
    case EButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case EButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case EButtons::Ok:
      break;
  }
  return QMessageBox::Ok;
}

}  // namespace

EAnswer ShowMessageBox(QWidget* pParent, const SMessageBox& box) {
  QMessageBox messageBox(IconOf(box.icon), InLanguage(box.strCaption), InLanguage(PrintableLines(box.strText)),
                         ButtonsOf(box.buttons), pParent);
  messageBox.setTextFormat(Qt::PlainText);  // a path may look like markup
  // Whatever order the desktop puts the buttons in, Enter means the same.
  messageBox.setDefaultButton(box.buttons == EButtons::Ok ? QMessageBox::Ok : QMessageBox::Yes);
  messageBox.setTextInteractionFlags(Qt::TextSelectableByMouse);
  switch (messageBox.exec()) {
    case QMessageBox::Yes:
      return EAnswer::Yes;
    case QMessageBox::No:
      return EAnswer::No;
    case QMessageBox::Cancel:
      return EAnswer::Cancel;
    default:
      return EAnswer::Ok;
  }
}

}  // namespace carvello
