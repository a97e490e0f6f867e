#include "doctor/report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace carvello {
namespace {

using testing::HasSubstr;

SReport Example() {
  SReport report;
  SReportSection one{"one", "The One", {}};
  one.Text("name", "name", "a\nb");
  one.Number("bytes", "size", std::int64_t{1'500'000}, ShownBytes(1'500'000));
  one.Missing("lost", "what is lost", "nobody knows");
  one.None("limit", "limit");
  one.Flag("right", "result", false, "WRONG");
  report.sections.push_back(one);
  for (const char* folder : {"a", "b"}) {
    SReportSection disk{"disks", std::string("Disk of ") + folder, {}, true};
    disk.Missing("free", "free", std::string("no ") + folder);
    report.sections.push_back(disk);
  }
  return report;
}

TEST(Report, TextHasALineForEveryFactAndTellsWhyOneIsMissing) {
  EXPECT_EQ(ReportText(Example()),
            "The One\n"
            "  name:         a\\nb\n"
            "  size:         1.5 MB\n"
            "  what is lost: not found (nobody knows)\n"
            "  limit:        none\n"
            "  result:       WRONG\n"
            "\n"
            "Disk of a\n"
            "  free:         not found (no a)\n"
            "\n"
            "Disk of b\n"
            "  free:         not found (no b)\n");
}

TEST(Report, JsonHasValuesOfTheirKindAndTheProblemsApart) {
  const nlohmann::json json = nlohmann::json::parse(ReportJson(Example()));
  EXPECT_EQ(json["one"]["name"], "a\nb");
  EXPECT_EQ(json["one"]["bytes"], 1'500'000);
  EXPECT_EQ(json["one"]["right"], false);
  EXPECT_TRUE(json["one"]["lost"].is_null());
  EXPECT_TRUE(json["one"]["limit"].is_null());
  ASSERT_EQ(json["disks"].size(), 2U);
  const nlohmann::json problems = {{"one.lost", "nobody knows"}, {"disks[0].free", "no a"}, {"disks[1].free", "no b"}};
  EXPECT_EQ(json["problems"], problems);
  EXPECT_EQ(json["sound"], true);
}

TEST(Report, OneFolderIsAnArrayAsWell) {
  SReport report = Example();
  report.sections.pop_back();
  EXPECT_EQ(nlohmann::json::parse(ReportJson(report))["disks"].size(), 1U);
}

TEST(ShownBytes, CountByThousands) {
  EXPECT_EQ(ShownBytes(0), "0 bytes");
  EXPECT_EQ(ShownBytes(999), "999 bytes");
  EXPECT_EQ(ShownBytes(1'000), "1.0 kB");
  EXPECT_EQ(ShownBytes(64e9), "64.0 GB");
  EXPECT_EQ(ShownBytes(640e9), "640 GB");
  EXPECT_EQ(ShownBytes(1e18), "1000 PB");
}

TEST(WithoutHome, HidesTheNameOfTheUserOnlyWhereThePathIsBelow) {
  EXPECT_EQ(WithoutHome("/home/ann", "/home/ann"), "~");
  EXPECT_EQ(WithoutHome("/home/ann/x", "/home/ann"), "~/x");
  EXPECT_EQ(WithoutHome("C:\\Users\\ann\\x", "C:\\Users\\ann"), "~\\x");
  EXPECT_EQ(WithoutHome("/home/anna", "/home/ann"), "/home/anna");
  EXPECT_EQ(WithoutHome("/elsewhere", "/home/ann"), "/elsewhere");
}

TEST(WithoutHome, LeavesPathsOfAUserWithoutAHomeAsTheyAre) {
  for (const char* const home : {"", "/", "C:\\"}) EXPECT_EQ(WithoutHome("C:\\x/y", home), "C:\\x/y");
}

}  // namespace
}  // namespace carvello
