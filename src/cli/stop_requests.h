// Ctrl-C and other requests to end, as a count that the program looks at when it suits.
#pragma once

namespace carvello {

// From here on they end the program at once, with the exit code of a stop: for as long as nothing is begun that has to
// be finished.
void EndOnStopRequests();
// From here on they no longer end the program.
void CatchStopRequests();
// How often one of them came.
int StopRequests();

}  // namespace carvello
