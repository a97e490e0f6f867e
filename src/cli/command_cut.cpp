#include "cli/command_cut.h"

#include <set>
#include <vector>

#include "cli/console.h"
#include "cli/cut_collection.h"
#include "cli/cut_job.h"
#include "cli/cut_options.h"
#include "cli/cut_plan.h"
#include "cli/help_texts.h"
#include "cli/output_checks.h"
#include "cli/recording_opening.h"
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

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli cut \"rec 000.wav\" --output cuts --entry f=7.1M,bw=10k\n"
    "  carvello-cli cut rec.wav --output cuts --entry f=7.1M,bw=100k,size=RF64,start=+60,duration=0:10\n"
    "  carvello-cli cut rec.wav --output cuts --sequence 900k:1M:10k --bw 10k --json\n"
    "  carvello-cli cut --jobs evening.json --skip-existing\n\n";

void PrintNotes(const SPlanNotes& notes) {
  if (notes.nDuplicates > 0) {
    PrintMessage(Format("%zu entries left out: the same output is asked for twice", notes.nDuplicates));
  }
  if (!notes.outsideBand.empty()) PrintMessage("warning: outside the recorded band lie");
  PrintList(notes.outsideBand);
  PrintMessages(notes.surprises, "warning: ");
}

}  // namespace

void CCutCommand::AddOptions(CCommandOptions& options) {
  SCutOptions& o = m_options;
  options.Add("INPUT", &o.strInput, "Any file of the recording");
  AddEntryOptions(options, o);
  options.Add("--collection", &o.strCollection, "Write a SigMF collection over the outputs into their folder")
      .Value("NAME");
  options.Add("--overwrite", &o.bOverwrite, "Replace outputs that exist");
  options.Add("--skip-existing", &o.bSkipExisting, "Leave entries out whose outputs are finished");
  options.Add("--json", &o.bJson, "Print one JSON object on stdout when done");
  options.Add("--quiet", &o.bQuiet, "No progress and no summary");
  options.Add("--verbose", &o.bVerbose, "Print the workers' log on stderr");
  m_given.AddTo(options);
  options.SetFooter(std::string(kEntryHelp) + kJobFileHelp + kExamples + kExitCodesHelp);
}

EExit CCutCommand::Run() {
  EndOnStopRequests();
  SCutRequest request;
  std::string error;
  if (!MakeCutRequest(m_options, request, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  SRecordingInput input;
  const EExit opened = OpenRecording(request.strInput, m_given, input, request.given);
  if (opened != EExit::Ok) return opened;
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
  if (!BuildEntryList(request, recording, entries, notes, error)) {
    PrintMessageLines(error);
    return EExit::Usage;
  }
  PrintNotes(notes);
  std::string problem;
  if (const std::string folder = UnwritableFolder(request, problem); !folder.empty()) {
    PrintMessage((folder == request.strOutput ? "--output " : "") + folder + ": " + problem);
    if (m_options.bJson) PrintOut(CutReportJson(PlannedReport(entries, problem)));
    return EExit::OutputFailed;
  }
  std::vector<std::string> existing;
  SRefusal refusal = CheckReplacedInput(entries, recording, folders);
  if (refusal.exit == EExit::Ok) refusal = CheckCollection(request.strCollection, recording);
  const bool asks = !m_options.bOverwrite && !m_options.bSkipExisting;
  if (refusal.exit == EExit::Ok && asks) refusal = FindExisting(entries, folders, existing);
  if (refusal.exit != EExit::Ok) {
    PrintMessage(refusal.strText);
    const bool failed = refusal.exit == EExit::OutputFailed;
    if (m_options.bJson && failed) PrintOut(CutReportJson(PlannedReport(entries, refusal.strText)));
    return refusal.exit;
  }
  if (!existing.empty()) {
    PrintExisting(existing);
    return EExit::OutputsExist;
  }
  SCutReport report = PlannedReport(entries, "not processed");
  if (m_options.bSkipExisting) LeaveFinished(recording, folders, true, entries, report);
  if (entries.Size() == 0) {
    PrintErrLine("All output files exist, processing not started.");
    if (m_options.bJson) PrintOut(CutReportJson(report));
    PrintFailures(report);
    const EExit result = report.AllOk() ? EExit::Ok : EExit::OutputFailed;
    return WriteCollection(request.strCollection, recording, report, result);
  }
  const EExit result = RunJob(request.engine, recording, dsp, entries, report);
  return WriteCollection(request.strCollection, recording, report, result);
}

// What stands there is replaced with consent only, or where finished outputs are left as they are: it names them again.
SRefusal CCutCommand::CheckCollection(const std::string& path, const CRecordingSet& recording) const {
  if (path.empty()) return {};
  const bool replace = m_options.bOverwrite || (m_options.bSkipExisting && IsOwnCollection(path));
  return CheckNewFile("--collection " + path, path, recording, replace);
}

EExit CCutCommand::WriteCollection(const std::string& path, const CRecordingSet& recording, const SCutReport& report,
                                   EExit result) const {
  if (path.empty()) return result;
  const bool replace = m_options.bOverwrite || m_options.bSkipExisting;
  std::string error;
  if (WriteSigMfCollection(path, recording, report, replace, error)) return result;
  PrintMessage(error);
  return result == EExit::Ok ? EExit::OutputFailed : result;
}

EExit CCutCommand::RunJob(EEngineSetting engine, const CRecordingSet& recording, const DspBinding& dsp,
                          CEntryList& entries, SCutReport& report) const {
  CCutJob::SSettings settings;
  if (m_options.bOverwrite) settings.overwrite = EAnswer::Yes;
  if (m_options.bSkipExisting) settings.overwrite = EAnswer::No;
  settings.options.bSync = !m_options.bNoSync;
  settings.options.bCountFrames = m_options.bDs64Frames;
  settings.options.engine = engine;
  settings.bVerbose = m_options.bVerbose;
  if (!m_options.bQuiet) {
    settings.progress = platform::IsTerminal(2) ? CProgressDisplay::EMode::Bar : CProgressDisplay::EMode::Lines;
  }
  CatchStopRequests();
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
  std::vector<std::string> notWorkedOn;  // to their end; with many entries there are as many, all for one reason
  for (const SCutOutput& output : report.outputs) {
    if (output.result.bOk) continue;
    const std::string text = output.result.strFileName + ": " + output.result.strError;
    const bool failed = output.bSkipped || (output.bProcessed && output.result.state == EOutputState::Failed);
    if (failed) {
      PrintMessage(text);
    } else {
      notWorkedOn.push_back(text);
    }
  }
  PrintMessages(notWorkedOn);
}

}  // namespace carvello
