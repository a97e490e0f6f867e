// The programs whose recordings "synth" makes: one row for each way of naming and laying out files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/synth_file.h"
#include "cli/synth_riff.h"

namespace carvello {

// What stands around the samples.
enum class ESynthContainer { None, Wave, Kiwi, Sdriq, OldSdriq };

struct SSynthProgram {
  const char* pszName;
  // Of the file, for FormatUtc or FormatLocal; in braces F stands for the centre in units of nUnit, M for the same in
  // MHz, K in kHz, R for the rate in units of nRateUnit, E for the ending that tells the samples.
  const char* pszFile;
  bool bLocal;                  // the time in the name
  std::int64_t nUnit;           // Hz: the name or the head can tell multiples of it only
  std::int64_t nRateUnit;       // Hz
  std::int64_t nHighestCentre;  // Hz
  const char* pszTypes;         // of samples that the program writes, the usual one first
  ESynthContainer container;
  std::string (*pfnChunks)(const SSynthFacts& facts);  // of a WAV, between format and samples; nullptr: none
  const char* pszBeside;  // ending of a text file beside it that tells rate and centre; nullptr: none
};

// In the manner of the command line; letters' case does not count. nullptr for any other.
const SSynthProgram* FindSynthProgram(std::string_view name);
// The program whose files end as this path does, whatever they are called; nullptr when there is none.
const SSynthProgram* SynthProgramOfEnding(const std::string& path);
// All names, with commas between, in lines of about so many characters.
std::string SynthProgramNames(std::size_t line = std::string::npos);

// The samples of one of the types of the program; an unknown kind when it has no such type. Empty: the usual one.
SSampleKind SynthKindOf(const SSynthProgram& program, const std::string& type);
// As the program names a file with these facts.
std::string SynthFileName(const SSynthProgram& program, const SSynthFacts& facts);
// All about such a file at `path`.
SSynthFile LayOutProgramFile(const SSynthProgram& program, const SSynthFacts& facts, const std::string& path);

}  // namespace carvello
