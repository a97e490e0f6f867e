// Any bytes as a job file: entries that a job can take, or one short printable line that names the file.
#include "jobs/job_file.h"

#include "fuzz_checks.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  SJobFile job;
  std::string error;
  if (ParseJobFile(fuzz::Text(bytes, count), "jobs\x1B.json", job, error)) {
    fuzz::Require(job.entries.size() <= static_cast<std::size_t>(kMostEntries));
    fuzz::Require(job.strInput.find('\0') == std::string::npos && job.strOutput.find('\0') == std::string::npos);
    for (const SEntrySpec& entry : job.entries) {
      fuzz::Require(entry.frequency && entry.bandwidth && !entry.range && !(entry.end && entry.duration));
      fuzz::RequirePrintable(entry.strLabel);
    }
  } else {
    fuzz::Require(error.starts_with("jobs\\x1B.json: "));
    fuzz::RequirePrintable(error);
  }
  return 0;
}
