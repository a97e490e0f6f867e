// Finding a choice of a drop-down list by typing it, also slowly and with its blanks.
#pragma once

#include <QStringList>

class QWidget;

namespace carvello {

// The choice that is typed, wholly or in part: the one that reads so, else the first whose first word does ("10" is
// "10 kHz" and not "100 kHz"), else the first that begins so. Blanks and case do not count. -1 when there is none.
int FindChoice(const QStringList& choices, const QString& typed);

// All drop-down lists of the window that are there now and have no field of their own for typing, closed or open.
void MakeChoicesFindable(QWidget& window);

}  // namespace carvello
