// What the program's exit code says. Scripts rely on the numbers.
#pragma once

namespace carvello {

enum class EExit : int {
  Ok = 0,               // every output was written
  OutputFailed = 1,     // the job ran, or could have run, but an output could not be written
  Usage = 2,            // the command line or the job file is wrong, or an entry is refused; nothing was created
  InputUnreadable = 3,  // the input cannot be read or recognised, or the job has nothing to work with
  OutputsExist = 4,     // outputs exist and it was not said what to do with them; nothing was touched
  TryAgain = 75,        // a task of a plan, or its join, is not done, and another try may do it
  Stopped = 130,        // stopped by Ctrl-C; every file is finished and valid
};

}  // namespace carvello
