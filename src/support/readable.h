// Numbers as people read them, and texts set out in columns.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvello {

// "2026-11-21T12:00:00Z", or "2026-11-21T12:00:00.250Z" with milliseconds. Raises the invalid-argument error for a
// value that has no calendar date.
std::string FormatIsoTime(std::int64_t seconds, std::uint32_t milliseconds = 0);
// "512 B", "1.5 kB", "80.0 MB", "1.25 GB": units of 1000.
std::string FormatBytes(double bytes);

// Characters that a UTF-8 text takes on a terminal, every character counted as one column.
std::size_t TextWidth(std::string_view text);

// Rows of cells in columns two blanks apart, each as wide as its widest cell. Numbers stand right: a column that
// `alignment` marks with 'r'. The last column is never filled up with blanks. Rows may have different lengths. Cells go
// through Printable, so that a row is a line whatever stands in it.
std::string FormatColumns(std::vector<std::vector<std::string>> rows, std::string_view alignment);

}  // namespace carvello
