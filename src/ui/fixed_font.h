// The fixed-pitch font of the frequency fields, the entries and the log.
#pragma once

#include <QFont>

namespace carvello {

// Of the size of the desktop's texts: the first of the preferred faces that there is, else the desktop's own.
QFont FixedPitchFont();

}  // namespace carvello
