#include "cluster/task_parts.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

std::vector<SPlannedTask> TasksOf(const COpenRecording& recording, std::size_t number, std::int64_t shard) {
  const std::int64_t rate = recording.Recording().nSampleRate;
  const std::int64_t seconds = (recording.Frames().Total() + rate - 1) / rate;
  std::vector<SPlannedTask> tasks;
  for (std::int64_t from = 0; from < seconds; from += shard) {
    const SPlannedTask task{number, from, from + shard};
    for (std::size_t entry = 0; entry < recording.Entries().Size(); ++entry) {
      if (recording.Range(entry, task.nFrom, task.nTo).IsEmpty()) continue;
      tasks.push_back(task);
      break;
    }
  }
  return tasks;
}

std::string PartsFolder(const SWorkPlan& plan, std::size_t recording) {
  return platform::JoinPath(plan.strParts, Format("r%06zu", recording));
}

std::string MakingFolder(const SWorkPlan& plan, std::size_t task) {
  return platform::JoinPath(PartsFolder(plan, plan.tasks[task].nRecording), Format("t%07zu.tmp", task));
}

bool IsMakingFolderName(const std::string& name) {
  std::size_t task = 0;
  int length = 0;
  return std::sscanf(name.c_str(), "t%zu.tmp%n", &task, &length) == 1 && std::cmp_equal(length, name.size());
}

bool RemoveMakingFolder(const std::string& folder) {
  const auto names = platform::ListFolder(folder);
  if (!names) return false;
  std::string left;
  for (const std::string& name : *names) {
    const std::string path = platform::JoinPath(folder, name);
    if (platform::RemoveFile(path) || platform::MeansMissing(platform::LastError())) continue;
    left = path;
  }
  return (left.empty() || platform::RemoveFile(left)) && platform::RemoveFolder(folder);  // once more, for the reason
}

std::vector<STaskPart> PartsOf(const SWorkPlan& plan, std::size_t task, const COpenRecording& recording) {
  const SPlannedTask& planned = plan.tasks[task];
  const std::string folder = PartsFolder(plan, planned.nRecording);
  std::vector<STaskPart> parts;
  for (std::size_t entry = 0; entry < recording.Entries().Size(); ++entry) {
    const SOutputRange range = recording.Range(entry, planned.nFrom, planned.nTo);
    if (range.IsEmpty()) continue;
    const std::string stem = platform::JoinPath(folder, Format("t%07zu-e%06zu", task, entry));
    parts.push_back({entry, range, stem + ".wav", stem + ".json"});
  }
  return parts;
}

std::string FolderAboveParts(const SWorkPlan& plan) {
  std::string parts = plan.strParts;
  while (platform::NameOf(parts).empty() && platform::FolderOf(parts) != parts) parts = platform::FolderOf(parts);
  return platform::FolderOf(parts);
}

bool IsPartsFolderName(const std::string& name) {
  return name.size() > 6 && name.front() == 'r' && name.find_first_not_of("0123456789", 1) == std::string::npos;
}

bool IsPartName(const std::string& name) {
  std::size_t task = 0;
  std::size_t entry = 0;
  int length = 0;
  if (std::sscanf(name.c_str(), "t%zu-e%zu%n", &task, &entry, &length) != 2) return false;
  const std::string ending = name.substr(static_cast<std::size_t>(length));
  return ending == ".wav" || ending == ".json";
}

}  // namespace carvello
