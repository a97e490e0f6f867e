// What entries cost on either road, in nanoseconds of processor time for each input sample. Measured once, on a machine
// of ours (bench_spectrum, "Road"), and part of the program: on every machine the same job takes the same roads.
// Another processor takes other times, but in much the same proportions.
#pragma once

#include <cstdint>

namespace carvello {

// What the spectrum costs once for all entries that share it.
double SharedSpectrumCost();

struct SEntryCosts {
  double fLibrary = 0.0;
  double fSpectrum = 0.0;  // beside what is shared
  bool bSpectrum = false;  // whether there is this road: the band may be too wide a part of the input's
};

// The output rate is the one asked for.
SEntryCosts EntryCosts(std::uint32_t inputRate, std::uint32_t outputRate);

}  // namespace carvello
