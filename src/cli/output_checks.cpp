#include "cli/output_checks.h"

#include <optional>
#include <set>

#include "cli/console.h"
#include "cli/recording_opening.h"
#include "engine/existing_output.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::size_t kLinesListed = 20;

}  // namespace

SRefusal CheckReplacedInput(const CEntryList& entries, const CRecordingSet& recording, COutputFolders& folders) {
  const std::vector<std::string> inputFiles = recording.AllFiles();
  for (const OutputEntry* entry : entries.Pointers()) {
    const std::vector<std::string> replaced = folders.InputFilesReplaced(*entry, inputFiles);
    if (!folders.Problem().empty()) return {EExit::OutputFailed, folders.Problem()};
    if (replaced.empty()) continue;
    return {EExit::Usage, Format("--output: %s would replace the input file %s. Accepted: another folder",
                                 entry->strFileName.c_str(), replaced.front().c_str())};
  }
  return {};
}

SRefusal CheckNewFile(const std::string& what, const std::string& path, const CRecordingSet& recording,
                      bool overwrite) {
  const std::optional<bool> isInput = IsInputFile(path, recording);
  const std::optional<bool> there = isInput ? platform::IsThere(path) : std::nullopt;
  if (!there) return {EExit::OutputFailed, what + ": " + SystemErrorText()};
  if (*isInput) return {EExit::Usage, what + ": is a file of the input. Accepted: another name"};
  if (overwrite || !*there) return {};
  return {EExit::OutputsExist, what + ": exists already. Accepted: --overwrite or another name"};
}

// The first folder of the entries that nothing can be created in, and why; empty when there is none.
std::string UnwritableFolder(const SCutRequest& request, std::string& problem) {
  std::set<std::string> seen;
  for (const SEntrySpec& spec : request.entries) {
    const std::string& folder = spec.strOutput.empty() ? request.strOutput : spec.strOutput;
    if (!seen.insert(folder).second || platform::IsWritableFolder(folder)) continue;
    problem = SystemErrorText();
    return folder;
  }
  return {};
}

void PrintList(const std::vector<std::string>& lines) {
  for (std::size_t i = 0; i < lines.size() && i < kLinesListed; ++i) PrintErrLine("  " + lines[i]);
  if (lines.size() > kLinesListed) PrintErrLine(Format("  ... and %zu more", lines.size() - kLinesListed));
}

void PrintMessages(const std::vector<std::string>& messages, const std::string& kind) {
  for (std::size_t i = 0; i < messages.size() && i < kLinesListed; ++i) PrintMessage(kind + messages[i]);
  if (messages.size() > kLinesListed) {
    PrintMessage(kind + Format("... and %zu more", messages.size() - kLinesListed));
  }
}

// Every entry of the list with `error` until something better is known.
SCutReport PlannedReport(const CEntryList& entries, const std::string& error) {
  SCutReport report;
  for (const OutputEntry* entry : entries.Pointers()) {
    SOutputResult result;
    result.strFileName = entry->strFileName;
    result.nOutputFrequency = entry->nOutputFrequency;
    result.nBandwidth = entry->nOutputSampleRate;
    result.nBitsPerSample = entry->nBitsPerSample;
    result.strError = error;
    report.outputs.push_back({.result = result});
  }
  return report;
}

SRefusal FindExisting(const CEntryList& entries, COutputFolders& folders, std::vector<std::string>& existing) {
  for (const OutputEntry* entry : entries.Pointers()) {
    const std::vector<std::string> files = folders.ExistingOutputFiles(*entry);
    if (!folders.Problem().empty()) return {EExit::OutputFailed, folders.Problem()};
    existing.insert(existing.end(), files.begin(), files.end());
  }
  return {};
}

void PrintExisting(const std::vector<std::string>& files) {
  PrintMessage("these outputs exist already. Accepted: --overwrite or --skip-existing");
  PrintList(files);
}

std::set<std::size_t> LeaveFinished(const CRecordingSet& recording, COutputFolders& folders, bool tells,
                                    CEntryList& entries, SCutReport& report) {
  std::set<std::size_t> again;
  std::vector<std::string> unfinished;
  std::vector<std::size_t> skipped;
  const CExistingOutputs outputs(entries.Pointers(), recording, folders);
  for (std::size_t i = 0; i < entries.Size(); ++i) {
    const SExistingOutput found = outputs.Find(entries[i]);
    if (found.kind == EExistingOutput::Incomplete) {
      unfinished.push_back(found.strReason);
      again.insert(i);
    }
    if (found.kind == EExistingOutput::None || found.kind == EExistingOutput::Incomplete) continue;
    skipped.push_back(i);
    report.outputs[i].bSkipped = true;
    SOutputResult& result = report.outputs[i].result;
    result.files = found.files;
    result.bOk = found.kind == EExistingOutput::Whole;
    result.state = result.bOk ? EOutputState::Done : EOutputState::Failed;
    result.strError = found.strReason;
    if (!result.bOk && !found.bUnread) result.strError += ". Accepted: --overwrite or another folder";
  }
  if (tells && !unfinished.empty()) {
    PrintMessage("done again, for an earlier job has not finished them:");
    PrintList(unfinished);
  }
  entries.Remove(skipped);
  return again;
}

}  // namespace carvello
