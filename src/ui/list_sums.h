// The line below the list of entries: how many there are, how long they are, how large, and whether they have room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ui/readable_colours.h"
#include "ui/target_room.h"

namespace carvello {

struct SListSums {
  std::size_t nEntries = 0;
  double dSeconds = 0;
  std::int64_t nBytes = 0;
  std::vector<SRoom> rooms;  // of the disks; none as long as they have not answered
};

// Empty for an empty list. Of several disks the one with the least room is told.
SToneText ListSumsText(const SListSums& sums);

}  // namespace carvello
