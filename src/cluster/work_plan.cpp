#include "cluster/work_plan.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "cluster/json_numbers.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/json_text.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {
namespace {

using Json = nlohmann::json;

constexpr const char* kPlanKey = "carvello_plan";  // the first of the object, with the number of the format
constexpr int kFormat = 1;
constexpr std::int64_t kLargestPlan = std::int64_t{1} << 30;

void AddRecording(CJsonText& json, const SPlannedRecording& recording) {
  json.BeginObject();
  json.Member("input", recording.strInput);
  if (recording.nPart != 0) json.Member("part", recording.nPart);
  json.Member("frames", recording.nFrames);
  json.Member("sample_rate", recording.nSampleRate);
  json.Member("entries", recording.nEntries);
  json.Member("entries_sha256", recording.strEntries);
  json.Key("files");
  json.BeginArray();
  for (const SPlannedFile& file : recording.files) {
    json.BeginObject();
    json.Member("path", file.strPath);
    json.Member("size", file.nSize);
    json.Member("modified", file.nModified);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

SPlannedRecording TakeRecording(const Json& json) {
  SPlannedRecording recording;
  recording.strInput = json.at("input").get<std::string>();
  constexpr std::int64_t kMost32 = std::numeric_limits<std::uint32_t>::max();
  if (json.contains("part")) recording.nPart = static_cast<std::uint32_t>(WholeNumber(json.at("part"), 0, kMost32));
  recording.nFrames = WholeNumber(json.at("frames"));
  recording.nSampleRate = static_cast<std::uint32_t>(WholeNumber(json.at("sample_rate"), 0, kMost32));
  recording.nEntries = static_cast<std::size_t>(WholeNumber(json.at("entries")));
  recording.strEntries = json.at("entries_sha256").get<std::string>();
  for (const Json& file : json.at("files")) {
    recording.files.push_back({file.at("path").get<std::string>(), WholeNumber(file.at("size")),
                               WholeNumber(file.at("modified"), std::numeric_limits<std::int64_t>::min())});
  }
  return recording;
}

EEngineSetting EngineNamed(const std::string& name) {
  for (const EEngineSetting setting : {EEngineSetting::Auto, EEngineSetting::Library, EEngineSetting::Spectrum}) {
    if (name == EngineSettingName(setting)) return setting;
  }
  throw std::invalid_argument("engine " + name);
}

// In the order of the recordings and of time: nothing is done twice.
void AddTask(const Json& json, SWorkPlan& plan) {
  const SPlannedTask task{static_cast<std::size_t>(WholeNumber(json.at(0))), WholeNumber(json.at(1)),
                          WholeNumber(json.at(2))};
  bool fits = task.nRecording < plan.recordings.size() && task.nTo > task.nFrom;
  if (fits && !plan.tasks.empty()) {
    const SPlannedTask& before = plan.tasks.back();
    fits = task.nRecording > before.nRecording || (task.nRecording == before.nRecording && task.nFrom >= before.nTo);
  }
  if (!fits) throw std::invalid_argument(Format("task %zu", plan.tasks.size()));
  plan.tasks.push_back(task);
}

// False when the job that it holds is none.
bool TakePlan(const Json& json, const std::string& path, SWorkPlan& plan, std::string& error) {
  if (WholeNumber(json.at(kPlanKey)) != kFormat) throw std::invalid_argument(kPlanKey);
  plan.strVersion = json.at("version").get<std::string>();
  plan.strLibrary = json.at("library").get<std::string>();
  plan.bSigMfMeta = json.at("sigmf_meta").get<bool>();
  plan.bAbsolute = json.at("entries_absolute").get<bool>();
  plan.engine = EngineNamed(json.at("engine").get<std::string>());
  plan.bSync = json.at("sync").get<bool>();
  plan.bCountFrames = json.at("ds64_frames").get<bool>();
  plan.strParts = json.at("parts").get<std::string>();
  for (const Json& recording : json.at("recordings")) plan.recordings.push_back(TakeRecording(recording));
  for (const Json& task : json.at("tasks")) AddTask(task, plan);
  if (plan.tasks.empty()) throw std::invalid_argument("tasks");
  if (!ParseJobFile(json.at("job").get<std::string>(), path, plan.job, error)) return false;
  if (!plan.bSigMfMeta) return true;
  for (SEntrySpec& spec : plan.job.entries) {
    if (spec.format == EOutputFormat::Wave) spec.format = EOutputFormat::WaveAndMeta;
  }
  return true;
}

bool ReadText(const std::string& path, std::string& text, std::string& error) {
  CFile file;
  const bool opened = file.Open(path, platform::EOpenMode::ReadShared);
  const std::int64_t length = opened ? file.Length() : -1;
  if (length > kLargestPlan) {
    error = path + ": a plan has less than 1 GiB";
    return false;
  }
  if (length >= 0) {
    text.resize(static_cast<std::size_t>(length));
    if (file.ReadExactly(text.data(), text.size())) return true;
  }
  const std::uint32_t code = file.FirstError() != 0 ? file.FirstError() : platform::LastError();
  error = path + ": cannot be read: " + SystemErrorText(code);
  return false;
}

}  // namespace

std::string WorkPlanText(const SWorkPlan& plan) {
  CJsonText json;
  json.BeginObject();
  json.Member(kPlanKey, kFormat);
  json.Member("version", plan.strVersion);
  json.Member("library", plan.strLibrary);
  json.Member("engine", EngineSettingName(plan.engine));
  json.Member("entries_absolute", plan.bAbsolute);
  json.Member("sigmf_meta", plan.bSigMfMeta);
  json.Member("sync", plan.bSync);
  json.Member("ds64_frames", plan.bCountFrames);
  json.Member("parts", plan.strParts);
  json.Member("job", JobFileText(plan.job));
  json.Key("recordings");
  json.BeginArray();
  for (const SPlannedRecording& recording : plan.recordings) AddRecording(json, recording);
  json.EndArray();
  json.Key("tasks");
  json.BeginArray();
  for (const SPlannedTask& task : plan.tasks) {
    json.Add(std::vector<std::int64_t>{static_cast<std::int64_t>(task.nRecording), task.nFrom, task.nTo});
  }
  json.EndArray();
  json.EndObject();
  return json.Document();
}

bool ParseWorkPlan(std::string_view text, const std::string& path, SWorkPlan& plan, std::string& error) {
  plan = {};
  try {
    if (!TakePlan(Json::parse(text), path, plan, error)) return false;
  } catch (const Json::exception& problem) {
    error = path + ": no plan: " + Printable(problem.what()) + ". Accepted: a file that \"carvello-cli plan\" wrote";
    return false;
  } catch (const std::invalid_argument& problem) {
    error = path + ": no plan: \"" + Printable(problem.what()) +
            "\" is not as expected. Accepted: a file that \"carvello-cli plan\" of this version wrote";
    return false;
  }
  if (plan.strVersion == Release()) return true;
  error = Format(
      "%s: made by version %s, and this is %s. Accepted: a plan of this version, for another one may write "
      "other samples",
      path.c_str(), Printable(plan.strVersion).c_str(), Release().c_str());
  return false;
}

bool IsReplaceablePlan(const std::string& path, std::string& error) {
  constexpr std::int64_t kHead = 64;
  CFile file;
  const std::int64_t length = file.Open(path, platform::EOpenMode::ReadShared) ? file.Length() : -1;
  std::string head(static_cast<std::size_t>(std::clamp<std::int64_t>(length, 0, kHead)), '\0');
  if (length < 0 || !file.ReadExactly(head.data(), head.size())) {
    error = "cannot be read: " + SystemErrorText(file.FirstError() != 0 ? file.FirstError() : platform::LastError());
    return false;
  }
  std::erase_if(head, [](char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; });
  if (length == 0 || head.starts_with(Format("{\"%s\":", kPlanKey))) return true;
  error = "this file is no plan, and is not replaced. Accepted: another name";
  return false;
}

bool ReadWorkPlan(const std::string& path, SWorkPlan& plan, std::string& error, bool& unreadable) {
  std::string text;
  unreadable = !ReadText(path, text, error);
  return !unreadable && ParseWorkPlan(text, path, plan, error);
}

}  // namespace carvello
