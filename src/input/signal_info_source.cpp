#include "input/signal_info_source.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "input/calendar_time.h"
#include "input/format_chunk.h"
#include "input/signal_time.h"
#include "input/source_recognition.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr const char* kWhere = "signaltime of the meta chunk";

// An element's text, trimmed. Elements stand below the root or, as this program writes them, below `base`.
std::string ElementText(const pugi::xml_node& root, const char* name) {
  const pugi::xml_node child = root.child(name);
  return Trim((child ? child : root.child("base").child(name)).text().get());
}

// 0 for a text that is no number, or none that a signal can have.
double ElementNumber(const pugi::xml_node& root, const char* name) {
  constexpr double kMost = 1e15;
  const std::string text = ElementText(root, name);
  double number = 0;
  const std::size_t sign = text.starts_with('+') ? 1 : 0;
  std::from_chars(text.data() + sign, text.data() + text.size(), number);
  return std::abs(number) < kMost ? number : 0;
}

std::uint32_t Whole32(double number) {
  return number > 0 && number <= std::numeric_limits<std::uint32_t>::max() ? static_cast<std::uint32_t>(number) : 0;
}

constexpr SYSTEMTIME kNoSignalTime{.wYear = 1899, .wMonth = 12, .wDayOfWeek = 6, .wDay = 30};

}  // namespace

bool RecogniseSignalInfo(const std::string& meta, std::int64_t dataBytes, const WAVEFORMATEXTENSIBLE& format,
                         RecordingSourceInfo& source) {
  if (meta.empty()) return false;
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(meta.data(), std::min(meta.size(), meta.find('\0')));
  if (parsed.status == pugi::status_out_of_memory) throw std::bad_alloc();
  const pugi::xml_node root = document.document_element();
  if (std::string_view(root.name()) != "signalinfo") return false;
  const double bytesPerSecond = BytesPerSecond(format.Format);
  const double frequency = ElementNumber(root, "rf_frequency");
  const double bandwidth = ElementNumber(root, "bandwidth");
  if (bytesPerSecond == 0 || ElementText(root, "data_type") != "complex" || ElementNumber(root, "sample_rate") <= 0 ||
      frequency <= 0 || bandwidth <= 0) {
    source.strNote =
        "its meta chunk does not tell of complex samples (data_type) with sample_rate, rf_frequency and bandwidth";
    return true;
  }

  RecordingSourceInfo found;
  found.strSourceName = kSourceGo2Monitor;
  found.format = format.Format;
  found.nCentreFrequency = static_cast<std::int64_t>(frequency);
  found.nIFFrequency = Whole32(ElementNumber(root, "if_frequency"));
  found.nBandwidth = Whole32(bandwidth);
  found.nDataBytes = dataBytes;
  found.dDuration = static_cast<double>(dataBytes) / bytesPerSecond;
  if (const std::optional<SDateFields> date = ParseSignalTime(ElementText(root, "signaltime"))) {
    found.start = UtcSystemTime(UtcCalendarTime(*date, kWhere), kWhere);
  } else {
    found.start = kNoSignalTime;
    found.bNoStart = true;
    found.strNote = std::string(kWhere) + " is no time such as 2026-11-16T00:44:40.000Z, 1970-01-01 taken";
  }
  found.stop = AddSeconds(found.start, std::floor(found.dDuration + 0.5));
  source = found;
  return true;
}

}  // namespace carvello
