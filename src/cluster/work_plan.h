// SWorkPlan: which recordings are to be cut into what, and by which tasks. A file of it is all that the machines share
// besides the folders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/engine_kind.h"
#include "input/given_facts.h"
#include "jobs/job_file.h"

namespace carvello {

// A file of a recording as it was when the plan was made. What tells files apart on one machine only is left out.
struct SPlannedFile {
  std::string strPath;
  std::int64_t nSize = 0;      // bytes
  std::int64_t nModified = 0;  // nanoseconds since 1970 UTC
  bool operator==(const SPlannedFile&) const = default;
};

struct SPlannedRecording {
  std::string strInput;   // any of its files, with its folder
  std::uint32_t nPart{};  // as in SGivenFacts
  std::vector<SPlannedFile> files{};
  std::size_t nEntries = 0;
  std::int64_t nFrames = 0;
  std::uint32_t nSampleRate = 0;
  // Hash of all that decides about the outputs: names, frequencies, rates, spans, engines. A machine that comes to
  // another one (its time zone, its version) would write something else.
  std::string strEntries;
};

// A stretch of whole seconds of a recording, counted from its first frame.
struct SPlannedTask {
  std::size_t nRecording = 0;
  std::int64_t nFrom = 0;
  std::int64_t nTo = 0;  // may lie behind the recording's end
};

struct SWorkPlan {
  std::string strVersion;  // release of the program
  std::string strLibrary;  // version of the downconverter library; empty where it does not tell
  SJobFile job{};          // the entries of every recording, and the folder for the outputs
  bool bSigMfMeta = false;
  bool bAbsolute = false;  // each recording gets those entries that it holds
  EEngineSetting engine = EEngineSetting::Auto;
  bool bSync = true;
  bool bCountFrames = false;
  std::string strParts;  // folder
  std::vector<SPlannedRecording> recordings{};
  std::vector<SPlannedTask> tasks{};
};

// Whether a plan, of whatever version, or nothing at all stands in the file. False with `error`, without the path.
bool IsReplaceablePlan(const std::string& path, std::string& error);

// The plan's file, one JSON object.
std::string WorkPlanText(const SWorkPlan& plan);
// False when the text is no plan of this program and version; `error` names the file and what is accepted. Its tasks
// are those of recordings that it has, in their order and that of time, and none has a second that another one has.
bool ParseWorkPlan(std::string_view text, const std::string& path, SWorkPlan& plan, std::string& error);
// The same of a file. `unreadable` tells that it cannot be read, and that another try may help.
bool ReadWorkPlan(const std::string& path, SWorkPlan& plan, std::string& error, bool& unreadable);

}  // namespace carvello
