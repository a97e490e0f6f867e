#include "spectrum/fftw_peer.h"

#include <fftw3.h>

#include <algorithm>
#include <vector>

namespace carvello::bench {
namespace {

// Patience takes minutes for more.
constexpr std::size_t kPatientSize = 65'536;

class CPlan : public CFftwPeer {
 public:
  CPlan(std::size_t size, bool inverse, SComplex* in, SComplex* out) {
    const std::vector<SComplex> before(in, in + size);  // which planning overwrites
    m_Plan = fftwf_plan_dft_1d(static_cast<int>(size), reinterpret_cast<fftwf_complex*>(in),
                               reinterpret_cast<fftwf_complex*>(out), inverse ? FFTW_BACKWARD : FFTW_FORWARD,
                               size <= kPatientSize ? FFTW_PATIENT : FFTW_MEASURE);
    std::copy(before.begin(), before.end(), in);
  }
  ~CPlan() override { fftwf_destroy_plan(m_Plan); }

  void Execute() override { fftwf_execute(m_Plan); }

 private:
  fftwf_plan m_Plan;
};

}  // namespace

std::unique_ptr<CFftwPeer> CFftwPeer::Make(std::size_t size, bool inverse, SComplex* in, SComplex* out) {
  return std::make_unique<CPlan>(size, inverse, in, out);
}

}  // namespace carvello::bench
