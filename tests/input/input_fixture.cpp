#include "input/input_fixture.h"

#include <fstream>
#include <random>

#include "support/sparse_file.h"
#include "support/text.h"

namespace carvello::test {

namespace {

std::string LittleEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
  return text;
}

std::filesystem::path FileSystemPath(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path NewFolder() {
  std::random_device random;
  std::filesystem::path folder;
  do {
    folder = std::filesystem::temp_directory_path() / Format("carvello input test %08x", random());
  } while (!std::filesystem::create_directory(folder));
  return folder;
}

}  // namespace

std::string Le16(std::uint32_t value) {
  return LittleEndian(value, 2);
}
std::string Le32(std::uint64_t value) {
  return LittleEndian(value, 4);
}
std::string Le64(std::uint64_t value) {
  return LittleEndian(value, 8);
}

std::string ChunkHeader(std::string_view id, std::uint64_t size) {
  return std::string(id) + Le32(size);
}

std::string Chunk(std::string_view id, std::string_view body) {
  return ChunkHeader(id, body.size()) + std::string(body);
}

std::string InfoText(std::string_view id, std::string_view text) {
  std::string body = std::string(text) + '\0';
  const std::string header = ChunkHeader(id, body.size());
  if (body.size() % 2 != 0) body.push_back('\0');
  return header + body;
}

std::string FormatBody(const SFormatBytes& format) {
  const std::uint32_t align = format.nBits / 8 * format.nChannels;
  return Le16(format.nTag) + Le16(format.nChannels) + Le32(format.nRate) + Le32(std::uint64_t{align} * format.nRate) +
         Le16(align) + Le16(format.nBits);
}

std::string FormatChunk(const SFormatBytes& format) {
  return Chunk("fmt ", FormatBody(format));
}

std::string ExtensibleBody(const SFormatBytes& format, std::uint32_t subFormat) {
  SFormatBytes extensible = format;
  extensible.nTag = 0xFFFE;
  const std::string guidTail("\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 14);
  return FormatBody(extensible) + Le16(22) + Le16(format.nBits) + Le32(3) + Le16(subFormat) + guidTail;
}

std::string Riff(std::string_view chunks) {
  return ChunkHeader("RIFF", chunks.size() + 4) + "WAVE" + std::string(chunks);
}

std::string Rf64(std::uint64_t riffSize, std::uint64_t dataSize, std::string_view chunks) {
  const std::string ds64 = Le64(riffSize) + Le64(dataSize) + Le64(dataSize / 4) + Le32(0);
  return ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE" + Chunk("ds64", ds64) + std::string(chunks);
}

std::string PlainWave(std::size_t dataBytes, std::string_view before, std::string_view behind) {
  return Riff(FormatChunk() + std::string(before) + Chunk("data", std::string(dataBytes, '\0')) + std::string(behind));
}

std::string Utf16(std::string_view ascii) {
  std::string bytes;
  for (const char c : ascii) {
    bytes.push_back(c);
    bytes.push_back('\0');
  }
  return bytes;
}

std::string XmlChunk(std::string_view attributes) {
  const std::string xml = "<?xml version=\"1.0\"?><SDR-XML-Root Description=\"Saved recording data\"><Definition " +
                          std::string(attributes) + "/></SDR-XML-Root>";
  return Chunk("auxi", Utf16(xml) + Le16(0));
}

bool HasLine(const CMyStringArray& log, std::string_view line) {
  for (const std::string& present : log) {
    if (present == line) return true;
  }
  return false;
}

int CountLines(const CMyStringArray& log, std::string_view text) {
  int count = 0;
  for (const std::string& line : log) {
    if (line.find(text) != std::string::npos) ++count;
  }
  return count;
}

std::string Joined(const CMyStringArray& log) {
  std::string text;
  for (const std::string& line : log) text += line + "\n";
  return text;
}

InputTest::InputTest() : m_folder(NewFolder()) {}

InputTest::~InputTest() {
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
}

std::string InputTest::Path(const std::string& name) const {
  return Utf8(m_folder / FileSystemPath(name));
}

std::string InputTest::Write(const std::string& name, std::string_view bytes) const {
  std::ofstream file(m_folder / FileSystemPath(name), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  EXPECT_TRUE(file.good()) << name;
  return Path(name);
}

void InputTest::Extend(const std::string& name, std::uint64_t length) const {
  ExtendFile(Path(name), length);
}

void InputTest::Append(const std::string& name, std::string_view bytes) const {
  std::ofstream file(m_folder / FileSystemPath(name), std::ios::binary | std::ios::app);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  EXPECT_TRUE(file.good()) << name;
}

void InputTest::Remove(const std::string& name) const {
  std::filesystem::remove(m_folder / FileSystemPath(name));
}

void InputTest::MakeFolder(const std::string& name) const {
  std::filesystem::create_directory(m_folder / FileSystemPath(name));
}

}  // namespace carvello::test
