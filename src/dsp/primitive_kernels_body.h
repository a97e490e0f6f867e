// The primitives' loops, written once: each primitive_kernels_<set>.cpp includes this file and is compiled with that
// set's options, for the compiler to vectorise. No standard-library templates here: their instances could be shared
// with the rest of the program, which must run on any processor.
#pragma once

#include "dsp/primitive_kernels.h"

namespace carvello {
namespace {

void Multiply(float value, float* buffer, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) buffer[i] *= value;
}

template <class TInteger>
void IntegersToFloat(const TInteger* __restrict source, float* __restrict destination, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) destination[i] = static_cast<float>(source[i]);
}

void Int24ToFloat(const std::uint8_t* __restrict source, float* __restrict destination, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i, source += 3) {
    // In the upper three bytes first, for the sign.
    const std::uint32_t nUpper = static_cast<std::uint32_t>(source[0]) << 8 |
                                 static_cast<std::uint32_t>(source[1]) << 16 |
                                 static_cast<std::uint32_t>(source[2]) << 24;
    destination[i] = static_cast<float>(static_cast<std::int32_t>(nUpper) >> 8);
  }
}

// Saturation comes first: what is rounded then fits an integer, and no saturated value rounds to another one. Adding a
// half before cutting off would be shorter and wrong: 0.49999997 plus 0.5 is 1 in float.
template <ERounding rounding>
void RoundToInt16(const float* __restrict source, std::int16_t* __restrict destination, std::size_t length,
                  float factor1, float factor2) {
  for (std::size_t i = 0; i < length; ++i) {
    float value = source[i] * factor1 * factor2;
    value = value == value ? value : 0.0f;
    value = value < 32767.0f ? value : 32767.0f;
    value = value > -32768.0f ? value : -32768.0f;
    std::int32_t nValue = static_cast<std::int32_t>(value);
    const float fRest = value - static_cast<float>(nValue);
    if constexpr (rounding == ERounding::HalfAway) {
      nValue += fRest >= 0.5f ? 1 : 0;
      nValue -= fRest <= -0.5f ? 1 : 0;
    } else if constexpr (rounding == ERounding::HalfToEven) {
      const std::int32_t nOdd = nValue & 1;
      nValue += fRest > 0.5f ? 1 : 0;
      nValue -= fRest < -0.5f ? 1 : 0;
      nValue += fRest == 0.5f ? nOdd : 0;
      nValue -= fRest == -0.5f ? nOdd : 0;
    }
    destination[i] = static_cast<std::int16_t>(nValue);
  }
}

void FloatToInt16(const float* source, std::int16_t* destination, std::size_t length, ERounding rounding, float factor1,
                  float factor2) {
  switch (rounding) {
    case ERounding::TowardsZero:
      return RoundToInt16<ERounding::TowardsZero>(source, destination, length, factor1, factor2);
    case ERounding::HalfToEven:
      return RoundToInt16<ERounding::HalfToEven>(source, destination, length, factor1, factor2);
    case ERounding::HalfAway:
      return RoundToInt16<ERounding::HalfAway>(source, destination, length, factor1, factor2);
  }
}

constexpr SPrimitiveKernels kKernels = {Multiply,     IntegersToFloat<std::int8_t>,  IntegersToFloat<std::int16_t>,
                                        Int24ToFloat, IntegersToFloat<std::int32_t>, FloatToInt16};

}  // namespace
}  // namespace carvello
