// Entries of tar archives, put together without the code under test.
#pragma once

#include <cstdio>
#include <string>

namespace carvello::test {

struct STarLayout {
  char type = '0';
  std::string prefix{};
  std::string magic = std::string("ustar\0", 6) + "00";
  std::string size{};  // as it stands in the head; empty: that of the content, in digits
};

// A head with its right sum, the content, and zeros to the end of its last block.
inline std::string TarFile(const std::string& name, const std::string& content, const STarLayout& layout = {}) {
  std::string head(512, '\0');
  char digits[16];
  std::snprintf(digits, sizeof(digits), "%011zo", content.size());
  head.replace(0, name.size(), name);
  head.replace(100, 7, "0000644");
  head.replace(108, 7, "0000000");
  head.replace(116, 7, "0000000");
  const std::string size = layout.size.empty() ? std::string(digits) : layout.size;
  head.replace(124, size.size(), size);
  head.replace(136, 11, "14477370000");
  head.replace(148, 8, "        ");
  head[156] = layout.type;
  head.replace(257, layout.magic.size(), layout.magic);
  head.replace(345, layout.prefix.size(), layout.prefix);
  unsigned sum = 0;
  for (const char c : head) sum += static_cast<unsigned char>(c);
  std::snprintf(digits, sizeof(digits), "%06o", sum);
  head.replace(148, 7, std::string(digits) + '\0');
  const std::string filling((512 - content.size() % 512) % 512, '\0');
  return head + content + filling;
}

}  // namespace carvello::test
