#include "doctor/trial_cut.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <exception>
#include <memory>
#include <numbers>
#include <span>
#include <thread>
#include <vector>

#include "engine/converter_work.h"
#include "engine/entry_converter.h"
#include "engine/output_rate.h"
#include "support/text.h"

namespace carvello {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::int32_t kBlock = 262'144;
constexpr std::int64_t kShift = 109'375;  // whole periods in a block, so that one block stands for all
constexpr float kLevel = 8'192.0F;
// Input of half a second at least, however slow the machine is, and of four minutes at most, however fast.
constexpr int kFewestBlocks = 4;
constexpr int kMostBlocks = 2'000;
constexpr std::chrono::milliseconds kLongEnough{300};
// The filters' own run-in, and their run-out behind the end, are not held against the carrier.
constexpr double kSettling = 0.05;  // seconds

std::vector<SComplex> CarrierBlock() {
  std::vector<SComplex> block(kBlock);
  for (std::size_t i = 0; i < block.size(); ++i) {
    const double turns = std::fmod(static_cast<double>(i) * kShift / STrialCut::kInputRate, 1.0);
    const double angle = 2.0 * std::numbers::pi * turns;
    block[i] = {kLevel * static_cast<float>(std::cos(angle)), kLevel * static_cast<float>(std::sin(angle))};
  }
  return block;
}

// What one thread does with the block over and over again.
class CTrial {
 public:
  CTrial(const DspBinding& dsp, const std::vector<SComplex>& block)
      : m_block(block), m_pConverter(MakeConverter(EEngine::Library, dsp)) {}

  void Run(Clock::time_point end) noexcept {
    try {
      RunBlocks(end);
    } catch (const std::exception& error) {
      m_strNotTried = error.what();
    }
  }

  std::int64_t InputFrames() const { return m_nInput; }
  const std::vector<SComplex>& Output() const { return m_output; }
  const std::string& NotTried() const { return m_strNotTried; }

 private:
  void RunBlocks(Clock::time_point end) {
    if (const auto problem = m_pConverter->Begin(
            {.nInputRate = STrialCut::kInputRate, .nOutputRate = STrialCut::kOutputRate, .llShift = kShift})) {
      m_strNotTried = *problem;
      return;
    }
    for (int blocks = 0; blocks < kFewestBlocks || (blocks < kMostBlocks && Clock::now() < end); ++blocks) Convert();
    const std::int64_t due = OutputFramesDue(m_nInput, STrialCut::kInputRate, STrialCut::kOutputRate);
    // Twice the silence that the filters of any library could hold back, and an end where nothing comes.
    for (std::int64_t left = STrialCut::kInputRate; Given() < due && left > 0;
         left -= IEntryConverter::kSilenceFrames) {
      const std::span<const SComplex> samples = m_pConverter->ConvertSilence(m_work);
      Keep(samples.first(std::min(samples.size(), static_cast<std::size_t>(due - Given()))));
    }
  }

  void Convert() {
    const SInputBlock block{.pSamples = m_block.data(), .nCount = kBlock, .llPosition = m_nInput};
    const std::int32_t longest = std::min(m_pConverter->LongestPart(), kBlock);
    for (std::int32_t done = 0; done < kBlock;) {
      const std::int32_t count = std::min(longest, kBlock - done);
      Keep(m_pConverter->Convert({block, done, count, false}, m_work));
      done += count;
    }
    m_nInput += kBlock;
  }

  std::int64_t Given() const { return static_cast<std::int64_t>(m_output.size()); }
  void Keep(std::span<const SComplex> samples) { m_output.insert(m_output.end(), samples.begin(), samples.end()); }

  const std::vector<SComplex>& m_block;
  std::unique_ptr<IEntryConverter> m_pConverter;
  CConverterWork m_work;
  std::vector<SComplex> m_output;
  std::int64_t m_nInput = 0;
  std::string m_strNotTried;
};

STrialCut NotTried(const std::string& why) {
  STrialCut result;
  result.strNotTried = why;
  return result;
}

STrialCut Measured(const DspBinding& dsp, unsigned threads) {
  const std::vector<SComplex> block = CarrierBlock();
  std::vector<std::unique_ptr<CTrial>> trials;
  for (unsigned i = 0; i < threads; ++i) trials.push_back(std::make_unique<CTrial>(dsp, block));

  const Clock::time_point begin = Clock::now();
  const Clock::time_point end = begin + kLongEnough;
  std::vector<std::thread> helpers;
  try {
    helpers.reserve(threads);
    while (helpers.size() + 1 < threads) {
      helpers.emplace_back([&trial = *trials[helpers.size() + 1], end] { trial.Run(end); });
    }
  } catch (const std::exception&) {
    // With those that there are.
  }
  trials.resize(helpers.size() + 1);
  trials.front()->Run(end);
  for (std::thread& helper : helpers) helper.join();
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();

  STrialCut result;
  std::int64_t input = 0;
  for (const auto& pTrial : trials) {
    if (!pTrial->NotTried().empty()) return NotTried(pTrial->NotTried());
    input += pTrial->InputFrames();
    const std::int64_t due = OutputFramesDue(pTrial->InputFrames(), STrialCut::kInputRate, STrialCut::kOutputRate);
    if (result.strWrong.empty()) result.strWrong = CarrierProblem(pTrial->Output(), due, kLevel);
  }
  result.nThreads = static_cast<unsigned>(trials.size());
  result.fFrameRate = static_cast<double>(input) / std::max(seconds, 1e-9);
  result.nFrames = static_cast<std::int64_t>(trials.front()->Output().size());
  return result;
}

}  // namespace

std::string CarrierProblem(std::span<const SComplex> output, std::int64_t framesDue, float level) {
  if (static_cast<std::int64_t>(output.size()) != framesDue) {
    return Format("%zu frames came out where %lld were due", output.size(), static_cast<long long>(framesDue));
  }
  constexpr double kTolerance = 1e-3;  // of the level: the filters' ripple is a tenth of it
  constexpr auto kLeftOut = static_cast<std::size_t>(kSettling * STrialCut::kOutputRate);
  if (output.size() <= 2 * kLeftOut) return "too few frames came out to tell";
  double worst = 0;
  for (const SComplex& sample : output.subspan(kLeftOut, output.size() - 2 * kLeftOut)) {
    const double off = std::hypot(static_cast<double>(sample.re) - level, static_cast<double>(sample.im)) / level;
    worst = std::isfinite(off) ? std::max(worst, off) : HUGE_VAL;
  }
  if (worst <= kTolerance) return {};
  return Format("the carrier that was cut is off by %.3g of its level where %.0e is allowed", worst, kTolerance);
}

STrialCut TryCut(const DspBinding& dsp, unsigned threads) {
  try {
    return Measured(dsp, std::max(1U, threads));
  } catch (const std::exception& error) {
    return NotTried(error.what());
  }
}

}  // namespace carvello
