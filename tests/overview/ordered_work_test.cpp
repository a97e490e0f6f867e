#include "overview/ordered_work.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

#include "overview/formula_source.h"

namespace carvello::test {
namespace {

// Notes the order of what it is asked.
class CNotingWorker : public IUnitWorker {
 public:
  explicit CNotingWorker(std::vector<std::int64_t>& merged, std::int64_t fails = -1)
      : m_merged(merged), m_nFails(fails) {}
  bool Read(std::int64_t unit, IFrameSource& source) override { return ReadAll(source, unit, &m_frame, 1); }
  void Work(std::int64_t unit) override {
    if (unit == m_nFails) throw std::bad_alloc();
    m_nFound = static_cast<std::int64_t>(m_frame.re);
  }
  void Merge(std::int64_t) override { m_merged.push_back(m_nFound); }

 private:
  std::vector<std::int64_t>& m_merged;
  std::int64_t m_nFails;
  SComplex m_frame;
  std::int64_t m_nFound = -1;
};

CFormulaSource Counting(std::int64_t frames) {
  return {frames, [](std::int64_t n) { return SComplex{static_cast<float>(n), 0.0f}; }};
}

constexpr auto kAlways = [](double) { return true; };

TEST(OrderedWork, MergesEveryUnitInOrderWithAnyNumberOfThreads) {
  for (const unsigned nThreads : {0u, 1u, 2u, 7u}) {
    CFormulaSource source = Counting(500);
    std::vector<std::int64_t> merged;
    std::string error;
    EXPECT_TRUE(WorkInOrder(
        500, nThreads, source, [&] { return std::make_unique<CNotingWorker>(merged); }, kAlways, error));
    ASSERT_EQ(merged.size(), 500u);
    for (std::size_t i = 0; i < merged.size(); ++i) EXPECT_EQ(merged[i], static_cast<std::int64_t>(i));
  }
}

TEST(OrderedWork, TellsWhatIsDoneAndEndsWhenAsked) {
  CFormulaSource source = Counting(1'000);
  std::vector<std::int64_t> merged;
  std::string error = "none";
  double fLast = 0.0;
  const auto goesOn = [&](double done) {
    EXPECT_GE(done, fLast);
    fLast = done;
    return done < 0.25;
  };
  EXPECT_FALSE(WorkInOrder(
      1'000, 2, source, [&] { return std::make_unique<CNotingWorker>(merged); }, goesOn, error));
  EXPECT_EQ(error, "");
  EXPECT_GE(merged.size(), 250u);
  EXPECT_LT(merged.size(), 1'000u);
}

TEST(OrderedWork, TellsWhyTheSourceCannotBeRead) {
  for (const unsigned nThreads : {1u, 3u}) {
    CFormulaSource source = Counting(1'000);
    source.FailFrom(70);
    std::vector<std::int64_t> merged;
    std::string error;
    EXPECT_FALSE(WorkInOrder(
        1'000, nThreads, source, [&] { return std::make_unique<CNotingWorker>(merged); }, kAlways, error));
    EXPECT_EQ(error, "made.wav: cannot be read");
    EXPECT_LE(merged.size(), 70u);
  }
}

TEST(OrderedWork, ASourceThatBecameShorterIsAnErrorToo) {
  CFormulaSource source = Counting(10);
  std::vector<std::int64_t> merged;
  std::string error;
  EXPECT_FALSE(WorkInOrder(
      11, 2, source, [&] { return std::make_unique<CNotingWorker>(merged); }, kAlways, error));
  EXPECT_NE(error, "");
}

TEST(OrderedWork, WantOfMemoryOnAnyThreadReachesTheCaller) {
  for (const unsigned nThreads : {1u, 3u}) {
    CFormulaSource source = Counting(100);
    std::vector<std::int64_t> merged;
    std::string error;
    EXPECT_THROW(
        WorkInOrder(
            100, nThreads, source, [&] { return std::make_unique<CNotingWorker>(merged, 50); }, kAlways, error),
        std::bad_alloc);
  }
}

}  // namespace
}  // namespace carvello::test
