#include "cli/command_cut.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "cli/console.h"
#include "cli/cut_job.h"
#include "cli/cut_plan.h"
#include "cli/help_texts.h"
#include "cli/stop_requests.h"
#include "dsp/start_dsp.h"
#include "engine/existing_output.h"
#include "engine/job_control.h"
#include "engine/output_files.h"
#include "engine/recording_input.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::size_t kLinesListed = 20;
constexpr std::int64_t kLargestCentre = 1'000'000'000'000;  // Hz, as for the frequencies of entries

constexpr const char* kEntryHelp =
    "The input is read once for all entries. An entry E is key=value pairs separated by commas:\n"
    "  f=HZ         centre frequency; suffixes k, M and G and decimals allowed, for example f=7.1M\n"
    "  bw=HZ        bandwidth, which is also the sample rate of the output: from 10 Hz to the input's rate\n"
    "  bits=N       16 (integer, default) or 32 (float)\n"
    "  size=SIZE    100MB (default) or 1GB: files split at that size; RF64: one file\n"
    "  start=TIME   2026-11-21T12:00:00Z, any zone such as +02:00 instead of Z, or +SECONDS from the\n"
    "               recording's start, which is the default\n"
    "  end=TIME     as start; the recording's end is the default\n"
    "  duration=D   instead of end: seconds, H:MM or H:MM:SS\n\n";

constexpr const char* kJobFileHelp =
    "Job file:\n"
    "  {\"input\": \"rec 000.wav\", \"output\": \"cuts\", \"entries\": [\n"
    "    {\"frequency\": \"7.1M\", \"bandwidth\": 10000, \"bits\": 16, \"size\": \"1GB\",\n"
    "     \"start\": \"2026-11-21T12:00:00Z\", \"duration\": \"0:10\"}]}\n"
    "  A bare number as start or end counts seconds from the recording's start. Options on the command line\n"
    "  win; --entry and --sequence replace all entries of the file.\n\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli cut \"rec 000.wav\" --output cuts --entry f=7.1M,bw=10k\n"
    "  carvello-cli cut rec.wav --output cuts --entry f=7.1M,bw=100k,size=RF64,start=+60,duration=0:10\n"
    "  carvello-cli cut rec.wav --output cuts --sequence 900k:1M:10k --bw 10k --json\n"
    "  carvello-cli cut --jobs evening.json --skip-existing\n\n";

// What would break arithmetic further on, whatever the file claims.
std::string RecordingProblem(const CRecordingSet& recording) {
  const std::string& name = recording.files.front().strPath;
  if (recording.nSampleRate == 0) return name + ": its sample rate is not known";
  if (recording.nRadioCenterFreq > kLargestCentre || recording.nRadioCenterFreq < -kLargestCentre) {
    return Format("%s: its centre frequency, %lld Hz, is no radio frequency", name.c_str(),
                  static_cast<long long>(recording.nRadioCenterFreq));
  }
  return InputProblem(recording).value_or("");
}

// The input file that an entry would replace, as a message; empty when there is none.
std::string ReplacedInput(const CEntryList& entries, const CRecordingSet& recording, COutputFolders& folders) {
  std::vector<std::string> inputFiles;
  for (const SRecordingFile& file : recording.files) inputFiles.push_back(file.strPath);
  for (const OutputEntry* entry : entries.Pointers()) {
    const std::vector<std::string> replaced = folders.InputFilesReplaced(*entry, inputFiles);
    if (replaced.empty()) continue;
    return Format("--output: %s would replace the input file %s. Accepted: another folder", entry->strFileName.c_str(),
                  replaced.front().c_str());
  }
  return {};
}

void PrintList(const std::vector<std::string>& lines) {
  for (std::size_t i = 0; i < lines.size() && i < kLinesListed; ++i) PrintErrLine("  " + lines[i]);
  if (lines.size() > kLinesListed) PrintErrLine(Format("  ... and %zu more", lines.size() - kLinesListed));
}

void PrintNotes(const SPlanNotes& notes) {
  if (notes.nDuplicates > 0) {
    PrintMessage(Format("%zu entries left out: the same output is asked for twice", notes.nDuplicates));
  }
  if (!notes.outsideBand.empty()) PrintMessage("warning: outside the recorded band lie");
  PrintList(notes.outsideBand);
  for (std::size_t i = 0; i < notes.surprises.size() && i < kLinesListed; ++i) {
    PrintMessage("warning: " + notes.surprises[i]);
  }
  if (notes.surprises.size() > kLinesListed) {
    PrintMessage(Format("warning: ... and %zu more", notes.surprises.size() - kLinesListed));
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
    report.outputs.push_back({result, false});
  }
  return report;
}

}  // namespace

void CCutCommand::AddOptions(CLI::App& app) {
  SCutOptions& o = m_options;
  app.add_option("INPUT", o.strInput, "Any file of the recording")->type_name("");
  app.add_option("--output", o.strOutput, "Existing folder for the outputs")->type_name("DIR");
  app.add_option("--entry", o.entries, "An entry, see below; repeat for more")->allow_extra_args(false)->type_name("E");
  app.add_option("--sequence", o.sequences, "An entry at every step, with --bw; repeat for more")
      ->allow_extra_args(false)
      ->type_name("FROM:TO:STEP");
  app.add_option("--bw", o.strBandwidth, "Bandwidth of the --sequence entries")->type_name("HZ");
  app.add_option("--bits", o.strBits, "Sample size of the --sequence entries, as bits below")->type_name("N");
  app.add_option("--size", o.strSize, "File size of the --sequence entries, as size below")->type_name("SIZE");
  app.add_option("--start", o.strStart, "Start of the --sequence entries, as start below")->type_name("TIME");
  app.add_option("--end", o.strEnd, "End of the --sequence entries, as end below")->type_name("TIME");
  app.add_option("--duration", o.strDuration, "Duration of the --sequence entries, as duration below")->type_name("D");
  app.add_option("--jobs", o.strJobFile, "Job file, see below")->type_name("FILE");
  app.add_flag("--overwrite", o.bOverwrite, "Replace outputs that exist");
  app.add_flag("--skip-existing", o.bSkipExisting, "Leave entries out whose outputs are finished");
  app.add_flag("--no-sync", o.bNoSync, "Do not wait until outputs stand on the disk, safe from a power cut");
  app.add_flag("--local-time", o.bLocalTime, "Local time instead of UTC in file names");
  app.add_flag("--json", o.bJson, "Print one JSON object on stdout when done");
  app.add_flag("--quiet", o.bQuiet, "No progress and no summary");
  app.add_flag("--verbose", o.bVerbose, "Print the workers' log on stderr");
  app.footer(std::string(kEntryHelp) + kJobFileHelp + kExamples + kExitCodesHelp);
}

EExit CCutCommand::Run() {
  SCutRequest request;
  std::string error;
  if (!MakeCutRequest(m_options, request, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  // Outputs tell the whole path that they were written to.
  request.strOutput = platform::AbsolutePath(request.strOutput);
  CatchStopRequests();
  SRecordingInput input;
  if (ReadRecordingInput(request.strInput, input, error)) error = RecordingProblem(input.recording);
  if (!error.empty()) {
    PrintMessage(error);
    return EExit::InputUnreadable;
  }
  for (const std::string& warning : input.warnings) PrintMessage(warning);
  DspBinding dsp;
  if (!StartDsp(dsp)) {
    PrintMessage(MissingLibraryText());
    return EExit::InputUnreadable;
  }

  CEntryList entries;
  entries.SetRecording(input.recording, input.infoTexts);
  return Cut(request, input.recording, dsp, entries);
}

EExit CCutCommand::Cut(const SCutRequest& request, const CRecordingSet& recording, const DspBinding& dsp,
                       CEntryList& entries) {
  SPlanNotes notes;
  COutputFolders folders;
  std::string error;
  if (BuildEntryList(request, !m_options.bLocalTime, recording, entries, notes, error)) {
    error = ReplacedInput(entries, recording, folders);
  }
  if (!error.empty()) {
    PrintMessageLines(error);
    return EExit::Usage;
  }
  PrintNotes(notes);
  if (!platform::IsWritableFolder(request.strOutput)) {
    const std::string problem = SystemErrorText();
    PrintMessage("--output " + request.strOutput + ": " + problem);
    if (m_options.bJson) PrintOut(CutReportJson(PlannedReport(entries, problem)));
    return EExit::OutputFailed;
  }
  SCutReport report = PlannedReport(entries, "not processed");
  if (!SettleExisting(recording, folders, entries, report)) return EExit::OutputsExist;
  if (entries.Size() == 0) {
    PrintErrLine("All output files exist, processing not started.");
    if (m_options.bJson) PrintOut(CutReportJson(report));
    PrintFailures(report);
    return report.AllOk() ? EExit::Ok : EExit::OutputFailed;
  }
  return RunJob(recording, dsp, entries, report);
}

bool CCutCommand::SettleExisting(const CRecordingSet& recording, COutputFolders& folders, CEntryList& entries,
                                 SCutReport& report) const {
  if (m_options.bOverwrite) return true;
  std::vector<std::string> existing;
  std::vector<std::string> unfinished;
  std::vector<std::size_t> skipped;
  for (std::size_t i = 0; i < entries.Size(); ++i) {
    if (!m_options.bSkipExisting) {
      const std::vector<std::string> files = folders.ExistingOutputFiles(entries[i]);
      existing.insert(existing.end(), files.begin(), files.end());
      continue;
    }
    const SExistingOutput found = FindExistingOutput(entries[i], recording, folders);
    if (found.kind == EExistingOutput::Incomplete) unfinished.push_back(found.strReason);
    if (found.kind == EExistingOutput::None || found.kind == EExistingOutput::Incomplete) continue;
    skipped.push_back(i);
    report.outputs[i].bSkipped = true;
    SOutputResult& result = report.outputs[i].result;
    result.files = found.files;
    result.bOk = found.kind == EExistingOutput::Whole;
    result.state = result.bOk ? EOutputState::Done : EOutputState::Failed;
    result.strError = found.strReason;
    if (!result.bOk) result.strError += ". Accepted: --overwrite or another folder";
  }
  if (!existing.empty()) {
    PrintMessage("these outputs exist already. Accepted: --overwrite or --skip-existing");
    PrintList(existing);
    return false;
  }
  if (!unfinished.empty()) PrintMessage("done again, for an earlier job has not finished them:");
  PrintList(unfinished);
  entries.Remove(skipped);
  return true;
}

EExit CCutCommand::RunJob(const CRecordingSet& recording, const DspBinding& dsp, CEntryList& entries,
                          SCutReport& report) const {
  CCutJob::SSettings settings;
  if (m_options.bOverwrite) settings.overwrite = EAnswer::Yes;
  if (m_options.bSkipExisting) settings.overwrite = EAnswer::No;
  settings.options.bSync = !m_options.bNoSync;
  settings.bVerbose = m_options.bVerbose;
  if (!m_options.bQuiet) {
    settings.progress = platform::IsTerminal(2) ? CProgressDisplay::EMode::Bar : CProgressDisplay::EMode::Lines;
  }
  CCutJob job(dsp, recording, settings);
  const EExit result = job.Run(entries, report);
  PrintReport(report);
  return result;
}

void CCutCommand::PrintReport(const SCutReport& report) const {
  if (m_options.bJson) {
    PrintOut(CutReportJson(report));
  } else if (!m_options.bQuiet) {
    PrintOut(CutReportText(report));
  }
  PrintFailures(report);
}

void CCutCommand::PrintFailures(const SCutReport& report) {
  for (const SCutOutput& output : report.outputs) {
    if (!output.result.bOk) PrintMessage(output.result.strFileName + ": " + output.result.strError);
  }
}

}  // namespace carvello
