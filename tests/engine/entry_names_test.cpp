#include "engine/entry_names.h"

#include <gtest/gtest.h>

namespace carvello {
namespace {

constexpr OutputKey Output(std::int64_t start) {
  return {7'100'000, 10'000, start, 0};
}

TEST(EntryNames, LaterOutputsOfAStemGetTheNextNumber) {
  CEntryNames names;
  EXPECT_EQ(names.Take("a", Output(0)), 1);
  EXPECT_EQ(names.Take("a", Output(1)), 2);
  EXPECT_EQ(names.Take("a", Output(2)), 3);
  EXPECT_EQ(names.Take("b", Output(1)), 1) << "another stem";
}

TEST(EntryNames, EntriesOfTheSameOutputShareANumber) {
  CEntryNames names;
  names.Take("a", Output(0));
  EXPECT_EQ(names.Take("a", Output(1)), 2);
  EXPECT_EQ(names.Take("a", Output(1)), 2);
  EXPECT_EQ(names.Take("a", Output(2)), 3);
  names.GiveBack("a", Output(1));
  EXPECT_EQ(names.Take("a", Output(3)), 4) << "the other one still has it";
}

TEST(EntryNames, LowestNumberGivenBackIsTakenFirst) {
  CEntryNames names;
  for (std::int64_t start = 0; start < 4; ++start) names.Take("a", Output(start));
  names.GiveBack("a", Output(2));
  names.GiveBack("a", Output(0));
  EXPECT_EQ(names.Take("a", Output(10)), 1);
  EXPECT_EQ(names.Take("a", Output(11)), 3);
  EXPECT_EQ(names.Take("a", Output(12)), 5);
}

TEST(EntryNames, StemThatIsGivenBackWhollyBeginsAnew) {
  CEntryNames names;
  names.Take("a", Output(0));
  names.Take("a", Output(1));
  names.GiveBack("a", Output(0));
  names.GiveBack("a", Output(1));
  EXPECT_EQ(names.Take("a", Output(2)), 1);
  EXPECT_EQ(names.Take("a", Output(3)), 2);
}

TEST(EntryNames, NumberThatIsWantedIsTakenAndThoseBelowAreFree) {
  CEntryNames names;
  names.Take("a", Output(5), 3);
  names.Take("a", Output(5), 3);
  EXPECT_EQ(names.Take("a", Output(5)), 3) << "the same output";
  EXPECT_EQ(names.Take("a", Output(6)), 1);
  EXPECT_EQ(names.Take("a", Output(7)), 2);
  EXPECT_EQ(names.Take("a", Output(8)), 4);
  names.Take("b", Output(0), 2);
  names.Take("b", Output(1), 1);
  EXPECT_EQ(names.Take("b", Output(2)), 3);
}

TEST(EntryNames, NumberThatAnotherOutputHasIsNotTakenTwice) {
  CEntryNames names;
  EXPECT_EQ(names.Take("a", Output(0), 4), 4);
  EXPECT_EQ(names.Take("a", Output(1), 4), 1) << "ahead of all";
  EXPECT_EQ(names.Take("a", Output(2), 1), 2) << "among the first";
  for (const int number : {3, 5}) EXPECT_EQ(names.Take("a", Output(10 + number)), number);
  names.GiveBack("a", Output(0));
  EXPECT_EQ(names.Take("a", Output(20), 2), 4) << "given back, and the lowest";
}

TEST(EntryNames, WantedNumbersHoweverHighTakeNoRoom) {
  CEntryNames names;
  EXPECT_EQ(names.Take("a", Output(0), 2'000'000'000), 2'000'000'000);
  names.GiveBack("a", Output(0));
  EXPECT_EQ(names.Take("a", Output(1)), 1);
}

}  // namespace
}  // namespace carvello
