// Repair of recordings whose recorder could not end them, or counted past 4 GiB: the sizes in their heads become what
// the files hold. Samples are never changed.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "input/file_stamp.h"
#include "input/given_facts.h"

namespace carvello {

enum class ERepairState {
  Sound,    // nothing to do
  Broken,   // can be made right
  Refused,  // no recording, or broken so that its right sizes cannot be told
};

// What is wrong with one file and what would make it right. All sentences are without a full stop.
struct SRepairPlan {
  std::string strPath;  // of the file itself, where the one asked for is a link
  ERepairState state = ERepairState::Refused;
  std::vector<std::string> faults;   // what is wrong: what was found and what the file holds
  std::vector<std::string> changes;  // what becomes of it: which field, from what to what
  std::string strProblem;            // why it is refused; also what is to be known of a sound file that has no sizes
  std::string strOnlyAsNewFile;      // why it cannot be repaired in place, but as a new file only; empty when it can

  bool bNeedsRate = false;  // refused as long as these are not given
  bool bNeedsKind = false;

  // For those who repair.
  std::string strHead;       // all in front of the samples, as it is
  std::string strRightHead;  // and as it should be; longer where a new file is needed
  std::int64_t nEnd = 0;     // of samples and chunks behind them; what follows is half a frame
  SFileStamp stamp;
};

// Looks at the file, without changing anything. Of what is given the sample rate counts, which goes before the file's,
// and the kind of samples of a format that was never filled in.
SRepairPlan PlanRepair(const std::string& path, const SGivenFacts& given = {});

enum class ERepairOutcome {
  Sound,  // there was nothing to do
  Repaired,
  Refused,     // as the plan tells
  Unreadable,  // the file cannot be had
  Exists,      // a file of that name stands in the folder already
  Failed,      // could not be written; the file is as it was, or the text tells where its old bytes are
  Stopped,     // by whoever asked for it
};

struct SRepairResult {
  ERepairOutcome outcome = ERepairOutcome::Failed;
  SRepairPlan plan;               // as found when the work began
  std::string strFile;            // the one that is right now
  std::string strError;           // names file and reason; empty when all went well
  bool bFinishedEarlier = false;  // an earlier repair, which had been interrupted, was brought to its end or taken back
};

// Bytes done and in all. False stops the work; what was written goes.
using RepairProgress = std::function<bool(std::int64_t, std::int64_t)>;

// Changes the head in its place. While that lasts the old bytes stand in a file beside it (RepairSidePath): whenever
// the work is cut off, the next repair of either kind finishes it or takes it back. The file keeps the time of its last
// change. Refused while another program repairs it.
SRepairResult RepairInPlace(const std::string& path, const SGivenFacts& given = {});
// Writes a right copy of the same name into the folder, with the time of change that the file has. It has its name only
// when it is whole.
SRepairResult RepairInto(const std::string& path, const std::string& folder, const SGivenFacts& given = {},
                         const RepairProgress& progress = {});

std::string RepairSidePath(const std::string& path);
// Whether a repair of the file was interrupted.
bool IsRepairInterrupted(const std::string& path);

}  // namespace carvello
