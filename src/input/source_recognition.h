// Source recognition: which program made a recording, and where its frequency and time lie. Every recogniser fills one
// record; times in it are UTC.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "input/recording_source_info.h"
#include "input/scan_result.h"
#include "recording/wave_format.h"

namespace carvello {

// Names of recording programs, a closed list.
inline constexpr const char* kSourceHalvarn = "Halvarn";
inline constexpr const char* kSourceHalvarn2 = "Halvarn (V2)";
inline constexpr const char* kSourceHalvarn3 = "Halvarn (V3)";
inline constexpr const char* kSourceSdrSharp = "SDRSharp";
inline constexpr const char* kSourceSpectraVue1 = "SpectraVue 1";
inline constexpr const char* kSourceSpectraVue2 = "SpectraVue 2";
inline constexpr const char* kSourceSpectraVue234 = "SpectraVue 2.34";
inline constexpr const char* kSourceSpectraVue30 = "SpectraVue 3.0";
inline constexpr const char* kSourceWinrad = "Winrad";
inline constexpr const char* kSourceElad = "ELAD";
inline constexpr const char* kSourcePerseus = "Perseus";
inline constexpr const char* kSourceWinradio = "Winradio";
inline constexpr const char* kSourceGo2Monitor = "go2MONITOR";
inline constexpr const char* kSourceUnknown = "UnknownFmt";

// The metadata that the analysis walk kept of one file. Chunk bodies are whole; an absent chunk is empty.
struct SSourceEvidence {
  std::string strFileName;  // as the file was opened
  std::string strAuxi;
  std::string strRcvr;
  std::string strMeta;
  bool bElad = false;                    // the file has an "elad" chunk
  std::optional<std::int64_t> tCreated;  // when the file came into being; asked of the file system where it is needed
};

// Fills `result.strXml` or `result.source` from the evidence and from the format and data size that the result holds.
// What nothing recognises leaves both empty. Raises the failure or the invalid-argument error for a date that cannot
// be.
void RecogniseSource(const SSourceEvidence& evidence, SScanResult& result);

// From a binary "auxi" block, or with an empty one, or one of no known size, from the file's name and time alone. False
// when neither tells; the record then stays as it is. Raises as above.
bool RecogniseAuxi(const std::string& fileName, std::string_view auxi, bool elad, std::int64_t dataBytes,
                   const WAVEFORMATEXTENSIBLE& format, RecordingSourceInfo& source,
                   std::optional<std::int64_t> created = {});

// From an "rcvr" block. Always true. Raises the invalid-argument error for a start time that has no date.
bool RecognisePerseus(std::string_view rcvr, std::int64_t dataBytes, const WAVEFORMATEXTENSIBLE& format,
                      RecordingSourceInfo& source);

}  // namespace carvello
