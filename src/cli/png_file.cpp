#include "cli/png_file.h"

#include <png.h>

#include <new>

namespace carvello {
namespace {

static_assert(sizeof(SColour) == 3, "pixels lie in memory as the library takes them");

std::vector<std::uint8_t> Encode(const void* pixels, std::int64_t width, std::int64_t height, png_uint_32 format,
                                 std::string& error) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = format;
  image.flags = PNG_IMAGE_FLAG_FAST;  // noise is hardly any smaller with more effort
  png_alloc_size_t nBytes = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<std::uint8_t> bytes(nBytes);
  if (png_image_write_to_memory(&image, bytes.data(), &nBytes, 0, pixels, 0, nullptr) == 0) {
    error = image.message;
    return {};
  }
  bytes.resize(nBytes);
  return bytes;
}

}  // namespace

std::vector<std::uint8_t> PngOfGreys(const std::vector<std::uint8_t>& greys, std::int64_t width, std::string& error) {
  return Encode(greys.data(), width, static_cast<std::int64_t>(greys.size()) / width, PNG_FORMAT_GRAY, error);
}

std::vector<std::uint8_t> PngOfImage(const CPixelImage& image, std::string& error) {
  return Encode(image.Pixels().data(), image.Width(), image.Height(), PNG_FORMAT_RGB, error);
}

}  // namespace carvello
