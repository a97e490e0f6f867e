// The loops of the primitives, in one set for each instruction set. Arguments have been checked.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fourier/instruction_set.h"

namespace carvello {

enum class ERounding { TowardsZero, HalfToEven, HalfAway };

struct SPrimitiveKernels {
  const char* pszName;
  void (*Multiply)(float value, float* buffer, std::size_t length);
  void (*Int8ToFloat)(const std::int8_t* source, float* destination, std::size_t length);
  void (*Int16ToFloat)(const std::int16_t* source, float* destination, std::size_t length);
  void (*Int24ToFloat)(const std::uint8_t* source, float* destination, std::size_t length);
  void (*Int32ToFloat)(const std::int32_t* source, float* destination, std::size_t length);
  // Unsigned values less what stands for no signal: 2^(n-1), or the one given.
  void (*Uint8ToFloat)(const std::uint8_t* source, float* destination, std::size_t length, float zero);
  void (*Uint16ToFloat)(const std::uint16_t* source, float* destination, std::size_t length);
  void (*Uint24ToFloat)(const std::uint8_t* source, float* destination, std::size_t length);
  void (*Uint32ToFloat)(const std::uint32_t* source, float* destination, std::size_t length);
  // Every value is multiplied by the factor first.
  void (*DoubleToFloat)(const double* source, float* destination, std::size_t length, double factor);
  // The other byte order, in place.
  void (*SwapBytes16)(std::uint16_t* buffer, std::size_t length);
  void (*SwapBytes24)(std::uint8_t* buffer, std::size_t length);
  void (*SwapBytes32)(std::uint32_t* buffer, std::size_t length);
  void (*SwapBytes64)(std::uint64_t* buffer, std::size_t length);
  // Every value is multiplied by the factor first.
  void (*FloatToInt16)(const float* source, std::int16_t* destination, std::size_t length, ERounding rounding,
                       float factor);
};

extern const SPrimitiveKernels kPlainPrimitives;
extern const SPrimitiveKernels kAvx2Primitives;    // needs AVX2
extern const SPrimitiveKernels kAvx512Primitives;  // needs AVX-512 F, BW and DQ

const SPrimitiveKernels& PrimitiveKernels(EInstructionSet set);

}  // namespace carvello
