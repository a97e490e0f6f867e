#include "recording/metadata_xml.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <new>
#include <pugixml.hpp>

#include "recording/base64.h"
#include "recording/load_xml.h"
#include "recording/text_writer.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {

namespace {

// "\", "/" and a drive's ":" alike, on every system: recordings travel between them.
constexpr std::string_view kPathSeparators = "\\/:";

std::string FolderOnly(std::string_view path) {
  const std::size_t separator = path.find_last_of(kPathSeparators);
  return separator == std::string_view::npos ? std::string() : std::string(path.substr(0, separator));
}

void AppendAttributes(const pugi::xml_node& element, SMetadataLists& lists) {
  for (const pugi::xml_attribute& attribute : element.attributes()) {
    lists.names.emplace_back(attribute.name());
    lists.values.emplace_back(attribute.value());
  }
}

// Whether the text ends with its root element, as a whole document does.
bool EndsItsRoot(std::string_view xml) {
  for (const std::string_view end : {"</SDR-XML-Root>", "</SDR-Server>"}) {
    if (xml.rfind(end) != std::string_view::npos) return true;
  }
  return false;
}

// An element without memory is an empty one, which takes no attributes.
template <typename Value>
void Append(pugi::xml_node& element, const char* name, const Value& value) {
  if (!element.append_attribute(name).set_value(value)) throw std::bad_alloc();
}

void Append(pugi::xml_node& element, const char* name, const std::string& value) {
  Append(element, name, value.c_str());
}

}  // namespace

const std::string& SMetadataLists::Find(std::string_view name) const {
  static const std::string none;
  const auto found = std::ranges::find(names, name);
  return found == names.end() ? none : values[static_cast<std::size_t>(std::distance(names.begin(), found))];
}

bool SMetadataLists::Has(std::string_view name) const {
  return std::ranges::find(names, name) != names.end();
}

std::int64_t SMetadataLists::FindNumber(std::string_view name) const {
  return std::strtoll(Find(name).c_str(), nullptr, 10);
}

int ParseMetadataXml(std::string_view xml, SMetadataLists& lists) {
  lists.names.clear();
  lists.values.clear();
  pugi::xml_document document;
  // A text that is broken somewhere counts as unreadable: half of a metadata set would be taken for the whole.
  if (!LoadXml(document, xml)) return 0;
  pugi::xml_node root = document.child("SDR-XML-Root");
  if (!root) root = document.child("SDR-Server");
  AppendAttributes(root.child("Definition"), lists);
  AppendAttributes(root.child("Size"), lists);
  return 0;
}

std::string MetadataXmlProblem(std::string_view xml) {
  pugi::xml_document document;
  const pugi::xml_parse_result result = LoadXml(document, xml);
  if (result) {
    return document.child("SDR-XML-Root") || document.child("SDR-Server")
               ? std::string()
               : "the XML metadata has no element SDR-XML-Root or SDR-Server";
  }
  if (!EndsItsRoot(xml)) return "the XML metadata is cut short";
  return Format("the XML metadata is damaged at character %lld: %s", static_cast<long long>(result.offset),
                result.description());
}

std::string BuildMetadataXml(const SMetadataFacts& facts) {
  const std::string startText = FormatUtc("%d-%m-%Y %H:%M:%S", facts.tStart);
  const platform::TimeZoneRecord zone = platform::GetTimeZoneRecord();

  pugi::xml_document document;
  pugi::xml_node root = document.append_child("SDR-XML-Root");
  Append(root, "Description", "Saved recording data");
  Append(root, "Created", FormatUtc("%d-%b-%Y %H:%M", facts.tCreated));

  // The order is part of the format, and so are the names.
  pugi::xml_node definition = root.append_child("Definition");
  Append(definition, "CurrentTimeUTC", startText);
  Append(definition, "Filename", FileNameOnly(facts.strFileName));
  Append(definition, "FirstFile", FileNameOnly(facts.strFirstFile));
  Append(definition, "Folder", FolderOnly(facts.strFileName));
  Append(definition, "InternalTag", facts.strInternalTag);
  Append(definition, "PreviousFile", FileNameOnly(facts.strPreviousFile));
  Append(definition, "RadioModel", facts.strRadioModel);
  Append(definition, "RadioSerial", facts.strRadioSerial);
  Append(definition, "SoftwareName",
         facts.strSoftwareName.empty() ? VersionValue("ProductName") : facts.strSoftwareName);
  Append(definition, "SoftwareVersion", VersionInfo().strVersionText);
  Append(definition, "UTC", startText);
  Append(definition, "XMLLevel", "XMLLevel003");
  Append(definition, "CreatedBy", Format("%s on %s", platform::UserName().c_str(), platform::ComputerName().c_str()));
  Append(definition, "TimeZoneStatus", zone.nStatus);
  Append(definition, "TimeZoneInfo", CBase64::Encode(zone.bytes));
  Append(definition, "DualMode", facts.nDualMode);
  Append(definition, "Sequence", facts.nSequence);
  Append(definition, "ADFrequency", facts.nADFrequency);
  Append(definition, "BitsPerSample", facts.nBitsPerSample);
  Append(definition, "BytesPerSecond", facts.nBytesPerSecond);
  Append(definition, "RadioCenterFreq", static_cast<long long>(facts.nRadioCenterFreq));
  Append(definition, "SampleRate", facts.nSampleRate);
  // Deliberately the low 32 bits: the format defines this value as an unsigned 32-bit number.
  Append(definition, "UTCSeconds", static_cast<std::uint32_t>(facts.tStart));

  CTextWriter writer;
  document.save(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return writer.Text();
}

std::string FileNameOnly(std::string_view path) {
  const std::size_t separator = path.find_last_of(kPathSeparators);
  if (separator == std::string_view::npos || separator == 0) return std::string(path);
  return std::string(path.substr(separator + 1));
}

}  // namespace carvello
