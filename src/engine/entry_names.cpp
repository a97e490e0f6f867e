#include "engine/entry_names.h"

namespace carvello {

// The lowest number that is free, which then no longer is.
int CEntryNames::TakeLowest(SStem& names) {
  if (!names.free.empty()) return names.free.extract(names.free.begin()).value();
  while (names.ahead.erase(names.nNext) > 0) ++names.nNext;
  return names.nNext++;
}

// False when somebody has the number.
bool CEntryNames::TakeThis(SStem& names, int number) {
  return number < names.nNext ? names.free.erase(number) > 0 : names.ahead.insert(number).second;
}

int CEntryNames::Take(const std::string& stem, const OutputKey& key, int wanted) {
  SStem& names = m_stems[stem];
  SHolders& holders = names.outputs[key];
  if (holders.nEntries++ > 0) return holders.nNumber;
  holders.nNumber = wanted > 0 && TakeThis(names, wanted) ? wanted : TakeLowest(names);
  return holders.nNumber;
}

void CEntryNames::GiveBack(const std::string& stem, const OutputKey& key) {
  const auto names = m_stems.find(stem);
  if (names == m_stems.end()) return;
  const auto holders = names->second.outputs.find(key);
  if (holders == names->second.outputs.end() || --holders->second.nEntries > 0) return;
  const int number = holders->second.nNumber;
  if (names->second.ahead.erase(number) == 0) names->second.free.insert(number);
  names->second.outputs.erase(holders);
  if (names->second.outputs.empty()) m_stems.erase(names);
}

}  // namespace carvello
