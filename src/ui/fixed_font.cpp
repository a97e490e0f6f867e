#include "ui/fixed_font.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

namespace carvello {

QFont FixedPitchFont() {
  QFont font = QApplication::font("QMessageBox");
  for (const char* face : {"Consolas", "Lucida", "console", "Courier New"}) {
    font.setFamily(face);
    // Another face stands in for one that is not installed.
    if (QFontInfo(font).family().compare(face, Qt::CaseInsensitive) == 0) return font;
  }
  font.setFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
  font.setStyleHint(QFont::Monospace);
  if (QFontInfo(font).fixedPitch()) return font;
  // A system that names a face which it does not have.
  for (const QString& face : QFontDatabase::families(QFontDatabase::Latin)) {
    if (!QFontDatabase::isFixedPitch(face) || !QFontDatabase::isSmoothlyScalable(face)) continue;
    font.setFamily(face);
    break;
  }
  return font;
}

}  // namespace carvello
