// Telling readers of the screen something that happens, by the way that those of the system listen to.
#pragma once

#include <QString>

class QWidget;

namespace carvello {

// `pNotice`: the part of the window that is told of, whose accessible name is the text.
void NotifyReaders(QWidget* pNotice, const QString& text);

}  // namespace carvello
