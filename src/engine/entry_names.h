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
  // `wanted` is taken instead where it is above 0 and no other output has it.
  int Take(const std::string& stem, const OutputKey& key, int wanted = 0);
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
    std::set<int> free;   // below the next
    int nNext = 1;        // from here on, numbers are free
    std::set<int> ahead;  // but for these
  };

  static int TakeLowest(SStem& names);
  static bool TakeThis(SStem& names, int number);

  std::unordered_map<std::string, SStem> m_stems;
};

}  // namespace carvello
