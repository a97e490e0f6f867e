#include "cli/picture_drawing.h"

#include <algorithm>
#include <cmath>

#include "cli/png_file.h"
#include "cli/small_font.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr SColour kPaper = {255, 255, 255};
constexpr SColour kInk = {0, 0, 0};
constexpr std::int64_t kGap = 6;
constexpr std::int64_t kTick = 5;
constexpr std::int64_t kScaleWidth = 16;
constexpr std::int64_t kLeft = 15 * kGlyphWidth + kTick + 2 * kGap;
constexpr std::int64_t kTop = 2 * kGlyphHeight + 4 * kGap;
constexpr std::int64_t kRight = 2 * kGap + kScaleWidth + kTick + kGap + 5 * kGlyphWidth + kGap;
constexpr std::int64_t kBottom = 2 * kGlyphHeight + kTick + 3 * kGap;

// A step of 1, 2 or 5 times a power of ten that stands so many times in the length at most.
double StepOf(double length, double most) {
  const double fSmallest = length / std::max(most, 1.0);
  double fStep = std::pow(10.0, std::floor(std::log10(fSmallest)));
  for (const double fFactor : {2.0, 2.5, 2.0}) {
    if (fStep >= fSmallest * (1.0 - 1e-9)) break;
    fStep *= fFactor;
  }
  return fStep;
}

// Of seconds: as clocks go above ten.
double TimeStepOf(double length, double most) {
  const double fSmallest = length / std::max(most, 1.0);
  for (const double fStep : {10.0, 15.0, 30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1'800.0, 3'600.0, 7'200.0, 10'800.0,
                             21'600.0, 43'200.0, 86'400.0}) {
    if (fSmallest > 5.0 && fStep >= fSmallest) return fStep;
  }
  return StepOf(length, most);
}

// The digits that a step of this size needs behind the point.
int DigitsOf(double step) {
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 9);
}

class CDrawing {
 public:
  CDrawing(const SLevelPicture& picture, const SLevelRange& levels, EPalette palette, const SPictureAxes& axes)
      : m_nWidth(picture.nColumns),
        m_nHeight(picture.nRows),
        m_levels(levels),
        m_colours(PaletteColours(palette)),
        m_axes(axes),
        m_image(kLeft + m_nWidth + kRight, kTop + m_nHeight + kBottom, kPaper) {
    const std::vector<std::uint8_t> shades = Shades(picture, levels);
    for (std::int64_t y = 0; y < m_nHeight; ++y) {
      for (std::int64_t x = 0; x < m_nWidth; ++x) {
        m_image.Set(kLeft + x, kTop + y, m_colours[shades[static_cast<std::size_t>(y * m_nWidth + x)]]);
      }
    }
  }

  CPixelImage Drawn() {
    m_image.Text(kGap, kGap, m_axes.strTitle, kInk);
    m_image.Text(kGap, 2 * kGap + kGlyphHeight, m_axes.strDetails, kInk);
    Frame(kLeft, kTop, m_nWidth, m_nHeight);
    DrawFrequencies();
    DrawTimes();
    DrawScale();
    return std::move(m_image);
  }

 private:
  void Frame(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
    m_image.Fill(x - 1, y - 1, width + 2, 1, kInk);
    m_image.Fill(x - 1, y + height, width + 2, 1, kInk);
    m_image.Fill(x - 1, y - 1, 1, height + 2, kInk);
    m_image.Fill(x + width, y - 1, 1, height + 2, kInk);
  }

  void DrawFrequencies() {
    const std::int64_t nY = kTop + m_nHeight;
    const double fLength = m_axes.dHighFrequency - m_axes.dLowFrequency;
    const double fStep = StepOf(fLength, static_cast<double>(m_nWidth) / (12 * kGlyphWidth));
    const int nDigits = DigitsOf(fStep / 1e6);
    std::int64_t nFree = 0;  // where the label before ends
    for (auto n = static_cast<std::int64_t>(std::ceil(m_axes.dLowFrequency / fStep));
         static_cast<double>(n) * fStep <= m_axes.dHighFrequency; ++n) {
      const double fFrequency = static_cast<double>(n) * fStep;
      const std::int64_t nX = kLeft + static_cast<std::int64_t>((fFrequency - m_axes.dLowFrequency) / fLength *
                                                                static_cast<double>(m_nWidth));
      m_image.Fill(nX, nY, 1, kTick, kInk);
      const std::string strText = Format("%.*f", nDigits, fFrequency / 1e6);
      const std::int64_t nText = nX - CPixelImage::TextWidth(strText) / 2;
      if (nText < nFree) continue;
      m_image.Text(nText, nY + kTick + kGap, strText, kInk);
      nFree = nText + CPixelImage::TextWidth(strText) + kGlyphWidth;
    }
    m_image.Text(kLeft, nY + kTick + 2 * kGap + kGlyphHeight, "MHz", kInk);
  }

  void DrawTimes() {
    const double fStep = TimeStepOf(m_axes.dSeconds, static_cast<double>(m_nHeight) / (3 * kGlyphHeight));
    const int nDigits = DigitsOf(fStep);
    // Counted from the midnight before, where the marks of every step begin.
    const std::int64_t nMidnight = m_axes.nStartSecond - (m_axes.nStartSecond % 86'400 + 86'400) % 86'400;
    const double fStart = static_cast<double>(m_axes.nStartSecond - nMidnight) + m_axes.dStartFraction;
    for (auto n = static_cast<std::int64_t>(std::ceil(fStart / fStep - 1e-9));
         static_cast<double>(n) * fStep <= fStart + m_axes.dSeconds; ++n) {
      const double fTime = static_cast<double>(n) * fStep;
      const double fShare = std::max(fTime - fStart, 0.0) / m_axes.dSeconds;
      const std::int64_t nY = kTop + static_cast<std::int64_t>(fShare * static_cast<double>(m_nHeight));
      m_image.Fill(kLeft - kTick, nY, kTick, 1, kInk);
      // Rounded to what is shown before it is taken apart, or 59.9999 would be told as 60.
      const double fUnit = std::pow(10.0, nDigits);
      const auto nUnits = static_cast<std::int64_t>(std::llround(fTime * fUnit));
      const auto nWhole = static_cast<std::int64_t>(static_cast<double>(nUnits) / fUnit);
      std::string strText = FormatUtc("%H:%M:%S", nMidnight + nWhole);
      if (nDigits > 0) {
        strText += Format("%.*f", nDigits, static_cast<double>(nUnits) / fUnit - static_cast<double>(nWhole)).substr(1);
      }
      m_image.Text(kLeft - kTick - kGap - CPixelImage::TextWidth(strText), nY - kGlyphHeight / 2, strText, kInk);
    }
    m_image.Text(kGap, kTop + m_nHeight + kTick + 2 * kGap + kGlyphHeight, "UTC", kInk);
  }

  void DrawScale() {
    const std::int64_t nX = kLeft + m_nWidth + 2 * kGap;
    for (std::int64_t y = 0; y < m_nHeight; ++y) {
      const auto nShade =
          static_cast<std::size_t>(255 * (m_nHeight - 1 - y) / std::max<std::int64_t>(m_nHeight - 1, 1));
      m_image.Fill(nX, kTop + y, kScaleWidth, 1, m_colours[nShade]);
    }
    Frame(nX, kTop, kScaleWidth, m_nHeight);
    const double fLength = m_levels.dHigh - m_levels.dLow;
    const double fStep = StepOf(fLength, static_cast<double>(m_nHeight) / (2 * kGlyphHeight));
    for (auto n = static_cast<std::int64_t>(std::ceil(m_levels.dLow / fStep));
         static_cast<double>(n) * fStep <= m_levels.dHigh; ++n) {
      const double fLevel = static_cast<double>(n) * fStep;
      const double fShare = (m_levels.dHigh - fLevel) / fLength;
      const std::int64_t nY = kTop + static_cast<std::int64_t>(fShare * static_cast<double>(m_nHeight));
      m_image.Fill(nX + kScaleWidth, nY, kTick, 1, kInk);
      m_image.Text(nX + kScaleWidth + kTick + kGap, nY - kGlyphHeight / 2, Format("%.*f", DigitsOf(fStep), fLevel),
                   kInk);
    }
    m_image.Text(nX, kTop + m_nHeight + kTick + 2 * kGap + kGlyphHeight, "dBFS", kInk);
  }

  std::int64_t m_nWidth;
  std::int64_t m_nHeight;
  SLevelRange m_levels;
  const std::array<SColour, 256>& m_colours;
  const SPictureAxes& m_axes;
  CPixelImage m_image;
};

}  // namespace

SLevelRange LevelsOf(const SLevelPicture& picture) {
  constexpr double kBelowNoise = 3.0;
  constexpr double kLeastRange = 30.0;
  std::vector<float> levels;
  for (const float fLevel : picture.levels) {
    if (std::isfinite(fLevel)) levels.push_back(fLevel);
  }
  if (levels.empty()) return {-120.0, 0.0};
  // A quarter of the pixels shows no more than noise, or there is nothing to tell it from.
  const auto quarter = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 4);
  std::nth_element(levels.begin(), quarter, levels.end());
  const double fLow = std::floor(*quarter - kBelowNoise);
  const double fHigh = std::ceil(*std::max_element(levels.begin(), levels.end()));
  return {fLow, std::max(fHigh, fLow + kLeastRange)};
}

std::vector<std::uint8_t> Shades(const SLevelPicture& picture, const SLevelRange& levels) {
  std::vector<std::uint8_t> shades(picture.levels.size());
  for (std::size_t i = 0; i < shades.size(); ++i) {
    const double fShare = (picture.levels[i] - levels.dLow) / (levels.dHigh - levels.dLow);
    shades[i] = static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(fShare, 0.0, 1.0)));
  }
  return shades;
}

std::vector<std::uint8_t> PlainPng(const SLevelPicture& picture, const SLevelRange& levels, EPalette palette,
                                   std::string& error) {
  const std::vector<std::uint8_t> shades = Shades(picture, levels);
  if (palette == EPalette::Grey) return PngOfGreys(shades, picture.nColumns, error);
  const std::array<SColour, 256>& colours = PaletteColours(palette);
  CPixelImage image(picture.nColumns, picture.nRows, SColour{});
  for (std::int64_t y = 0; y < picture.nRows; ++y) {
    for (std::int64_t x = 0; x < picture.nColumns; ++x) {
      image.Set(x, y, colours[shades[static_cast<std::size_t>(y * picture.nColumns + x)]]);
    }
  }
  return PngOfImage(image, error);
}

CPixelImage DrawPicture(const SLevelPicture& picture, const SLevelRange& levels, EPalette palette,
                        const SPictureAxes& axes) {
  return CDrawing(picture, levels, palette, axes).Drawn();
}

}  // namespace carvello
