// What became of one output entry of a job.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine_kind.h"

namespace carvello {

struct OutputEntry;

enum class EOutputState {
  Waiting,  // not begun
  Running,
  Done,     // everything that is due stands on disk
  Stopped,  // by the user, before everything was there
  Failed,
};

// One entry of the running job, or of the last one, for a window to show.
struct SEntryState {
  EOutputState state = EOutputState::Waiting;
  std::uint32_t nProgress = 0;          // of its span, in ten-thousandths
  std::string strReason;                // of a failure
  const OutputEntry* pEntry = nullptr;  // of the list that the job was started with
};

// How many samples of the whole entry had been given where a stretch of input ended (kStretchFrames), or its own span:
// by these the parts of a split output end.
struct SStretchMark {
  std::int64_t llFrame = 0;  // of the recording, behind the stretch
  std::int64_t nOutput = 0;

  bool operator==(const SStretchMark&) const = default;
};

struct SOutputResult {
  std::string strFileName;            // as the entry names it
  std::vector<std::string> files;     // full paths of the files written, in order
  std::int64_t nOutputFrequency = 0;  // Hz
  std::uint32_t nBandwidth = 0;       // Hz, as the entry asks for it
  std::uint32_t nSampleRate = 0;      // frames/s, as the files tell; 0 when none was made
  std::uint32_t nBitsPerSample = 0;
  EEngine engine = EEngine::Library;
  std::int64_t nFrames = 0;     // complex samples written over all files
  std::uint64_t nBytes = 0;     // sample bytes written over all files
  std::int64_t nFramesDue = 0;  // complex samples that the whole entry takes; 0 when it is not known
  EOutputState state = EOutputState::Waiting;
  bool bOk = false;                 // state is Done
  std::string strError;             // empty when bOk
  std::vector<SStretchMark> marks;  // of an entry with a stretch, where any of its samples had been given
};

}  // namespace carvello
