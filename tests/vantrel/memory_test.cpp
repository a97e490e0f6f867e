// What becomes of the library when memory is exhausted. Its entry points are compiled in, so that the allocations of
// this program are theirs.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "vantrel/fir_table.h"
#include "vantrel/oscillator.h"
#include "vantrel/vantrel.h"

namespace {

constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

// The allocations by their number, from 0 on, that fail: those from g_nFirstFailing up to, not including, g_nFirstGood.
std::atomic<std::uint64_t> g_nAllocations = 0;
std::atomic<std::uint64_t> g_nFirstFailing = kNever;
std::atomic<std::uint64_t> g_nFirstGood = kNever;

// Where the memory of malloc begins stands in front of what is given out.
void* Allocate(std::size_t size, std::size_t alignment) {
  const std::uint64_t nNumber = g_nAllocations++;
  if (nNumber >= g_nFirstFailing && nNumber < g_nFirstGood) return nullptr;
  void* const begin = std::malloc(size + alignment + sizeof(void*));
  if (begin == nullptr) return nullptr;
  const auto nLeast = reinterpret_cast<std::uintptr_t>(begin) + sizeof(void*);
  const auto nAddress = (nLeast + alignment - 1) / alignment * alignment;
  void* const memory = reinterpret_cast<void*>(nAddress);  // NOLINT(performance-no-int-to-ptr)
  std::memcpy(static_cast<char*>(memory) - sizeof(void*), &begin, sizeof(begin));
  return memory;
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* const memory = Allocate(size, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void Free(void* memory) {
  if (memory == nullptr) return;
  void* begin = nullptr;
  std::memcpy(&begin, static_cast<char*>(memory) - sizeof(void*), sizeof(begin));
  std::free(begin);
}

constexpr std::size_t kUsual = alignof(std::max_align_t);
constexpr std::size_t Value(std::align_val_t alignment) {
  return static_cast<std::size_t>(alignment);
}

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size, kUsual);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size, kUsual);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, Value(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, Value(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size, kUsual);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size, kUsual);
}
void operator delete(void* memory) noexcept {
  Free(memory);
}
void operator delete[](void* memory) noexcept {
  Free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  Free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  Free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  Free(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept {
  Free(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  Free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  Free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
  Free(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
  Free(memory);
}

namespace vantrel {
namespace {

using Samples = std::vector<SComplex>;

// While it lives, allocations fail from its `first` one on: one of them, or all.
class CFailingMemory {
 public:
  CFailingMemory(std::uint64_t first, bool forGood) : m_nBegin(g_nAllocations) {
    g_nFirstGood = forGood || first == kNever ? kNever : m_nBegin + first + 1;
    g_nFirstFailing = first == kNever ? kNever : m_nBegin + first;
  }
  ~CFailingMemory() { g_nFirstFailing = g_nFirstGood = kNever; }
  CFailingMemory(const CFailingMemory&) = delete;
  CFailingMemory& operator=(const CFailingMemory&) = delete;

  std::uint64_t Count() const { return g_nAllocations - m_nBegin; }

 private:
  std::uint64_t m_nBegin;
};

// Tables outlive their instances. Those of other tests would spare this one its designs.
void ForgetTables() {
  for (int i = 0; i < 64; ++i) {
    SStagePlan plan;
    plan.nPhases = 1;
    plan.fPassEdge = 0.1 + 1e-4 * i;
    plan.fStopEdge = 0.4;
    SharedFirTable(plan);
  }
}

bool SameBits(const Samples& a, const Samples& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(SComplex)) == 0;
}

Samples Noise(std::size_t count) {
  Samples samples(count);
  std::uint32_t nSeed = 1;
  const auto next = [&nSeed] {
    nSeed = nSeed * 1664525U + 1013904223U;
    return static_cast<float>(static_cast<std::int16_t>(nSeed >> 16));
  };
  for (SComplex& sample : samples) sample = {next(), next()};
  return samples;
}

// What a caller sees of an instance's life. No call of it takes memory of its own.
class CLife {
 public:
  explicit CLife(std::size_t inputCount) : m_Input(Noise(inputCount)), m_Shifted(inputCount), m_Output(inputCount) {}

  void Alloc() { m_nHandle = AllocInstance(L"Carvello"); }
  void Release() { ReleaseInstance(m_nHandle); }

  // Sets the rates and runs the input in pieces with three shifts, one of them without a table of whole periods.
  void Run(std::uint32_t inputRate, std::uint32_t outputRate, bool wholeNumber) {
    DownconvertInit(m_nHandle, inputRate, outputRate);
    if (wholeNumber) DisableFractionalResampler(m_nHandle);
    m_nOutput = 0;
    constexpr std::int64_t kShifts[] = {100000, 98765, -250};
    const std::size_t nPart = m_Input.size() / 3;
    for (std::size_t i = 0; i < 3; ++i) {
      const SComplex* source = m_Input.data() + i * nPart;
      NCO(m_nHandle, kShifts[i], inputRate, source, static_cast<std::uint32_t>(nPart), m_Shifted.data());
      std::uint32_t nGiven = 0;
      DownconvertRun(m_nHandle, m_Shifted.data(), static_cast<std::uint32_t>(nPart), m_Output.data() + m_nOutput,
                     &nGiven);
      m_nOutput += nGiven;
    }
    m_nRate = DownconvertRateOut(m_nHandle);
  }

  // The parts on their own.
  void RunPart(void (*init)(std::uint32_t, std::uint32_t, std::uint32_t) noexcept,
               void (*process)(std::uint32_t, const SComplex*, std::uint32_t, SComplex*, std::uint32_t*) noexcept) {
    init(m_nHandle, 48000, 7919);
    std::uint32_t nGiven = 0;
    process(m_nHandle, m_Input.data(), static_cast<std::uint32_t>(m_Input.size()), m_Output.data(), &nGiven);
    m_nOutput = nGiven;
  }

  std::uint32_t Handle() const { return m_nHandle; }
  std::uint32_t Rate() const { return m_nRate; }
  Samples Output() const { return {m_Output.begin(), m_Output.begin() + static_cast<std::ptrdiff_t>(m_nOutput)}; }

 private:
  Samples m_Input;
  Samples m_Shifted;
  Samples m_Output;
  std::size_t m_nOutput = 0;
  std::uint32_t m_nHandle = 0;
  std::uint32_t m_nRate = 0;
};

struct SJob {
  std::uint32_t nInputRate;
  std::uint32_t nOutputRate;
  bool bWholeNumber;
};

void PrintTo(const SJob& job, std::ostream* stream) {
  *stream << job.nInputRate << " to " << job.nOutputRate;
}

class ExhaustedMemory : public testing::TestWithParam<SJob> {};

// Decimators and taps that are cubic; one stage with a row of taps for each of its phases; no stage at all.
INSTANTIATE_TEST_SUITE_P(Jobs, ExhaustedMemory,
                         testing::Values(SJob{250000, 7919, false}, SJob{48000, 44100, false}, SJob{8000, 8000, false},
                                         SJob{2400000, 1500000, true}),
                         [](const testing::TestParamInfo<SJob>& job) {
                           return std::to_string(job.param.nInputRate) + "to" + std::to_string(job.param.nOutputRate);
                         });

// One allocation after the other fails, once and for good, until a life is through without meeting it.
TEST_P(ExhaustedMemory, EndsInTheRightSamplesOrInARateOfZeroAndNone) {
  const auto& [nInputRate, nOutputRate, bWholeNumber] = GetParam();
  CLife life(30000);
  life.Alloc();
  life.Run(nInputRate, nOutputRate, bWholeNumber);
  life.Release();
  const Samples whole = life.Output();
  const std::uint32_t nRate = life.Rate();
  ASSERT_FALSE(whole.empty());
  ASSERT_NE(nRate, 0u);

  for (const bool bForGood : {false, true}) {
    int nWithoutInstance = 0;
    int nWithoutSamples = 0;
    std::uint64_t nFailing = 0;
    for (bool bMet = true; bMet; ++nFailing) {
      ForgetTables();
      {
        const CFailingMemory memory(nFailing, bForGood);
        life.Alloc();
        life.Run(nInputRate, nOutputRate, bWholeNumber);
        bMet = memory.Count() > nFailing;
      }
      const Samples output = life.Output();
      if (life.Handle() == 0 || life.Rate() == 0) {
        EXPECT_TRUE(output.empty()) << "allocation " << nFailing;
        EXPECT_TRUE(bMet);
        ++(life.Handle() == 0 ? nWithoutInstance : nWithoutSamples);
      } else {
        EXPECT_EQ(life.Rate(), nRate);
        EXPECT_TRUE(SameBits(output, whole)) << "allocation " << nFailing;
      }
      // What failed once need not fail again.
      if (life.Handle() == 0) life.Alloc();
      life.Run(nInputRate, nOutputRate, bWholeNumber);
      life.Release();
      EXPECT_EQ(life.Rate(), nRate);
      ASSERT_TRUE(SameBits(life.Output(), whole)) << "after allocation " << nFailing;
      ASSERT_LT(nFailing, 10000u);
    }
    EXPECT_GT(nWithoutInstance, 2);
    EXPECT_GE(nWithoutSamples, nInputRate != nOutputRate ? 3 : 0);
    RecordProperty(bForGood ? "for_good" : "once", static_cast<int>(nFailing));
  }
}

TEST_P(ExhaustedMemory, IsNotMetByShiftingAndDecimating) {
  const auto& [nInputRate, nOutputRate, bWholeNumber] = GetParam();
  CLife life(30000);
  life.Alloc();
  life.Run(nInputRate, nOutputRate, bWholeNumber);
  const Samples whole = life.Output();
  Samples input = Noise(10000);
  Samples output(input.size());
  DownconvertInit(life.Handle(), nInputRate, nOutputRate);
  {
    const CFailingMemory memory(0, true);
    for (const std::int64_t nShift : {1, 2500, -99999, 0}) {
      for (const std::uint32_t nRate : {nInputRate, 44100U, 0U, 4294967291U}) {
        std::uint32_t nGiven = 0;
        NCO(life.Handle(), nShift, nRate, input.data(), 10000, input.data());
        DownconvertRun(life.Handle(), input.data(), 10000, output.data(), &nGiven);
      }
    }
    EXPECT_EQ(memory.Count(), 0u);
  }
  life.Release();
}

// A table that was made for one rate must not be read by the length of another.
TEST(ExhaustedMemoryOfTheOscillator, LeavesNoOldTableToReadBehind) {
  CLife life(30000);
  life.Alloc();
  DownconvertInit(life.Handle(), 48000, 48000);
  Samples samples(20000, {1.0F, 0.0F});
  Samples expected = samples;
  COscillator oscillator;
  const auto turn = [&](std::int64_t shift, std::uint32_t rate) {
    NCO(life.Handle(), shift, rate, samples.data(), 20000, samples.data());
  };
  {
    const CFailingMemory memory(0, true);
    turn(12000, 48000);  // four samples a period
    turn(1, 8192);       // the longest table
    turn(1, 48000);      // none of whole periods
  }
  for (const auto& [nShift, nRate] : {std::pair{12000, 48000U}, {1, 8192U}, {1, 48000U}}) {
    oscillator.Process(nShift, nRate, expected.data(), expected.size(), expected.data());
  }
  EXPECT_TRUE(SameBits(samples, expected));
  life.Release();
}

TEST(ExhaustedMemoryOfTheParts, EndsInTheRightSamplesOrInNone) {
  CLife life(12000);
  life.Alloc();
  const auto check = [&](const std::function<void()>& run) {
    run();
    const Samples whole = life.Output();
    ASSERT_FALSE(whole.empty());
    for (const bool bForGood : {false, true}) {
      int nWithoutSamples = 0;
      std::uint64_t nFailing = 0;
      for (bool bMet = true; bMet; ++nFailing) {
        ForgetTables();
        {
          const CFailingMemory memory(nFailing, bForGood);
          run();
          bMet = memory.Count() > nFailing;
        }
        const Samples output = life.Output();
        if (output.empty()) ++nWithoutSamples;
        EXPECT_TRUE(output.empty() || SameBits(output, whole)) << "allocation " << nFailing;
        run();
        ASSERT_TRUE(SameBits(life.Output(), whole)) << "after allocation " << nFailing;
      }
      EXPECT_GT(nWithoutSamples, 2);
    }
  };
  check([&] { life.RunPart(FractionalInit, FractionalProcess); });
  check([&] { life.RunPart(PartionedFFTInit, PartionedFFTProcess); });
  life.Release();
}

TEST(ExhaustedMemoryOfDiagnostics, GivesTheWholeTextOrNone) {
  CLife life(30000);
  life.Alloc();
  DownconvertInit(life.Handle(), 250000, 7919);
  char text[4096];
  const std::uint32_t nLength = Diagnostics(life.Handle(), text, sizeof text);
  ASSERT_GT(nLength, 100u);
  const std::string strText = text;
  std::uint64_t nFailing = 0;
  int nWithout = 0;
  for (bool bMet = true; bMet; ++nFailing) {
    text[0] = '\0';
    std::uint32_t nTold = 0;
    {
      const CFailingMemory memory(nFailing, true);
      nTold = Diagnostics(life.Handle(), text, sizeof text);
      bMet = memory.Count() > nFailing;
    }
    EXPECT_TRUE(nTold == 0 || nTold == nLength) << nTold;
    EXPECT_EQ(text, nTold == 0 ? std::string() : strText);
    nWithout += nTold == 0 ? 1 : 0;
  }
  EXPECT_GT(nWithout, 2);
  life.Release();
}

TEST(ExhaustedMemoryOfStages, LeavesNoneUntilTheyAreSetAgain) {
  CLife life(30000);
  life.Alloc();
  life.Run(2400000, 50000, false);
  const Samples whole = life.Output();
  for (const auto set : {FirstStageOnly, FirstStageExclude}) {
    std::uint64_t nFailing = 0;
    for (bool bMet = true; bMet; ++nFailing) {
      ForgetTables();
      {
        const CFailingMemory memory(nFailing, true);
        set(life.Handle(), 1);
        bMet = memory.Count() > nFailing;
      }
      EXPECT_EQ(DownconvertRateOut(life.Handle()) == 0, bMet) << "allocation " << nFailing;
      set(life.Handle(), 0);
      life.Run(2400000, 50000, false);
      ASSERT_TRUE(SameBits(life.Output(), whole)) << "after allocation " << nFailing;
    }
  }
  life.Release();
}

TEST(ExhaustedMemoryOfTheEnd, KeepsNothingFromEnding) {
  const std::uint32_t hInstance = AllocInstance(L"Carvello");
  const std::uint32_t hOther = AllocInstance(L"Carvello");
  DownconvertInit(hInstance, 48000, 8000);
  {
    const CFailingMemory memory(0, true);
    ReleaseInstance(hInstance);
    ReleaseInstance(hInstance);
    Closedown();
    EXPECT_EQ(AllocInstance(L"Carvello"), 0u);
    EXPECT_EQ(AllocInstance(nullptr), 0u);
  }
  EXPECT_EQ(DownconvertRateOut(hInstance), 0u);
  std::uint32_t nGiven = 7;
  SComplex sample;
  DownconvertRun(hOther, &sample, 1, &sample, &nGiven);
  EXPECT_EQ(nGiven, 7u) << "released, so nothing is done";
}

}  // namespace
}  // namespace vantrel
