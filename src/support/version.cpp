#include "support/version.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <sstream>
#include <string_view>

#include "support/platform.h"
#include "support/text.h"
#include "support/version_record.h"

namespace carvello {

namespace {

struct RecordValue {
  std::string_view key;
  std::string_view displayName;
  std::string_view value;  // of the program itself, where its file holds none; empty when there is no such entry
};

constexpr std::array<RecordValue, 9> kRecord{{
    {"CompanyName", "Company Name", CARVELLO_COMPANY_NAME},
    {"FileDescription", "File Description", CARVELLO_FILE_DESCRIPTION},
    {"FileVersion", "File Version", CARVELLO_FILE_VERSION},
    {"InternalName", "Internal Name", CARVELLO_INTERNAL_NAME},
    {"LegalCopyright", "Legal Copyright", CARVELLO_LEGAL_COPYRIGHT},
    {"OriginalFilename", "OriginalFilename", CARVELLO_ORIGINAL_FILENAME},
    {"ProductName", "Product Name", CARVELLO_PRODUCT_NAME},
    {"ProductVersion", "Product Version", CARVELLO_PRODUCT_VERSION},
    {"SpecialBuild", "Special Build", ""},
}};

const char* g_pszBuildCommit = "";

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// The program's own record, read from its file once. On systems whose files carry none it is the one above.
const std::array<std::string, kRecord.size()>& OwnValues() {
  static const auto values = [] {
    const std::string program = platform::ProgramPath();
    std::array<std::string, kRecord.size()> found;
    std::transform(kRecord.begin(), kRecord.end(), found.begin(), [&](const RecordValue& entry) {
      return platform::ModuleVersionValue(program, std::string(entry.key)).value_or(std::string(entry.value));
    });
    return found;
  }();
  return values;
}

std::string ValueOf(const std::string& modulePath, const std::string& key) {
  return modulePath.empty() ? VersionValue(key) : platform::ModuleVersionValue(modulePath, key).value_or("");
}

}  // namespace

std::string VersionValue(const std::string& key) {
  const auto* entry =
      std::find_if(kRecord.begin(), kRecord.end(), [&](const RecordValue& each) { return each.key == key; });
  return entry == kRecord.end() ? std::string() : OwnValues()[static_cast<std::size_t>(entry - kRecord.begin())];
}

std::string Release() {
  const std::string version = VersionValue("FileVersion");  // "1.0.0.0"
  return version.substr(0, version.rfind('.'));
}

const char* BuildCommit() {
  return g_pszBuildCommit;
}

void SetBuildCommit(const char* commit) {
  g_pszBuildCommit = commit;
}

std::string CompilerName() {
#ifdef __clang__
  return std::string("Clang ") + __clang_version__;
#else
  return std::string("GCC ") + __VERSION__;
#endif
}

std::uint32_t BuildNumberOf(const char* compilerDate) {
  namespace chr = std::chrono;
  std::istringstream fields(compilerDate);
  std::string monthName;
  unsigned day = 0;
  int year = 0;
  if (!(fields >> monthName >> day >> year)) return 0;
  unsigned month = 1;
  while (month <= kMonths.size() && kMonths[month - 1] != monthName) ++month;
  if (day > 31) return 0;  // chrono would keep 8 bits of it
  const chr::year_month_day date{chr::year{year}, chr::month{month}, chr::day{day}};
  constexpr chr::sys_days kFirstBuild = chr::year{2009} / chr::August / 1;
  if (!date.ok() || chr::sys_days(date) < kFirstBuild) return 0;
  return static_cast<std::uint32_t>((chr::sys_days(date) - kFirstBuild).count()) + 4;
}

VersionTexts VersionInfo(const std::string& modulePath) {
  VersionTexts texts;
  texts.strBuildDate = Format("%s at %s", __DATE__, __TIME__);
  texts.strModulePath = modulePath.empty() ? platform::ProgramPath() : modulePath;
  texts.nBuildNumber = BuildNumberOf(__DATE__);

  const std::string product = ValueOf(modulePath, "ProductName");
  const std::string version = ValueOf(modulePath, "ProductVersion");
  const std::string special = ValueOf(modulePath, "SpecialBuild");
  const bool isSpecial = !special.empty();
  texts.strLongTitle = Format("%s version %s build %u%s%s%s", product.c_str(), version.c_str(), texts.nBuildNumber,
                              isSpecial ? " (" : "", special.c_str(), isSpecial ? ")" : "");
  texts.strShortTitle = Format("%s %s build %u", product.c_str(), version.c_str(), texts.nBuildNumber);
  texts.strVersionText = Format("Version %s build %u", version.c_str(), texts.nBuildNumber);
  for (const RecordValue& entry : kRecord) {
    std::string value = ValueOf(modulePath, std::string(entry.key));
    if (!value.empty()) texts.values.emplace_back(entry.displayName, std::move(value));
  }
  return texts;
}

}  // namespace carvello
