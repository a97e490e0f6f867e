#include "cli/command_run.h"

#include <cstdlib>
#include <new>
#include <random>
#include <set>

#include "cli/console.h"
#include "cli/cut_job.h"
#include "cli/help_texts.h"
#include "cli/plan_opening.h"
#include "cli/stop_requests.h"
#include "dsp/library_description.h"
#include "dsp/start_dsp.h"
#include "engine/output_stretch.h"
#include "jobs/quantities.h"
#include "support/formatting.h"
#include "support/json_text.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {
namespace {

// Where those who start many jobs of one kind tell each its number.
constexpr const char* kTaskVariables[] = {"SLURM_ARRAY_TASK_ID", "AWS_BATCH_JOB_ARRAY_INDEX"};

constexpr const char* kMeaning =
    "The number of the task is that of --task, else of the environment's SLURM_ARRAY_TASK_ID or\n"
    "AWS_BATCH_JOB_ARRAY_INDEX. Parts that are complete are not made again. A task may be killed, repeated, or run "
    "twice\n"
    "at once: the result is the same.\n\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli run night.json --task 0\n"
    "  seq 0 $(($(carvello-cli run night.json --task-count) - 1)) | parallel -j2 carvello-cli run night.json --task "
    "{}\n\n";

// A name that no other program gives, without its ending.
std::string TemporaryName(const std::string& folder, const STaskPart& part) {
  std::random_device random;
  return platform::JoinPath(folder, Format("e%06zu.%08x%08x", part.nEntry, random(), random()));
}

// The folders that were there when the plan was made. One that is missing is on a disk that this machine does not see.
std::set<std::string> PlannedFolders(const SWorkPlan& plan) {
  std::set<std::string> folders = {FolderAboveParts(plan)};
  for (const SEntrySpec& spec : plan.job.entries) {
    folders.insert(spec.strOutput.empty() ? plan.job.strOutput : spec.strOutput);
  }
  return folders;
}

}  // namespace

void CRunCommand::AddOptions(CCommandOptions& options) {
  options.Add("PLAN", &m_strPlan, "What \"plan\" wrote").Required();
  options.Add("--task", &m_task, "Number of the task, from 0").Value("K");
  options.Add("--task-count", &m_bCount, "Print how many tasks there are, and do none");
  options.Add("--json", &m_bJson, "Print one JSON object on stdout when done");
  options.Add("--quiet", &m_bQuiet, "No progress and no summary");
  options.Add("--verbose", &m_bVerbose, "Print the workers' log on stderr");
  options.SetFooter(std::string(kMeaning) + kExamples + kExitCodesHelp);
}

bool CRunCommand::ChooseTask(const SWorkPlan& plan, std::size_t& task, std::string& error) const {
  std::string told = "--task";
  std::optional<std::int64_t> number;
  if (m_task) number = static_cast<std::int64_t>(*m_task);
  for (const char* const variable : kTaskVariables) {
    const char* const value = std::getenv(variable);
    if (number || value == nullptr || *value == '\0') continue;
    told = variable;
    number = ParseWholeNumber(value).value_or(-1);
  }
  const std::string accepted = Format("Accepted: 0 to %zu", plan.tasks.size() - 1);
  if (!number) {
    error = "--task is missing. " + accepted;
  } else if (*number < 0 || static_cast<std::size_t>(*number) >= plan.tasks.size()) {
    error = told + ": there is no such task. " + accepted;
  } else {
    task = static_cast<std::size_t>(*number);
    return true;
  }
  return false;
}

EExit CRunCommand::Run() {
  EndOnStopRequests();
  try {
    return RunTask();
  } catch (const std::bad_alloc&) {  // what others need now another machine has, or this one later
    PrintPlainMessage("not enough memory");
    return EExit::TryAgain;
  }
}

EExit CRunCommand::RunTask() {
  SWorkPlan plan;
  const EExit read = OpenPlan(m_strPlan, plan);
  if (read != EExit::Ok) return read;
  std::string error;
  if (m_bCount) {
    PrintOutLine(std::to_string(plan.tasks.size()));
    return EExit::Ok;
  }
  std::size_t task = 0;
  if (ChooseTask(plan, task, error)) return DoTask(plan, task);
  PrintMessage(error);
  return EExit::Usage;
}

EExit CRunCommand::DoTask(const SWorkPlan& plan, std::size_t task) {
  const SPlannedRecording& planned = plan.recordings[plan.tasks[task].nRecording];
  COpenRecording recording;
  std::string error;
  const COpenRecording::EResult opened = recording.OpenPlanned(plan, planned, error);
  if (opened != COpenRecording::EResult::Ok) {
    PrintMessageLines(error);
    return opened == COpenRecording::EResult::Unreadable ? EExit::TryAgain : EExit::InputUnreadable;
  }
  DspBinding dsp;
  if (!StartDsp(dsp)) {
    PrintMessage(MissingLibraryText());
    return EExit::InputUnreadable;
  }
  if (const std::string version = DescribeLibrary(dsp).version.value_or(""); version != plan.strLibrary) {
    PrintMessage(
        Format("%s: downconverter library %s, and the plan was made with %s. Accepted: the same on every machine, or a "
               "new plan",
               DspLibraryPath().c_str(), version.empty() ? "of unknown version" : Printable(version).c_str(),
               plan.strLibrary.empty() ? "one of unknown version" : Printable(plan.strLibrary).c_str()));
    return EExit::InputUnreadable;
  }
  if (!MakeFolders(plan, task, error)) {
    PrintMessage(error);
    return EExit::TryAgain;
  }
  const std::string folder = MakingFolder(plan, task);
  std::vector<SMaking> making;
  const std::vector<STaskPart> parts = PartsOf(plan, task, recording);
  const SPartOrigin origin = OriginOf(plan, planned);
  for (const STaskPart& part : parts) {
    const std::string key = PartKey(origin, part);
    if (!IsPartWhole(part, key)) making.push_back({part, TemporaryName(folder, part), key, origin});
  }
  EExit result = EExit::Ok;
  for (std::size_t begin = 0; begin < making.size() && result == EExit::Ok; begin += kMostEntriesOfAPass) {
    const std::size_t end = std::min<std::size_t>(making.size(), begin + kMostEntriesOfAPass);
    result = MakeParts(
        plan, recording, dsp,
        {making.begin() + static_cast<std::ptrdiff_t>(begin), making.begin() + static_cast<std::ptrdiff_t>(end)});
  }
  if (result == EExit::Ok) {
    // What was left there by ones that were killed, too. One that does the same task at this moment finds its parts
    // made. What cannot be removed is in nobody's way, and `join --remove-parts` tells of it.
    RemoveMakingFolder(folder);
    PrintResult(task, making.size(), parts.size() - making.size());
  } else {
    platform::RemoveFolder(folder);
  }
  return result;
}

// The parts' folder and what is below. What is above is demanded: made here, it would stand on this machine's own disk.
bool CRunCommand::MakeFolders(const SWorkPlan& plan, std::size_t task, std::string& error) const {
  for (const std::string& folder : PlannedFolders(plan)) {
    const std::optional<platform::FileStatus> status = platform::GetFileStatus(folder);
    if (status && status->bDirectory) continue;
    error = folder + ": " + (status ? "is no folder" : SystemErrorText()) +
            ". Tasks need it on every machine, as it was when the plan was made";
    return false;
  }
  const std::size_t recording = plan.tasks[task].nRecording;
  for (const std::string& folder : {plan.strParts, PartsFolder(plan, recording), MakingFolder(plan, task)}) {
    if (platform::CreateSharedFolder(folder)) continue;
    error = folder + ": " + SystemErrorText();
    return false;
  }
  return true;
}

// In one pass over the task's stretch.
EExit CRunCommand::MakeParts(const SWorkPlan& plan, const COpenRecording& recording, const DspBinding& dsp,
                             const std::vector<SMaking>& making) {
  std::vector<OutputEntry> stretches;
  for (const SMaking& each : making) {
    std::string problem;
    const STaskPart& part = each.part;
    std::optional<OutputEntry> stretch =
        StretchOf(recording.Entries()[part.nEntry], recording.Engine(part.nEntry), recording.Job(part.nEntry),
                  part.range.nFirst, part.range.nEnd, recording.Frames(), dsp, problem);
    if (!stretch) {
      PrintMessage(recording.Entries()[part.nEntry].strFileName + ": " + problem);
      return EExit::InputUnreadable;
    }
    stretch->strFileName = each.Wave();
    stretch->nFileSizeMB = 0;
    stretch->format = EOutputFormat::Wave;
    stretches.push_back(std::move(*stretch));
  }
  const std::vector<OutputEntry> entries = stretches;
  CEntryList list;
  list.Take(std::move(stretches));

  CCutJob::SSettings settings;
  settings.options.bSync = plan.bSync;
  settings.bVerbose = m_bVerbose;
  if (!m_bQuiet) {
    settings.progress = platform::IsTerminal(2) ? CProgressDisplay::EMode::Bar : CProgressDisplay::EMode::Lines;
  }
  SCutReport report;
  for (const OutputEntry& entry : entries) {
    SOutputResult result;
    result.strFileName = entry.strFileName;
    result.strError = "not processed";
    report.outputs.push_back({.result = result});
  }
  CatchStopRequests();
  const EExit exit = CCutJob(dsp, recording.Recording(), settings).Run(list, report);
  bool complete = true;
  for (std::size_t i = 0; i < making.size(); ++i) {
    const SOutputResult& result = report.outputs[i].result;
    std::string problem;
    if (Complete(making[i], result, entries[i], problem)) continue;
    platform::RemoveFile(making[i].Wave());
    platform::RemoveFile(making[i].Manifest());
    // Another one may have done the same task meanwhile.
    if (IsPartWhole(making[i].part, making[i].strKey)) continue;
    complete = false;
    if (result.state != EOutputState::Stopped) PrintMessage(problem);
  }
  if (complete) return EExit::Ok;
  // What one machine could not write or read another one may, and this one later.
  return exit == EExit::Ok || exit == EExit::OutputFailed ? EExit::TryAgain : exit;
}

// The part first, then what tells that it is there: between the two it is made again, to the same samples.
bool CRunCommand::Complete(const SMaking& making, const SOutputResult& result, const OutputEntry& entry,
                           std::string& error) const {
  const std::string& name = making.part.strPath;
  if (!result.bOk) {
    error = name + ": " + result.strError;
    return false;
  }
  SPartManifest manifest;
  manifest.origin = making.origin;
  manifest.strKey = making.strKey;
  manifest.strEntry = entry.strDisplayName;
  manifest.nFirst = making.part.range.nFirst;
  manifest.marks = result.marks;
  if (!HashPart(making.Wave(), manifest.strSha256, manifest.nFrames, error)) return false;
  if (manifest.nFrames != making.part.range.nEnd - making.part.range.nFirst) {
    error = Format("%s: %lld samples were written, %lld were due", making.Wave().c_str(),
                   static_cast<long long>(manifest.nFrames), static_cast<long long>(result.nFramesDue));
    return false;
  }
  // Both are whole on the disk before either has its name, and what a task that is killed leaves lies in its folder.
  const std::string text = PartManifestText(manifest);
  if (!WriteWholeFile(making.Manifest(), text.data(), text.size(), false, error)) return false;
  if (!platform::RenameFile(making.Wave(), name, true) ||
      !platform::RenameFile(making.Manifest(), making.part.strManifest, true)) {
    error = name + ": " + SystemErrorText();
    return false;
  }
  platform::SyncFolder(platform::FolderOf(name));
  return true;
}

void CRunCommand::PrintResult(std::size_t task, std::size_t made, std::size_t kept) const {
  if (m_bJson) {
    CJsonText json;
    json.BeginObject();
    json.Member("ok", true);
    json.Member("task", task);
    json.Member("parts_made", made);
    json.Member("parts_kept", kept);
    json.EndObject();
    PrintOut(json.Document());
  } else if (!m_bQuiet) {
    PrintOutLine(Format("Task %zu: %s made, %zu were there", task, CountOf(made, "part").c_str(), kept));
  }
}

}  // namespace carvello
