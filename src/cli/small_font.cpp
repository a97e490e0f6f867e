#include "cli/small_font.h"

namespace carvello {
namespace {

constexpr char16_t kFirstLow = 0x20;
constexpr char16_t kLastLow = 0x7E;
constexpr char16_t kFirstHigh = 0xA0;
constexpr char16_t kLastHigh = 0xFF;
constexpr std::size_t kLowGlyphs = kLastLow - kFirstLow + 1;

constexpr SmallGlyph kGlyphs[kLowGlyphs + kLastHigh - kFirstHigh + 1] = {
#include "cli/small_font_glyphs.inc"
};

}  // namespace

const SmallGlyph& GlyphOf(char16_t character) {
  if (character >= kFirstLow && character <= kLastLow) return kGlyphs[character - kFirstLow];
  if (character >= kFirstHigh && character <= kLastHigh) return kGlyphs[kLowGlyphs + character - kFirstHigh];
  return kGlyphs[u'?' - kFirstLow];
}

}  // namespace carvello
