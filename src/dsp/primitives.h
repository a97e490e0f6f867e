// Vector primitives that convert and move samples. Lengths count elements. Every one returns a status: 0 success, -8 a
// null pointer, -6 a length below 1, -10 a division by zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "fourier/complex_sample.h"

namespace carvello {

inline constexpr std::int32_t kPrimitiveOk = 0;
inline constexpr std::int32_t kPrimitiveNullPointer = -8;
inline constexpr std::int32_t kPrimitiveBadLength = -6;
inline constexpr std::int32_t kPrimitiveDivideByZero = -10;

// Round to nearest, halves away from zero: the only rounding mode that the engine uses.
inline constexpr std::int32_t kRoundHalfAway = 2;

// Picks the variants for this processor (see instruction_set.h). Called once at start-up; before that, plain loops
// serve.
void InitPrimitives();

std::int32_t CopyFloat(const float* source, float* destination, std::int32_t length);
std::int32_t CopyComplex(const SComplex* source, SComplex* destination, std::int32_t length);
std::int32_t CopyBytes(const std::uint8_t* source, std::uint8_t* destination, std::int32_t length);
std::int32_t MulConstInPlace(float value, float* buffer, std::int32_t length);
std::int32_t DivConstInPlace(float value, float* buffer, std::int32_t length);
std::int32_t Int8ToFloat(const std::int8_t* source, float* destination, std::int32_t length);
std::int32_t Int16ToFloat(const std::int16_t* source, float* destination, std::int32_t length);
// Packed, 3 bytes a value, least significant byte first; length counts values.
std::int32_t Int24ToFloat(const std::uint8_t* source, float* destination, std::int32_t length);
std::int32_t Int32ToFloat(const std::int32_t* source, float* destination, std::int32_t length);
// Unsigned values less 2^(n-1), or of 8 bits less the value that stands for no signal.
std::int32_t Uint8ToFloat(const std::uint8_t* source, float* destination, std::int32_t length, float zero);
std::int32_t Uint16ToFloat(const std::uint16_t* source, float* destination, std::int32_t length);
std::int32_t Uint24ToFloat(const std::uint8_t* source, float* destination, std::int32_t length);
std::int32_t Uint32ToFloat(const std::uint32_t* source, float* destination, std::int32_t length);
// Each value times the factor, in double precision.
std::int32_t DoubleToFloat(const double* source, float* destination, std::int32_t length, double factor);
// Turns the byte order of every value round, in place. Values of 1 byte stay; sizes other than 1, 2, 3, 4 and 8 give
// -6.
std::int32_t SwapBytes(void* buffer, std::uint32_t valueBytes, std::int32_t length);
// Each value times 2^-scale, rounded by the mode (0 towards zero, 1 to nearest with halves to even, anything else as
// kRoundHalfAway), saturated to -32768..32767. NaN gives 0.
std::int32_t FloatToInt16(const float* source, std::int16_t* destination, std::int32_t length, std::int32_t mode,
                          std::int32_t scale);

// Buffers aligned for vector access; nullptr when length < 1 or memory is exhausted.
SComplex* AllocComplex(std::int64_t length);
std::int16_t* AllocInt16Pairs(std::int64_t length);  // two values an element
void FreeAligned(void* buffer);                      // nullptr is allowed

struct SFreeAligned {
  void operator()(void* buffer) const { FreeAligned(buffer); }
};
using ComplexBuffer = std::unique_ptr<SComplex[], SFreeAligned>;
using Int16Buffer = std::unique_ptr<std::int16_t[], SFreeAligned>;

}  // namespace carvello
