// Any bytes as an output of an earlier job: none is taken for finished whose end is not where its sizes say, and none
// is said to hold more than it has.
#include "recording/written_file.h"

#include "fuzz_checks.h"
#include "memory_file.h"

using namespace carvello;

namespace {

EWrittenState StateOf(std::string_view bytes) {
  static const fuzz::CMemoryFile file;
  file.Fill(bytes);
  const SWrittenFile found = InspectWrittenFile(file.Path());
  fuzz::Require(found.state != EWrittenState::Unreadable);
  fuzz::Require(found.nDataBytes >= 0 && found.nDataBytes <= static_cast<std::int64_t>(bytes.size()));
  fuzz::Require(found.Frames() <= found.nDataBytes);
  return found.state;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string file(fuzz::Text(bytes, count));
  if (StateOf(file) != EWrittenState::Finished) return 0;
  for (const std::size_t less : {std::size_t{1}, std::size_t{2}, count / 2}) {
    fuzz::Require(StateOf(std::string_view(file).substr(0, count - less)) != EWrittenState::Finished);
  }
  fuzz::Require(StateOf(file + '\0') != EWrittenState::Finished);
  return 0;
}
