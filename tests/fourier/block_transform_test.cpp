#include "fourier/block_transform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "fourier/transform_reference.h"

namespace carvello::test {
namespace {

// Errors' root of the mean square, of the values' one. A rounding errs by 2^-24 / root 3 of the value at most on the
// average, 2e-8 as values lie anywhere between two powers of two; a value is rounded about twice in each of the 20
// levels of radix 2 that the largest size has, and once for the roots of one. The errors' squares add up: 2e-8 x
// root(60) is 1.6e-7.
constexpr double kMeanTolerance = 2e-7;
// No single one is worse by more than what chance brings among 1,048,576.
constexpr double kPeakTolerance = 5.0 * kMeanTolerance;

std::vector<std::size_t> Sizes() {
  std::vector<std::size_t> sizes;
  for (std::size_t n = CBlockTransform::kSmallestSize; n <= CBlockTransform::kLargestSize; n *= 2) sizes.push_back(n);
  return sizes;
}

bool AreSameBits(const Samples& a, const Samples& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])) == 0;
}

Samples Forward(const CBlockTransform& transform, const Samples& in) {
  Samples out(in.size());
  Samples work(transform.WorkSize());
  transform.Forward(in.data(), out.data(), work.data());
  return out;
}

Samples Inverse(const CBlockTransform& transform, const Samples& in) {
  Samples out(in.size());
  Samples work(transform.WorkSize());
  transform.Inverse(in.data(), out.data(), work.data());
  return out;
}

Samples Exchanged(Samples samples) {
  for (SComplex& sample : samples) std::swap(sample.re, sample.im);
  return samples;
}

// What of the tolerance two transforms, one behind or beside the other, may take: their errors' squares add up.
constexpr double kOfTwo = 1.5;

void ExpectNear(const Samples& samples, const Exact& expected, double tolerances = 1.0) {
  const SError error = ErrorOf(samples, expected);
  EXPECT_LT(error.fMean, tolerances * kMeanTolerance);
  EXPECT_LT(error.fPeak, tolerances * kPeakTolerance);
}

TEST(BlockTransform, OfNoiseIsTheSumThatDefinesItInBothDirections) {
  for (const std::size_t nSize : Sizes()) {
    SCOPED_TRACE(nSize);
    const CBlockTransform transform(nSize);
    const Samples in = Noise(nSize, 1);
    ExpectNear(Forward(transform, in), ExactTransform(in, -1));
    ExpectNear(Inverse(transform, in), ExactTransform(in, 1));
  }
}

TEST(BlockTransform, OfAnImpulseTurnsEvenlyWhereverItStands) {
  for (const std::size_t nSize : Sizes()) {
    const CBlockTransform transform(nSize);
    for (const std::size_t nPlace : {std::size_t{0}, std::size_t{1}, nSize / 8 + 3, nSize / 2, nSize - 1}) {
      SCOPED_TRACE(std::to_string(nSize) + ", impulse at " + std::to_string(nPlace));
      Samples in(nSize);
      in[nPlace] = {1.0f, 0.0f};
      const Samples out = Forward(transform, in);
      double fLargest = 0.0;
      for (std::size_t k = 0; k < nSize; ++k) {
        const double fTurn = -static_cast<double>(nPlace * k % nSize) / static_cast<double>(nSize);
        const std::complex<double> expected = std::polar(1.0, 2.0 * std::numbers::pi * fTurn);
        fLargest = std::max(fLargest, std::abs(std::complex<double>(out[k].re, out[k].im) - expected));
      }
      // Its way leads through two roots of one in each step, and no sum: up to seven of them in a size of two halves,
      // three more for each level of rows above.
      EXPECT_LT(fLargest, nSize <= 16'384 ? 5e-7 : 8e-7);
    }
  }
}

TEST(BlockTransform, OfAToneIsOneBin) {
  for (const std::size_t nSize : Sizes()) {
    const CBlockTransform transform(nSize);
    for (const std::size_t nBin : {std::size_t{0}, std::size_t{1}, nSize / 4 - 1, nSize / 2, nSize - 3}) {
      SCOPED_TRACE(std::to_string(nSize) + ", bin " + std::to_string(nBin));
      Samples in(nSize);
      for (std::size_t n = 0; n < nSize; ++n) {
        const double fTurn = static_cast<double>(nBin * n % nSize) / static_cast<double>(nSize);
        in[n] = {static_cast<float>(32767.0 * std::cos(2.0 * std::numbers::pi * fTurn)),
                 static_cast<float>(32767.0 * std::sin(2.0 * std::numbers::pi * fTurn))};
      }
      Samples out = Forward(transform, in);
      const double fPeak = 32767.0 * static_cast<double>(nSize);
      EXPECT_NEAR(out[nBin].re / fPeak, 1.0, 1e-6);
      EXPECT_NEAR(out[nBin].im / fPeak, 0.0, 1e-6);
      out[nBin] = {};
      double fElsewhere = 0.0;
      for (const SComplex& sample : out) fElsewhere = std::max(fElsewhere, std::hypot(sample.re, sample.im) / fPeak);
      EXPECT_LT(20.0 * std::log10(fElsewhere), -135.0);
    }
  }
}

TEST(BlockTransform, IsLinear) {
  for (const std::size_t nSize : Sizes()) {
    SCOPED_TRACE(nSize);
    const CBlockTransform transform(nSize);
    const Samples a = Noise(nSize, 2);
    const Samples b = Noise(nSize, 3);
    Samples sum(nSize);
    for (std::size_t i = 0; i < nSize; ++i) sum[i] = {a[i].re + 3.0f * b[i].re, a[i].im + 3.0f * b[i].im};
    const Samples outA = Forward(transform, a);
    const Samples outB = Forward(transform, b);
    Exact expected(nSize);
    for (std::size_t i = 0; i < nSize; ++i) {
      expected[i] = {outA[i].re + 3.0 * outB[i].re, outA[i].im + 3.0 * outB[i].im};
    }
    ExpectNear(Forward(transform, sum), expected, kOfTwo);
  }
}

TEST(BlockTransform, OfAMultipleByAPowerOfTwoIsThatMultipleToTheLastBit) {
  for (const std::size_t nSize : Sizes()) {
    SCOPED_TRACE(nSize);
    const CBlockTransform transform(nSize);
    Samples in = Noise(nSize, 4);
    Samples expected = Forward(transform, in);
    for (Samples* pSamples : {&in, &expected}) {
      for (SComplex& sample : *pSamples) sample = {sample.re / 32768.0f, sample.im / 32768.0f};
    }
    EXPECT_TRUE(AreSameBits(Forward(transform, in), expected));
  }
}

TEST(BlockTransform, InverseOfForwardIsTheInputTimesTheSize) {
  for (const std::size_t nSize : Sizes()) {
    SCOPED_TRACE(nSize);
    const CBlockTransform transform(nSize);
    const Samples in = Noise(nSize, 5);
    Samples back = Inverse(transform, Forward(transform, in));
    const auto fSize = static_cast<float>(nSize);
    for (SComplex& sample : back) sample = {sample.re / fSize, sample.im / fSize};
    ExpectNear(back, ToExact(in), kOfTwo);
  }
}

TEST(BlockTransform, InverseIsForwardWithIAndQExchangedToTheLastBit) {
  for (const std::size_t nSize : Sizes()) {
    SCOPED_TRACE(nSize);
    const CBlockTransform transform(nSize);
    const Samples in = Noise(nSize, 6);
    EXPECT_TRUE(AreSameBits(Inverse(transform, in), Exchanged(Forward(transform, Exchanged(in)))));
  }
}

TEST(BlockTransform, ReadsOnlyItsInputAndWritesOnlyItsOutputAndWork) {
  static constexpr SComplex kGuard{-1.5f, 77.25f};
  const auto isGuard = [](const SComplex& sample) { return sample.re == kGuard.re && sample.im == kGuard.im; };
  for (const std::size_t nSize : Sizes()) {
    SCOPED_TRACE(nSize);
    const CBlockTransform transform(nSize);
    Samples in = Noise(nSize, 7);
    const Samples before = in;
    Samples out(nSize + 32, kGuard);
    Samples work(transform.WorkSize() + 32, kGuard);
    transform.Forward(in.data(), out.data() + 16, work.data() + 16);
    EXPECT_TRUE(AreSameBits(in, before));
    for (const Samples* pSamples : {&out, &work}) {
      EXPECT_TRUE(std::all_of(pSamples->begin(), pSamples->begin() + 16, isGuard));
      EXPECT_TRUE(std::all_of(pSamples->end() - 16, pSamples->end(), isGuard));
    }
    // What the work held before is nothing to the output.
    EXPECT_TRUE(AreSameBits(Samples(out.begin() + 16, out.end() - 16), Forward(transform, before)));
  }
}

// Also where no address is a multiple of a vector.
TEST(BlockTransform, HasTheSameBitsWithAllInstructionSetsAndAtAllAddresses) {
  for (const std::size_t nSize : Sizes()) {
    const Samples in = Noise(nSize + 3, 8);
    const Samples expected = Forward(CBlockTransform(nSize, EInstructionSet::Plain), Samples(in.begin(), in.end() - 3));
    const Samples moved = Forward(CBlockTransform(nSize, EInstructionSet::Plain), Samples(in.begin() + 3, in.end()));
    for (const EInstructionSet set : InstructionSets()) {
      SCOPED_TRACE(std::to_string(nSize) + " " + NameOf(set));
      const CBlockTransform transform(nSize, set);
      EXPECT_TRUE(AreSameBits(Forward(transform, Samples(in.begin(), in.end() - 3)), expected));
      Samples out(nSize + 1);
      Samples work(transform.WorkSize() + 5);
      transform.Forward(in.data() + 3, out.data() + 1, work.data() + 5);
      EXPECT_TRUE(AreSameBits(Samples(out.begin() + 1, out.end()), moved));
    }
  }
}

// What all of a size share is made by whichever is the first.
TEST(BlockTransform, MayBeMadeAndUsedBySeveralThreadsAtOnce) {
  for (const std::size_t nSize : Sizes()) {
    if (nSize > 65'536) break;  // those above are made as this one is, and take long under a sanitizer
    SCOPED_TRACE(nSize);
    const Samples in = Noise(nSize, 10);
    std::vector<Samples> outs(4);
    std::vector<std::thread> threads;
    threads.reserve(outs.size());
    for (Samples& out : outs) {
      threads.emplace_back([&in, &out, nSize] { out = Forward(CBlockTransform(nSize), in); });
    }
    for (std::thread& thread : threads) thread.join();
    for (const Samples& out : outs) EXPECT_TRUE(AreSameBits(out, outs[0]));
    ExpectNear(outs[0], ExactTransform(in, -1));
  }
}

// On every system: the noise is made of whole numbers, and so is what is made of the bits.
TEST(BlockTransform, HasTheBitsThatItHasEverywhere) {
  const std::vector<std::uint64_t> expected = {
      17187666402706838103u, 6671634011498360711u,  3737027962274248856u,  10171896846014926672u, 8364280622193100487u,
      3351767148782471376u,  17982867193450439329u, 618586265837176059u,   6902785356812468943u,  11766452776982121964u,
      17996803997161265769u, 13925962499786130008u, 14240428828010860348u, 7736772971986303875u,  4766168338550602379u};
  std::vector<std::uint64_t> found;
  for (const std::size_t nSize : Sizes()) {
    std::uint64_t nHash = 14695981039346656037u;
    const CBlockTransform transform(nSize);
    const Samples in = Noise(nSize, 9);
    for (const Samples& out : {Forward(transform, in), Inverse(transform, in)}) {
      for (const SComplex& sample : out) {
        for (const float fPart : {sample.re, sample.im}) {
          std::uint32_t nBits = 0;
          std::memcpy(&nBits, &fPart, sizeof nBits);
          nHash = (nHash ^ nBits) * 1099511628211u;
        }
      }
    }
    found.push_back(nHash);
  }
  EXPECT_EQ(found, expected);
}

}  // namespace
}  // namespace carvello::test
