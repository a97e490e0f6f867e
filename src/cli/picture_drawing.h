// From levels to pixels: a waterfall, and axes, a scale and a title around it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/pixel_image.h"
#include "overview/recording_picture.h"
#include "spectrum/palette.h"

namespace carvello {

// dBFS: what is drawn as the weakest and as the strongest colour.
struct SLevelRange {
  double dLow = 0.0;
  double dHigh = 0.0;
};

// From just below the noise to the strongest of the picture, in whole dB.
SLevelRange LevelsOf(const SLevelPicture& picture);

// 0 to 255 for every pixel: 0 is the lowest level or less, 255 the highest or more, in even steps of dB between.
std::vector<std::uint8_t> Shades(const SLevelPicture& picture, const SLevelRange& levels);

// What the axes tell.
struct SPictureAxes {
  std::string strTitle;
  std::string strDetails;      // a second line
  double dLowFrequency = 0.0;  // Hz
  double dHighFrequency = 0.0;
  std::int64_t nStartSecond = 0;  // since 1970, and what it leaves out
  double dStartFraction = 0.0;
  double dSeconds = 0.0;
};

// The waterfall alone, as a PNG file; see png_file.h.
std::vector<std::uint8_t> PlainPng(const SLevelPicture& picture, const SLevelRange& levels, EPalette palette,
                                   std::string& error);
CPixelImage DrawPicture(const SLevelPicture& picture, const SLevelRange& levels, EPalette palette,
                        const SPictureAxes& axes);

}  // namespace carvello
