#include "ui/control_states.h"

namespace carvello {

namespace {

bool IsEnabledInRun(int id) {
  switch (id) {
    case 1019:  // Stop
    case 1020:  // progress bar
    case 1021:  // percentage
    case 1022:  // log
    case 1023:  // "View as text"
    case 1024:  // "Help"
      return true;
    default:
      return false;
  }
}

}  // namespace

bool IsControlEnabled(int id, const SDialogState& state) {
  if (state.bRunning) return IsEnabledInRun(id);
  const bool ready = state.bInputValid && state.bOutputChosen;
  switch (id) {
    case 1000:  // input
    case 1022:  // log
    case 1023:  // "View as text"
    case 1024:  // "Help"
      return true;
    case 1001:  // what is known of the input
    case 1002:
    case 1003:
    case 1004:
    case 1005:
    case 1006:
    case 1007:
    case 1036:
    case 1032:  // show the input in the file manager
    case 1034:  // UTC
    case 1009:  // output folder
      return state.bInputValid;
    case 1033:  // open the output folder
      return state.bOutputChosen;
    case 1105:  // start date and time
    case 1103:
      return ready && state.nStartMode == 1;
    case 1028:  // duration
    case 1029:
      return ready && state.nEndMode == 1;
    case 1106:  // finish date and time
    case 1104:
      return ready && state.nEndMode == 2;
    case 1025:  // Delete
      return state.bRowSelected;
    case 1017:  // Reset
    case 1018:  // Start
      return state.bHasRows;
    case 1019:  // Stop
      return false;
    default:  // everything else about the output
      return ready;
  }
}

}  // namespace carvello
