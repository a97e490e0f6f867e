// What "synth" is to make: a recording of made-up stations over noise.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/synth_programs.h"
#include "cli/synth_sigmf.h"
#include "recording/sample_kind.h"

namespace carvello {

enum class ESynthFormat { Pcm8, Pcm16, Pcm24, Pcm32, Float32 };
std::uint32_t BitsOf(ESynthFormat format);

struct SStation {
  std::int64_t nFrequency = 0;  // Hz
  double dLevel = 0.0;          // dB, 0 is a carrier at full scale
  bool bAm = false;             // amplitude modulated by a tone; a bare carrier otherwise
};

struct SSynthSettings {
  std::string strPath;
  std::uint32_t nSampleRate = 0;  // frames/s
  std::int64_t nCentre = 0;       // Hz
  std::int64_t nFrames = 0;       // over all files
  std::uint32_t nFiles = 1;
  ESynthFormat format = ESynthFormat::Pcm16;
  bool bRf64 = false;
  std::optional<SSampleKind> raw;           // files of such samples instead of those that outputs are
  const SSynthProgram* pProgram = nullptr;  // as this program writes them
  bool bNamed = true;                       // strPath is the file's, not that of the folder that it comes into
  std::optional<ESynthSigMf> sigmf;         // as SigMF
  SSynthCaptures captures;
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  std::vector<SStation> stations;
  std::optional<double> noise;  // dB, rms of the complex noise; 0 is the power of a carrier at full scale
  std::uint64_t nSeed = 0;
};

// The options as texts, as they stand on the command line.
struct SSynthOptions {
  std::string strPath;
  std::string strRate = "2M";
  std::string strCentre = "7.1M";
  std::string strSeconds = "10";
  std::string strBits = "16";
  std::string strFiles = "1";
  std::string strStart = "2026-01-01T00:00:00Z";
  std::string strSeed = "1";
  std::string strSampleType;  // empty: a WAV, unless the program or OUT tell another kind of file
  std::string strProgram;     // empty: none
  std::string strCaptures = "1";
  std::string strLost = "0";
  std::string strNoise;               // empty: none
  std::vector<std::string> stations;  // neither stations nor noise: one station over noise
  bool bRf64 = false;
};

// False when an option cannot be read or does not fit the others; `error` then names it and says what is accepted.
bool MakeSynthSettings(const SSynthOptions& options, SSynthSettings& settings, std::string& error);

// The paths of the files that samples are spread over, in order: the path itself, or with " 000" and so on before its
// extension.
std::vector<std::string> SynthFiles(const SSynthSettings& settings);
// Frames of file number `file`: all frames are spread as evenly as it goes.
std::int64_t SynthFrames(const SSynthSettings& settings, std::uint32_t file);

}  // namespace carvello
