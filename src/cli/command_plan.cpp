#include "cli/command_plan.h"

#include <algorithm>
#include <limits>

#include "cli/console.h"
#include "cli/cut_options.h"
#include "cli/cut_plan.h"
#include "cli/help_texts.h"
#include "cli/output_checks.h"
#include "cli/stop_requests.h"
#include "cluster/shell_word.h"
#include "cluster/slurm_script.h"
#include "cluster/task_parts.h"
#include "dsp/library_description.h"
#include "dsp/start_dsp.h"
#include "engine/engine_costs.h"
#include "jobs/quantities.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/version.h"
#include "support/whole_file.h"

namespace carvello {
namespace {

constexpr const char* kMeaning =
    "Each task is a stretch of whole seconds of one recording with all its entries. \"run\" does one, on any machine\n"
    "that sees the same paths; \"join\" makes the outputs, which are what one \"cut\" for each recording would "
    "write.\n\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli plan /data/night --output cuts --entry f=7.1M,bw=10k --shard 0:10:00 --plan night.json\n"
    "  carvello-cli run night.json --task 0\n"
    "  carvello-cli join night.json\n"
    "  carvello-cli plan /data/night --jobs channels.json --entries-absolute --output cuts --shard 0:10:00 \\\n"
    "    --plan night.json --sbatch > night.sh && bash night.sh\n\n";

constexpr const char* kNoUtf8 = ": a name that is no UTF-8 cannot stand in a plan. Accepted: another name";

// Of a name, as most systems take it for the same: ".wav".
std::string EndingOf(const std::string& path) {
  const std::string name = platform::NameOf(path);
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos ? std::string() : ToLowerAscii(name.substr(dot));
}

// Entries one by one, as a plan's job lists them.
std::vector<SEntrySpec> Single(const std::vector<SEntrySpec>& specs) {
  std::vector<SEntrySpec> single;
  for (const SEntrySpec& spec : specs) {
    if (!spec.range) {
      single.push_back(spec);
      continue;
    }
    const SFrequencyRange range = *spec.range;
    const std::int64_t low = std::min(range.nFrom, range.nTo);
    for (std::int64_t i = 0; i < range.Count(); ++i) {
      SEntrySpec each = spec;
      each.range.reset();
      each.frequency = low + i * range.nStep;
      single.push_back(std::move(each));
    }
  }
  return single;
}

}  // namespace

void CPlanCommand::AddOptions(CCommandOptions& options) {
  options.Add("INPUT", &m_inputs, "Recordings: a file of each, or folders to look into");
  options.Add("--list", &m_strList, "File that names more of them, a line each").Value("FILE");
  options.Add("--plan", &m_strPlan, "The plan file to write").Value("PLAN").Required();
  options.Add("--shard", &m_strShard, "Length of a task's stretch: seconds, H:MM or H:MM:SS").Value("D").Required();
  options.Add("--parts", &m_strParts, "Folder for what tasks write; beside the outputs otherwise").Value("DIR");
  options.Add("--entries-absolute", &m_bAbsolute, "Each recording gets those entries whose band and time it holds");
  options.Add("--sbatch", &m_bSbatch, "Print a script that runs the plan on Slurm");
  AddEntryOptions(options, m_options);
  options.Add("--overwrite", &m_options.bOverwrite, "Replace the plan file; outputs may exist");
  options.Add("--skip-existing", &m_options.bSkipExisting, "Outputs may exist, join will leave them");
  m_given.AddTo(options);
  options.SetFooter(std::string(kMeaning) + kEntryHelp + kJobFileHelp + kExamples + kExitCodesHelp);
}

bool CPlanCommand::ReadOptions(SWorkPlan& plan, std::vector<std::string>& inputs, std::string& error) {
  inputs = m_inputs;
  if (!m_strList.empty() && !ReadNameList(m_strList, inputs, error)) {
    error.insert(0, "--list ");
    return false;
  }
  const std::optional<std::uint32_t> shard = ParseDuration(m_strShard);
  if (!shard || *shard == 0) {
    error = Format("--shard \"%s\" cannot be read. Accepted: %s", Printable(m_strShard).c_str(), kDurationForms);
    return false;
  }
  m_nShard = *shard;
  SCutRequest request;
  m_options.strInput = inputs.empty() ? "" : inputs.front();
  if (!MakeCutRequest(m_options, request, error)) return false;
  if (inputs.empty()) inputs = {request.strInput};
  if (!ReadGivenFacts(m_given, request.given, error)) return false;

  const std::string stem = platform::NameOf(m_strPlan);
  const std::string parts = m_strParts.empty()
                                ? platform::JoinPath(request.strOutput, stem.substr(0, stem.rfind('.')) + ".parts")
                                : m_strParts;
  plan.strVersion = Release();
  plan.job.strOutput = platform::AbsolutePath(request.strOutput);
  plan.job.bLocalTime = request.bLocalTime;
  plan.job.given = request.given;
  plan.job.entries = Single(request.entries);
  for (SEntrySpec& spec : plan.job.entries) {
    if (!spec.strOutput.empty()) spec.strOutput = platform::AbsolutePath(spec.strOutput);
    plan.bSigMfMeta = plan.bSigMfMeta || spec.format == EOutputFormat::WaveAndMeta;
  }
  plan.bAbsolute = m_bAbsolute;
  plan.engine = request.engine;
  plan.bSync = !m_options.bNoSync;
  plan.bCountFrames = m_options.bDs64Frames;
  plan.strParts = platform::AbsolutePath(parts);
  std::vector<std::string> paths = {plan.job.strOutput, plan.strParts};
  for (const SEntrySpec& spec : plan.job.entries) paths.push_back(spec.strOutput);
  for (const std::string& path : paths) {
    if (IsUtf8(path)) continue;
    error = path + kNoUtf8;
    return false;
  }
  for (const std::string& path : {platform::AbsolutePath(m_strPlan), platform::ProgramPath()}) {
    if (!m_bSbatch || Printable(path) == path) continue;
    error = "--sbatch: a script cannot name what no terminal shows: " + Printable(path) + ". Accepted: another name";
    return false;
  }
  return true;
}

// What is there before any recording is looked at.
EExit CPlanCommand::CheckMeans(const SWorkPlan& plan, const DspBinding& dsp) const {
  // Either road begins within an entry by it.
  if (dsp.DownconvertResume == nullptr) {
    PrintMessage("The downconverter library cannot begin within an entry, so that tasks have nothing to run with: " +
                 DspLibraryPath());
    return EExit::InputUnreadable;
  }
  SCutRequest places;
  places.strOutput = plan.job.strOutput;
  places.entries = plan.job.entries;
  std::string problem;
  if (const std::string folder = UnwritableFolder(places, problem); !folder.empty()) {
    PrintMessage((folder == plan.job.strOutput ? "--output " : "") + folder + ": " + problem);
    return EExit::OutputFailed;
  }
  // Tasks make the folder of the parts, and none above it: those may be another machine's, which is not there.
  if (const std::string above = FolderAboveParts(plan); !platform::IsWritableFolder(above)) {
    PrintMessage((m_strParts.empty() ? "--output " : "--parts: ") + above + ": " + SystemErrorText());
    return EExit::OutputFailed;
  }
  const std::optional<bool> there = platform::IsThere(m_strPlan);
  if (!there) {
    PrintMessage("--plan " + m_strPlan + ": " + SystemErrorText());
    return EExit::OutputFailed;
  }
  const bool exists = *there;
  if (exists && !m_options.bOverwrite) {
    PrintMessage("--plan " + m_strPlan + ": this file exists already. Accepted: --overwrite or another name");
    return EExit::OutputsExist;
  }
  // Above all no recording, and nothing else that the plan is made of.
  if (std::string error; exists && !IsReplaceablePlan(m_strPlan, error)) {
    PrintMessage("--plan " + m_strPlan + ": " + error);
    return EExit::Usage;
  }
  const auto parts = platform::ListFolder(plan.strParts);
  const std::uint32_t unlisted = parts ? 0 : platform::LastError();
  if (!parts && platform::IsThere(plan.strParts) != std::optional(false)) {
    const auto status = platform::GetFileStatus(plan.strParts);
    const bool isFile = status && !status->bDirectory;
    PrintMessage(plan.strParts + ": " +
                 (isFile ? "is no folder. Accepted: --parts with one, or a new name" : SystemErrorText(unlisted)));
    return EExit::OutputFailed;
  }
  if (!exists && parts && !parts->empty()) {
    PrintMessage(plan.strParts + ": holds the parts of another plan. Accepted: --parts, or another name for this plan");
    return EExit::OutputsExist;
  }
  return EExit::Ok;
}

EExit CPlanCommand::Run() {
  EndOnStopRequests();
  SWorkPlan plan;
  std::vector<std::string> inputs;
  SFoundFiles files;
  std::string error;
  if (!ReadOptions(plan, inputs, error)) {
    PrintMessageLines(error);
    return EExit::Usage;
  }
  DspBinding dsp;
  if (!StartDsp(dsp)) {
    PrintMessage(MissingLibraryText());
    return EExit::InputUnreadable;
  }
  const std::optional<std::string> library = DescribeLibrary(dsp).version;
  if (!library) {
    PrintMessage("The downconverter library does not tell its version, by which tasks know it: " + DspLibraryPath());
    return EExit::InputUnreadable;
  }
  plan.strLibrary = *library;
  if (const EExit checked = CheckMeans(plan, dsp); checked != EExit::Ok) return checked;
  std::vector<std::string> outputs = {plan.job.strOutput, plan.strParts};
  for (const SEntrySpec& spec : plan.job.entries) {
    if (!spec.strOutput.empty()) outputs.push_back(spec.strOutput);
  }
  if (!FindFiles(inputs, outputs, files, error)) {
    PrintMessage(error);
    return EExit::InputUnreadable;
  }
  SSums sums;
  sums.leftOut = std::move(files.leftOut);
  const EExit added = AddRecordings(files.files, plan, sums);
  PrintMessages(sums.warnings);
  if (added != EExit::Ok) return added;
  if (!sums.existing.empty()) {
    PrintExisting(sums.existing);
    return EExit::OutputsExist;
  }
  if (const EExit complete = PrintLeftOut(sums); complete != EExit::Ok) return complete;
  if (plan.tasks.empty()) {
    PrintMessage(sums.nRecordings == 0
                     ? "no recordings found. Accepted: their files, or folders that hold them"
                     : CountOf(sums.nRecordings, "recording") + " found, and none holds any of the entries");
    return EExit::Usage;
  }
  if (sums.nRecordings > plan.recordings.size()) {
    PrintMessage(CountOf(sums.nRecordings - plan.recordings.size(), "recording") + " of " +
                 std::to_string(sums.nRecordings) + " without any of the entries");
  }
  for (std::size_t i = 0; i < sums.held.size(); ++i) {
    if (!sums.held[i]) PrintMessage("warning: no recording holds " + plan.job.entries[i].strLabel);
  }
  const std::string text = WorkPlanText(plan);
  if (!WriteWholeFile(m_strPlan, text.data(), text.size(), m_options.bOverwrite, error)) {
    PrintMessage(error);
    return EExit::OutputFailed;
  }
  PrintResult(plan, sums);
  return EExit::Ok;
}

EExit CPlanCommand::AddRecordings(const std::vector<SFoundFile>& files, SWorkPlan& plan, SSums& sums) const {
  // Files have many names: by links, and by the folders that they are named from.
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
  const auto see = [&seen](const std::string& path, bool& isNew) {
    const auto status = platform::GetFileStatus(path);
    if (status) isNew = seen.emplace(status->nVolume, status->nFileNumber).second;
    return status.has_value();
  };
  const auto refuse = [](const std::string& path) {
    PrintMessage(path + ": cannot be read: " + SystemErrorText());
    return EExit::InputUnreadable;
  };
  sums.held.assign(plan.job.entries.size(), false);
  for (const SFoundFile& file : files) {
    bool isNew = false;
    if (!see(file.strPath, isNew)) {
      if (!file.bNamed && platform::MeansMissing(platform::LastError())) continue;  // since the folder was listed
      return refuse(file.strPath);
    }
    if (!isNew) continue;
    std::uint32_t parts = 1;
    for (std::uint32_t part = 1; part <= parts; ++part) {
      COpenRecording recording;
      std::string error;
      const std::uint32_t told = parts > 1 ? part : 0;
      const COpenRecording::EResult opened = recording.Open(plan, file.strPath, told, error);
      if (!file.bNamed &&
          (opened == COpenRecording::EResult::NoRecording || opened == COpenRecording::EResult::Unreadable)) {
        const bool refused = !platform::IsReadable(file.strPath) && platform::MeansRefused(platform::LastError());
        const ELeftOut unread = refused ? ELeftOut::Refused : ELeftOut::Unread;
        const bool isNone = opened == COpenRecording::EResult::NoRecording;
        sums.leftOut.push_back({file.strPath, error, isNone ? ELeftOut::NoRecording : unread});
        break;
      }
      if (opened != COpenRecording::EResult::Ok) {
        PrintMessageLines(error);
        return opened == COpenRecording::EResult::Refused ? EExit::Usage : EExit::InputUnreadable;
      }
      for (const std::string& member : recording.Recording().AllFiles()) {
        if (!see(member, isNew)) return refuse(member);
      }
      if (plan.job.given.nPart == 0 && told == 0 && recording.Recording().parts.size() > 1) {
        // All of them, one after the other, and the first one is not chosen for the others.
        parts = static_cast<std::uint32_t>(recording.Recording().parts.size());
        part = 0;
        continue;
      }
      ++sums.nRecordings;
      sums.endings.insert(EndingOf(file.strPath));
      for (const std::string& warning : recording.Input().warnings) sums.warnings.push_back(warning);
      const EExit added = AddRecording(recording, file.strPath, told, plan, sums);
      if (added != EExit::Ok) return added;
    }
  }
  return EExit::Ok;
}

EExit CPlanCommand::AddRecording(const COpenRecording& recording, const std::string& input, std::uint32_t part,
                                 SWorkPlan& plan, SSums& sums) const {
  COutputFolders folders;
  SRefusal refusal = CheckReplacedInput(recording.Entries(), recording.Recording(), folders);
  if (refusal.exit == EExit::Ok && !m_options.bOverwrite && !m_options.bSkipExisting) {
    refusal = FindExisting(recording.Entries(), folders, sums.existing);
  }
  if (refusal.exit != EExit::Ok) {
    PrintMessage(refusal.strText);
    return refusal.exit;
  }
  for (const OutputEntry* entry : recording.Entries().Pointers()) {
    if (sums.outputs.insert(platform::FileNameKey(entry->strFileName)).second) continue;
    const std::string which = part == 0 ? input : Format("part %u of %s", part, input.c_str());
    PrintMessage(
        Format("%s: an output of two recordings, the second is %s. Accepted: plans of their own%s, with another "
               "--output",
               entry->strFileName.c_str(), which.c_str(), part == 0 ? "" : " by --part"));
    return EExit::Usage;
  }
  SPlannedRecording planned = recording.Planned(input, part);
  for (const SPlannedFile& file : planned.files) {
    if (IsUtf8(file.strPath)) continue;
    PrintMessage(file.strPath + kNoUtf8);
    return EExit::Usage;
  }
  SPlanNotes notes;
  TakeNotes(recording.Entries(), recording.Recording(), notes);
  for (const std::string& note : notes.outsideBand) {
    sums.warnings.push_back("warning: outside the recorded band: " + note);
  }
  for (const std::string& note : notes.surprises) sums.warnings.push_back("warning: " + note);
  for (std::size_t i = 0; i < sums.held.size(); ++i) sums.held[i] = sums.held[i] || recording.Holds()[i];
  if (recording.Entries().Size() == 0) return EExit::Ok;

  double nanoseconds = 0.0;
  bool shares = false;
  for (std::size_t i = 0; i < recording.Entries().Size(); ++i) {
    const OutputEntry& entry = recording.Entries()[i];
    const SEntryCosts costs = EntryCosts(entry.nInputSampleRate, entry.nOutputSampleRate);
    const bool spectrum = recording.Engine(i) == EEngine::Spectrum;
    nanoseconds += spectrum ? costs.fSpectrum : costs.fLibrary;
    shares = shares || spectrum;
    const std::int64_t frames = recording.Range(i, 0, std::numeric_limits<std::int64_t>::max()).nEnd;
    sums.dOutputBytes += static_cast<double>(frames) * (static_cast<double>(entry.nBitsPerSample) / 4);
  }
  sums.dNanoseconds = std::max(sums.dNanoseconds, nanoseconds + (shares ? SharedSpectrumCost() : 0.0));
  sums.nBytesPerFrame = std::max(sums.nBytesPerFrame, recording.Frames().BytesPerFrame());
  sums.nOutputs += recording.Entries().Size();

  const std::vector<SPlannedTask> tasks = TasksOf(recording, plan.recordings.size(), m_nShard);
  plan.tasks.insert(plan.tasks.end(), tasks.begin(), tasks.end());
  plan.recordings.push_back(std::move(planned));
  return EExit::Ok;
}

// First those that are named like the recordings: a broken one must not drown in notes and pictures. One that was not
// read may be a recording, which a plan must not lose.
EExit CPlanCommand::PrintLeftOut(const SSums& sums) const {
  const std::set<std::string>& endings = sums.endings;
  std::vector<std::string> messages;
  for (const SLeftOutFile& file : sums.leftOut) {
    const bool likely = endings.empty() || endings.contains(EndingOf(file.strPath));
    if (file.kind == ELeftOut::Unread || (file.kind == ELeftOut::Refused && likely)) messages.push_back(file.strReason);
  }
  if (!messages.empty()) {
    PrintMessages(messages);
    PrintMessage("no plan without these. Accepted: the right to read them, or the names of the recordings, or --list");
    return EExit::InputUnreadable;
  }
  for (const bool likely : {true, false}) {
    for (const SLeftOutFile& file : sums.leftOut) {
      if (endings.contains(EndingOf(file.strPath)) == likely) messages.push_back(file.strReason);
    }
  }
  PrintMessages(messages, "left out: ");
  return EExit::Ok;
}

void CPlanCommand::PrintResult(const SWorkPlan& plan, const SSums& sums) const {
  const std::string path = platform::AbsolutePath(m_strPlan);
  const std::string told = CountOf(plan.recordings.size(), "recording") + ", " + CountOf(sums.nOutputs, "output") +
                           ", " + CountOf(plan.tasks.size(), "task") + " in " + path;
  if (m_bSbatch) {
    PrintErrLine(told);
    PrintOut(SlurmScript(plan, path, NeedsOf(plan, sums.nBytesPerFrame, sums.dNanoseconds),
                         JoinNeedsOf(plan, sums.dOutputBytes), platform::ProgramPath()));
    return;
  }
  const std::string name = ShellWord(m_strPlan);
  PrintOutLine(told);
  PrintOutLine(
      Format("Each task:  %s run %s --task K    (K from 0 to %zu)", kProgramName, name.c_str(), plan.tasks.size() - 1));
  PrintOutLine(Format("Then:       %s join %s", kProgramName, name.c_str()));
}

}  // namespace carvello
