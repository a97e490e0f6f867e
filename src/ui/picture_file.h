// Saving a picture where the user wants it.
#pragma once

#include <QImage>

class QWidget;

namespace carvello {

// Asks for a file and writes the picture to it as PNG, in the background: packing a large one takes a while. A file
// that cannot be written is told in a message box, and what it was stays.
void SavePictureFile(QWidget* pWindow, const QImage& picture);

}  // namespace carvello
