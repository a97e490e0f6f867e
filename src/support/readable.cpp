#include "support/readable.h"

#include <algorithm>
#include <array>

#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

std::string FormatIsoTime(std::int64_t seconds, std::uint32_t milliseconds) {
  const std::string fraction = milliseconds > 0 ? Format(".%03u", milliseconds) : std::string();
  return FormatUtc("%Y-%m-%dT%H:%M:%S", seconds) + fraction + "Z";
}

std::string FormatBytes(double bytes) {
  constexpr std::array<const char*, 5> kUnits = {"B", "kB", "MB", "GB", "TB"};
  std::size_t unit = 0;
  while (bytes >= 999.95 && unit + 1 < kUnits.size()) {
    bytes /= 1000.0;
    ++unit;
  }
  if (unit == 0) return Format("%.0f B", bytes);
  return Format(unit >= 3 ? "%.2f %s" : "%.1f %s", bytes, kUnits[unit]);
}

std::size_t TextWidth(std::string_view text) {
  // Bytes 10xxxxxx continue a character.
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string FormatColumns(std::vector<std::vector<std::string>> rows, std::string_view alignment) {
  std::vector<std::size_t> widths;
  for (auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = Printable(row[i]);
      widths[i] = std::max(widths[i], TextWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string blanks(widths[i] - TextWidth(row[i]), ' ');
      const bool right = i < alignment.size() && alignment[i] == 'r';
      if (i > 0) line += "  ";
      line += right ? blanks + row[i] : row[i] + blanks;
    }
    text += TrimRight(line) + "\n";
  }
  return text;
}

}  // namespace carvello
