// Low-pass filters as a sinc under a Kaiser window (J. F. Kaiser, "Nonrecursive digital filter design using the
// I0-sinh window function", 1974), as a continuous function of time, so that one design serves every phase of a
// resampler.
#pragma once

#include <cstddef>

namespace vantrel {

class CKaiserLowPass {
 public:
  // Passes up to passEdge and stops from stopEdge, both in cycles per sample of the filter's input.
  CKaiserLowPass(double passEdge, double stopEdge);

  // The response is zero from this many input samples before and after its middle on, or somewhat earlier: it is as
  // many as whole granules of taps make. The response itself does not depend on them, so that it is the same function
  // of time for all sample rates.
  std::size_t HalfLength() const { return m_nHalfLength; }
  // The impulse response at `time` input samples from the middle. The gain at 0 Hz is 1 for the sum over all samples.
  double operator()(double time) const { return Near(time, time); }
  // The same as a smooth function around `middle`: it ends where that is beyond its end, and not between the two.
  double Near(double middle, double time) const;

  bool operator==(const CKaiserLowPass&) const = default;

 private:
  double m_fCutoff;      // cycles per sample
  double m_fHalfLength;  // of the response, in samples
  std::size_t m_nHalfLength;
};

}  // namespace vantrel
