// One filter of the chain at work: a polyphase FIR that keeps its state from call to call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fir_table.h"
#include "kernels.h"
#include "sample.h"
#include "stage_plan.h"

namespace vantrel {

// Output sample m is the filtered input at position m * nStep / nPhases: the filter's delay is taken out. Before the
// input there are zeros. A filter rings before its input begins, so a stage may give samples with negative numbers, and
// the one behind it takes them: what comes out at the end is what one filter would give. An output sample comes as soon
// as the input it needs is there, so a call never gives more than it takes, and no output depends on how the input was
// cut into calls.
class CFirStage {
 public:
  // The input begins that many samples before number 0, and so does the output.
  explicit CFirStage(const SStagePlan& plan, std::size_t inputLead = 0, std::size_t outputLead = 0);

  // Of a decimator whose input begins that many samples early: the output samples before number 0 that see any of it.
  static std::size_t OutputLead(const SStagePlan& plan, std::size_t inputLead);

  // The next output is number `output`, at most outputLead before 0. Returns the number of the input sample that
  // Process has to be given next; what the taps meet before the input begins is zero again.
  std::int64_t Resume(std::int64_t output);

  // Gives up to MaxOutput(count) samples; returns how many. Input and output must not overlap.
  std::size_t Process(const SComplex* input, std::size_t count, SComplex* output);
  // The most that a call with `count` samples gives, the first one at that.
  std::size_t MaxOutput(std::size_t count) const;

  const SStagePlan& Plan() const { return m_Plan; }
  const CFirTable& Table() const { return *m_pTable; }

 private:
  std::size_t Filter(const SComplex* samples, std::size_t firstTaps, std::size_t available, SComplex* output);
  std::size_t FilterSinglePhase(const SComplex* samples, std::size_t firstTaps, SComplex* output);
  std::size_t FilterPhases(const SComplex* samples, std::size_t firstTaps, SComplex* output);
  void PlaceInCubics(SDot& dot) const;

  SStagePlan m_Plan;
  std::shared_ptr<const CFirTable> m_pTable;
  std::size_t m_nWholeStep;         // from an output to the next one: input samples,
  std::uint64_t m_nPhaseStep;       // and phases
  std::vector<SComplex> m_History;  // input that later outputs need, with room for a filter's length of new input
  std::size_t m_nInputLead;
  std::size_t m_nOutputLead;
  std::size_t m_nHeld = 0;     // how much of the history is filled
  std::size_t m_nFirst = 0;    // where the next output's first tap stands, from the start of the history
  std::uint64_t m_nPhase = 0;  // how far behind a sample the next output stands, in 1 / nPhases samples
};

}  // namespace vantrel
