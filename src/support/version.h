// The program's version record and the texts made from it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace carvello {

struct VersionTexts {
  std::string strBuildDate;        // "%s at %s": build date and time
  std::string strModulePath;       // the path asked about, or the program's own
  std::uint32_t nBuildNumber = 0;  // days from 1 August 2009 to the build date, plus 4
  std::string strLongTitle;        // "%s version %s build %u%s%s%s"
  std::string strShortTitle;       // "%s %s build %u"
  std::string strVersionText;      // "Version %s build %u"
  // Display name and value of every entry that the version record has, for example "Product Name" and "Carvello".
  std::vector<std::pair<std::string, std::string>> values;
};

// modulePath empty: the program itself.
VersionTexts VersionInfo(const std::string& modulePath = {});
// One value of the program's version record by its key ("ProductName", "LegalCopyright", ...); empty when absent.
std::string VersionValue(const std::string& key);
// The program's release, for example "1.0.0".
std::string Release();
// The commit that the program is made of, with ", modified" behind it when the sources were changed; empty when that is
// not known. A program tells its own once, before all else.
const char* BuildCommit();
void SetBuildCommit(const char* commit);
// The compiler that made the program, for example "GCC 12.2.0".
std::string CompilerName();
// Build number for a compiler's date text such as "Sep  5 2022"; 0 for a text that is none.
std::uint32_t BuildNumberOf(const char* compilerDate);

}  // namespace carvello
