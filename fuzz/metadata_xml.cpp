// Any UTF-16 bytes as the XML metadata of a recording: names and values come in pairs, and every number can be asked
// for.
#include "recording/metadata_xml.h"
#include "fuzz_checks.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  // Half of the inputs as UTF-16 as it stands in files, the others as the text itself, which mutates faster.
  const std::string_view input = fuzz::Text(bytes, count);
  const bool utf16 = count >= 2 && bytes[1] == 0;
  SMetadataLists lists;
  fuzz::Require(ParseMetadataXml(utf16 ? Utf16ToUtf8(Utf16FromLittleEndian(input)) : std::string(input), lists) == 0);
  fuzz::Require(lists.names.size() == lists.values.size());
  for (std::size_t i = 0; i < lists.names.size(); ++i) {
    fuzz::Require(lists.Has(lists.names[i]));
    lists.FindNumber(lists.names[i]);
    FileNameOnly(lists.values[i]);
  }
  return 0;
}
