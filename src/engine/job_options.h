// How a job is to be run, and how its start can end.
#pragma once

#include "engine/engine_kind.h"

namespace carvello {

enum class EStartResult {
  Started,
  Declined,          // the user answered No or Cancel
  AllFilesExist,     // nothing was left to do
  LibraryMissing,    // the downconverter library is not complete
  InputUnsupported,  // nothing converts the input's sample size
  OutputIsInput,     // an output would replace a file of the input
  OutputUnwritable,  // the output folder is missing or cannot be written to, or an old part cannot be removed
  NoThread,          // the system gives no thread, no memory, or not so many open files
};

struct SJobOptions {
  bool bSync = true;          // outputs stand on the medium, safe from a power cut, before they count as written
  bool bCountFrames = false;  // RF64 outputs tell their samples in frames instead of in single values
  EEngineSetting engine = EEngineSetting::Auto;
  // An entry whose output cannot be made, or would replace another file without consent, fails alone, and the others
  // are done. Else nothing is begun for the first, and the second is left out with a note.
  bool bLeaveOutUnwritable = false;
};

}  // namespace carvello
