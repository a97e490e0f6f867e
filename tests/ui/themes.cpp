#include "ui/themes.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <map>

#include "ui/readable_colours.h"

namespace carvello::test {

namespace {

QPalette DarkPalette() {
  QPalette palette;
  const auto set = [&](QPalette::ColorRole role, const QColor& colour, const QColor& disabled) {
    palette.setColor(role, colour);
    palette.setColor(QPalette::Disabled, role, disabled);
  };
  const QColor grey(0x78, 0x78, 0x78);
  set(QPalette::Window, {0x32, 0x32, 0x32}, {0x32, 0x32, 0x32});
  set(QPalette::Base, {0x24, 0x24, 0x24}, {0x32, 0x32, 0x32});
  set(QPalette::AlternateBase, {0x2B, 0x2B, 0x2B}, {0x2B, 0x2B, 0x2B});
  set(QPalette::Button, {0x3A, 0x3A, 0x3A}, {0x3A, 0x3A, 0x3A});
  set(QPalette::Text, Qt::white, grey);
  set(QPalette::WindowText, Qt::white, grey);
  set(QPalette::ButtonText, Qt::white, grey);
  set(QPalette::Highlight, {0x30, 0x8C, 0xC6}, {0x55, 0x55, 0x55});
  set(QPalette::HighlightedText, Qt::white, grey);
  return palette;
}

}  // namespace

std::vector<STheme> Themes() {
  return {{"light", QApplication::style()->standardPalette()}, {"dark", DarkPalette()}};
}

double BestContrast(const QImage& picture, const QColor& background) {
  double best = 1.0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) best = std::max(best, ContrastOf(picture.pixelColor(x, y), background));
  }
  return best;
}

double BestContrast(const QImage& picture) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
  }
  const auto most =
      std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  return most == counts.end() ? 1.0 : BestContrast(picture, QColor(most->first));
}

}  // namespace carvello::test
