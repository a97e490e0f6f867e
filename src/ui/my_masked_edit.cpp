#include "ui/my_masked_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QStyleOptionFrame>
#include <algorithm>

#include "support/text.h"
#include "ui/frequency_text.h"

namespace carvello {

namespace {

// Carets stand before a character: 5 and 9 before the points, 13 behind the last place.
constexpr int kMegahertzEnd = 5;
constexpr int kKilohertzStart = 6;
constexpr int kKilohertzEnd = 9;
constexpr int kHertzStart = 10;
constexpr int kEnd = static_cast<int>(kFrequencyTemplate.size());

bool IsPoint(int place) {
  return place == kMegahertzEnd || place == kKilohertzEnd;
}

char& At(std::string& shape, int place) {
  return shape[static_cast<std::size_t>(place)];
}

// Digits of the MHz group; they stand at its right end.
std::string Megahertz(const std::string& shape) {
  std::string digits = shape.substr(0, kMegahertzEnd);
  std::erase(digits, '_');
  return digits;
}

int MegahertzStart(const std::string& shape) {
  return kMegahertzEnd - static_cast<int>(Megahertz(shape).size());
}

void SetMegahertz(std::string& shape, const std::string& digits) {
  shape.replace(0, kMegahertzEnd, std::string(kMegahertzEnd - digits.size(), '_') + digits);
}

bool IsKilohertzEmpty(const std::string& shape) {
  return shape.compare(kKilohertzStart, kKilohertzEnd - kKilohertzStart, "___") == 0;
}

}  // namespace

CMyMFCMaskedEdit::CMyMFCMaskedEdit(QWidget* parent) : QLineEdit(parent) {
  SetFrequency(0);
  connect(this, &QLineEdit::textChanged, this, &CMyMFCMaskedEdit::FrequencyChanged);
  // Whatever else edits the text, such as an assistive tool, cannot leave the places shifted.
  connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
    if (text.toStdString() != Shape()) Show(Shape(), kEnd);
  });
}

void CMyMFCMaskedEdit::SetFrequency(std::int64_t frequency) {
  const std::string shape = FrequencyTemplateText(static_cast<std::uint64_t>(frequency));
  setText(QString::fromStdString(shape));
  setCursorPosition(MegahertzStart(shape));
  m_bGrowing = false;
}

std::int64_t CMyMFCMaskedEdit::Frequency() const {
  return ReadFrequencyText(AlignMegahertz(text().toStdString()));
}

QSize CMyMFCMaskedEdit::sizeHint() const {
  // QLineEdit's own hint is for 17 letters; only the width differs. A digit can be wider than an empty place.
  const QString widest = QString::fromStdString(FrequencyTemplateText(99'999'999'999));
  const int width = fontMetrics().horizontalAdvance(widest) + 2 * fontMetrics().averageCharWidth();
  QStyleOptionFrame option;
  initStyleOption(&option);
  const int height = QLineEdit::sizeHint().height();
  const QMargins margins = textMargins();
  return style()
      ->sizeFromContents(QStyle::CT_LineEdit, &option, {width + margins.left() + margins.right(), height}, this)
      .boundedTo({QWIDGETSIZE_MAX, height});
}

QSize CMyMFCMaskedEdit::minimumSizeHint() const {
  return sizeHint();
}

std::string CMyMFCMaskedEdit::Shape() const {
  const std::string shown = text().toStdString();
  if (IsFrequencyFieldText(shown)) return AlignMegahertz(ReplaceAll(shown, " ", "_"));
  return shown.empty() ? std::string(kFrequencyTemplate)
                       : FrequencyTemplateText(static_cast<std::uint64_t>(ReadFrequencyText(shown)));
}

void CMyMFCMaskedEdit::Show(const std::string& shape, int caret) {
  const QString shown = QString::fromStdString(shape);
  if (shown != text()) {
    // In this way, and not by setText(), the change can be undone.
    setSelection(0, static_cast<int>(text().size()));
    insert(shown);
  }
  setCursorPosition(caret);
}

void CMyMFCMaskedEdit::keyPressEvent(QKeyEvent* event) {
  const bool bMark = event->modifiers().testFlag(Qt::ShiftModifier);
  const bool bWord = event->modifiers().testFlag(Qt::ControlModifier);
  const QString typed = event->text();
  if (event->matches(QKeySequence::Copy)) {
    Copy();
  } else if (event->matches(QKeySequence::Cut)) {
    Copy();
    EraseSelection();
  } else if (event->matches(QKeySequence::Paste)) {
    Paste(QApplication::clipboard()->text());
  } else if (event->key() == Qt::Key_Backspace) {
    EraseNext(false);
  } else if (event->key() == Qt::Key_Delete) {
    EraseNext(true);
  } else if (event->key() == Qt::Key_Left && !bWord) {
    Step(false, bMark);
  } else if (event->key() == Qt::Key_Right && !bWord) {
    Step(true, bMark);
  } else if (event->matches(QKeySequence::MoveToStartOfLine) || event->matches(QKeySequence::SelectStartOfLine)) {
    GoTo(MegahertzStart(Shape()), bMark);
  } else if (typed.size() == 1 && typed[0].isPrint() && !bWord && !event->modifiers().testFlag(Qt::AltModifier)) {
    Type(typed[0]);
  } else {
    m_bGrowing = false;
    QLineEdit::keyPressEvent(event);
  }
}

void CMyMFCMaskedEdit::inputMethodEvent(QInputMethodEvent* event) {
  const QString committed = event->commitString();
  if (committed.size() > 1) {
    Paste(committed);
  } else if (!committed.isEmpty()) {
    Type(committed[0]);
  }
  event->accept();
}

void CMyMFCMaskedEdit::mousePressEvent(QMouseEvent* event) {
  m_bGrowing = false;
  QLineEdit::mousePressEvent(event);
}

void CMyMFCMaskedEdit::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    const QClipboard* pClipboard = QApplication::clipboard();
    if (pClipboard->supportsSelection()) Paste(pClipboard->text(QClipboard::Selection));
    return;
  }
  QLineEdit::mouseReleaseEvent(event);
}

void CMyMFCMaskedEdit::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  menu.addAction(tr("&Undo"), this, &QLineEdit::undo)->setEnabled(isUndoAvailable());
  menu.addSeparator();
  menu.addAction(tr("Cu&t"), this,
                 [this] {
                   Copy();
                   EraseSelection();
                 })
      ->setEnabled(hasSelectedText());
  menu.addAction(tr("&Copy"), this, [this] { Copy(); })->setEnabled(hasSelectedText());
  menu.addAction(tr("&Paste"), this, [this] { Paste(QApplication::clipboard()->text()); });
  menu.addAction(tr("Select &All"), this, &QLineEdit::selectAll);
  menu.exec(event->globalPos());
}

void CMyMFCMaskedEdit::dropEvent(QDropEvent* event) {
  Paste(event->mimeData()->text());
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void CMyMFCMaskedEdit::Type(QChar character) {
  const bool bDigit = character >= QLatin1Char('0') && character <= QLatin1Char('9');
  const bool bPoint = character == QLatin1Char('.') || character == QLatin1Char(',');
  if (!bDigit && !bPoint) return;
  EraseSelection();
  if (bDigit) {
    TypeDigit(character.toLatin1());
  } else if (cursorPosition() < kHertzStart) {
    GoTo(cursorPosition() < kKilohertzStart ? kKilohertzStart : kHertzStart, false);
  }
}

void CMyMFCMaskedEdit::TypeDigit(char digit) {
  std::string shape = Shape();
  std::string megahertz = Megahertz(shape);
  const int start = MegahertzStart(shape);
  int caret = cursorPosition();
  const bool bGrows = m_bGrowing ? caret >= start && caret <= kMegahertzEnd
                                 : caret == kMegahertzEnd && (megahertz.empty() || IsKilohertzEmpty(shape));
  if (start > 0 && (bGrows || caret < start)) {
    caret = std::max(caret, start);
    megahertz.insert(static_cast<std::size_t>(caret - start), 1, digit);
    SetMegahertz(shape, megahertz);
    Show(shape, caret);
    m_bGrowing = bGrows;
    return;
  }
  m_bGrowing = false;
  if (IsPoint(caret)) ++caret;
  if (caret == kEnd) return;
  At(shape, caret) = digit;
  Show(shape, caret + 1);
}

void CMyMFCMaskedEdit::EraseSelection() {
  if (hasSelectedText()) EraseRange(selectionStart(), selectionEnd(), false);
}

// Empties the places from `from` to before `to`.
void CMyMFCMaskedEdit::EraseRange(int from, int to, bool bForward) {
  if (IsPoint(from)) ++from;
  std::string shape = Shape();
  for (int place = from; place < to; ++place) {
    if (!IsPoint(place)) At(shape, place) = '_';
  }
  int caret = bForward ? to : from;
  m_bGrowing = from < kMegahertzEnd;
  if (m_bGrowing) {
    SetMegahertz(shape, Megahertz(shape));
    caret = std::max(MegahertzStart(shape), std::min(to, kMegahertzEnd));
  }
  Show(shape, caret);
}

void CMyMFCMaskedEdit::EraseNext(bool bForward) {
  if (hasSelectedText()) {
    EraseSelection();
    return;
  }
  int place = cursorPosition() - (bForward ? 0 : 1);
  if (bForward) place = std::max(place, MegahertzStart(Shape()));
  if (IsPoint(place)) place += bForward ? 1 : -1;
  if (place >= 0 && place < kEnd) EraseRange(place, place + 1, bForward);
}

void CMyMFCMaskedEdit::GoTo(int caret, bool bMark) {
  m_bGrowing = false;
  const int anchor = !hasSelectedText()                     ? cursorPosition()
                     : cursorPosition() == selectionStart() ? selectionEnd()
                                                            : selectionStart();
  if (bMark && caret != anchor) {
    setSelection(anchor, caret - anchor);
  } else {
    deselect();
    setCursorPosition(caret);
  }
}

void CMyMFCMaskedEdit::Step(bool bForward, bool bMark) {
  if (hasSelectedText() && !bMark) {
    GoTo(bForward ? selectionEnd() : selectionStart(), false);
    return;
  }
  int caret = cursorPosition() + (bForward ? 1 : -1);
  if (IsPoint(caret)) caret += bForward ? 1 : -1;
  GoTo(std::clamp(caret, 0, kEnd), bMark);
}

// The whole frequency is copied so that it reads as the same one elsewhere.
void CMyMFCMaskedEdit::Copy() const {
  if (!hasSelectedText()) return;
  const std::int64_t frequency = Frequency();
  QString copied = selectedText().remove(QLatin1Char('_'));
  if (selectedText() == text()) {
    copied = QString::fromStdString(Format("%lld.%03lld.%03lld", static_cast<long long>(frequency / 1'000'000),
                                           static_cast<long long>(frequency / 1000 % 1000),
                                           static_cast<long long>(frequency % 1000)));
  }
  QApplication::clipboard()->setText(copied);
}

void CMyMFCMaskedEdit::Paste(const QString& text) {
  const auto frequency = ReadFrequency(text.toStdString());
  if (!frequency) {
    QApplication::beep();
    return;
  }
  m_bGrowing = false;
  Show(FrequencyTemplateText(static_cast<std::uint64_t>(*frequency)), kEnd);
}

}  // namespace carvello
