#include "ui/plain_tool_tip.h"

#include <QToolTip>

namespace carvello {

namespace {

constexpr int kLongestRun = 40;  // characters without a blank
constexpr QChar kBreakHere(0x200B);

}  // namespace

// As rich text, for only that is broken into lines.
void ShowPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* pWidget) {
  QString broken;
  int run = 0;
  for (const QChar character : text) {
    run = character.isSpace() ? 0 : run + 1;
    if (run > kLongestRun && !character.isLowSurrogate()) {
      broken += kBreakHere;
      run = 1;
    }
    broken += character;
  }
  const QString tip = text.isEmpty() ? QString() : "<p style='white-space:pre-wrap'>" + broken.toHtmlEscaped() + "</p>";
  QToolTip::showText(globalPosition, tip, pWidget);
}

}  // namespace carvello
