#include "input/source_recognition.h"

#include <string_view>

#include "support/text.h"

namespace carvello {

namespace {

bool IsXml(const std::string& auxi) {
  constexpr std::string_view kXmlStart("<\0?\0x\0m\0l\0", 10);
  return std::string_view(auxi).substr(0, kXmlStart.size()) == kXmlStart;
}

}  // namespace

void RecogniseSource(const SSourceEvidence& evidence, SScanResult& result) {
  if (IsXml(evidence.strAuxi)) result.strXml = Utf16ToUtf8(Utf16FromLittleEndian(evidence.strAuxi));
}

}  // namespace carvello
