// Texts: UTF-8 everywhere inside, printf-style formatting, and the borders to UTF-16 and the system code page.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>

// GCC checks against the C standard's format set on every platform ("gnu_printf"); clang knows only "printf".
#if defined(__clang__)
#define CARVELLO_PRINTF(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define CARVELLO_PRINTF(formatIndex, firstArgument) __attribute__((format(gnu_printf, formatIndex, firstArgument)))
#endif

namespace carvello {

// printf into a string of any length. An encoding error gives an empty text.
std::string Format(const char* format, ...) CARVELLO_PRINTF(1, 2);
std::string FormatV(const char* format, va_list arguments) CARVELLO_PRINTF(1, 0);

// A text as one line that is safe on a terminal, in a log and in a window, whoever wrote it: control characters (C0,
// C1), line breaks, what changes the writing direction or does not show, and bytes that are no UTF-8 appear as their
// escapes
// (\n, \x1B, \u202E, \U000E0001). A backslash stays as it is, so that paths of Windows stay readable and a text that
// has been through here goes through again unchanged.
std::string Printable(std::string_view text);
// The same for a text of several lines: the breaks "\n" stay. Texts of others must have been through Printable before
// they become part of it.
std::string PrintableLines(std::string_view text);
// The same for a whole JSON text, by JSON's own escapes: what it says stays the same.
std::string PrintableJson(std::string_view json);

// ASCII white space (blank, tab, CR, LF, VT, FF) removed at the right end, or at both ends.
std::string TrimRight(std::string_view text);
std::string Trim(std::string_view text);

// ASCII letters only; bytes of multi-byte characters stay as they are.
std::string ToLowerAscii(std::string_view text);
bool EqualsNoCaseAscii(std::string_view a, std::string_view b);

// The front of a UTF-8 text, at most `bytes` long and cut at a character's border.
std::string_view CutUtf8(std::string_view text, std::size_t bytes);

// Every occurrence of `what` replaced by `with`. An empty `what` changes nothing.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with);

// Bytes that are no UTF-8, and surrogates without a partner, become U+FFFD.
std::u16string Utf8ToUtf16(std::string_view text);
std::string Utf16ToUtf8(std::u16string_view text);

bool IsUtf8(std::string_view text);
// Bytes of Windows code page 1252; the five that it does not use become U+FFFD.
std::string Windows1252ToUtf8(std::string_view bytes);

// UTF-16LE bytes as they stand in a file. A trailing odd byte is ignored; the text ends at the first zero character.
std::u16string Utf16FromLittleEndian(std::string_view bytes);
// The characters of `text` as little-endian bytes, without a terminator.
std::string Utf16ToLittleEndian(std::u16string_view text);

}  // namespace carvello
