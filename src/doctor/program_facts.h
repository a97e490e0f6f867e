// What the program is: version, commit, compiler, instruction set, and the downconverter library that it finds.
#pragma once

#include <string>

#include "doctor/report.h"
#include "dsp/dsp_binding.h"

namespace carvello {

// The library at `path` is bound, if it can be, and nothing else is done with it: a job may be at work beside this.
SReportSection ProgramSection();
SReportSection LibrarySection(DspBinding& dsp, const std::string& path = DspLibraryPath());

// The long title, and what the sections above tell in short, a line each; without a line break at the end.
std::string VersionReport(const std::string& library = DspLibraryPath());

}  // namespace carvello
