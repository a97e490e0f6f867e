// The noise of a recording along its band, whatever stands in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace carvello {

// What a mean of powers of noise reaches with this chance, as a multiple of what it is on the average: of `count`
// independent powers. (E. B. Wilson and M. M. Hilferty, "The distribution of chi-square", 1931; too high by some dB for
// single powers and chances below 1e-6, and right to 0.1 dB from ten on.)
double MeanOfNoiseExceeds(double count, double chance);

// Independent powers that so many transforms under a window of Hann are worth, each overlapping the next by a half.
double IndependentTransforms(double transforms);

// Noise powers of all bins, from the means of `count` independent powers each. In blocks of bins a quarter of them is
// taken to hold no more than noise; a hump of these that is no wider than `widest` bins is none, but a slope is, as the
// edges of filters make it. Never below `least`.
std::vector<float> NoiseFloor(const std::vector<float>& means, double count, double least, std::size_t widest);

// How far the noise's power may lie above such a floor of so many bins, as a factor: three deviations.
double NoiseFloorSlack(std::size_t bins, double count);

}  // namespace carvello
