// The part of a recording that --start, --end and --duration name.
#pragma once

#include <cstdint>
#include <string>

#include "cli/command_options.h"
#include "input/recording_set.h"

namespace carvello {

// As they stand on the command line; empty where not given.
struct STimeSpanOptions {
  std::string strStart;
  std::string strEnd;
  std::string strDuration;

  void AddTo(CCommandOptions& options);
};

// Of the samples of a recording, which stand behind each other as one stream.
struct SFrameSpan {
  std::int64_t nFirst = 0;
  std::int64_t nCount = 0;  // 1 at least
};

// What the help of --start, --end and --duration refers to.
inline constexpr const char* kTimeSpanHelp =
    "A TIME is 2026-11-21T12:00:00Z, with any zone such as +02:00 instead of Z, or +SECONDS from the recording's\n"
    "start, for example +90 or +1.5. A duration D is seconds, decimals allowed, H:MM or H:MM:SS.\n\n";

// False when something cannot be read or lies outside the recording; `error` then names the option and what is
// accepted.
bool ResolveTimeSpan(const STimeSpanOptions& options, const CRecordingSet& recording, SFrameSpan& span,
                     std::string& error);

}  // namespace carvello
