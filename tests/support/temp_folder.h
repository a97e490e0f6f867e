// CTempFolder: a fresh folder of a test's own, removed with everything in it at the end.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

namespace carvello::test {

inline std::string Utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

inline std::filesystem::path PathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

// Reads and writes whole files without any code under test.
inline std::string ReadWholeFile(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary | std::ios::ate);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::string bytes(static_cast<std::size_t>(file.tellg()), '\0');
  // At once: by the character it takes most of a test's time under the checkers of memory and threads.
  if (!file.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
    throw std::runtime_error("cannot read " + path);
  }
  return bytes;
}

inline void WriteWholeFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(PathOf(path), std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

class CTempFolder {
 public:
  CTempFolder() {
    std::random_device random;
    do {
      m_path = std::filesystem::temp_directory_path() /
               ("carvello_test_" + std::to_string(random()) + "_" + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
  }
  ~CTempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  CTempFolder(const CTempFolder&) = delete;
  CTempFolder& operator=(const CTempFolder&) = delete;

  std::string Path() const { return Utf8Of(m_path); }
  // Path of a file or folder in it; the name is UTF-8.
  std::string operator/(const std::string& name) const { return Utf8Of(m_path / PathOf(name)); }

 private:
  std::filesystem::path m_path;
};

}  // namespace carvello::test
