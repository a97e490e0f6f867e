// CMyMFCMaskedEdit: a field for a frequency. Digits have fixed places between fixed points, "_____.___.___" when empty.
#pragma once

#include <QLineEdit>
#include <cstdint>

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
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void TypeCharacter(QChar character);
  void Erase(bool bBackwards);
  void Step(bool bForward, bool bMark);
  void CopyFrequency() const;
  void Paste(const QString& text);
  void ShowText(const std::string& text, int caret);
};

}  // namespace carvello
