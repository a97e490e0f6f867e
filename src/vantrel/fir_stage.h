// One filter of the chain at work: a polyphase FIR that keeps its state from call to call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fir_table.h"
#include "sample.h"
#include "stage_plan.h"

namespace vantrel {

// Output sample m is the filtered input at position m * nStep / nPhases: the filter's delay is taken out. Before input
// sample 0 there are zeros. An output sample comes as soon as the input it needs is there, so a call never gives more
// than it takes, and no output depends on how the input was cut into calls.
class CFirStage {
 public:
  explicit CFirStage(const SStagePlan& plan);

  // Gives up to MaxOutput(count) samples; returns how many. Input and output must not overlap.
  std::size_t Process(const SComplex* input, std::size_t count, SComplex* output);
  // The most that a call with `count` samples gives.
  std::size_t MaxOutput(std::size_t count) const;

  const SStagePlan& Plan() const { return m_Plan; }
  const CFirTable& Table() const { return *m_pTable; }

 private:
  std::size_t Filter(const SComplex* samples, std::size_t firstTaps, std::size_t available, SComplex* output);
  std::size_t FilterSinglePhase(const SComplex* samples, std::size_t firstTaps, SComplex* output);
  std::size_t FilterPhases(const SComplex* samples, std::size_t firstTaps, SComplex* output);
  void NextPosition();

  SStagePlan m_Plan;
  std::shared_ptr<const CFirTable> m_pTable;
  std::vector<SComplex> m_History;  // input that later outputs need, with room for a filter's length of new input
  std::size_t m_nHeld;              // how much of it is filled
  std::size_t m_nFirst = 0;         // where the next output's first tap stands, from the start of the history
  std::uint64_t m_nPhase = 0;       // how far behind a sample the next output stands, in 1 / nPhases samples
};

}  // namespace vantrel
