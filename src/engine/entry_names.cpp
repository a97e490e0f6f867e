#include "engine/entry_names.h"

namespace carvello {

int CEntryNames::Take(const std::string& stem, const OutputKey& key) {
  SStem& names = m_stems[stem];
  SHolders& holders = names.outputs[key];
  if (holders.nEntries++ > 0) return holders.nNumber;
  if (names.givenBack.empty()) {
    holders.nNumber = names.nNext++;
  } else {
    holders.nNumber = *names.givenBack.begin();
    names.givenBack.erase(names.givenBack.begin());
  }
  return holders.nNumber;
}

void CEntryNames::GiveBack(const std::string& stem, const OutputKey& key) {
  const auto names = m_stems.find(stem);
  if (names == m_stems.end()) return;
  const auto holders = names->second.outputs.find(key);
  if (holders == names->second.outputs.end() || --holders->second.nEntries > 0) return;
  names->second.givenBack.insert(holders->second.nNumber);
  names->second.outputs.erase(holders);
  if (names->second.outputs.empty()) m_stems.erase(names);
}

}  // namespace carvello
