// The entry points of the downconverter library: shift a band to 0 Hz (NCO), then filter and decimate it
// (DownconvertRun). All are plain C names with plain C arguments, so that the library can be loaded at run time.
//
// A handle names an instance and is never 0; a call with a handle that is not alive does nothing and returns 0
// (DownconvertResume: -1). An instance is used by one thread at a time, different instances by as many threads as there
// are.
//
// No exception leaves. Memory is taken when an instance is made, when its rates or stages are set, and by Diagnostics;
// samples are shifted and decimated without. A setting that finds no memory leaves the instance without stages: its
// rates are 0, and it gives no samples until it is set again.
#pragma once

#include <cstdint>

#include "sample.h"

extern "C" {

// ---- instances -------------------------------------------------------------------------------------------------

// A new instance, or 0 when memory is exhausted. The name is shown by Diagnostics and may be null.
std::uint32_t AllocInstance(const wchar_t* applicationName) noexcept;
void ReleaseInstance(std::uint32_t handle) noexcept;
void Closedown() noexcept;  // releases every instance

// ---- shift and decimation --------------------------------------------------------------------------------------

// Sets the rates (samples/s, output at most input) and starts anew: empty filters, oscillator at phase 0. With rates
// that make no sense the instance gives no output, and tells rates of 0.
void DownconvertInit(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) noexcept;
// From now on the instance decimates by the whole number nearest to input / output rate. Starts anew after an Init.
void DisableFractionalResampler(std::uint32_t handle) noexcept;
// The rates of the samples that DownconvertRun takes and gives, rounded to whole Hz; 0 when it gives none.
std::uint32_t DownconvertRateIn(std::uint32_t handle) noexcept;
std::uint32_t DownconvertRateOut(std::uint32_t handle) noexcept;
// To begin within the signal, behind the calls above, instead of with its input sample 0: the next output sample is
// number `firstOutput` of that signal. Returns the number of the input sample with which the input has to begin, which
// is where the oscillator stands then; from there on all output is that of a run from input sample 0, bit for bit.
// -1, and nothing has changed, when the instance gives no samples, and for numbers below 0 or beyond any signal.
std::int64_t DownconvertResume(std::uint32_t handle, std::int64_t firstOutput) noexcept;
// Multiplies by exp(-j 2 pi shift n / inputRate), n counting the instance's samples from 0. In place is allowed.
void NCO(std::uint32_t handle, std::int64_t shift, std::uint32_t inputRate, const vantrel::SComplex* source,
         std::uint32_t count, vantrel::SComplex* destination) noexcept;
// Filters and decimates. Never gives more samples than it takes, so `output` needs room for `inputCount`. Output sample
// 0 stands at the time of input sample 0; samples that still need future input come with a later call.
void DownconvertRun(std::uint32_t handle, const vantrel::SComplex* input, std::uint32_t inputCount,
                    vantrel::SComplex* output, std::uint32_t* outputCount) noexcept;

// ---- looking inside --------------------------------------------------------------------------------------------

// Describes the instance in UTF-8: its name, the version of the library, rates and stages, a line each. The last line
// is "an output sample needs input up to %.3f output samples later", where the instance has rates. Returns the text's
// length in bytes, 0 when memory is exhausted; what fits into `capacity` is written, with a terminating zero.
std::uint32_t Diagnostics(std::uint32_t handle, char* text, std::uint32_t capacity) noexcept;
// Non-zero: DownconvertRun leaves the first stage out (its input is then at the first stage's output rate), or runs
// nothing but the first stage. Both together leave nothing: samples pass unchanged. What the first stage rings before
// sample 0 goes to the second one in the whole chain only. Starts anew after an Init.
void FirstStageExclude(std::uint32_t handle, std::uint32_t exclude) noexcept;
void FirstStageOnly(std::uint32_t handle, std::uint32_t only) noexcept;
// A mode number kept for the caller; it changes nothing in the processing.
void Advanced(std::uint32_t mode) noexcept;
std::uint32_t IsAdvanced() noexcept;

// ---- parts on their own ----------------------------------------------------------------------------------------

// The last stage alone: a resampler for input / output ratios from 1 to 16, with the downconverter's passband, counts
// and timing.
void FractionalInit(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) noexcept;
void FractionalProcess(std::uint32_t handle, const vantrel::SComplex* input, std::uint32_t inputCount,
                       vantrel::SComplex* output, std::uint32_t* outputCount) noexcept;
// The channel filter of an output rate without the decimation, by partitioned fast convolution, for ratios from 1 to
// 256: output sample m stands at the time of input sample m.
void PartionedFFTInit(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) noexcept;
void PartionedFFTProcess(std::uint32_t handle, const vantrel::SComplex* input, std::uint32_t inputCount,
                         vantrel::SComplex* output, std::uint32_t* outputCount) noexcept;
}
