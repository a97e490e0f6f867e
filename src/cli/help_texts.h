// Texts that end the help of the program and of its commands.
#pragma once

namespace carvello {

inline constexpr const char* kExitCodesHelp =
    "Exit codes:\n"
    "  0    done; every output was written\n"
    "  1    an output could not be written\n"
    "  2    the command line or the job file is wrong, or an entry is refused; nothing was created\n"
    "  3    the input cannot be read or recognised, or the downconverter library is missing\n"
    "  4    outputs exist already and it was not said what to do with them; nothing was touched\n"
    "  75   a task of a plan or its join is not done; another try may do it\n"
    "  130  stopped by Ctrl-C; every file is finished and valid\n";

}  // namespace carvello
