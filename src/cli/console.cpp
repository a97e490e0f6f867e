#include "cli/console.h"

#include <cstdio>
#include <initializer_list>
#include <string>

#include "support/text.h"

namespace carvello {

namespace {

void Write(std::FILE* stream, std::string_view text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stream));
}

// In one piece, so that lines of several threads do not mix.
void WriteErr(std::string_view text) {
  Write(stderr, text);
  static_cast<void>(std::fflush(stderr));
}

}  // namespace

void PrintOut(std::string_view text) {
  Write(stdout, PrintableLines(text));
}

void PrintOutLine(std::string_view text) {
  Write(stdout, Printable(text) + "\n");
}

void PrintErrLine(std::string_view text) {
  WriteErr(Printable(text) + "\n");
}

void PrintMessage(std::string_view text) {
  WriteErr(std::string(kProgramName) + ": " + Printable(text) + "\n");
}

void PrintMessageLines(std::string_view text) {
  WriteErr(std::string(kProgramName) + ": " + PrintableLines(text) + "\n");
}

void PrintPlainMessage(const char* text) noexcept {
  for (const char* const part : {kProgramName, ": ", text, "\n"}) WriteErr(part);
}

void PrintTerminalControl(std::string_view text) {
  WriteErr(text);
}

bool FlushOut() {
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

}  // namespace carvello
