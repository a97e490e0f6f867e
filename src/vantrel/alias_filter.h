// Decimation filters that stop only what would fold onto the channel. Between those bands the response is free (it
// stays about within the pass band's gain): what folds there lies beside the channel, and the stages behind remove it.
// That makes the filters of the first stages, where the samples are many, two to four times shorter than low-passes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantrel {

// The taps of a linear-phase filter in front of a decimation, an odd number, the middle one at the output's time: one
// less than a multiple of what kernels take at a time, for filters between these would take them as long. The gain is 1
// at 0 Hz, within 0.001 dB of it up to passEdge, and below -118 dB within stopEdge of every multiple of the decimated
// rate. Both edges are in cycles per input sample. Throws std::domain_error when the bands leave too little room
// between them.
//
// The least maximum of the weighted error comes by Lawson's iteration ("Contributions to the theory of linear least
// maximum approximations", 1961) over least-squares solutions on a grid of frequencies.
std::vector<double> DesignAliasFilter(std::uint64_t decimation, double passEdge, double stopEdge);

// About how many taps that takes for each input sample that an output sample stands for, where the decimated rate is
// `ratio` rates of the channel: to compare plans with.
double AliasFilterTapsPerInput(double ratio);

}  // namespace vantrel
