// What input tests share: a folder of their own, and recordings laid out byte by byte, independent of any writer.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/my_string_array.h"

namespace carvello::test {

// Little-endian numbers.
std::string Le16(std::uint32_t value);
std::string Le32(std::uint64_t value);
std::string Le64(std::uint64_t value);

// A chunk with the size that its body has; no pad byte.
std::string Chunk(std::string_view id, std::string_view body);
// A chunk header that claims any size.
std::string ChunkHeader(std::string_view id, std::uint64_t size);

// An INFO sub-chunk: the text with its terminating zero, and a pad byte behind an odd size.
std::string InfoText(std::string_view id, std::string_view text);

struct SFormatBytes {
  std::uint32_t nTag = 1;
  std::uint32_t nChannels = 2;
  std::uint32_t nRate = 1000;
  std::uint32_t nBits = 16;
};
// The 16 bytes of PCMWAVEFORMAT, average bytes and block align computed.
std::string FormatBody(const SFormatBytes& format = {});
// A "fmt " chunk of these 16 bytes.
std::string FormatChunk(const SFormatBytes& format = {});
// The 40 bytes of an extensible format with a sub-format whose first byte is `subFormat` (1 PCM, 3 float).
std::string ExtensibleBody(const SFormatBytes& format, std::uint32_t subFormat);

// "RIFF", the size that fits, "WAVE", the chunks.
std::string Riff(std::string_view chunks);
// "RF64", 0xFFFFFFFF, "WAVE", ds64 with these sizes, the chunks.
std::string Rf64(std::uint64_t riffSize, std::uint64_t dataSize, std::string_view chunks);
// A stereo 16-bit file of `dataBytes` zero bytes, further chunks before and behind the data.
std::string PlainWave(std::size_t dataBytes, std::string_view before = {}, std::string_view behind = {});

// ASCII text as UTF-16LE without a terminator.
std::string Utf16(std::string_view ascii);
// An "auxi" chunk of XML metadata with these attributes of its Definition.
std::string XmlChunk(std::string_view attributes);

bool HasLine(const CMyStringArray& log, std::string_view line);
// How many lines contain the text.
int CountLines(const CMyStringArray& log, std::string_view text);
std::string Joined(const CMyStringArray& log);

// A folder of its own below the system's folder for temporary files, gone with the test.
class InputTest : public testing::Test {
 protected:
  InputTest();
  ~InputTest() override;

  // Paths as the program takes them, UTF-8.
  std::string Path(const std::string& name) const;
  std::string Write(const std::string& name, std::string_view bytes) const;
  // Makes the file as long as said; what lies behind its bytes is a hole.
  void Extend(const std::string& name, std::uint64_t length) const;
  void Append(const std::string& name, std::string_view bytes) const;
  void Remove(const std::string& name) const;
  void MakeFolder(const std::string& name) const;

  const std::filesystem::path m_folder;
};

}  // namespace carvello::test
