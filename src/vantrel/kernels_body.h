// The kernels, written once: each kernels_<set>.cpp sets the width of a vector, includes this file and is compiled
// with that set's options. No standard-library templates here: their instances could be shared with the rest of the
// program, which must run on any processor.
//
// Sums run in 16 lanes whatever the vector's width, and are added up in one order, so the sets differ by the rounding
// of fused multiply-adds only.

#pragma once

#include "kernels.h"

namespace vantrel {
namespace {

constexpr std::size_t kVectorFloats = VANTREL_VECTOR_BYTES / sizeof(float);
constexpr std::size_t kSumLanes = 16;
constexpr std::size_t kVectorsPerSum = kSumLanes / kVectorFloats;
static_assert(2 * kTapGranule % kSumLanes == 0);

typedef float VFloats __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
typedef float VFloatsInMemory __attribute__((vector_size(VANTREL_VECTOR_BYTES), aligned(4), may_alias));

inline VFloats Load(const float* memory) {
  return *reinterpret_cast<const VFloatsInMemory*>(memory);
}
inline void Store(float* memory, VFloats value) {
  *reinterpret_cast<VFloatsInMemory*>(memory) = value;
}

#if VANTREL_VECTOR_BYTES == 32
inline VFloats SwapPairs(VFloats v) {
  return __builtin_shufflevector(v, v, 1, 0, 3, 2, 5, 4, 7, 6);
}
inline VFloats EvenTwice(VFloats v) {
  return __builtin_shufflevector(v, v, 0, 0, 2, 2, 4, 4, 6, 6);
}
inline VFloats OddTwice(VFloats v) {
  return __builtin_shufflevector(v, v, 1, 1, 3, 3, 5, 5, 7, 7);
}
constexpr VFloats kMinusPlus = {-1, 1, -1, 1, -1, 1, -1, 1};
#else
inline VFloats SwapPairs(VFloats v) {
  return __builtin_shufflevector(v, v, 1, 0, 3, 2);
}
inline VFloats EvenTwice(VFloats v) {
  return __builtin_shufflevector(v, v, 0, 0, 2, 2);
}
inline VFloats OddTwice(VFloats v) {
  return __builtin_shufflevector(v, v, 1, 1, 3, 3);
}
constexpr VFloats kMinusPlus = {-1, 1, -1, 1};
#endif

inline VFloats Multiply(VFloats a, VFloats b) {
  return a * EvenTwice(b) + SwapPairs(a) * (kMinusPlus * OddTwice(b));
}

void Rotate(const float* source, float* destination, std::size_t count, const float* table, float phasorRe,
            float phasorIm) {
  VFloats phasor{};
  for (std::size_t i = 0; i < kVectorFloats; i += 2) {
    phasor[i] = phasorRe;
    phasor[i + 1] = phasorIm;
  }
  const std::size_t nFloats = 2 * count;
  std::size_t i = 0;
  for (; i + kVectorFloats <= nFloats; i += kVectorFloats) {
    Store(destination + i, Multiply(Load(source + i), Multiply(Load(table + i), phasor)));
  }
  // The rest goes through the same vector operations: a scalar loop might round differently, and the same sample would
  // depend on the size of the block that it came in.
  if (i < nFloats) {
    VFloats sample{};
    VFloats turn{};
    for (std::size_t k = 0; i + k < nFloats; ++k) {
      sample[k] = source[i + k];
      turn[k] = table[i + k];
    }
    const VFloats result = Multiply(sample, Multiply(turn, phasor));
    for (std::size_t k = 0; i + k < nFloats; ++k) destination[i + k] = result[k];
  }
}

// The sums of the even and of the odd lanes.
inline void StoreSum(const VFloats (&sum)[kVectorsPerSum], float* output) {
  float lanes[kSumLanes];
  for (std::size_t v = 0; v < kVectorsPerSum; ++v) Store(lanes + v * kVectorFloats, sum[v]);
  for (std::size_t nHalf = kSumLanes / 2; nHalf >= 2; nHalf /= 2) {
    for (std::size_t i = 0; i < nHalf; ++i) lanes[i] += lanes[i + nHalf];
  }
  output[0] = lanes[0];
  output[1] = lanes[1];
}

// As many sums at a time as the registers hold.
constexpr std::size_t kSumsAtOnce = 8 / kVectorsPerSum;

template <std::size_t kSums, bool kSameTaps>
inline void Dots(const float* const* inputs, const float* const* taps, std::size_t tapCount, float* output) {
  VFloats sum[kSums][kVectorsPerSum] = {};
  for (std::size_t i = 0; i < 2 * tapCount; i += kSumLanes) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kVectorsPerSum; ++v) {
      const std::size_t n = i + v * kVectorFloats;
#pragma GCC unroll 4
      for (std::size_t s = 0; s < kSums; ++s) sum[s][v] += Load(inputs[s] + n) * Load(taps[kSameTaps ? 0 : s] + n);
    }
  }
  for (std::size_t s = 0; s < kSums; ++s) StoreSum(sum[s], output + 2 * s);
}

void FirSinglePhase(const float* input, std::size_t stride, const float* taps, std::size_t tapCount, std::size_t count,
                    float* output) {
  const float* inputs[kSumsAtOnce];
  std::size_t n = 0;
  for (; n + kSumsAtOnce <= count; n += kSumsAtOnce) {
    for (std::size_t s = 0; s < kSumsAtOnce; ++s) inputs[s] = input + 2 * stride * (n + s);
    Dots<kSumsAtOnce, true>(inputs, &taps, tapCount, output + 2 * n);
  }
  for (; n < count; ++n) {
    inputs[0] = input + 2 * stride * n;
    Dots<1, true>(inputs, &taps, tapCount, output + 2 * n);
  }
}

void FirPhases(const float* input, const SDot* dots, std::size_t count, const float* rows, std::size_t tapCount,
               float* output) {
  const float* inputs[kSumsAtOnce];
  const float* taps[kSumsAtOnce];
  std::size_t n = 0;
  for (; n + kSumsAtOnce <= count; n += kSumsAtOnce) {
    for (std::size_t s = 0; s < kSumsAtOnce; ++s) {
      inputs[s] = input + 2 * dots[n + s].nFirst;
      taps[s] = rows + 2 * tapCount * dots[n + s].nRow;
    }
    Dots<kSumsAtOnce, false>(inputs, taps, tapCount, output + 2 * n);
  }
  for (; n < count; ++n) {
    inputs[0] = input + 2 * dots[n].nFirst;
    taps[0] = rows + 2 * tapCount * dots[n].nRow;
    Dots<1, false>(inputs, taps, tapCount, output + 2 * n);
  }
}

void FirCubic(const float* input, const SDot* dots, std::size_t count, const float* rows, std::size_t tapCount,
              float* output) {
  for (std::size_t n = 0; n < count; ++n) {
    const float* samples = input + 2 * dots[n].nFirst;
    const float* c0 = rows + 8 * tapCount * dots[n].nRow;
    const float* c1 = c0 + 2 * tapCount;
    const float* c2 = c1 + 2 * tapCount;
    const float* c3 = c2 + 2 * tapCount;
    const float fFraction = dots[n].fFraction;
    VFloats sum[kVectorsPerSum] = {};
    for (std::size_t i = 0; i < 2 * tapCount; i += kSumLanes) {
#pragma GCC unroll 4
      for (std::size_t v = 0; v < kVectorsPerSum; ++v) {
        const std::size_t k = i + v * kVectorFloats;
        const VFloats taps =
            ((Load(c3 + k) * fFraction + Load(c2 + k)) * fFraction + Load(c1 + k)) * fFraction + Load(c0 + k);
        sum[v] += Load(samples + k) * taps;
      }
    }
    StoreSum(sum, output + 2 * n);
  }
}

constexpr SKernels MakeKernels(const char* name) {
  return SKernels{name, Rotate, FirSinglePhase, FirPhases, FirCubic};
}

}  // namespace
}  // namespace vantrel
