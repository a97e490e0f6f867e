// CEntryNames: which file names the entries of a list have taken. A name tells the minute of an entry's start, so two
// stretches of one channel within a minute would share a file: the later one gets a number.
#pragma once

#include <map>
#include <set>
#include <string>
#include <unordered_map>

#include "engine/output_entry.h"

namespace carvello {

class CEntryNames {
 public:
  // The number of an entry among those that are named from the same stem, folder included: the lowest that no other
  // output has; 1 stands for a name without a number. Entries of the same output share one, for only one of them stays.
  int Take(const std::string& stem, const OutputKey& key);
  // To be called once for every Take: when no entry has the number any more, it is free again.
  void GiveBack(const std::string& stem, const OutputKey& key);
  void Clear() { m_stems.clear(); }

 private:
  struct SHolders {
    int nNumber = 0;
    int nEntries = 0;
  };
  struct SStem {
    std::map<OutputKey, SHolders> outputs;
    std::set<int> givenBack;
    int nNext = 1;  // this and all above were never taken
  };

  std::unordered_map<std::string, SStem> m_stems;
};

}  // namespace carvello
