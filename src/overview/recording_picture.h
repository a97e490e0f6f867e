// A picture of a recording, or of a part of it: levels by time and frequency, made of its samples.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/frame_source.h"
#include "overview/ordered_work.h"
#include "spectrum/picture_plan.h"

namespace carvello {

enum class EPictureLevels {
  Mean,  // of a row's time: weak carriers stand out
  Peak,  // the largest of it: nothing short is lost
};

struct SPictureRequest {
  SPictureSpan span;
  EPictureLevels levels = EPictureLevels::Mean;
  bool bFast = false;  // some transforms of every row instead of all
};

struct SLevelPicture {
  std::int64_t nColumns = 0;
  std::int64_t nRows = 0;
  // dBFS of every pixel, row after row, the earliest row and the lowest frequency first: of its bins the strongest one.
  // Minus infinity for columns beside the recorded band, and for silence.
  std::vector<float> levels;
  double dBinWidth = 0.0;  // Hz, of the transforms
};

// False when it was ended by `goesOn`, `error` being empty then, or could not be read. Throws std::bad_alloc.
bool MakeRecordingPicture(IFrameSource& source, const SPictureRequest& request, unsigned threads, const GoesOn& goesOn,
                          SLevelPicture& picture, std::string& error);

}  // namespace carvello
