// Ctrl-C and other requests to end, as a count that the program looks at when it suits.
#pragma once

namespace carvello {

// From here on they no longer end the program.
void CatchStopRequests();
// How often one of them came.
int StopRequests();

}  // namespace carvello
