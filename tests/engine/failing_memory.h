// Memory that fails when a test wants it to. Whoever links this has operator new replaced.
#pragma once

#include <cstdint>

namespace carvello::test {

// From here on allocation `at` fails, counted from 1, and with `forGood` all behind it. How many there were since the
// last call.
std::int64_t FailAllocations(std::int64_t at, bool forGood);
// All of the calling thread, from here on or no more.
void FailAllocationsOfThisThread(bool fail);

}  // namespace carvello::test
