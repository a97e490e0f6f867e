// Tool tips that tell a text as it stands: what looks like markup is shown, not obeyed, and a text without blanks is
// broken all the same, so that no tip is wider than the screen.
#pragma once

#include <QPoint>
#include <QString>

class QWidget;

namespace carvello {

void ShowPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* pWidget);

}  // namespace carvello
