// PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/pixel_image.h"

namespace carvello {

// The bytes of a PNG file of 8 bits a channel; of greys, row after row, or of colours. Nothing, and why, when the
// library refuses. Throws std::bad_alloc.
std::vector<std::uint8_t> PngOfGreys(const std::vector<std::uint8_t>& greys, std::int64_t width, std::string& error);
std::vector<std::uint8_t> PngOfImage(const CPixelImage& image, std::string& error);

}  // namespace carvello
