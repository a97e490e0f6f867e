// Entering a moment with two pickers, one for the date and one for the time of day. The pickers show wall-clock time,
// in UTC or local time as the user chose.
#pragma once

#include <QDateEdit>
#include <QTimeEdit>
#include <cstdint>
#include <functional>

namespace carvello {

// Typing into a picker's sections. Over a selection of several of them it begins in the first, and a separator that is
// typed when a full section has led to the next one does not lead on.
class CSectionTyping {
 public:
  void Key(QDateTimeEdit& picker, QLineEdit& edit, QKeyEvent& event, const std::function<void(QKeyEvent*)>& toolkit);
  // All that was typed since a selection of several sections was typed over; empty after any other key.
  const QString& Typed() const { return m_typed; }

 private:
  QString m_typed;
  bool m_bArrived = false;  // in a section by filling the one before
};

// Shows the user's short date, with the century.
class CMyDatePicker : public QDateEdit {
  Q_OBJECT

 public:
  explicit CMyDatePicker(QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  CSectionTyping m_typing;
};

// Shows hours, minutes and seconds, with arrows up and down.
class CMyTimePicker : public QTimeEdit {
  Q_OBJECT

 public:
  explicit CMyTimePicker(QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  CSectionTyping m_typing;
};

// A date picker and a time picker that show one moment. Both must outlive it. Moments are seconds since 1970 UTC.
class CMyDateTime {
 public:
  CMyDateTime(CMyDatePicker* pDate, CMyTimePicker* pTime) : m_pDate(pDate), m_pTime(pTime) {}

  // The dates from that of `first` to that of `last` can be picked.
  void SetRange(std::int64_t first, std::int64_t last, bool bUtc);
  void Set(std::int64_t moment, bool bUtc);
  // What the pickers show. With `bUtc` the offset of local time from UTC at `recordingStart` is what tells the two
  // apart, also when clocks change during the recording.
  std::int64_t Get(bool bUtc, std::int64_t recordingStart) const;

  // What the pickers show as it stands, to be shown again.
  QDateTime Shown() const;
  void Show(const QDateTime& shown);

  void SetEnabled(bool bEnabled);

 private:
  CMyDatePicker* m_pDate;
  CMyTimePicker* m_pTime;
};

}  // namespace carvello
