#include "vantrel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "instance_registry.h"
#include "kernels.h"

namespace {

using vantrel::SComplex;
using vantrel::SInstance;

// The channel filter grows with the ratio; beyond these, decimating first is the way.
constexpr std::uint32_t kLargestFractionalRatio = 16;
constexpr std::uint32_t kLargestPartitionedRatio = 256;

vantrel::CInstanceRegistry& Registry() {
  static vantrel::CInstanceRegistry s_Registry;
  return s_Registry;
}

std::atomic<std::uint32_t> g_nAdvancedMode = 0;

// The callers are C: no exception leaves. Where memory is exhausted, what was asked for is not there afterwards.
template <class TCall>
void Guarded(TCall call) noexcept {
  try {
    call();
  } catch (const std::exception&) {
    return;
  }
}

// Runs `call` on the instance, when there is one.
template <class TCall>
void WithInstance(std::uint32_t handle, TCall call) noexcept {
  Guarded([&] {
    if (const std::shared_ptr<SInstance> pInstance = Registry().Find(handle)) call(*pInstance);
  });
}

bool AreRatesInRange(std::uint32_t inputRate, std::uint32_t outputRate, std::uint32_t largestRatio) {
  return outputRate > 0 && outputRate <= inputRate && inputRate <= std::uint64_t{largestRatio} * outputRate;
}

// Feeds the processor when there is one and all pointers are there. The count is that of the samples given.
template <class TProcessor>
void Feed(TProcessor* processor, const SComplex* input, std::uint32_t inputCount, SComplex* output,
          std::uint32_t* outputCount) {
  if (outputCount == nullptr) return;
  *outputCount = 0;
  if (processor == nullptr || input == nullptr || output == nullptr) return;
  *outputCount = static_cast<std::uint32_t>(processor->Process(input, inputCount, output));
}

std::string AsciiText(const wchar_t* text) {
  std::string strText;
  for (; text != nullptr && *text != L'\0'; ++text) {
    strText += *text >= L' ' && *text <= L'~' ? static_cast<char>(*text) : '?';
  }
  return strText;
}

}  // namespace

std::uint32_t AllocInstance(const wchar_t* applicationName) noexcept {
  std::uint32_t nHandle = 0;
  Guarded([&] {
    vantrel::Kernels();  // picked here at the latest, and then for good
    auto pInstance = std::make_shared<SInstance>();
    pInstance->strApplication = AsciiText(applicationName);
    nHandle = Registry().Add(std::move(pInstance));
  });
  return nHandle;
}

void ReleaseInstance(std::uint32_t handle) noexcept {
  Guarded([&] { Registry().Remove(handle); });
}

void Closedown() noexcept {
  Guarded([] { Registry().RemoveAll(); });
}

void DownconvertInit(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) noexcept {
  WithInstance(handle, [&](SInstance& instance) {
    instance.oscillator.Seek(0);
    instance.downconverter.Init(inputRate, outputRate);
  });
}

void DisableFractionalResampler(std::uint32_t handle) noexcept {
  WithInstance(handle, [&](SInstance& instance) { instance.downconverter.DisableFractionalResampler(); });
}

std::uint32_t DownconvertRateIn(std::uint32_t handle) noexcept {
  std::uint32_t nRate = 0;
  WithInstance(handle, [&](SInstance& instance) { nRate = instance.downconverter.RateIn(); });
  return nRate;
}

std::uint32_t DownconvertRateOut(std::uint32_t handle) noexcept {
  std::uint32_t nRate = 0;
  WithInstance(handle, [&](SInstance& instance) { nRate = instance.downconverter.RateOut(); });
  return nRate;
}

std::int64_t DownconvertResume(std::uint32_t handle, std::int64_t firstOutput) noexcept {
  std::int64_t nInput = -1;
  WithInstance(handle, [&](SInstance& instance) {
    const std::optional<std::int64_t> nFirstInput = instance.downconverter.Resume(firstOutput);
    if (!nFirstInput) return;
    nInput = *nFirstInput;
    instance.oscillator.Seek(static_cast<std::uint64_t>(nInput));
  });
  return nInput;
}

void NCO(std::uint32_t handle, std::int64_t shift, std::uint32_t inputRate, const SComplex* source, std::uint32_t count,
         SComplex* destination) noexcept {
  if (source == nullptr || destination == nullptr) return;
  WithInstance(handle,
               [&](SInstance& instance) { instance.oscillator.Process(shift, inputRate, source, count, destination); });
}

void DownconvertRun(std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                    std::uint32_t* outputCount) noexcept {
  WithInstance(handle,
               [&](SInstance& instance) { Feed(&instance.downconverter, input, inputCount, output, outputCount); });
}

std::uint32_t Diagnostics(std::uint32_t handle, char* text, std::uint32_t capacity) noexcept {
  std::uint32_t nLength = 0;
  WithInstance(handle, [&](SInstance& instance) {
    const std::string strText =
        instance.strApplication + "\nVantrel " VANTREL_VERSION "\n" + instance.downconverter.Description();
    nLength = static_cast<std::uint32_t>(strText.size());
    if (text == nullptr || capacity == 0) return;
    const std::size_t nFits = std::min<std::size_t>(strText.size(), capacity - 1);
    std::copy_n(strText.data(), nFits, text);
    text[nFits] = '\0';
  });
  return nLength;
}

void FirstStageExclude(std::uint32_t handle, std::uint32_t exclude) noexcept {
  WithInstance(handle, [&](SInstance& instance) { instance.downconverter.ExcludeFirstStage(exclude != 0); });
}

void FirstStageOnly(std::uint32_t handle, std::uint32_t only) noexcept {
  WithInstance(handle, [&](SInstance& instance) { instance.downconverter.RunFirstStageOnly(only != 0); });
}

void Advanced(std::uint32_t mode) noexcept {
  g_nAdvancedMode = mode;
}

std::uint32_t IsAdvanced() noexcept {
  return g_nAdvancedMode;
}

void FractionalInit(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) noexcept {
  WithInstance(handle, [&](SInstance& instance) {
    instance.pFractional.reset();
    if (!AreRatesInRange(inputRate, outputRate, kLargestFractionalRatio)) return;
    instance.pFractional = std::make_unique<vantrel::CFirStage>(vantrel::PlanChannelFilter(inputRate, outputRate));
  });
}

void FractionalProcess(std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                       std::uint32_t* outputCount) noexcept {
  WithInstance(handle,
               [&](SInstance& instance) { Feed(instance.pFractional.get(), input, inputCount, output, outputCount); });
}

void PartionedFFTInit(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) noexcept {
  WithInstance(handle, [&](SInstance& instance) {
    instance.pPartitionedFilter.reset();
    if (!AreRatesInRange(inputRate, outputRate, kLargestPartitionedRatio)) return;
    const vantrel::SStagePlan plan = vantrel::PlanChannelFilter(inputRate, outputRate);
    instance.pPartitionedFilter =
        std::make_unique<vantrel::CPartitionedFilter>(vantrel::CKaiserLowPass(plan.fPassEdge, plan.fStopEdge));
  });
}

void PartionedFFTProcess(std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                         std::uint32_t* outputCount) noexcept {
  WithInstance(handle, [&](SInstance& instance) {
    Feed(instance.pPartitionedFilter.get(), input, inputCount, output, outputCount);
  });
}
