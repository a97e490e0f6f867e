// What an entry costs on either road, and the parts of the shared one, for each input sample.
#pragma once

namespace carvello::bench {

void RegisterRoads();

}  // namespace carvello::bench
