// The XML metadata of a recording: reading an "auxi" text into name/value lists, and building the text of an output.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvello {

// Parallel lists of attribute names and values, in document order. Names and values are UTF-8.
struct SMetadataLists {
  std::vector<std::string> names;
  std::vector<std::string> values;

  // The value at the first name that equals `name` exactly; the empty text when there is none.
  const std::string& Find(std::string_view name) const;
  bool Has(std::string_view name) const;
  // The value as a decimal number as strtoll reads it (leading blanks, sign, digits); 0 when absent or no number.
  std::int64_t FindNumber(std::string_view name) const;
};

// Reads the attributes of `Definition` and then of `Size` below the root `SDR-XML-Root` (or `SDR-Server`). `xml` is the
// UTF-8 form of the text. Always 0; a text that cannot be read leaves both lists empty.
int ParseMetadataXml(std::string_view xml, SMetadataLists& lists);

// Why ParseMetadataXml leaves the lists of this text empty, for the user: whether it is cut short or damaged, or has no
// such root. Empty for a text that it reads.
std::string MetadataXmlProblem(std::string_view xml);

// What an output file says of itself. Texts are UTF-8, frequencies in Hz, rates in samples/s, times in seconds since
// 1970 UTC.
struct SMetadataFacts {
  std::int64_t tCreated = 0;
  std::int64_t tStart = 0;
  std::string strFileName;      // full path
  std::string strFirstFile;     // full path of file 0
  std::string strPreviousFile;  // full path of the file before; empty for the first
  std::string strInternalTag;
  std::string strRadioModel;
  std::string strRadioSerial;
  std::string strSoftwareName;  // empty: the program's own product name
  std::int32_t nDualMode = 0;
  std::int32_t nSequence = 0;
  std::uint32_t nADFrequency = 0;
  std::uint32_t nBitsPerSample = 0;
  std::uint32_t nBytesPerSecond = 0;
  std::int64_t nRadioCenterFreq = 0;
  std::uint32_t nSampleRate = 0;
};

// The whole XML text, UTF-8, in raw form (no line breaks), declaration included. Raises the invalid-argument error for
// a time that has no calendar date.
std::string BuildMetadataXml(const SMetadataFacts& facts);

// The part of a path behind its last "\", "/" or ":"; the whole path when that stands at position 0 or is absent.
std::string FileNameOnly(std::string_view path);

}  // namespace carvello
