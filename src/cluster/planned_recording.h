// COpenRecording: a recording of a plan with its entries, as one job over all of it would take them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cluster/work_plan.h"
#include "engine/engine_kind.h"
#include "engine/entry_list.h"
#include "engine/input_frames.h"
#include "engine/output_stretch.h"
#include "engine/recording_input.h"

namespace carvello {

// How much of an output stands in a stretch of the recording: its samples [nFirst, nEnd).
struct SOutputRange {
  std::int64_t nFirst = 0;
  std::int64_t nEnd = 0;
  bool IsEmpty() const { return nEnd <= nFirst; }
  bool operator==(const SOutputRange&) const = default;
};

class COpenRecording {
 public:
  enum class EResult { Ok, NoRecording, Refused, Unreadable };

  // Describes the recording and makes the list of entries that the plan's job asks for. If not Ok, `error` names the
  // file, or on Refused the entry, and what is accepted; Unreadable tells that another try may help.
  EResult Open(const SWorkPlan& plan, const std::string& input, std::uint32_t part, std::string& error);
  // The same for one that the plan lists, which must still be what it was then.
  EResult OpenPlanned(const SWorkPlan& plan, const SPlannedRecording& planned, std::string& error);

  const SRecordingInput& Input() const { return m_input; }
  const CRecordingSet& Recording() const { return m_input.recording; }
  const CEntryList& Entries() const { return m_entries; }
  const CInputFrames& Frames() const { return *m_frames; }
  // Of each entry: the road it takes, and where the pass that it would be made in begins to read.
  EEngine Engine(std::size_t entry) const { return m_engines[entry]; }
  const SWholeJob& Job(std::size_t entry) const { return m_jobs[entry]; }
  // Entries of the plan's job that this recording does not hold, where each gets those that it does.
  std::size_t LeftOut() const { return m_nLeftOut; }
  // Of the plan's job, by their places in it: whether the recording has the entry.
  const std::vector<bool>& Holds() const { return m_holds; }

  // What of an entry's output stands between two seconds of the recording.
  SOutputRange Range(std::size_t entry, std::int64_t fromSecond, std::int64_t toSecond) const;
  // For the plan.
  SPlannedRecording Planned(const std::string& input, std::uint32_t part) const;

 private:
  EResult AddEntries(const SWorkPlan& plan, std::string& error);
  void ChooseJobs(EEngineSetting engine);
  std::string EntriesHash() const;

  SRecordingInput m_input;
  CEntryList m_entries;
  std::optional<CInputFrames> m_frames;
  std::vector<EEngine> m_engines;
  std::vector<SWholeJob> m_jobs;
  std::vector<bool> m_holds;
  std::size_t m_nLeftOut = 0;
};

}  // namespace carvello
