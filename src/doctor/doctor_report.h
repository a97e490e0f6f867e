// What a report about a fault needs to know of the program and the machine.
#pragma once

#include <string>
#include <vector>

#include "doctor/report.h"
#include "dsp/dsp_binding.h"

namespace carvello {

struct SDoctorRequest {
  std::vector<std::string> folders = {};  // those of recordings, whose disks are looked at
  bool bMeasure = true;                   // the speed of the disks and of a short cut
  std::string strLibrary = DspLibraryPath();
  // Further lines about the program itself, as label and value: what it is linked with.
  std::vector<std::pair<std::string, std::string>> linked = {};
};

// Fails for want of nothing but memory. May wait for the disks of the folders. Without measuring, a job may be at work
// beside it.
SReport MakeDoctorReport(const SDoctorRequest& request);

}  // namespace carvello
