// CMyMFCMaskedEdit: a field for a frequency. Digits have fixed places between fixed points, "_____.___.___" when empty.
//
// Typing overwrites, Backspace and Delete empty a place, the arrow keys step over the points, and a typed point or
// comma goes on to the next group. The MHz group is kept at its right end: digits typed into it while the kHz are
// empty, or after some of it was erased, move the others to the left, as on a calculator. Pasting replaces the whole
// frequency.
#pragma once

#include <QLineEdit>
#include <cstdint>
#include <string>

namespace carvello {

class CMyMFCMaskedEdit : public QLineEdit {
  Q_OBJECT

 public:
  explicit CMyMFCMaskedEdit(QWidget* parent = nullptr);

  void SetFrequency(std::int64_t frequency);  // Hz
  std::int64_t Frequency() const;             // Hz; 0 when empty

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  void FrequencyChanged();  // at every change of the text

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // What the field shows, always in its shape.
  std::string Shape() const;
  void Show(const std::string& shape, int caret);
  void Type(QChar character);
  void TypeDigit(char digit);
  void EraseSelection();
  void EraseRange(int from, int to, bool bForward);
  void EraseNext(bool bForward);
  void GoTo(int caret, bool bMark);
  void Step(bool bForward, bool bMark);
  void Copy() const;
  void Paste(const QString& text);

  bool m_bGrowing = false;  // the next digit at the end of the MHz group moves the others to the left
};

}  // namespace carvello
