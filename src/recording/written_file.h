// How far a recording on disk has come: whether whoever wrote it has closed it.
#pragma once

#include <cstdint>
#include <string>

#include "recording/wave_format.h"
#include "support/file.h"

namespace carvello {

enum class EWrittenState {
  Unreadable,  // cannot be opened or read; LastError() of the platform tells why
  Foreign,     // no recording in the form that this program writes
  Unfinished,  // the job that wrote it was killed, or could not write its end
  Finished,    // ends with its trailer, and all sizes match
};

struct SWrittenFile {
  EWrittenState state = EWrittenState::Unreadable;
  WAVEFORMATEX format;          // where the file has come to its samples
  std::int64_t nDataBytes = 0;  // as the sizes tell; of an unfinished file at most what stands in it
  std::int64_t Frames() const { return format.nBlockAlign == 0 ? 0 : nDataBytes / format.nBlockAlign; }
};

// Reads the heads of the chunks and no samples. An empty file, and one that ends before its samples, is unfinished.
SWrittenFile InspectWrittenFile(CFile& file);
SWrittenFile InspectWrittenFile(const std::string& path);

}  // namespace carvello
