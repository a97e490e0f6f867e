// What "picture" was asked for: its options brought together with the recording.
#pragma once

#include <optional>
#include <string>

#include "cli/picture_drawing.h"
#include "cli/time_span.h"
#include "input/recording_set.h"
#include "overview/recording_picture.h"
#include "spectrum/palette.h"

namespace carvello {

// The options as they stand on the command line; empty where not given.
struct SPictureOptions {
  std::string strInput;
  std::string strOutput;
  std::string strFrom;
  std::string strTo;
  STimeSpanOptions time;
  std::string strSize = "1200x800";
  std::string strLevels;
  std::string strPalette = "viridis";
  bool bPlain = false;
  bool bPeak = false;
  bool bMean = false;
  bool bFast = false;
  bool bOverwrite = false;
  bool bQuiet = false;
};

// What can be told before the recording is known.
struct SPictureLook {
  std::int64_t nColumns = 0;
  std::int64_t nRows = 0;
  std::optional<SLevelRange> levels;  // by themselves where not given
  EPalette palette = EPalette::Viridis;
};

// False when something cannot be read; `error` then names the option and what is accepted.
bool ReadPictureLook(const SPictureOptions& options, SPictureLook& look, std::string& error);
// The same for what depends on the recording.
bool MakePictureRequest(const SPictureOptions& options, const SPictureLook& look, const CRecordingSet& recording,
                        SPictureRequest& request, std::string& error);
SPictureAxes AxesOf(const SPictureRequest& request, const SLevelPicture& picture, const CRecordingSet& recording);

}  // namespace carvello
