// What "cut" was asked to do: its options and its job file brought together.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine_kind.h"
#include "input/given_facts.h"
#include "jobs/entry_spec.h"

namespace carvello {

// The options as they stand on the command line; empty where not given.
struct SCutOptions {
  std::string strInput;
  std::string strOutput;
  std::string strJobFile;
  std::vector<std::string> entries;
  std::vector<std::string> sequences;
  // For the entries of every sequence.
  std::string strBandwidth;
  std::string strBits;
  std::string strSize;
  std::string strStart;
  std::string strEnd;
  std::string strDuration;
  std::string strEngine;
  std::string strFormat;      // for all entries
  std::string strCollection;  // name
  bool bSigMfMeta = false;
  bool bOverwrite = false;
  bool bSkipExisting = false;
  bool bNoSync = false;
  bool bDs64Frames = false;
  bool bLocalTime = false;
  bool bJson = false;
  bool bQuiet = false;
  bool bVerbose = false;
};

struct SCutRequest {
  std::string strInput;
  std::string strOutput;
  std::vector<SEntrySpec> entries;  // at least one; sequences behind single entries
  SGivenFacts given{};              // of the input, by the job file
  bool bLocalTime = false;          // in file names
  EEngineSetting engine = EEngineSetting::Auto;
  std::string strCollection{};  // full path; empty for none
};

// Reads the job file when there is one; what the command line gives goes before what the file gives, and entries on
// the command line replace all of the file's. False when something is wrong or missing; `error` names it.
bool MakeCutRequest(const SCutOptions& options, SCutRequest& request, std::string& error);

}  // namespace carvello
