// What every command that works on the samples of a recording does first.
#pragma once

#include <string>

#include "cli/exit_codes.h"
#include "cli/given_options.h"
#include "engine/recording_input.h"

namespace carvello {

// Describes the recording that the file belongs to, with what is given on the command line, and prints what is odd
// about it. Ok unless that cannot be done; why has been printed then.
// The options go before what is `given` otherwise.
EExit DescribeRecording(const std::string& path, const SGivenOptions& options, SRecordingInput& input,
                        SGivenFacts given = {});
// The same for a command that works on its samples.
EExit OpenRecording(const std::string& path, const SGivenOptions& options, SRecordingInput& input,
                    const SGivenFacts& given = {});

// Whether the path leads to one of the recording's files, by whatever name. Nothing where the system does not tell:
// LastError() of the platform holds the reason.
std::optional<bool> IsInputFile(const std::string& path, const CRecordingSet& recording);

}  // namespace carvello
