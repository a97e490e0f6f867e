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

std::string SlurmScript(const SWorkPlan& plan, const std::string& planPath, const STaskNeeds& needs,
                        const std::string& program) {
  const std::size_t tasks = plan.tasks.size();
  const std::size_t jobs = std::min(tasks, kMostJobs);
  const auto ll = [](std::int64_t value) { return static_cast<long long>(value); };
  const std::int64_t minutes = (needs.nSeconds * static_cast<std::int64_t>((tasks + jobs - 1) / jobs) + 59) / 60;
  std::string text = "#!/bin/bash\n";
  text += Format("# %zu recordings, %zu tasks. Run it with bash: it submits itself, and the join behind it.\n",
                 plan.recordings.size(), tasks);
  text += "#SBATCH --job-name=carvello\n";
  text += Format("#SBATCH --array=0-%zu\n", jobs - 1);
  text += Format("#SBATCH --cpus-per-task=%u\n", needs.nProcessors);
  text += Format("#SBATCH --mem=%lldM\n", ll(needs.nMegabytes));
  text += Format("#SBATCH --time=%lld\n", ll(minutes));
  text += "#SBATCH --requeue\n#SBATCH --open-mode=append\n\n";
  text += "program=" + QuotedWord(program) + "\n";
  text += "plan=" + QuotedWord(planPath) + "\n";
  text += Format("tasks=%zu\njobs=%zu\n\n", tasks, jobs);
  text += R"sh(if [ -z "${SLURM_ARRAY_TASK_ID-}" ]; then
  # Options for Slurm go to both, but for those of an array.
  both=()
  for option in "$@"; do
    [[ $option == --array=* || $option == -a* ]] || both+=("$option")
  done
  array=$(sbatch --parsable "$@" "$0") || exit 1
  # After any end of the tasks: the join names those that are not complete, and how they are repeated.
  exec sbatch --dependency="afterany:${array%%;*}" --job-name=carvello-join --open-mode=append \
)sh";
  text += Format("    --cpus-per-task=%u --mem=%lldM --time=%lld \\\n", needs.nProcessors, ll(needs.nMegabytes),
                 ll(std::max<std::int64_t>(minutes, 60)));
  // Slurm gives it to a plain shell, which does not know all that bash's own quoting writes.
  text += "    --wrap=" + QuotedWord(QuotedWord(program) + " join " + QuotedWord(planPath) + " --skip-existing") +
          " \"${both[@]}\"";
  text += R"sh(
fi

worst=0
for ((task = SLURM_ARRAY_TASK_ID; task < tasks; task += jobs)); do
  "$program" run "$plan" --task "$task" --quiet
  status=$?
  [ "$status" -le "$worst" ] || worst=$status
done
# 75: another try may help, on this machine or on another one.
if [ "$worst" = 75 ] && [ "${SLURM_RESTART_COUNT:-0}" -lt 3 ]; then
  scontrol requeue "${SLURM_ARRAY_JOB_ID}_${SLURM_ARRAY_TASK_ID}"
fi
exit "$worst"
)sh";
  return text;
}

}  // namespace carvello
