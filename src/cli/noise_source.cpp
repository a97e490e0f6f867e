#include "cli/noise_source.h"

namespace carvello {

CNoiseSource::CNoiseSource(std::uint64_t seed) {
  // SplitMix64, by Steele, Lea and Flood: spreads a small seed over the whole state, which must not be all zero.
  for (std::uint64_t& word : m_state) {
    seed += 0x9E3779B97F4A7C15;
    std::uint64_t mixed = seed;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
    word = mixed ^ (mixed >> 31);
  }
}

}  // namespace carvello
