// Any bytes as a recording's list of INFO texts. What is read of them can be written again, and reads as the same then.
#include <cstring>

#include "fuzz_checks.h"
#include "input/wave_file_reader.h"
#include "memory_file.h"

using namespace carvello;

namespace {

std::string Number(std::size_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
  return bytes;
}

SInfoTexts Read(const std::string& listChunk) {
  static const fuzz::CMemoryFile file;
  std::string body = "WAVEfmt " + Number(16);
  body += std::string("\1\0\2\0\xE8\3\0\0\xA0\x0F\0\0\4\0\20\0", 16);
  body += "data" + Number(4) + std::string(4, '\0') + listChunk;
  file.Fill("RIFF" + Number(body.size()) + body);
  SInfoTexts texts;
  ReadInfoTexts(file.Path(), texts);
  return texts;
}

bool Same(const SInfoTexts& a, const SInfoTexts& b) {
  return a.strIPRD == b.strIPRD && a.strIART == b.strIART && a.strICMT == b.strICMT && a.strICOP == b.strICOP &&
         a.strINAM == b.strINAM;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const SInfoTexts texts = Read("LIST" + Number(count) + std::string(fuzz::Text(bytes, count)));
  const SInfoTexts again = Read(BuildInfoTrailer(texts));
  // The first way makes them short enough and trims them; from there on nothing changes.
  fuzz::Require(Same(Read(BuildInfoTrailer(again)), again));
  return 0;
}
