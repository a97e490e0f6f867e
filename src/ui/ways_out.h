// What the user can do about something that failed, in words that stand below what and why.
#pragma once

#include <cstdint>
#include <string>

#include "engine/job_options.h"

namespace carvello {

// Of a file or folder that the desktop did not open. `error`: why there is no getting at it, or 0.
std::string WayOutOfOpening(std::uint32_t error);
// Of a file that could not be read; empty where `error` is 0, for then the fault is in what it holds.
std::string WayOutOfReading(std::uint32_t error);
// Of a job that could not be saved.
std::string WayOutOfSaving();
// Of a job that cannot start; empty where there is nothing to say. `error`: the system's code, or 0.
std::string WayOutOfStart(EStartResult result, std::uint32_t error);
// Of a run that nobody watched and that a silent disk kept from going on.
std::string WayOutOfNoAnswer();
// Of outputs that failed.
std::string WayOutOfFailures();

// The text, and below it the way out, if there is any.
std::string WithWayOut(const std::string& text, const std::string& wayOut);

}  // namespace carvello
