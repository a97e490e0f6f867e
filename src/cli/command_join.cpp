#include "cli/command_join.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <utility>

#include "cli/console.h"
#include "cli/help_texts.h"
#include "cli/output_checks.h"
#include "cli/plan_opening.h"
#include "cli/stop_requests.h"
#include "cluster/shell_word.h"
#include "cluster/task_parts.h"
#include "engine/joined_entry.h"
#include "engine/side_by_side.h"
#include "support/formatting.h"
#include "support/json_text.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::size_t kTasksListed = 20;

constexpr const char* kMeaning =
    "Checks first that every task of the plan is complete, and else names those that are not, and the command that\n"
    "repeats each. The outputs are what one \"cut\" for each recording would have written, bit for bit.\n\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli join night.json\n"
    "  carvello-cli join night.json --skip-existing --remove-parts --json\n\n";

}  // namespace

void CJoinCommand::AddOptions(CCommandOptions& options) {
  options.Add("PLAN", &m_strPlan, "What \"plan\" wrote").Required();
  options.Add("--overwrite", &m_bOverwrite, "Replace outputs that exist");
  options.Add("--skip-existing", &m_bSkipExisting, "Leave outputs that are finished");
  options.Add("--remove-parts", &m_bRemoveParts, "Remove what the tasks wrote when every output is made");
  options.Add("--json", &m_bJson, "Print one JSON object on stdout when done");
  options.Add("--quiet", &m_bQuiet, "No summary");
  options.SetFooter(std::string(kMeaning) + kExamples + kExitCodesHelp);
}

EExit CJoinCommand::Run() {
  EndOnStopRequests();
  if (m_bOverwrite && m_bSkipExisting) {
    PrintMessage("--overwrite and --skip-existing exclude each other. Accepted: one of them, or none");
    return EExit::Usage;
  }
  SWorkPlan plan;
  const EExit read = OpenPlan(m_strPlan, plan);
  if (read != EExit::Ok) return read;
  std::string error;
  // All of it is looked at before anything is written; recordings are opened once more then, for thousands of them do
  // not fit into memory.
  const auto begun = std::chrono::steady_clock::now();
  const std::int64_t cpuBegun = platform::ProcessCpuMilliseconds();
  std::vector<std::size_t> missing;
  std::vector<std::string> problems;
  std::vector<std::string> existing;
  SCutReport report;
  for (const bool joins : {false, true}) {
    report = {};
    problems.clear();
    if (joins) CatchStopRequests();
    for (std::size_t i = 0; i < plan.recordings.size() && StopRequests() == 0; ++i) {
      COpenRecording recording;
      const COpenRecording::EResult opened = recording.OpenPlanned(plan, plan.recordings[i], error);
      if (opened != COpenRecording::EResult::Ok) {
        PrintMessageLines(error);
        return opened == COpenRecording::EResult::Unreadable ? EExit::TryAgain : EExit::InputUnreadable;
      }
      Parts parts;
      const std::vector<std::size_t> incomplete = FindParts(plan, i, recording, parts, problems);
      SCutReport planned = PlannedReport(recording.Entries(), "not processed");
      std::vector<SWanted> wanted;
      if (incomplete.empty() || m_bSkipExisting) {
        const EExit settled = Settle(recording, !joins, planned, wanted, existing);
        if (settled != EExit::Ok) return settled;
      }
      // Where all is finished, the parts may be gone.
      const bool finished = m_bSkipExisting && wanted.empty();
      if (!finished && !incomplete.empty()) {
        missing.insert(missing.end(), incomplete.begin(), incomplete.end());
        continue;
      }
      if (const std::string gap = GapIn(recording, parts); !finished && !gap.empty()) {
        PrintMessage(Format("%s: no plan: its tasks leave out samples of %s", m_strPlan.c_str(), gap.c_str()));
        return EExit::Usage;
      }
      if (joins) Join(plan, recording, std::move(parts), wanted, planned);
      report.outputs.insert(report.outputs.end(), planned.outputs.begin(), planned.outputs.end());
      report.nInputBytes += planned.nInputBytes;
    }
    if (!existing.empty()) {
      PrintExisting(existing);
      return EExit::OutputsExist;
    }
    if (!missing.empty()) return TellMissing(missing, problems);
  }
  report.dElapsedSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  report.dCpuSeconds = static_cast<double>(platform::ProcessCpuMilliseconds() - cpuBegun) / 1000.0;
  const EExit result = PrintReport(report);
  if (StopRequests() > 0) {
    PrintMessage("stopped; what is not joined yet: join again, with --skip-existing");
    return EExit::Stopped;
  }
  if (result == EExit::Ok && m_bRemoveParts && !RemoveParts(plan)) return EExit::OutputFailed;
  return result;
}

// Gives the tasks of which one is not there, or cannot be read, which is a problem then.
std::vector<std::size_t> CJoinCommand::FindParts(const SWorkPlan& plan, std::size_t number,
                                                 const COpenRecording& recording, Parts& parts,
                                                 std::vector<std::string>& problems) const {
  std::vector<std::size_t> incomplete;
  const SPartOrigin origin = OriginOf(plan, plan.recordings[number]);
  parts.assign(recording.Entries().Size(), {});
  // A recording's tasks stand together.
  const auto begin = std::lower_bound(
      plan.tasks.begin(), plan.tasks.end(), number,
      [](const SPlannedTask& task, std::size_t recordingNumber) { return task.nRecording < recordingNumber; });
  for (auto task = static_cast<std::size_t>(begin - plan.tasks.begin());
       task < plan.tasks.size() && plan.tasks[task].nRecording == number; ++task) {
    bool complete = true;
    for (const STaskPart& part : PartsOf(plan, task, recording)) {
      std::string problem;
      std::optional<SPartManifest> manifest = FindManifest(part, PartKey(origin, part), &problem);
      if (!problem.empty()) problems.push_back(problem);
      complete = complete && manifest;
      if (manifest) parts[part.nEntry].push_back({part.strPath, std::move(*manifest)});
    }
    if (!complete) incomplete.push_back(task);
  }
  return incomplete;
}

// The first output that the parts together are not, in their order; empty when there is none.
std::string CJoinCommand::GapIn(const COpenRecording& recording, const Parts& parts) const {
  for (std::size_t entry = 0; entry < parts.size(); ++entry) {
    std::int64_t end = 0;
    bool joined = true;
    for (const SReadyPart& part : parts[entry]) {
      joined = joined && part.manifest.nFirst == end;
      end = part.manifest.nFirst + part.manifest.nFrames;
    }
    const SOutputRange whole = recording.Range(entry, 0, std::numeric_limits<std::int64_t>::max());
    if (!joined || end != whole.nEnd) return recording.Entries()[entry].strFileName;
  }
  return {};
}

EExit CJoinCommand::TellMissing(const std::vector<std::size_t>& missing,
                                const std::vector<std::string>& problems) const {
  PrintMessages(problems);
  PrintMessage(missing.size() == 1 ? "1 task is not complete. Do it again, then join:"
                                   : Format("%zu tasks are not complete. Do them again, then join:", missing.size()));
  std::vector<std::string> lines;
  lines.reserve(missing.size());
  for (const std::size_t task : missing) {
    lines.push_back(Format("%s run %s --task %zu", kProgramName, ShellWord(m_strPlan).c_str(), task));
  }
  PrintList(lines);
  if (missing.size() > kTasksListed) {
    std::string numbers;
    for (const std::size_t task : missing) numbers.append(numbers.empty() ? "" : ",").append(std::to_string(task));
    PrintErrLine("all of them: " + numbers);
  }
  if (m_bJson) {
    CJsonText json;
    json.BeginObject();
    json.Member("ok", false);
    json.Member("missing_tasks", std::vector<std::int64_t>(missing.begin(), missing.end()));
    json.EndObject();
    PrintOut(json.Document());
  }
  return EExit::TryAgain;
}

// Which entries of the recording are to be made. `looks`, before anything is: which of them were begun before is told,
// and the files that nobody said may be replaced are added to `existing`. One that appears later fails its output.
EExit CJoinCommand::Settle(const COpenRecording& recording, bool looks, SCutReport& report,
                           std::vector<SWanted>& wanted, std::vector<std::string>& existing) const {
  COutputFolders folders;
  CEntryList list = recording.Entries();
  SRefusal refusal = CheckReplacedInput(list, recording.Recording(), folders);
  const bool asks = looks && !m_bOverwrite && !m_bSkipExisting;
  if (refusal.exit == EExit::Ok && asks) refusal = FindExisting(list, folders, existing);
  if (refusal.exit != EExit::Ok) {
    PrintMessage(refusal.strText);
    if (m_bJson && refusal.exit == EExit::OutputFailed) PrintOut(CutReportJson(PlannedReport(list, refusal.strText)));
    return refusal.exit;
  }
  std::set<std::size_t> again;
  if (m_bSkipExisting) again = LeaveFinished(recording.Recording(), folders, looks, list, report);
  for (std::size_t i = 0; i < report.outputs.size(); ++i) {
    if (!report.outputs[i].bSkipped) wanted.push_back({i, m_bOverwrite || again.contains(i)});
  }
  return EExit::Ok;
}

void CJoinCommand::Join(const SWorkPlan& plan, const COpenRecording& recording, Parts parts,
                        const std::vector<SWanted>& wanted, SCutReport& report) const {
  const auto isStopped = [] { return StopRequests() > 0; };
  std::atomic<std::int64_t> bytes = 0;
  SideBySide(wanted.size(), platform::ProcessorCount(), [&](std::size_t i) noexcept {
    const std::size_t entry = wanted[i].nEntry;
    const SWritePolicy policy{.bReplace = wanted[i].bReplace, .bSync = plan.bSync, .bCountFrames = plan.bCountFrames};
    SCutOutput& output = report.outputs[entry];
    if (isStopped()) {
      output.result.state = EOutputState::Stopped;
      return;
    }
    try {
      CPartSource source(std::move(parts[entry]));
      output.result =
          JoinEntry(recording.Entries()[entry], recording.Recording(), recording.Job(entry), policy, source, isStopped);
      output.result.engine = recording.Engine(entry);
      bytes += source.BytesRead();
    } catch (const std::exception& problem) {
      output.result.state = EOutputState::Failed;
      output.result.strError = problem.what();
    }
    output.bProcessed = true;
  });
  report.nInputBytes = bytes;
}

EExit CJoinCommand::PrintReport(const SCutReport& report) const {
  if (m_bJson) {
    PrintOut(CutReportJson(report));
  } else if (!m_bQuiet) {
    PrintOut(CutReportText(report));
  }
  std::vector<std::string> failures;
  for (const SCutOutput& output : report.outputs) {
    if (!output.result.bOk) failures.push_back(output.result.strFileName + ": " + output.result.strError);
  }
  PrintMessages(failures);
  return report.AllOk() ? EExit::Ok : EExit::OutputFailed;
}

// What else stands in the folders, and they themselves then, is left alone.
bool CJoinCommand::RemoveParts(const SWorkPlan& plan) const {
  bool removed = true;
  const auto tell = [&removed](const std::string& path) {
    if (platform::MeansMissing(platform::LastError())) return;
    if (removed) PrintMessage("--remove-parts: " + path + ": " + SystemErrorText());
    removed = false;
  };
  for (std::size_t i = 0; i < plan.recordings.size(); ++i) {
    const std::string folder = PartsFolder(plan, i);
    const auto names = platform::ListFolder(folder);
    if (!names) {
      tell(folder);
      continue;
    }
    for (const std::string& name : *names) {
      const std::string path = platform::JoinPath(folder, name);
      if (IsPartName(name) && !platform::RemoveFile(path)) tell(path);
      if (IsMakingFolderName(name) && !RemoveMakingFolder(path)) tell(path);
    }
    platform::RemoveFolder(folder);
  }
  platform::RemoveFolder(plan.strParts);
  return removed;
}

}  // namespace carvello
