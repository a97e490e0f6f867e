#include "wave_samples.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string_view>

namespace carvello::demo {

namespace {

constexpr double kFullScale = 32768.0;
constexpr std::uint32_t kSizeInDs64 = 0xFFFFFFFF;

template <typename T>
T LittleEndian(const char* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);  // the machines that this runs on are little-endian
  return value;
}

template <typename T>
std::vector<std::complex<double>> ToSamples(const std::vector<char>& bytes, std::size_t frames) {
  std::vector<std::complex<double>> samples(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    const char* frame = bytes.data() + i * 2 * sizeof(T);
    samples[i] = {LittleEndian<T>(frame) / kFullScale, LittleEndian<T>(frame + sizeof(T)) / kFullScale};
  }
  return samples;
}

}  // namespace

std::optional<WaveSamples> ReadWaveSamples(const std::string& path, std::size_t maxFrames) {
  std::ifstream file(path, std::ios::binary);
  std::array<char, 12> riff{};
  if (!file.read(riff.data(), riff.size()) || std::string_view(riff.data() + 8, 4) != "WAVE") return {};

  std::uint16_t tag = 0;
  std::uint16_t channels = 0;
  std::uint16_t bits = 0;
  std::uint64_t longDataSize = 0;
  WaveSamples result;
  std::array<char, 8> chunk{};
  while (file.read(chunk.data(), chunk.size())) {
    const std::string_view id(chunk.data(), 4);
    const auto size = LittleEndian<std::uint32_t>(chunk.data() + 4);
    const auto start = file.tellg();
    std::array<char, 40> body{};
    if (id == "ds64" || id == "fmt ") {
      file.read(body.data(), std::min<std::streamsize>(size, body.size()));
      if (!file) return {};
    }
    if (id == "ds64") {
      longDataSize = LittleEndian<std::uint64_t>(body.data() + 8);
    } else if (id == "fmt ") {
      tag = LittleEndian<std::uint16_t>(body.data());
      channels = LittleEndian<std::uint16_t>(body.data() + 2);
      result.nSampleRate = LittleEndian<std::uint32_t>(body.data() + 4);
      bits = LittleEndian<std::uint16_t>(body.data() + 14);
    } else if (id == "data") {
      const bool integers = tag == 1 && bits == 16;
      const bool floats = tag == 3 && bits == 32;
      if (channels != 2 || (!integers && !floats)) return {};
      const std::size_t frameBytes = integers ? 4 : 8;
      const std::uint64_t dataSize = size == kSizeInDs64 ? longDataSize : size;
      result.nFrames = dataSize / frameBytes;
      std::vector<char> bytes(std::min(result.nFrames, maxFrames) * frameBytes);
      file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      const std::size_t frames = static_cast<std::size_t>(file.gcount()) / frameBytes;
      result.samples = integers ? ToSamples<std::int16_t>(bytes, frames) : ToSamples<float>(bytes, frames);
      return result;
    }
    file.seekg(start + static_cast<std::streamoff>(size) + static_cast<std::streamoff>(size % 2));
  }
  return {};
}

}  // namespace carvello::demo
