#include "cluster/slurm_script.h"

#include <algorithm>
#include <cmath>

#include "cluster/shell_word.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {
namespace {

// As an unset MaxArraySize (1001) takes them.
constexpr std::size_t kMostJobs = 1000;
constexpr double kSlowDisk = 60e6;  // bytes/s
constexpr double kSafety = 4.0;
constexpr std::int64_t kLeastSeconds = 600;
constexpr unsigned kMostProcessors = 16;
// What a pass takes beside its entries, and each of them: buffers share one budget, work memory belongs to threads.
constexpr double kMegabytes = 500.0;
constexpr double kMegabytesPerEntry = 1.5;

// A join goes on where it was ended, so that it needs less to spare. What it reads it also writes.
constexpr double kJoinedPerSecond = 50e6;  // bytes
constexpr double kJoinSafety = 2.0;
constexpr std::int64_t kLeastJoinSeconds = 3600;
// It opens each recording twice, and each part three times with its manifest.
constexpr double kSecondsPerRecording = 1.0;
constexpr double kSecondsPerPart = 0.02;
// Outputs at a time: more of them only wait for the disk.
constexpr std::size_t kMostJoined = 2;
constexpr double kMegabytesPerJoined = 150.0;
// What it keeps of the plan, and of a recording's outputs for every stretch of it.
constexpr double kBytesPerTask = 250.0;
constexpr double kBytesPerRecording = 5000.0;
constexpr double kBytesPerMark = 64.0;
constexpr double kFramesPerMark = 2e6;

// Of Slurm's options.
long long Minutes(std::int64_t seconds) {
  return static_cast<long long>((seconds + 59) / 60);
}

std::string Options(const STaskNeeds& needs, const char* separator) {
  return Format("--cpus-per-task=%u%s--mem=%lldM%s--time=%lld", needs.nProcessors, separator,
                static_cast<long long>(needs.nMegabytes), separator, Minutes(needs.nSeconds));
}

}  // namespace

STaskNeeds NeedsOf(const SWorkPlan& plan, std::uint32_t bytesPerFrame, double nanosecondsPerFrame) {
  double frames = 0.0;
  std::size_t entries = 0;
  for (const SPlannedTask& task : plan.tasks) {
    const SPlannedRecording& recording = plan.recordings[task.nRecording];
    const double stretch = static_cast<double>(task.nTo - task.nFrom) * recording.nSampleRate;
    frames = std::max(frames, std::min(stretch, static_cast<double>(recording.nFrames)));
    entries = std::max(entries, recording.nEntries);
  }
  const double reading = frames * bytesPerFrame / kSlowDisk;
  const double computing = frames * nanosecondsPerFrame * 1e-9;
  STaskNeeds needs;
  // As many as keep pace with a disk four times as fast.
  const double pace = std::ceil(computing / std::max(reading / 4.0, 1e-9));
  needs.nProcessors = static_cast<unsigned>(std::clamp(pace, 1.0, static_cast<double>(kMostProcessors)));
  const double seconds = kSafety * (reading + computing / needs.nProcessors);
  needs.nSeconds = std::max(kLeastSeconds, static_cast<std::int64_t>(std::ceil(seconds)));
  needs.nMegabytes =
      static_cast<std::int64_t>(std::ceil(kMegabytes + kMegabytesPerEntry * static_cast<double>(entries)));
  return needs;
}

STaskNeeds JoinNeedsOf(const SWorkPlan& plan, double outputBytes) {
  double parts = 0.0;
  for (const SPlannedTask& task : plan.tasks) parts += static_cast<double>(plan.recordings[task.nRecording].nEntries);
  std::size_t outputs = 0;
  double marks = 0.0;  // of the largest recording
  for (const SPlannedRecording& recording : plan.recordings) {
    outputs += recording.nEntries;
    const double stretches = 1.0 + static_cast<double>(recording.nFrames) / kFramesPerMark;
    marks = std::max(marks, stretches * static_cast<double>(recording.nEntries));
  }
  const auto recordings = static_cast<double>(plan.recordings.size());
  const double seconds =
      kJoinSafety * (outputBytes / kJoinedPerSecond + recordings * kSecondsPerRecording + parts * kSecondsPerPart);
  STaskNeeds needs;
  needs.nSeconds = std::max(kLeastJoinSeconds, static_cast<std::int64_t>(std::ceil(seconds)));
  needs.nProcessors = static_cast<unsigned>(std::clamp<std::size_t>(outputs, 1, kMostJoined));
  const double kept =
      static_cast<double>(plan.tasks.size()) * kBytesPerTask + recordings * kBytesPerRecording + marks * kBytesPerMark;
  needs.nMegabytes =
      static_cast<std::int64_t>(std::ceil(kMegabytes + needs.nProcessors * kMegabytesPerJoined + kept / 1e6));
  return needs;
}

std::string SlurmScript(const SWorkPlan& plan, const std::string& planPath, const STaskNeeds& needs,
                        const STaskNeeds& join, const std::string& program) {
  const std::size_t tasks = plan.tasks.size();
  const std::size_t jobs = std::min(tasks, kMostJobs);
  STaskNeeds job = needs;
  job.nSeconds *= static_cast<std::int64_t>((tasks + jobs - 1) / jobs);
  std::string text = "#!/bin/bash\n";
  text += "# " + CountOf(plan.recordings.size(), "recording") + ", " + CountOf(tasks, "task") +
          ". Run it with bash: it submits itself, and the join behind it.\n";
  text +=
      "# Options behind its name go to both. With \"join\" in front of them it submits the join alone: one that was\n"
      "# ended, for its time or otherwise, goes on with the outputs that are not finished.\n";
  text += "#SBATCH --job-name=carvello\n";
  text += Format("#SBATCH --array=0-%zu\n", jobs - 1);
  text += "#SBATCH " + Options(job, "\n#SBATCH ") + "\n";
  text += "#SBATCH --requeue\n#SBATCH --open-mode=append\n\n";
  text += "program=" + QuotedWord(program) + "\n";
  text += "plan=" + QuotedWord(planPath) + "\n";
  text += Format("tasks=%zu\njobs=%zu\n\n", tasks, jobs);
  text += R"sh(if [ -z "${SLURM_ARRAY_TASK_ID-}" ]; then
  after=()
  if [ "${1-}" = join ]; then
    shift
  else
    array=$(sbatch --parsable "$@" "$0") || exit 1
    # After any end of the tasks: the join names those that are not complete, and how they are repeated.
    after=(--dependency="afterany:${array%%;*}")
  fi
  # Options for Slurm go to both, but for those of an array, which may have their value as a word of its own.
  both=()
  while [ $# -gt 0 ]; do
    case $1 in
      -a | --ar | --arr | --arra | --array) shift ;;
      -a* | --ar=* | --arr=* | --arra=* | --array=*) ;;
      *) both+=("$1") ;;
    esac
    shift
  done
)sh";
  // Slurm gives it to a plain shell, which does not know all that bash's own quoting writes.
  text += "  join=" +
          QuotedWord("echo 'If this ends before all is joined: the script once more, with join behind its name.'; " +
                     QuotedWord(program) + " join " + QuotedWord(planPath) + " --skip-existing") +
          "\n";
  text += "  exec sbatch --job-name=carvello-join --open-mode=append " + Options(join, " ") + " \\\n";
  text += R"sh(    "${both[@]}" "${after[@]}" --wrap="$join"
fi

worst=0
again=
for ((task = SLURM_ARRAY_TASK_ID; task < tasks; task += jobs)); do
  "$program" run "$plan" --task "$task" --quiet
  status=$?
  [ "$status" -le "$worst" ] || worst=$status
  [ "$status" != 75 ] || again=yes
done
# 75: another try may help, on this machine or on another one. What is complete is not done again.
if [ -n "$again" ] && [ "${SLURM_RESTART_COUNT:-0}" -lt 3 ]; then
  scontrol requeue "${SLURM_ARRAY_JOB_ID}_${SLURM_ARRAY_TASK_ID}"
fi
exit "$worst"
)sh";
  return text;
}

}  // namespace carvello
