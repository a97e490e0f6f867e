// Colours for texts that tell good from bad. They follow the theme: whatever the background, they can be read on it.
#pragma once

#include <QColor>
#include <QList>
#include <string>

namespace carvello {

enum class ETone { Plain, Good, Caution, Bad };

struct SToneText {
  std::string strText;
  ETone tone = ETone::Plain;
  std::string strBrief{};  // for a place with little room; empty where the text has no shorter form

  bool operator==(const SToneText&) const = default;
};

// Relative luminance, from 0 to 1, as the Web Content Accessibility Guidelines 2.1 define it.
double LuminanceOf(const QColor& colour);

// How far two colours stand apart, from 1 to 21, as the same guidelines reckon it.
double ContrastOf(const QColor& a, const QColor& b);

// Black or white, whichever can be read better on the background.
QColor ReadableOn(const QColor& background);

// The colour, mixed with `strongest` no further than it needs to stand so far apart from every one of the backgrounds;
// `strongest` where that is not enough.
QColor Strengthened(const QColor& colour, const QColor& strongest, const QList<QColor>& backgrounds, double contrast);

// The tone's colour, made darker or lighter until its contrast with every one of the backgrounds is 5 or as near to
// that as black or white comes (4.58 on the worst of greys). `plain` is the result for Plain.
QColor ToneColour(ETone tone, const QList<QColor>& backgrounds, const QColor& plain);

}  // namespace carvello
