// What the stages before a channel filter do to the channel is made up for by the channel filter itself: whatever chain
// leads there, the response is the channel filter's alone.
#pragma once

#include <cstddef>
#include <vector>

#include "stage_plan.h"

namespace vantrel {

// For the plan of a channel filter: the factors by which its impulse response is added to itself, factor k once that
// many of its input samples earlier and once later. From 0 Hz to the stop edge, their gain times that of the plan's
// decimators is 1 within 2e-7. Beyond it, where the channel filter lets nothing through, they amplify by less than 3.
std::vector<double> ChannelCorrection(const SStagePlan& plan);

// A row of taps added to itself in that way, for the taps that have as many on either side as there are factors beside
// factor 0.
std::vector<double> CorrectTaps(const std::vector<double>& taps, const std::vector<double>& factors);

}  // namespace vantrel
