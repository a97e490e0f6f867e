#include "dsp/primitives.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#include "dsp/primitive_kernels.h"

namespace carvello {
namespace {

// The plain loops serve until InitPrimitives has picked others.
std::atomic<const SPrimitiveKernels*> g_pKernels = &kPlainPrimitives;

const SPrimitiveKernels& Kernels() {
  return *g_pKernels.load(std::memory_order_relaxed);
}

constexpr std::int32_t kLargestExponent = 126;  // of a factor that a float holds, and its inverse

constexpr std::align_val_t kAlignment{64};  // a cache line, and the widest vector there is

std::int32_t Check(const void* a, const void* b, std::int32_t length) {
  if (a == nullptr || b == nullptr) return kPrimitiveNullPointer;
  return length < 1 ? kPrimitiveBadLength : kPrimitiveOk;
}

template <class TElement>
std::int32_t Copy(const TElement* source, TElement* destination, std::int32_t length) {
  const std::int32_t nStatus = Check(source, destination, length);
  if (nStatus == kPrimitiveOk) std::memcpy(destination, source, static_cast<std::size_t>(length) * sizeof(TElement));
  return nStatus;
}

template <class TInteger>
std::int32_t Convert(void (*kernel)(const TInteger*, float*, std::size_t), const TInteger* source, float* destination,
                     std::int32_t length) {
  const std::int32_t nStatus = Check(source, destination, length);
  if (nStatus == kPrimitiveOk) kernel(source, destination, static_cast<std::size_t>(length));
  return nStatus;
}

ERounding RoundingOf(std::int32_t mode) {
  if (mode == 0) return ERounding::TowardsZero;
  return mode == 1 ? ERounding::HalfToEven : ERounding::HalfAway;
}

void* AllocAligned(std::int64_t length, std::size_t elementSize) {
  const auto nMost = static_cast<std::int64_t>(std::numeric_limits<std::ptrdiff_t>::max() / elementSize);
  if (length < 1 || length > nMost) return nullptr;
  return ::operator new(static_cast<std::size_t>(length) * elementSize, kAlignment, std::nothrow);
}

}  // namespace

void InitPrimitives() {
  g_pKernels.store(&PrimitiveKernels(PickInstructionSet()), std::memory_order_relaxed);
}

const SPrimitiveKernels& PrimitiveKernels([[maybe_unused]] EInstructionSet set) {
#ifdef CARVELLO_X86_64
  if (set == EInstructionSet::Avx512) return kAvx512Primitives;
  if (set == EInstructionSet::Avx2) return kAvx2Primitives;
#endif
  return kPlainPrimitives;
}

std::int32_t CopyFloat(const float* source, float* destination, std::int32_t length) {
  return Copy(source, destination, length);
}

std::int32_t CopyComplex(const SComplex* source, SComplex* destination, std::int32_t length) {
  return Copy(source, destination, length);
}

std::int32_t CopyBytes(const std::uint8_t* source, std::uint8_t* destination, std::int32_t length) {
  return Copy(source, destination, length);
}

std::int32_t MulConstInPlace(float value, float* buffer, std::int32_t length) {
  const std::int32_t nStatus = Check(buffer, buffer, length);
  if (nStatus != kPrimitiveOk || value == 1.0f) return nStatus;
  if (value == 0.0f) {
    std::fill_n(buffer, length, 0.0f);  // also where a product would be NaN
  } else {
    Kernels().Multiply(value, buffer, static_cast<std::size_t>(length));
  }
  return kPrimitiveOk;
}

std::int32_t DivConstInPlace(float value, float* buffer, std::int32_t length) {
  const std::int32_t nStatus = Check(buffer, buffer, length);
  if (nStatus != kPrimitiveOk) return nStatus;
  return value == 0.0f ? kPrimitiveDivideByZero : MulConstInPlace(1.0f / value, buffer, length);
}

std::int32_t Int8ToFloat(const std::int8_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Int8ToFloat, source, destination, length);
}

std::int32_t Int16ToFloat(const std::int16_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Int16ToFloat, source, destination, length);
}

std::int32_t Int24ToFloat(const std::uint8_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Int24ToFloat, source, destination, length);
}

std::int32_t Int32ToFloat(const std::int32_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Int32ToFloat, source, destination, length);
}

std::int32_t Uint8ToFloat(const std::uint8_t* source, float* destination, std::int32_t length, float zero) {
  const std::int32_t nStatus = Check(source, destination, length);
  if (nStatus == kPrimitiveOk) Kernels().Uint8ToFloat(source, destination, static_cast<std::size_t>(length), zero);
  return nStatus;
}

std::int32_t Uint16ToFloat(const std::uint16_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Uint16ToFloat, source, destination, length);
}

std::int32_t Uint24ToFloat(const std::uint8_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Uint24ToFloat, source, destination, length);
}

std::int32_t Uint32ToFloat(const std::uint32_t* source, float* destination, std::int32_t length) {
  return Convert(Kernels().Uint32ToFloat, source, destination, length);
}

std::int32_t DoubleToFloat(const double* source, float* destination, std::int32_t length, double factor) {
  const std::int32_t nStatus = Check(source, destination, length);
  if (nStatus == kPrimitiveOk) Kernels().DoubleToFloat(source, destination, static_cast<std::size_t>(length), factor);
  return nStatus;
}

std::int32_t SwapBytes(void* buffer, std::uint32_t valueBytes, std::int32_t length) {
  const std::int32_t nStatus = Check(buffer, buffer, length);
  if (nStatus != kPrimitiveOk) return nStatus;
  const auto nLength = static_cast<std::size_t>(length);
  switch (valueBytes) {
    case 1:
      return kPrimitiveOk;
    case 2:
      Kernels().SwapBytes16(static_cast<std::uint16_t*>(buffer), nLength);
      return kPrimitiveOk;
    case 3:
      Kernels().SwapBytes24(static_cast<std::uint8_t*>(buffer), nLength);
      return kPrimitiveOk;
    case 4:
      Kernels().SwapBytes32(static_cast<std::uint32_t*>(buffer), nLength);
      return kPrimitiveOk;
    case 8:
      Kernels().SwapBytes64(static_cast<std::uint64_t*>(buffer), nLength);
      return kPrimitiveOk;
    default:
      return kPrimitiveBadLength;
  }
}

std::int32_t FloatToInt16(const float* source, std::int16_t* destination, std::int32_t length, std::int32_t mode,
                          std::int32_t scale) {
  const std::int32_t nStatus = Check(source, destination, length);
  if (nStatus != kPrimitiveOk) return nStatus;
  // Beyond the limits here every value but 0 saturates, or every finite one gives 0.
  const std::int32_t nExponent = -std::clamp(scale, -250, 250);
  const ERounding rounding = RoundingOf(mode);
  const auto nLength = static_cast<std::size_t>(length);
  if (std::abs(nExponent) <= kLargestExponent) {
    Kernels().FloatToInt16(source, destination, nLength, rounding, std::ldexp(1.0f, nExponent));
    return kPrimitiveOk;
  }
  // The factor is beyond a float: in two steps.
  std::array<float, 1024> values;
  for (std::size_t nDone = 0; nDone < nLength; nDone += values.size()) {
    const std::size_t nPiece = std::min(values.size(), nLength - nDone);
    std::copy_n(source + nDone, nPiece, values.begin());
    Kernels().Multiply(std::ldexp(1.0f, nExponent / 2), values.data(), nPiece);
    Kernels().FloatToInt16(values.data(), destination + nDone, nPiece, rounding,
                           std::ldexp(1.0f, nExponent - nExponent / 2));
  }
  return kPrimitiveOk;
}

SComplex* AllocComplex(std::int64_t length) {
  return static_cast<SComplex*>(AllocAligned(length, sizeof(SComplex)));
}

std::int16_t* AllocInt16Pairs(std::int64_t length) {
  return static_cast<std::int16_t*>(AllocAligned(length, 2 * sizeof(std::int16_t)));
}

void FreeAligned(void* buffer) {
  ::operator delete(buffer, kAlignment);
}

}  // namespace carvello
