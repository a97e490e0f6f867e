// CBlockReader: reads a block of an input file and brings its samples to the engine's form, whatever their stored size.
#pragma once

#include <cstdint>

#include "dsp/complex_sample.h"
#include "dsp/primitives.h"
#include "input/wave_file_reader.h"
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

// Whether samples of this format can be converted: I/Q pairs of PCM with 8, 16, 24 or 32 bits, or of 32-bit float.
bool CanConvert(const WAVEFORMATEXTENSIBLE& format);
// The same as a sentence for the user: what the format is and what is accepted.
std::string UnsupportedFormatText(const WAVEFORMATEXTENSIBLE& format);

// One per job; used on the reader's thread.
class CBlockReader {
 public:
  // Reads at most kBlockFrames frames from the file's read position and converts them to complex floats at 16-bit full
  // scale (32768). Frames read; fewer than kBlockFrames at the end of the data, 0 behind it. The destination holds
  // kBlockFrames samples; it stays as it is for a format that nothing converts.
  std::uint32_t ReadBlock(CWaveFileReader& file, SComplex* destination);

 private:
  void Convert(const CWaveFileReader& file, float* values, std::int32_t bytes) const;

  Int16Buffer m_pRaw;  // file bytes
};

}  // namespace carvello
