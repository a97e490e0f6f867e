// Which controls of the main dialog can be used when.
#pragma once

namespace carvello {

struct SDialogState {
  bool bInputValid = false;
  bool bOutputChosen = false;  // the output folder was set at all, be it to an empty text
  bool bRunning = false;
  bool bRowSelected = false;
  bool bHasRows = false;
  int nStartMode = 0;  // 0 beginning, 1 date and time
  int nEndMode = 0;    // 0 end, 1 duration, 2 date and time
};

// `id`: the number in the control's name "IDC_<id>".
bool IsControlEnabled(int id, const SDialogState& state);

}  // namespace carvello
