#include "doctor/doctor_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "doctor/program_facts.h"
#include "fourier/instruction_set.h"
#include "support/platform.h"
#include "support/version.h"

namespace carvello {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string BesideProgram(std::string_view library) {
  return platform::JoinPath(platform::FolderOf(platform::ProgramPath()), platform::SharedLibraryFileName(library));
}

nlohmann::json Told(const SDoctorRequest& request) {
  return nlohmann::json::parse(ReportJson(MakeDoctorReport(request)));
}

TEST(VersionReport, TellsTheProgramOnItsFirstLineAndThenWhatItIsMadeOf) {
  SetBuildCommit("0123456789abcdef, modified");
  EXPECT_THAT(VersionReport(),
              AllOf(StartsWith(VersionInfo().strLongTitle + "\nRelease: 1.0.0\nCommit: 0123456789abcdef, modified\n"),
                    HasSubstr("\nCompiler: " + CompilerName() + "\n"),
                    HasSubstr(std::string("\nInstruction set: ") + NameOf(PickInstructionSet()) + " ("),
                    HasSubstr("\nLibrary: Vantrel 1.0.0, ")));
  SetBuildCommit("");
  EXPECT_THAT(VersionReport(), HasSubstr("\nCommit: not known: built from sources without a history\n"));
}

TEST(VersionReport, TellsWhyTheLibraryCannotBeUsed) {
  EXPECT_THAT(VersionReport("/no/such/library"), HasSubstr("\nLibrary: not usable: "));
  EXPECT_THAT(VersionReport(BesideProgram("IncompleteVantrel")),
              AllOf(HasSubstr("\nLibrary: not usable: it lacks "), HasSubstr("NCO")));
}

TEST(DoctorReport, HasEverySectionAndNoProblemOnASoundSystem) {
  const nlohmann::json json =
      Told({.folders = {platform::TempFolder()}, .bMeasure = true, .linked = {{"Qt", "6.4.2"}}});
  EXPECT_EQ(json["program"]["compiler"], CompilerName());
  EXPECT_EQ(json["program"]["Qt"], "6.4.2");
  EXPECT_EQ(json["library"]["entryPoints"], 18);
  EXPECT_EQ(json["library"]["version"], "1.0.0");
  EXPECT_EQ(json["library"]["instructionSet"], json["program"]["instructionSet"]);
  EXPECT_GE(json["system"]["processorsAllowed"], 1);
  EXPECT_GT(json["system"]["memoryBytes"], 1'000'000);
  EXPECT_THAT(json["system"]["utcOffset"].get<std::string>(), testing::MatchesRegex("...:.."));
  EXPECT_EQ(json["disks"][0]["state"], "writable");
  EXPECT_GT(json["disks"][0]["writeBytesPerSecond"], 0);
  EXPECT_GT(json["cut"]["framesPerSecond"], 0);
  EXPECT_EQ(json["cut"]["right"], true);
  EXPECT_EQ(json["sound"], true);
}

TEST(DoctorReport, WithoutALibraryTellsAllTheRest) {
  const nlohmann::json json =
      Told({.folders = {platform::TempFolder()}, .bMeasure = true, .strLibrary = "/no/library"});
  EXPECT_TRUE(json["library"]["entryPoints"].is_null());
  EXPECT_NE(json["problems"]["library.entryPoints"], "");
  EXPECT_EQ(json["problems"]["cut.framesPerSecond"], "there is no downconverter library");
  EXPECT_FALSE(json["system"]["system"].is_null());
  EXPECT_GT(json["disks"][0]["freeBytes"], 0);
  EXPECT_EQ(json["sound"], true);
}

TEST(DoctorReport, OfAnIncompleteLibraryNamesWhatItLacks) {
  const nlohmann::json json = Told({.folders = {}, .bMeasure = true, .strLibrary = BesideProgram("IncompleteVantrel")});
  EXPECT_LT(json["library"]["entryPoints"], 18);
  EXPECT_THAT(json["problems"]["library.entryPoints"].get<std::string>(), HasSubstr("it lacks "));
  EXPECT_FALSE(json.contains("disks"));
}

TEST(DoctorReport, WithoutMeasuringSaysSo) {
  const nlohmann::json json = Told({.folders = {platform::TempFolder()}, .bMeasure = false});
  EXPECT_FALSE(json["disks"][0].contains("writeBytesPerSecond"));
  EXPECT_THAT(json["problems"]["cut.framesPerSecond"].get<std::string>(), HasSubstr("not measured"));
  EXPECT_EQ(json["sound"], true);
}

}  // namespace
}  // namespace carvello
