// Any bytes on their way to a terminal, a log or a JSON reader: nothing that is obeyed comes out, and nothing printable
// changes.
#include <nlohmann/json.hpp>

#include "fuzz_checks.h"
#include "support/readable.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string_view text = fuzz::Text(bytes, count);
  const std::string line = Printable(text);
  fuzz::RequirePrintable(line);
  fuzz::Require(Printable(line) == line && PrintableLines(line) == line);
  fuzz::RequirePrintable(PrintableLines(text), true);
  fuzz::RequirePrintable(FormatColumns({{std::string(text), "x"}, {"y", std::string(text)}}, "r"), true);

  // Of bytes that are no UTF-8 a JSON text cannot hold more than that there were such.
  const std::string told = Utf16ToUtf8(Utf8ToUtf16(text));
  const nlohmann::json json = {{"text", told}};
  const std::string shown = PrintableJson(json.dump(2));
  fuzz::RequirePrintable(shown, true);
  fuzz::Require(nlohmann::json::parse(shown) == json);
  return 0;
}
