// The taps of one stage, laid out for the kernels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "aligned_floats.h"
#include "kaiser_lowpass.h"
#include "stage_plan.h"

namespace vantrel {

// A filter with few phases has a row of taps for each. With many phases there are rows of cubic polynomials for
// kCubicRows equal pieces of the way from one input sample to the next; their error is below -140 dB of the filter's
// gain.
class CFirTable {
 public:
  explicit CFirTable(const SStagePlan& plan);

  bool IsCubic() const { return m_bCubic; }
  std::size_t TapCount() const { return m_nTaps; }
  // The tap that meets the input sample at or before the output's time.
  std::size_t MiddleTap() const { return m_nTaps / 2 - 1; }
  const float* Rows() const { return m_Rows.data(); }

  static constexpr std::uint64_t kMostExactPhases = 128;
  static constexpr std::uint64_t kCubicRows = 32;

 private:
  void FillAliasBands(const SStagePlan& plan);
  void FillExact(const CKaiserLowPass& design, const std::vector<double>& factors, std::uint64_t phases);
  void FillCubic(const CKaiserLowPass& design, const std::vector<double>& factors);
  std::vector<double> TapsAtPhase(const CKaiserLowPass& design, const std::vector<double>& factors, double middlePhase,
                                  double phase) const;

  bool m_bCubic;
  std::size_t m_nTaps = 0;
  AlignedFloats m_Rows;  // every tap twice in a row
};

// Tables are shared by all stages of the process that need the same one. They live as long as one of them, the last few
// that were made longer.
std::shared_ptr<const CFirTable> SharedFirTable(const SStagePlan& plan);

}  // namespace vantrel
