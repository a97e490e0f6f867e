#include "ui/my_date_time.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <ctime>
#include <utility>

#include "support/platform.h"

namespace carvello {

namespace {

// How far local time is ahead of UTC, in seconds.
std::int64_t LocalOffset(std::int64_t moment) {
  std::tm fields{};
  return platform::LocalTime(moment, fields) ? platform::UtcSeconds(fields) - moment : 0;
}

// What the pickers show. QDateTime's UTC stands for a clock that is in no time zone: it has every hour of every day,
// while local time lacks one and repeats one a year.
//
// UTC is shown by going back from local time by the offset at that moment. Deliberate: in this way the start of a
// recording is read back exactly, even when clocks change within hours of it.
QDateTime WallClock(std::int64_t moment, bool bUtc) {
  std::tm fields{};
  if (!platform::LocalTime(bUtc ? moment - LocalOffset(moment) : moment, fields)) return {};
  return QDateTime(QDate(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday),
                   QTime(fields.tm_hour, fields.tm_min, fields.tm_sec), Qt::UTC);
}

std::tm Fields(const QDate& date, const QTime& time) {
  std::tm fields{};
  fields.tm_year = date.year() - 1900;
  fields.tm_mon = date.month() - 1;
  fields.tm_mday = date.day();
  fields.tm_hour = time.hour();
  fields.tm_min = time.minute();
  fields.tm_sec = time.second();
  fields.tm_isdst = -1;
  return fields;
}

// The user's short date, with four digits for the year also where two are usual.
QString DateFormat(const QLocale& locale) {
  QString format = locale.dateFormat(QLocale::ShortFormat);
  if (!format.contains(QLatin1String("yyyy"))) format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  return format;
}

}  // namespace

CMyDatePicker::CMyDatePicker(QWidget* parent) : QDateEdit(parent) {
  setTimeSpec(Qt::UTC);
  setCalendarPopup(true);
  setDisplayFormat(DateFormat(locale()));
}

CMyTimePicker::CMyTimePicker(QWidget* parent) : QTimeEdit(parent) {
  setTimeSpec(Qt::UTC);
  setDisplayFormat(QStringLiteral("HH:mm:ss"));
}

void CMyDatePicker::keyPressEvent(QKeyEvent* event) {
  m_typing.Key(*this, *lineEdit(), *event, [this](QKeyEvent* key) { QDateEdit::keyPressEvent(key); });
  // On the way to a date some days and months of it may be none, and its sections would keep what was there before.
  QString format = displayFormat();
  if (!format.contains("MMM")) format.replace("MM", "M");
  format.replace("dd", "d");
  QString digits = displayFormat();
  digits.remove(QRegularExpression("[^dMy]"));
  for (const QString& form : {format, digits, QStringLiteral("yyyy-M-d")}) {
    const QDate date = locale().toDate(m_typing.Typed(), form);
    if (date >= minimumDate() && date <= maximumDate()) setDate(date);
  }
}

void CMyTimePicker::keyPressEvent(QKeyEvent* event) {
  m_typing.Key(*this, *lineEdit(), *event, [this](QKeyEvent* key) { QTimeEdit::keyPressEvent(key); });
}

void CSectionTyping::Key(QDateTimeEdit& picker, QLineEdit& edit, QKeyEvent& event,
                         const std::function<void(QKeyEvent*)>& toolkit) {
  const QString text = event.text();
  const bool types = !text.isEmpty() && text[0].isPrint() && (event.modifiers() & Qt::ControlModifier) == 0;
  const bool separates = types && !text[0].isLetterOrNumber();
  const bool arrived = std::exchange(m_bArrived, false);
  if (!types) m_typed.clear();
  if (!m_typed.isEmpty()) m_typed += text;
  if (separates && arrived) return;  // the section that it leads to has been reached
  if (types && !separates && edit.hasSelectedText() &&
      edit.selectedText() != picker.sectionText(picker.currentSection())) {
    // The toolkit's picker drops what is typed over more than one section.
    m_typed = text;
    edit.setCursorPosition(edit.selectionStart());
    picker.setSelectedSection(picker.currentSection());
  }
  const QDateTimeEdit::Section before = picker.currentSection();
  toolkit(&event);
  m_bArrived = types && !separates && picker.currentSection() != before;
}

void CMyDateTime::SetRange(std::int64_t first, std::int64_t last, bool bUtc) {
  // The picker would become as narrow as these dates, and the window would move with it.
  m_pDate->setMinimumWidth(std::max(m_pDate->minimumWidth(), m_pDate->sizeHint().width()));
  m_pDate->setDateRange(WallClock(first, bUtc).date(), WallClock(last, bUtc).date());
}

void CMyDateTime::Set(std::int64_t moment, bool bUtc) {
  Show(WallClock(moment, bUtc));
}

QDateTime CMyDateTime::Shown() const {
  return QDateTime(m_pDate->date(), m_pTime->time(), Qt::UTC);
}

void CMyDateTime::Show(const QDateTime& shown) {
  m_pDate->setDate(shown.date());
  m_pTime->setTime(shown.time());
}

std::int64_t CMyDateTime::Get(bool bUtc, std::int64_t recordingStart) const {
  const std::int64_t local = platform::LocalSeconds(Fields(m_pDate->date(), m_pTime->time()));
  return bUtc ? local + LocalOffset(recordingStart) : local;
}

void CMyDateTime::SetEnabled(bool bEnabled) {
  m_pDate->setEnabled(bEnabled);
  m_pTime->setEnabled(bEnabled);
}

}  // namespace carvello
