// The chain of stages from one sample rate to a lower one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fir_stage.h"
#include "sample.h"

namespace vantrel {

class CDownconverter {
 public:
  // Rates in samples/s. Starts anew. Rates of 0, or an output rate above the input rate, leave nothing to run.
  void Init(std::uint32_t inputRate, std::uint32_t outputRate);
  // These settings hold until the object's end. Setting one after Init starts anew.
  void DisableFractionalResampler();
  void ExcludeFirstStage(bool exclude);
  void RunFirstStageOnly(bool only);

  // Rates of the samples that Process takes and gives, in whole Hz; 0 when there is nothing to run.
  std::uint32_t RateIn() const;
  std::uint32_t RateOut() const;

  // The next output sample is number `firstOutput` of the signal that begins with input sample 0, as if all before it
  // had been given. Returns the number of the input sample that Process has to be given next; nothing when there is
  // nothing to run, or for a number that is negative or beyond any signal.
  std::optional<std::int64_t> Resume(std::int64_t firstOutput);

  // Returns the count of samples given, at most `count`. Input and output must not overlap.
  std::size_t Process(const SComplex* input, std::size_t count, SComplex* output);

  // The stages in words, a line each.
  std::string Description() const;

 private:
  // A stage and the samples that it gives for one piece of input.
  struct SLink {
    CFirStage stage;
    std::vector<SComplex> output;
    double fInputRate;
    double fOutputRate;
  };

  void Build();
  std::size_t RunPiece(const SComplex* input, std::size_t count, SComplex* output);

  std::uint32_t m_nInputRate = 0;
  std::uint32_t m_nOutputRate = 0;
  bool m_bWholeNumber = false;
  bool m_bExcludeFirst = false;
  bool m_bFirstOnly = false;

  bool m_bReady = false;
  double m_fRateIn = 0.0;
  double m_fRateOut = 0.0;
  std::vector<SLink> m_Chain;
};

}  // namespace vantrel
