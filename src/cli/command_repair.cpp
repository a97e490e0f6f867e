#include "cli/command_repair.h"

#include <algorithm>

#include "cli/console.h"
#include "cli/given_options.h"
#include "cli/help_texts.h"
#include "cli/repair_report.h"
#include "cli/stop_requests.h"

namespace carvello {
namespace {

// Of what several files ended with, the one that a script must hear of first.
EExit Worse(EExit a, EExit b) {
  constexpr EExit kOrder[] = {EExit::Stopped, EExit::OutputFailed, EExit::InputUnreadable, EExit::OutputsExist};
  for (const EExit exit : kOrder) {
    if (a == exit || b == exit) return exit;
  }
  return a;
}

// What the user can do about a file that is refused for want of it.
std::string Hint(const SRepairPlan& plan) {
  if (plan.bNeedsKind && plan.bNeedsRate) return ". Give --sample-type and --rate";
  if (plan.bNeedsKind) return ". Give --sample-type";
  return plan.bNeedsRate ? ". Give --rate" : "";
}

}  // namespace

void CRepairCommand::AddOptions(CCommandOptions& options) {
  options.Add("FILE", &m_files, "The files, WAV or RF64").Required();
  options.Add("--to", &m_strFolder, "Write right copies into this folder").Value("DIR").Excludes("--in-place");
  options.Add("--in-place", &m_bInPlace, "Change the heads of the files themselves");
  options.Add("--dry-run", &m_bDryRun, "Tell what is wrong and what would become of it, and change nothing");
  options.Add("--json", &m_bJson, "Print one JSON object instead of a text");
  options.Add("--rate", &m_strRate, "Sample rate in Hz where the file's is wrong; suffixes k and M").Value("HZ");
  options.Add("--sample-type", &m_strSampleType, "cu8, ci16, ci24, ci32, cf32 or cf64 where the file's format is empty")
      .Value("TYPE");
  options.SetFooter(
      std::string("Samples are never changed. In place the old bytes of the head are kept beside the file, in\n"
                  "FILE.carvello-repair, until all is done: a repair that was cut off is finished, or taken\n"
                  "back, by the next one.\n\n"
                  "Examples:\n"
                  "  carvello-cli repair --dry-run *.wav\n"
                  "  carvello-cli repair --in-place baseband.wav\n"
                  "  carvello-cli repair --to mended baseband.wav\n\n") +
      kExitCodesHelp);
}

EExit CRepairCommand::Run() {
  SGivenFacts given;
  SGivenOptions options;
  options.strRate = m_strRate;
  options.strSampleType = m_strSampleType;
  std::string error;
  if (!ReadGivenFacts(options, given, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  EExit exit = EExit::Ok;
  bool isBroken = false;
  std::vector<SRepairReport> reports;
  for (const std::string& file : m_files) {
    const SRepairReport& report = reports.emplace_back(Repair(file, given));
    if (!m_bJson) PrintOut(RepairText(report));
    if (!report.result.strError.empty()) PrintMessage(report.result.strError + Hint(report.result.plan));
    if (report.result.bFinishedEarlier)
      PrintMessage(file + ": an earlier repair, which was interrupted, was settled first");
    isBroken = isBroken || report.result.plan.state == ERepairState::Broken;
    exit = Worse(exit, RepairExit(report));
    if (StopRequests() > 0) break;
  }
  if (m_bJson) PrintOut(RepairJson(reports));
  if (isBroken && !IsAsked()) {
    PrintMessage("nothing was changed: say --in-place, or --to with a folder for right copies");
    return EExit::Usage;
  }
  return exit;
}

SRepairReport CRepairCommand::Repair(const std::string& file, const SGivenFacts& given) const {
  SRepairReport report;
  report.strFile = file;
  report.bDone = !m_bDryRun && IsAsked();
  if (report.bDone) {
    if (!m_bInPlace) CatchStopRequests();
    const auto goesOn = [](std::int64_t /*done*/, std::int64_t /*all*/) { return StopRequests() == 0; };
    report.result = m_bInPlace ? RepairInPlace(file, given) : RepairInto(file, m_strFolder, given, goesOn);
    return report;
  }
  report.result.plan = PlanRepair(file, given);
  const SRepairPlan& plan = report.result.plan;
  if (plan.state == ERepairState::Refused) report.result.strError = file + ": " + plan.strProblem;
  if (IsRepairInterrupted(file)) {
    PrintMessage(file + ": an earlier repair was interrupted; the next one settles it first");
  }
  return report;
}

}  // namespace carvello
