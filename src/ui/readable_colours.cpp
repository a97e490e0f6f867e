#include "ui/readable_colours.h"

#include <algorithm>
#include <cmath>

namespace carvello {

namespace {

constexpr double kEnough = 5.0;
constexpr int kSteps = 32;

double LeastContrast(const QColor& colour, const QList<QColor>& backgrounds) {
  double least = 21.0;
  for (const QColor& background : backgrounds) least = std::min(least, ContrastOf(colour, background));
  return least;
}

QColor HueOf(ETone tone) {
  switch (tone) {
    case ETone::Good:
      return {0x1A, 0x8F, 0x3C};
    case ETone::Caution:
      return {0xB0, 0x70, 0x00};
    case ETone::Bad:
    case ETone::Plain:
      break;
  }
  return {0xDA, 0x1E, 0x28};
}

QColor Mixed(const QColor& from, const QColor& to, int step) {
  const auto mix = [step](int a, int b) { return a + (b - a) * step / kSteps; };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

}  // namespace

double LuminanceOf(const QColor& colour) {
  const auto linear = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double ContrastOf(const QColor& a, const QColor& b) {
  const double x = LuminanceOf(a), y = LuminanceOf(b);
  return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

QColor ReadableOn(const QColor& background) {
  return ContrastOf(Qt::black, background) > ContrastOf(Qt::white, background) ? Qt::black : Qt::white;
}

QColor Strengthened(const QColor& colour, const QColor& strongest, const QList<QColor>& backgrounds, double contrast) {
  for (int step = 0; step < kSteps; ++step) {
    const QColor mixed = Mixed(colour, strongest, step);
    if (LeastContrast(mixed, backgrounds) >= contrast) return mixed;
  }
  return strongest;
}

QColor ToneColour(ETone tone, const QList<QColor>& backgrounds, const QColor& plain) {
  if (tone == ETone::Plain) return plain;
  const QColor hue = HueOf(tone);
  const QColor end =
      LeastContrast(Qt::black, backgrounds) > LeastContrast(Qt::white, backgrounds) ? Qt::black : Qt::white;
  for (int step = 0; step < kSteps; ++step) {
    const QColor colour = Mixed(hue, end, step);
    if (LeastContrast(colour, backgrounds) >= kEnough) return colour;
  }
  return end;
}

}  // namespace carvello
