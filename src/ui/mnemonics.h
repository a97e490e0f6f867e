// What the underlined letters of a dialog do.
#pragma once

class QWidget;

namespace carvello {

// The toolkit shows a button pressed for a tenth of a second before it does anything, and what the user types meanwhile
// would change what the button works with: with this the button acts at once. A text field that has the focus already
// is selected anew, so that typing begins anew there too; and no field takes the letter of what cannot be used at the
// moment for one that is typed. For the buttons, labels and fields that the dialog has now.
void MakeMnemonicsImmediate(QWidget& dialog);

}  // namespace carvello
