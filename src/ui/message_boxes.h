// Questions and notices as modal message boxes.
#pragma once

#include "engine/message_box.h"

class QWidget;

namespace carvello {

// Shows the box and waits for the user. Closing it without a button counts as its Cancel or No button.
EAnswer ShowMessageBox(QWidget* pParent, const SMessageBox& box);

}  // namespace carvello
