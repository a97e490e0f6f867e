#include "ui/english_texts.h"

#include <QCoreApplication>
#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <vector>

#include "ui/reason_texts.h"

namespace carvello {

namespace {

constexpr char kContext[] = "Texts";
constexpr qsizetype kMostKept = 5000;

// %1 and so on stand for what the text tells of; a longer text comes before one that it would match as well.
// NOLINTBEGIN(bugprone-suspicious-missing-comma): some texts are longer than a line
constexpr const char* kTexts[] = {
    // captions
    QT_TRANSLATE_NOOP("Texts", "Start"),
    QT_TRANSLATE_NOOP("Texts", "Start Time"),
    QT_TRANSLATE_NOOP("Texts", "End"),
    QT_TRANSLATE_NOOP("Texts", "End Time"),
    QT_TRANSLATE_NOOP("Texts", "Continue"),
    QT_TRANSLATE_NOOP("Texts", "Open File"),
    QT_TRANSLATE_NOOP("Texts", "Open Folder"),
    QT_TRANSLATE_NOOP("Texts", "Save Picture"),
    // the times of a new entry
    QT_TRANSLATE_NOOP("Texts", "The start time is out of range. Reset the start time?"),
    QT_TRANSLATE_NOOP("Texts", "The end time is out of range. Reset the end time?"),
    QT_TRANSLATE_NOOP("Texts", "End duration cannot be zero."),
    QT_TRANSLATE_NOOP("Texts", "The start time + end duration is past the end of file, change the duration."),
    QT_TRANSLATE_NOOP("Texts", "The end time is before the start time."),
    // Start
    QT_TRANSLATE_NOOP("Texts", "The maximum entries which can be processed is %1, you have added %2.\n\nContinue?"),
    QT_TRANSLATE_NOOP("Texts", "The output file already exists, overwrite it?"),
    QT_TRANSLATE_NOOP("Texts", "%1 of %2 file(s) already exist, do you want to overwrite them?"),
    QT_TRANSLATE_NOOP("Texts", "A thread could not be started"),
    QT_TRANSLATE_NOOP("Texts", "Not enough memory"),
    QT_TRANSLATE_NOOP("Texts", "All output files exist, processing not started."),
    QT_TRANSLATE_NOOP("Texts", "%1 of %2 entries have been processed. Remove from list and continue?"),
    QT_TRANSLATE_NOOP("Texts", "The input holds no files"),
    QT_TRANSLATE_NOOP("Texts", "cannot be read"),
    QT_TRANSLATE_NOOP("Texts", "%1 would replace the input file %2"),
    QT_TRANSLATE_NOOP("Texts",
                      "Up to %1 files would be open at a time, and the system allows this program %2: raise "
                      "that limit, or cut fewer entries at a time"),
    QT_TRANSLATE_NOOP("Texts", "The downconverter library Vantrel is missing or incomplete: %1"),
    // what became of a run
    QT_TRANSLATE_NOOP("Texts", "failed: %1"),
    QT_TRANSLATE_NOOP("Texts", "Stopped: %1 of %2 outputs complete"),
    QT_TRANSLATE_NOOP("Texts", "%1 of %2 outputs written"),
    QT_TRANSLATE_NOOP("Texts", "%1 of %2 outputs failed:"),
    QT_TRANSLATE_NOOP("Texts", "%1 failed"),
    QT_TRANSLATE_NOOP("Texts", "%1 existed"),
    QT_TRANSLATE_NOOP("Texts", "%1 not begun"),
    QT_TRANSLATE_NOOP("Texts", "and %1 more, which the list and the log name."),
    QT_TRANSLATE_NOOP("Texts", "The run could not go on: %1"),
    QT_TRANSLATE_NOOP("Texts", "Outputs not begun: %1"),
    QT_TRANSLATE_NOOP("Texts", "waiting"),
    QT_TRANSLATE_NOOP("Texts", "done"),
    QT_TRANSLATE_NOOP("Texts", "stopped"),
    QT_TRANSLATE_NOOP("Texts", "exists"),
    QT_TRANSLATE_NOOP("Texts", "not finished"),
    QT_TRANSLATE_NOOP("Texts", "Error writing %1 bytes - %2"),
    QT_TRANSLATE_NOOP("Texts", "%1 MB/s, %2 left"),
    // hints on what was added
    QT_TRANSLATE_NOOP("Texts", "%1; see the log"),
    QT_TRANSLATE_NOOP("Texts", "the bandwidth %1 is out of range."),
    QT_TRANSLATE_NOOP("Texts", "the end time is the start time: it runs to the end."),
    QT_TRANSLATE_NOOP("Texts", "the start time lies behind the last sample"),
    QT_TRANSLATE_NOOP("Texts", "wholly outside %1 to %2"),
    QT_TRANSLATE_NOOP("Texts", "partly outside %1 to %2"),
    QT_TRANSLATE_NOOP("Texts", "in the list already; not taken over: %1"),
    QT_TRANSLATE_NOOP("Texts", "in the list already"),
    QT_TRANSLATE_NOOP("Texts", "folder"),
    QT_TRANSLATE_NOOP("Texts", "sample size"),
    QT_TRANSLATE_NOOP("Texts", "file size"),
    // choices and sums
    QT_TRANSLATE_NOOP("Texts", "One file (RF64)"),
    QT_TRANSLATE_NOOP("Texts", "Maximum entries: %1, current: %2"),
    QT_TRANSLATE_NOOP("Texts", "Maximum entries: %1"),
    QT_TRANSLATE_NOOP("Texts", "%1 to %2 in steps of %3. Total entries %4."),
    // the spectrum window
    QT_TRANSLATE_NOOP("Texts", "Follows the zoom"),
    QT_TRANSLATE_NOOP("Texts", "Off"),
    QT_TRANSLATE_NOOP("Texts", "Average"),
    QT_TRANSLATE_NOOP("Texts", "Peak"),
    QT_TRANSLATE_NOOP("Texts", "Flat top"),
    QT_TRANSLATE_NOOP("Texts", "Grey"),
    QT_TRANSLATE_NOOP("Texts", "Not enough memory for the search"),
    QT_TRANSLATE_NOOP("Texts", "The system gives no thread for the search"),
    QT_TRANSLATE_NOOP("Texts", "%1, whole recording"),
    QT_TRANSLATE_NOOP("Texts", "%1, level not known yet"),
};
// NOLINTEND(bugprone-suspicious-missing-comma)

struct SPattern {
  const char* text;
  QRegularExpression expression;
};

SPattern PatternOf(const char* text) {
  QString expression = QRegularExpression::escape(QString::fromUtf8(text));
  static const QRegularExpression place(QStringLiteral("\\\\%([1-9])"));
  expression.replace(place, QStringLiteral("(?<a\\1>[^\\n]+?)"));
  return {text, QRegularExpression(QRegularExpression::anchoredPattern(expression))};
}

const std::vector<SPattern>& Patterns() {
  static const std::vector<SPattern> patterns = [] {
    std::vector<SPattern> all;
    for (const char* text : kTexts) all.push_back(PatternOf(text));
    for (const char* text : kReasonTexts) all.push_back(PatternOf(text));
    return all;
  }();
  return patterns;
}

QString WithFirst(const QString& text, bool capital) {
  if (text.isEmpty() || !capital) return text;
  return text.left(1).toUpper() + text.mid(1);
}

QString Shown(const QString& english);

// Null where the table has no such text.
QString Known(const QString& english) {
  // A hint begins with a capital, whatever it is made of.
  const bool capital = english.front().isUpper();
  const QString small = english.left(1).toLower() + english.mid(1);
  for (const SPattern& pattern : Patterns()) {
    QRegularExpressionMatch match = pattern.expression.match(english);
    const bool asItIs = match.hasMatch();
    if (!asItIs && capital) match = pattern.expression.match(small);
    if (!match.hasMatch()) continue;
    QString text = QCoreApplication::translate(kContext, pattern.text);
    QStringList arguments;
    for (int i = 1; i <= pattern.expression.captureCount(); ++i) {
      arguments << Shown(match.captured(QStringLiteral("a%1").arg(i)));
    }
    // All at once: an argument may hold what looks like a place for another.
    switch (arguments.size()) {
      case 0:
        break;
      case 1:
        text = text.arg(arguments[0]);
        break;
      case 2:
        text = text.arg(arguments[0], arguments[1]);
        break;
      case 3:
        text = text.arg(arguments[0], arguments[1], arguments[2]);
        break;
      case 4:
        text = text.arg(arguments[0], arguments[1], arguments[2], arguments[3]);
        break;
      default:
        text = text.arg(arguments[0], arguments[1], arguments[2], arguments[3], arguments[4]);
        break;
    }
    return WithFirst(text, capital && !asItIs);
  }
  return {};
}

// A row of facts, of which the first is known: "7 of 8 outputs written, 1 failed".
QString Row(const QString& english) {
  const QString comma = QStringLiteral(", ");
  QStringList parts = english.split(comma);
  if (parts.size() < 2) return {};
  QStringList shown;
  for (const QString& part : parts) {
    const QString known = part.isEmpty() ? QString() : Known(part);
    if (known.isNull()) return {};
    shown << known;
  }
  return shown.join(comma);
}

QString Line(const QString& english) {
  if (english.isEmpty()) return english;
  for (const QString& text : {Row(english), Known(english)}) {
    if (!text.isNull()) return text;
  }
  // A name and what there is to tell of it; a name may hold a colon, too.
  const QString colon = QStringLiteral(": ");
  for (qsizetype at = english.indexOf(colon); at >= 0; at = english.indexOf(colon, at + 1)) {
    const QString rest = english.mid(at + colon.size());
    if (rest.isEmpty()) continue;
    const QString known = Known(rest);
    if (known.isNull()) continue;
    const QString name = english.left(at), place = Known(name);
    return (place.isNull() ? name : place) + colon + known;
  }
  return english;
}

QString Shown(const QString& english) {
  if (english.isEmpty()) return english;
  if (!english.contains(QLatin1Char('\n'))) return Line(english);
  QString whole = Known(english);
  if (!whole.isNull()) return whole;
  QStringList lines = english.split(QLatin1Char('\n'));
  std::transform(lines.begin(), lines.end(), lines.begin(), Line);
  return lines.join(QLatin1Char('\n'));
}

}  // namespace

QString InLanguage(const std::string& english) {
  // The same texts come again and again, in every row and several times a second.
  static QHash<QString, QString> kept;
  const QString text = QString::fromStdString(english);
  const auto found = kept.constFind(text);
  if (found != kept.constEnd()) return *found;
  if (kept.size() >= kMostKept) kept.clear();
  return *kept.insert(text, Shown(text));
}

}  // namespace carvello
