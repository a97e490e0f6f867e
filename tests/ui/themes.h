// A light and a dark theme, and how far apart the colours are that a picture shows.
#pragma once

#include <QImage>
#include <QPalette>
#include <vector>

namespace carvello::test {

struct STheme {
  const char* name;
  QPalette palette;
};

// The style's own palette, and a dark one as desktops have them.
std::vector<STheme> Themes();

// The greatest contrast of a pixel with the background: the one given, or the colour that most pixels have.
double BestContrast(const QImage& picture, const QColor& background);
double BestContrast(const QImage& picture);

}  // namespace carvello::test
