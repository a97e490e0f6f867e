// Which filters bring one sample rate to another.
#pragma once

#include <cstdint>
#include <vector>

namespace vantrel {

// One filter: output sample m stands at input position m * nStep / nPhases, exactly. It passes up to fPassEdge, in
// cycles per input sample.
struct SStagePlan {
  enum class EKind {
    LowPass,     // stops everything from fStopEdge on
    AliasBands,  // decimates by nStep and stops only what folds onto the channel: all within fStopEdge of the multiples
                 // of its output rate
  };
  EKind kind = EKind::LowPass;
  std::uint64_t nStep = 1;
  std::uint64_t nPhases = 1;
  double fPassEdge = 0.0;
  double fStopEdge = 0.0;
  // Of a channel filter: the stages before it, whose gain in the channel it makes up for.
  std::vector<SStagePlan> decimators;

  double Ratio() const { return static_cast<double>(nStep) / static_cast<double>(nPhases); }
  bool operator==(const SStagePlan&) const = default;
};

// The stages for input rate : output rate = numerator : denominator, at least 1 : 1. None when the rates are equal.
// All but the last decimate by whole numbers and stop alias bands; the last one is the channel filter, flat to 0.45 and
// closed from 0.55 of the output rate, makes the rest of the ratio, and takes back what the others do to the channel:
// the response there is the same for all chains.
std::vector<SStagePlan> PlanStages(std::uint64_t numerator, std::uint64_t denominator);

// The last stage on its own.
SStagePlan PlanChannelFilter(std::uint64_t numerator, std::uint64_t denominator);

}  // namespace vantrel
