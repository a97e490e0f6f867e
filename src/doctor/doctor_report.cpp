#include "doctor/doctor_report.h"

#include <algorithm>

#include "doctor/program_facts.h"
#include "doctor/system_sections.h"
#include "doctor/trial_cut.h"
#include "dsp/start_dsp.h"
#include "support/platform.h"
#include "support/system_facts.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr const char* kNotMeasured = "not measured; carvello-cli doctor measures it";

void AddRate(SReportSection& section, std::string_view key, std::string_view label, const STrialCut& cut) {
  if (!cut.strNotTried.empty()) {
    section.Missing(key, label, cut.strNotTried);
    return;
  }
  constexpr double kMillion = 1e6;
  section.Number(
      key, label, cut.fFrameRate,
      Format("%.1f million input frames a second, entries at once: %u", cut.fFrameRate / kMillion, cut.nThreads));
}

// False when the result is wrong.
bool AddCut(SReportSection& section, const DspBinding& dsp) {
  const STrialCut one = TryCut(dsp, 1);
  AddRate(section, "framesPerSecond", "one entry", one);
  std::string wrong = one.strWrong;
  if (const unsigned processors = platform::ProcessorCount(); processors > 1) {
    const STrialCut all = TryCut(dsp, processors);
    AddRate(section, "framesPerSecondTogether", "an entry a processor", all);
    if (wrong.empty()) wrong = all.strWrong;
  }
  if (!one.strNotTried.empty()) {
    section.Missing("right", "result", one.strNotTried);
    return true;
  }
  section.Flag(
      "right", "result", wrong.empty(),
      wrong.empty() ? Format("right: %lld frames, as were due", static_cast<long long>(one.nFrames)) : "WRONG");
  section.facts.back().strProblem = wrong;
  return wrong.empty();
}

}  // namespace

SReport MakeDoctorReport(const SDoctorRequest& request) {
  SReport report;
  DspBinding dsp;
  report.sections.push_back(ProgramSection());
  for (const auto& [label, value] : request.linked) report.sections.back().Text(label, label, value);
  report.sections.push_back(LibrarySection(dsp, request.strLibrary));
  report.sections.push_back(SystemSection());
  report.sections.push_back(FoldersSection());
  for (const std::string& folder : request.folders) report.sections.push_back(DiskSection(folder, request.bMeasure));

  SReportSection cut{"cut", "Short cut in memory", {}};
  if (!request.bMeasure) {
    cut.Missing("framesPerSecond", "one entry", kNotMeasured);
  } else if (!StartDsp(dsp, request.strLibrary)) {
    cut.Missing("framesPerSecond", "one entry", "there is no downconverter library");
  } else {
    report.bSound = AddCut(cut, dsp);
  }
  report.sections.push_back(std::move(cut));
  return report;
}

}  // namespace carvello
