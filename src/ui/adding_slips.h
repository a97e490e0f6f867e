// CAddingSlips: what surely is a slip in the entries of one click on Add or Add Sequence. They are added all the same;
// the user is told in few words beside the button, and of each entry in the log.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "engine/entry_checks.h"
#include "engine/entry_list.h"

namespace carvello {

class CAddingSlips {
 public:
  // An entry as it was added with the fields.
  void Added(const SEntryFields& fields, const CRecordingSet& recording, const OutputEntry& entry);
  // One of them that the list did not keep.
  void Dropped(const SDroppedEntry& entry);

  // In few words, the gravest for all entries together; empty when there is no slip.
  std::string Hint() const;
  // One for each slip of each entry; beyond a number of them, how many more there are.
  std::vector<std::string> LogLines() const;

 private:
  enum EKind { Bandwidth, End, Start, WhollyOutside, PartlyOutside, Duplicate, kKinds };
  struct SKind {
    std::size_t nEntries = 0;
    std::string strFirst;  // what the first of them is told
  };

  void Note(EKind kind, const std::string& title, const std::string& text);

  std::size_t m_nAdded = 0;
  std::array<SKind, kKinds> m_kinds;
  std::size_t m_nSlips = 0;
  std::vector<std::string> m_lines;
};

}  // namespace carvello
