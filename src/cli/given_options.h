// The options by which a user says what a recording's files do not tell, or tell wrongly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/command_options.h"
#include "input/given_facts.h"
#include "input/recording_set.h"

namespace carvello {

// As they stand on the command line; empty where not given.
struct SGivenOptions {
  std::string strRate;
  std::string strCentre;
  std::string strStart;
  std::string strSampleType;
  std::string strZone;
  std::uint32_t nPart = 0;
  bool bLongCentre = false;  // "--centre" is another option of the command

  // The command's "--centre" is its own: only "--centre-frequency" is the recording's then.
  void AddTo(CCommandOptions& options, bool ownCentre = false);
};

// What is not among them stays as it is. False when one cannot be read; `error` then names the option and what is
// accepted.
bool ReadGivenFacts(const SGivenOptions& options, SGivenFacts& given, std::string& error);

// Which options tell what is missing, as the end of a sentence; empty when nothing is.
std::string MissingHint(const std::vector<EFact>& missing, const SGivenOptions& options);

}  // namespace carvello
