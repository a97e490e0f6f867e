#include "cli/repair_report.h"

#include "support/json_text.h"

namespace carvello {
namespace {

const char* StateText(const SRepairReport& report) {
  if (!report.bDone) {
    switch (report.result.plan.state) {
      case ERepairState::Sound:
        return "sound";
      case ERepairState::Broken:
        return "broken";
      case ERepairState::Refused:
        return "refused";
    }
  }
  switch (report.result.outcome) {
    case ERepairOutcome::Sound:
      return "sound";
    case ERepairOutcome::Repaired:
      return "repaired";
    case ERepairOutcome::Refused:
      return "refused";
    case ERepairOutcome::Stopped:
      return "stopped";
    case ERepairOutcome::Unreadable:
    case ERepairOutcome::Exists:
    case ERepairOutcome::Failed:
      break;
  }
  return "failed";
}

}  // namespace

std::string RepairText(const SRepairReport& report) {
  const SRepairPlan& plan = report.result.plan;
  std::string text = report.strFile + ": " + StateText(report);
  if (plan.state == ERepairState::Sound && !plan.strProblem.empty()) text += ", " + plan.strProblem;
  text += "\n";
  for (const std::string& fault : plan.faults) text += "  wrong: " + fault + "\n";
  if (plan.state != ERepairState::Broken) return text;
  for (const std::string& change : plan.changes) text += "  right: " + change + "\n";
  if (!plan.strOnlyAsNewFile.empty()) text += "  only as a new file: " + plan.strOnlyAsNewFile + "\n";
  if (report.bDone && report.result.outcome == ERepairOutcome::Repaired) {
    text += "  written: " + report.result.strFile + "\n";
  }
  return text;
}

std::string RepairJson(const std::vector<SRepairReport>& reports) {
  CJsonText json;
  json.BeginObject();
  json.Key("files");
  json.BeginArray();
  for (const SRepairReport& report : reports) {
    const SRepairPlan& plan = report.result.plan;
    json.BeginObject();
    json.Member("file", report.strFile);
    json.Member("state", StateText(report));
    json.Member("faults", plan.faults);
    json.Member("changes", plan.changes);
    json.Member("inPlace", plan.state == ERepairState::Broken && plan.strOnlyAsNewFile.empty());
    json.Member("written", report.result.strFile);
    json.Member("settledEarlier", report.result.bFinishedEarlier);
    json.Member("error", report.result.strError);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  return json.Document();
}

EExit RepairExit(const SRepairReport& report) {
  if (!report.bDone) return report.result.plan.state == ERepairState::Refused ? EExit::InputUnreadable : EExit::Ok;
  switch (report.result.outcome) {
    case ERepairOutcome::Sound:
    case ERepairOutcome::Repaired:
      return EExit::Ok;
    case ERepairOutcome::Refused:
    case ERepairOutcome::Unreadable:
      return EExit::InputUnreadable;
    case ERepairOutcome::Exists:
      return EExit::OutputsExist;
    case ERepairOutcome::Stopped:
      return EExit::Stopped;
    case ERepairOutcome::Failed:
      break;
  }
  return EExit::OutputFailed;
}

}  // namespace carvello
