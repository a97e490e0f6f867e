// CBlockReader: reads a block of an input file and brings its samples to the engine's form, whatever their stored size.
#pragma once

#include <cstdint>
#include <utility>

#include "dsp/primitives.h"
#include "fourier/complex_sample.h"
#include "input/sample_file.h"
#include "recording/sample_kind.h"
#include "recording/wave_format.h"

namespace carvello {

// Frames of one block, everywhere in the engine. The blocks that are in use at a time stay in the processor's cache
// while all writers read them; with larger ones every writer would fetch its samples from memory.
inline constexpr std::uint32_t kBlockFrames = 0x40000;
// Frames after which the outputs take stock, counted from where reading began in each file and cut off at its end. What
// a stretch brings goes into an output's buffer as a whole, and by this the parts of a split output end where they do,
// whatever size the blocks have.
inline constexpr std::uint32_t kStretchFrames = 0x200000;
static_assert(kStretchFrames % kBlockFrames == 0);

// For a format that tells no known kind of samples, as a sentence for the user: what it is and what is accepted.
std::string UnsupportedFormatText(const WAVEFORMATEXTENSIBLE& format);

// Used by one thread at a time.
class CBlockReader {
 public:
  // Reads `frames` frames, kBlockFrames at most, from the file's read position and converts them to complex floats at
  // 16-bit full scale (32768). Lost frames are zeros. Frames read; fewer at the end of the data, 0 behind it.
  std::uint32_t ReadBlock(CSampleFile& file, SComplex* destination, std::uint32_t frames = kBlockFrames);

  // Float samples that are infinite, no numbers or beyond any level become zero. How many there were since it was asked
  // for last.
  std::int64_t TakeSilenced() { return std::exchange(m_nSilenced, 0); }

 private:
  void Convert(const SSampleKind& kind, SComplex* samples, std::int32_t frames);

  Int16Buffer m_pRaw;  // file bytes
  std::int64_t m_nSilenced = 0;
};

}  // namespace carvello
