#include "cli/pixel_image.h"

#include <algorithm>
#include <string>

#include "cli/small_font.h"
#include "support/text.h"

namespace carvello {

CPixelImage::CPixelImage(std::int64_t width, std::int64_t height, const SColour& background)
    : m_nWidth(width), m_nHeight(height), m_pixels(static_cast<std::size_t>(width * height), background) {}

void CPixelImage::Set(std::int64_t x, std::int64_t y, const SColour& colour) {
  if (x < 0 || x >= m_nWidth || y < 0 || y >= m_nHeight) return;
  m_pixels[static_cast<std::size_t>(y * m_nWidth + x)] = colour;
}

void CPixelImage::Fill(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height, const SColour& colour) {
  for (std::int64_t nRow = y; nRow < y + height; ++nRow) {
    for (std::int64_t nColumn = x; nColumn < x + width; ++nColumn) Set(nColumn, nRow, colour);
  }
}

void CPixelImage::Text(std::int64_t x, std::int64_t y, std::string_view text, const SColour& colour) {
  for (const char16_t character : Utf8ToUtf16(text)) {
    const SmallGlyph& glyph = GlyphOf(character);
    for (std::int64_t nRow = 0; nRow < kGlyphHeight; ++nRow) {
      for (std::int64_t nDot = 0; nDot < kGlyphWidth; ++nDot) {
        if ((glyph[static_cast<std::size_t>(nRow)] & (0x80u >> nDot)) != 0) Set(x + nDot, y + nRow, colour);
      }
    }
    x += kGlyphWidth;
  }
}

std::int64_t CPixelImage::TextWidth(std::string_view text) {
  return static_cast<std::int64_t>(Utf8ToUtf16(text).size()) * kGlyphWidth;
}

}  // namespace carvello
