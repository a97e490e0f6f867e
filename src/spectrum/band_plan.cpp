#include "spectrum/band_plan.h"

#include <cmath>
#include <numeric>

namespace carvello {
namespace {

// Of the output rate: from here on the channel filter behind lets nothing through.
constexpr double kChannelStop = 0.55;

// Kaiser's formula: the transition of a filter of so many taps, in cycles per sample, rounded up to an even number of
// parts of a bin.
std::int64_t TransitionParts(std::int64_t halfTaps) {
  const double fTransition = (kFirstFilterAttenuation - 7.95) / (14.36 * 2.0 * static_cast<double>(halfTaps));
  return 2 * static_cast<std::int64_t>(std::ceil(0.5 * fTransition * static_cast<double>(kFrameSize * kPartsPerBin)));
}

// The remainder that is not negative.
std::int64_t Modulo(std::int64_t value, std::int64_t modulus) {
  const std::int64_t nRest = value % modulus;
  return nRest < 0 ? nRest + modulus : nRest;
}

// a * b modulo a number below 2^32.
std::uint64_t ProductModulo(std::uint64_t a, std::uint64_t b, std::uint64_t modulus) {
  return a % modulus * (b % modulus) % modulus;
}

// A band's place on the grid: where its middle samples begin and how they are turned.
void PlaceBand(const SBandWish& wish, std::uint64_t step, std::uint64_t phases, SBandPlan& plan) {
  // Shifts that are a multiple of the input rate apart are one.
  const std::int64_t nRate = wish.nInputRate;
  std::int64_t nShift = Modulo(wish.llShift, nRate);
  if (nShift > nRate / 2) nShift -= nRate;
  plan.nInputRate = wish.nInputRate;
  plan.nCentreBin = FloorDivide(2 * nShift * kFrameSize + nRate, 2 * nRate);
  plan.nMiddleShift = static_cast<std::uint32_t>(Modulo(nShift * plan.nDecimation, nRate));

  // So many output samples cover the filter's length and a middle sample.
  const std::uint64_t nCovered = static_cast<std::uint64_t>(kFrameMargin) * phases;
  plan.nLead = static_cast<std::uint32_t>((nCovered + step - 1) / step);
  const std::uint64_t nLeadSteps = plan.nLead * step;  // in parts of a sample; below 2^44
  const std::uint64_t nAboveWhole = nLeadSteps % phases;
  const std::int64_t llBegin =
      wish.llStart - static_cast<std::int64_t>(nLeadSteps / phases) - (nAboveWhole == 0 ? 0 : 1);
  plan.llFirst = FloorDivide(llBegin, plan.nDecimation);
  plan.nStep = step;
  plan.nPhases = phases;
  plan.nResidue = static_cast<std::uint64_t>(Modulo(llBegin, plan.nDecimation)) * phases +
                  (nAboveWhole == 0 ? 0 : phases - nAboveWhole);

  // What the oscillator turns from the first middle sample to the entry's start: shift * lead * step / (rate * phases)
  // of a circle. The step is the rate or the phases are 1, but for what they share with the other, so the denominator
  // fits 32 bits.
  const std::uint64_t nShared = std::gcd(step, static_cast<std::uint64_t>(nRate));
  const std::uint64_t nCircle = static_cast<std::uint64_t>(nRate) / nShared * phases;
  const auto nUnsignedShift = static_cast<std::uint64_t>(Modulo(nShift, static_cast<std::int64_t>(nCircle)));
  const std::uint64_t nTurn =
      ProductModulo(ProductModulo(nUnsignedShift, plan.nLead, nCircle), step / nShared, nCircle);
  plan.nTurn = static_cast<std::int64_t>(nTurn);
  plan.nCircle = static_cast<std::int64_t>(nCircle);
}

}  // namespace

std::optional<SBandPlan> PlanBand(const SBandWish& wish) {
  if (wish.nInputRate == 0 || wish.nPhases == 0 || wish.nStep < wish.nPhases) return std::nullopt;
  const std::uint64_t nCommon = std::gcd<std::uint64_t>(wish.nStep, wish.nPhases);
  const std::uint64_t nStep = wish.nStep / nCommon;
  const std::uint64_t nPhases = wish.nPhases / nCommon;

  SBandPlan plan;
  // The band's centre is up to half a bin beside the filter's.
  const double fOutput = static_cast<double>(nPhases) / static_cast<double>(nStep);
  const double fPass = kChannelStop * fOutput * static_cast<double>(kFrameSize * kPartsPerBin);
  plan.nPass = static_cast<std::int64_t>(std::ceil(fPass)) + kPartsPerBin / 2;
  for (plan.nDecimation = kLargestBandDecimation; plan.nDecimation >= 2; plan.nDecimation /= 2) {
    // A middle sample stands up to a decimation's step behind a whole one, and has the filter's length around it.
    plan.nHalfTaps = kFrameMargin - plan.nDecimation;
    plan.nStop = plan.nPass + TransitionParts(plan.nHalfTaps);
    // What folds lands outside of what the channel filter lets through.
    if (plan.nStop + plan.nPass <= plan.PointCount() * kPartsPerBin) {
      PlaceBand(wish, nStep, nPhases, plan);
      return plan;
    }
  }
  return std::nullopt;
}

SRateRatio SecondStageRatio(const SBandPlan& plan) {
  const std::uint64_t nInput = plan.nStep;
  const std::uint64_t nOutput = plan.nPhases * static_cast<std::uint64_t>(plan.nDecimation);
  const std::uint64_t nCommon = std::gcd(nInput, nOutput);
  return {static_cast<std::uint32_t>(nInput / nCommon), static_cast<std::uint32_t>(nOutput / nCommon)};
}

}  // namespace carvello
