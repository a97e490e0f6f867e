#include "ui/bandwidth_box.h"

#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>

#include "ui/bandwidth_text.h"

namespace carvello {

CBandwidthBox::CBandwidthBox(QWidget* parent) : QComboBox(parent) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  // A completion within the field would make 1000 kHz of the 10 that is meant.
  completer()->setCompletionMode(QCompleter::PopupCompletion);
  completer()->setCaseSensitivity(Qt::CaseInsensitive);
  connect(lineEdit(), &QLineEdit::editingFinished, this, &CBandwidthBox::Settle);
}

bool CBandwidthBox::ShowsChoice() const {
  return currentIndex() >= 0 && currentText() == itemText(currentIndex());
}

std::uint32_t CBandwidthBox::Bandwidth() const {
  if (ShowsChoice()) return currentData().toUInt();
  return ParseBandwidth(currentText().toStdString()).value_or(0);
}

void CBandwidthBox::SetBandwidth(std::uint32_t bandwidth) {
  const int index = findData(bandwidth);
  setCurrentIndex(index);
  if (index < 0) setEditText(bandwidth == 0 ? QString() : QString::fromStdString(BandwidthText(bandwidth)));
}

bool CBandwidthBox::IsUnreadable() const {
  return !ShowsChoice() && !currentText().trimmed().isEmpty() && !ParseBandwidth(currentText().toStdString());
}

bool CBandwidthBox::IsTyped() const {
  return !ShowsChoice() && ParseBandwidth(currentText().toStdString()) && findData(Bandwidth()) < 0;
}

void CBandwidthBox::Settle() {
  // What is no bandwidth that could be cut stays for the user to mend.
  const bool empty = currentText().trimmed().isEmpty();
  if (!ShowsChoice() && (empty || Bandwidth() > 0)) SetBandwidth(Bandwidth());
}

int CBandwidthBox::Neighbour(bool wider) const {
  // From the widest down.
  int narrower = 0;
  while (narrower < count() && itemData(narrower).toUInt() >= Bandwidth()) ++narrower;
  return wider ? narrower - 1 : narrower;
}

void CBandwidthBox::keyPressEvent(QKeyEvent* event) {
  const bool up = event->key() == Qt::Key_Up;
  if ((up || event->key() == Qt::Key_Down) && event->modifiers() == Qt::NoModifier && IsTyped()) {
    const int next = Neighbour(up);
    if (next >= 0 && next < count()) setCurrentIndex(next);
    return;
  }
  if (up || event->key() == Qt::Key_Down) Settle();
  // While nothing is being written, they go through the list as in every other one.
  const bool home = event->key() == Qt::Key_Home;
  const bool whole = lineEdit()->selectedText() == lineEdit()->text();
  if ((home || event->key() == Qt::Key_End) && event->modifiers() == Qt::NoModifier && whole && count() > 0) {
    setCurrentIndex(home ? 0 : count() - 1);
    lineEdit()->selectAll();
    return;
  }
  QComboBox::keyPressEvent(event);
}

}  // namespace carvello
