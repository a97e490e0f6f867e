#include "doctor/program_facts.h"

#include <cstddef>

#include "dsp/library_description.h"
#include "fourier/instruction_set.h"
#include "support/platform.h"
#include "support/system_facts.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {

namespace {

constexpr std::size_t kEntryPoints = 18;

std::string Commit() {
  return *BuildCommit() == '\0' ? "not known: built from sources without a history" : BuildCommit();
}

std::string KnownSets() {
  std::string names;
  for (const EInstructionSet set : InstructionSets()) names += (names.empty() ? "" : ", ") + std::string(NameOf(set));
  return names;
}

std::string Names(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
  return all;
}

std::string ProblemOf(const DspBinding& dsp, const std::string& path) {
  if (!dsp.missing.empty()) return "it lacks " + Names(dsp.missing);
  return ReplaceAll(platform::WhyNotLoaded(path), path, WithoutHome(path));
}

}  // namespace

SReportSection ProgramSection() {
  SReportSection section{"program", "Program", {}};
  section.Text("title", "title", VersionInfo().strLongTitle);
  section.Text("path", "path", WithoutHome(platform::ProgramPath()));
  section.Text("release", "release", Release());
  if (*BuildCommit() == '\0') {
    section.Missing("commit", "commit", "built from sources without a history");
  } else {
    section.Text("commit", "commit", BuildCommit());
  }
  section.Text("compiler", "compiler", CompilerName());
  section.Text("instructionSet", "instruction set", NameOf(PickInstructionSet()));
  return section;
}

SReportSection LibrarySection(DspBinding& dsp, const std::string& path) {
  SReportSection section{"library", "Downconverter library", {}};
  section.Text("path", "path", WithoutHome(path));
  const bool sound = BindDsp(dsp, path) != 0;
  if (!sound && dsp.missing.empty()) {
    section.Missing("entryPoints", "entry points", ProblemOf(dsp, path));
    return section;
  }
  const auto found = static_cast<std::int64_t>(kEntryPoints - dsp.missing.size());
  section.Number("entryPoints", "entry points", found,
                 Format("%lld of %u", static_cast<long long>(found), static_cast<unsigned>(kEntryPoints)));
  if (!sound) {
    section.facts.back().strProblem = ProblemOf(dsp, path);
    return section;
  }
  section.Flag("resumes", "can begin within a signal", dsp.DownconvertResume != nullptr,
               dsp.DownconvertResume != nullptr ? "yes" : "no");
  const SLibraryDescription description = DescribeLibrary(dsp);
  section.Text("version", "version",
               platform::Finding{description.version.value_or(""), description.version ? "" : "it does not tell"});
  section.Text("instructionSet", "instruction set",
               platform::Finding{description.set.value_or(""), description.set ? "" : "it does not tell"});
  return section;
}

std::string VersionReport(const std::string& library) {
  std::string text = VersionInfo().strLongTitle;
  const auto add = [&text](const char* label, const std::string& value) {
    text += Format("\n%s: %s", label, Printable(value).c_str());
  };
  add("Release", Release());
  add("Commit", Commit());
  add("Compiler", CompilerName());
  add("Instruction set", std::string(NameOf(PickInstructionSet())) + " (this processor has " + KnownSets() + ")");
  DspBinding dsp;
  if (BindDsp(dsp, library) != 0) {
    const SLibraryDescription description = DescribeLibrary(dsp);
    add("Library", Format("Vantrel %s, %s", description.version.value_or("of unknown version").c_str(),
                          description.set.value_or("instruction set unknown").c_str()));
  } else {
    add("Library", "not usable: " + ProblemOf(dsp, library));
  }
  return text;
}

}  // namespace carvello
