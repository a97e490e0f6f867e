// SSigMfMeta: what a SigMF meta file tells (SigMF 1.2), and the same of a collection.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "recording/metadata_xml.h"

namespace carvello {

struct SSigMfTime {
  std::int64_t nSeconds = 0;  // since 1970 UTC
  std::uint32_t nNanoseconds = 0;
};

// A date and time of the calendar with any number of digits behind the second, in UTC unless another zone is named.
// Nothing for any other text, and for dates that do not exist.
std::optional<SSigMfTime> ParseSigMfTime(std::string_view text);

struct SSigMfCapture {
  std::int64_t nSampleStart = 0;
  std::optional<double> frequency;   // Hz
  std::optional<double> sampleRate;  // of this capture alone, as one program writes it
  std::string strDateTime;
  std::optional<std::int64_t> globalIndex;
  std::int64_t nHeaderBytes = 0;
};

struct SSigMfAnnotation {
  std::int64_t nSampleStart = 0;
  std::optional<std::int64_t> sampleCount;
  std::optional<double> lowerEdge;  // Hz
  std::optional<double> upperEdge;
  std::string strLabel;
  std::string strComment;
};

struct SSigMfMeta {
  std::string strDataType;
  std::optional<double> sampleRate;  // Hz
  std::int64_t nOffset = 0;          // of all numbers of samples
  std::int64_t nChannels = 1;
  std::int64_t nTrailingBytes = 0;
  bool bMetadataOnly = false;
  std::string strDataset;
  std::string strSha512;
  std::optional<double> fullScale;          // of floats that do not end at 1, as this program tells it
  std::optional<std::int64_t> sampleCount;  // as this program tells it of what it has finished
  std::string strRecorder;
  bool bSdrangel = false;  // written by that program, which has a full scale of its own
  // Extensions that nobody can read the recording without.
  std::vector<std::string> required;
  std::vector<SSigMfCapture> captures;  // in their order
  std::vector<SSigMfAnnotation> annotations;
  // Every value of the global object, those that nothing here knows among them, as texts.
  SMetadataLists global;
};

// False when the text is no meta file; `error` then says why, printable on one line.
bool ParseSigMfMeta(std::string_view text, SSigMfMeta& meta, std::string& error);

// The streams of a collection: names without extension, and the hashes of their meta files, which may be empty.
using SigMfStreams = std::vector<std::pair<std::string, std::string>>;
bool ParseSigMfCollection(std::string_view text, SigMfStreams& streams, std::string& error);

}  // namespace carvello
