// An image in memory to draw on: red, green and blue, a byte each.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "spectrum/palette.h"

namespace carvello {

class CPixelImage {
 public:
  CPixelImage(std::int64_t width, std::int64_t height, const SColour& background);

  std::int64_t Width() const { return m_nWidth; }
  std::int64_t Height() const { return m_nHeight; }
  // Row after row, the topmost one first.
  const std::vector<SColour>& Pixels() const { return m_pixels; }
  const SColour& At(std::int64_t x, std::int64_t y) const {
    return m_pixels[static_cast<std::size_t>(y * m_nWidth + x)];
  }

  // What lies beside the image is not drawn.
  void Set(std::int64_t x, std::int64_t y, const SColour& colour);
  void Fill(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height, const SColour& colour);
  // A line of UTF-8 text; its topmost dots stand in row y.
  void Text(std::int64_t x, std::int64_t y, std::string_view text, const SColour& colour);
  static std::int64_t TextWidth(std::string_view text);

 private:
  std::int64_t m_nWidth;
  std::int64_t m_nHeight;
  std::vector<SColour> m_pixels;
};

}  // namespace carvello
