// Texts that readers of the screen tell. Of a static text they say the accessible name only, so that holds both what it
// is and what it says.
#pragma once

#include <QString>

class QLabel;

namespace carvello {

// Shows the text in a label whose accessible name in the form tells what it is: "Centre frequency" becomes
// "Centre frequency: 7.100 MHz", and is as in the form while there is no text.
void ShowSpoken(QLabel& label, const QString& text);

}  // namespace carvello
