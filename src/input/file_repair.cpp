#include "input/file_repair.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "input/lookup_cache.h"
#include "input/repair_side_file.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kCopyBytes = 4 << 20;

// The bytes that differ, in stretches.
std::vector<SByteChange> ChangesBetween(const std::string& from, const std::string& to) {
  constexpr std::size_t kNear = 16;  // no more than that between them makes two stretches one
  std::vector<SByteChange> changes;
  std::size_t end = 0;
  for (std::size_t place = 0; place < from.size(); ++place) {
    if (from[place] == to[place]) continue;
    if (changes.empty() || place - end > kNear) {
      changes.push_back({static_cast<std::int64_t>(place), {}, {}});
    }
    end = place + 1;
    const auto begin = static_cast<std::size_t>(changes.back().nOffset);
    changes.back().strOld = from.substr(begin, end - begin);
    changes.back().strNew = to.substr(begin, end - begin);
  }
  return changes;
}

SRepairResult Failed(SRepairResult result, ERepairOutcome outcome, const std::string& error) {
  result.outcome = outcome;
  result.strError = error;
  return result;
}

// A file whose head is changed in its place; nobody else changes it meanwhile.
class CHeadRepair {
 public:
  explicit CHeadRepair(const std::string& path) : m_strPath(path), m_strSide(RepairSidePath(path)) {}

  // False with the reason.
  bool Open(std::string& error) {
    if (m_file.Open(m_strPath, platform::EOpenMode::Change)) return true;
    error = m_strPath + ": cannot be opened for changes: " + SystemErrorText();
    return false;
  }
  // Brings a repair that was interrupted to its end or takes it back. False with the reason.
  bool Settle(bool& settled, std::string& error);
  bool Apply(const SRepairPlan& plan, std::string& error);
  // Whether it is still the file that the plan is of.
  bool IsAsPlanned(const SRepairPlan& plan) {
    const auto status = m_file.Status();
    return status && SFileStamp(*status) == plan.stamp;
  }

 private:
  enum class EFound { Old, New, Mixed, Other, Unreadable };
  EFound Compare(const std::vector<SByteChange>& changes);
  bool Write(const std::vector<SByteChange>& changes, std::string SByteChange::*bytes);
  bool Finish(std::int64_t modified) { return m_file.SetModifiedTime(modified) && m_file.Sync(); }

  const std::string m_strPath;
  const std::string m_strSide;
  CFile m_file;
};

CHeadRepair::EFound CHeadRepair::Compare(const std::vector<SByteChange>& changes) {
  bool isOld = true;
  bool isNew = true;
  for (const SByteChange& change : changes) {
    std::string found(change.strOld.size(), '\0');
    if (!m_file.Seek(change.nOffset)) return EFound::Unreadable;
    if (!m_file.ReadExactly(found.data(), found.size())) {
      return m_file.ReadError() != 0 ? EFound::Unreadable : EFound::Other;
    }
    isOld = isOld && found == change.strOld;
    isNew = isNew && found == change.strNew;
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (found[i] != change.strOld[i] && found[i] != change.strNew[i]) return EFound::Other;
    }
  }
  return isOld ? EFound::Old : isNew ? EFound::New : EFound::Mixed;
}

// Sizes and times stay, so that nothing else shows the change.
bool CHeadRepair::Write(const std::vector<SByteChange>& changes, std::string SByteChange::*bytes) {
  const bool written = std::all_of(changes.begin(), changes.end(), [&](const SByteChange& change) {
    const std::string& text = change.*bytes;
    return m_file.Seek(change.nOffset) && m_file.Write(text.data(), text.size()) == text.size();
  });
  ForgetLookups();
  return written;
}

bool CHeadRepair::Settle(bool& settled, std::string& error) {
  SKeptBytes kept;
  const ESideFile side = ReadSideFile(m_strSide, kept, error);
  if (side == ESideFile::None) return true;
  if (side == ESideFile::Unreadable) return false;
  if (side == ESideFile::Foreign) {
    error = m_strSide + ": is in the way, and was not left there by a repair";
    return false;
  }
  settled = true;
  if (side == ESideFile::Unfinished) return RemoveSideFile(m_strSide, error);
  const EFound found = Compare(kept.changes);
  if (found == EFound::Unreadable) {
    error = m_strPath + ": cannot be read: " + SystemErrorText(m_file.ReadError());
    return false;
  }
  if (found == EFound::Other) {
    error = Format(
        "%s: was changed by somebody else since an earlier repair was interrupted; how it was before that is kept "
        "in %s, which you can delete",
        m_strPath.c_str(), m_strSide.c_str());
    return false;
  }
  const bool isWhole = found != EFound::Mixed || Write(kept.changes, &SByteChange::strOld);
  // The time is that of the recording as long as nobody has written to it since.
  const bool isDone = isWhole && (m_file.Length() == kept.nLength ? Finish(kept.nModified) : m_file.Sync());
  if (!isDone) {
    error = m_strPath + ": what an earlier repair left cannot be put right: " + SystemErrorText();
    return false;
  }
  return RemoveSideFile(m_strSide, error);
}

bool CHeadRepair::Apply(const SRepairPlan& plan, std::string& error) {
  const SKeptBytes kept{plan.stamp.nModified, plan.stamp.nSize, ChangesBetween(plan.strHead, plan.strRightHead)};
  if (Compare(kept.changes) != EFound::Old) {
    error = m_strPath + ": cannot be read, or was changed meanwhile";
    return false;
  }
  // Asked for before anything changes: not everyone who may write to a file may set its times.
  if (!m_file.SetModifiedTime(kept.nModified)) {
    error = m_strPath + ": the time of its last change cannot be kept: " + SystemErrorText();
    return false;
  }
  if (!WriteSideFile(m_strSide, kept, error)) return false;
  if (Write(kept.changes, &SByteChange::strNew) && Finish(kept.nModified)) return RemoveSideFile(m_strSide, error);
  const std::string reason = SystemErrorText();
  error = m_strPath + ": cannot be written: " + reason;
  std::string left;
  if (Write(kept.changes, &SByteChange::strOld) && Finish(kept.nModified) && RemoveSideFile(m_strSide, left)) {
    error += "; it is as it was";
  } else {
    error += "; how it was is kept in " + m_strSide + ", and the next repair goes on from there";
  }
  return false;
}

// Copies all behind the head. False when the system or the caller stops it.
bool CopySamples(CFile& from, CFile& to, const SRepairPlan& plan, const RepairProgress& progress, bool& stopped,
                 std::string& error) {
  if (to.Write(plan.strRightHead.data(), plan.strRightHead.size()) != plan.strRightHead.size()) {
    error = SystemErrorText();
    return false;
  }
  auto place = static_cast<std::int64_t>(plan.strHead.size());
  if (!from.Seek(place)) {
    error = "the samples cannot be read: " + SystemErrorText();
    return false;
  }
  std::string block(kCopyBytes, '\0');
  while (place < plan.nEnd) {
    stopped = progress && !progress(place, plan.nEnd);
    if (stopped) return false;
    const auto bytes = static_cast<std::size_t>(std::min<std::int64_t>(plan.nEnd - place, kCopyBytes));
    if (!from.ReadExactly(block.data(), bytes)) {
      error = "the samples cannot be read: " +
              (from.ReadError() != 0 ? SystemErrorText(from.ReadError()) : std::string("the file ends too early"));
      return false;
    }
    if (to.Write(block.data(), bytes) != bytes) {
      error = SystemErrorText();
      return false;
    }
    place += static_cast<std::int64_t>(bytes);
  }
  return true;
}

SRepairResult WriteCopy(SRepairResult result, CFile& source, const std::string& target,
                        const RepairProgress& progress) {
  const std::string part = target + ".part";
  CFile copy;
  if (!copy.Open(part, platform::EOpenMode::CreateNew)) {
    // Of a repair that was cut off, unless somebody is still writing it.
    const bool isFree = platform::MeansExisting(platform::LastError()) && platform::RemoveUnusedFile(part);
    if (!isFree || !copy.Open(part, platform::EOpenMode::CreateNew)) {
      return Failed(std::move(result), ERepairOutcome::Failed, part + ": cannot be created: " + SystemErrorText());
    }
  }
  bool stopped = false;
  std::string error;
  bool written = CopySamples(source, copy, result.plan, progress, stopped, error);
  if (written && !(copy.SetModifiedTime(result.plan.stamp.nModified) && copy.Sync())) {
    written = false;
    error = SystemErrorText();
  }
  if (!copy.Close() && written) {
    written = false;
    error = SystemErrorText();
  }
  bool exists = false;
  if (written && !platform::RenameFile(part, target, false)) {
    written = false;
    exists = platform::MeansExisting(platform::LastError());
    error = SystemErrorText();
  }
  if (!written) {
    platform::RemoveFile(part);
    const ERepairOutcome outcome = stopped  ? ERepairOutcome::Stopped
                                   : exists ? ERepairOutcome::Exists
                                            : ERepairOutcome::Failed;
    return Failed(std::move(result), outcome, target + ": cannot be written: " + (stopped ? "stopped" : error));
  }
  platform::SyncFolder(platform::FolderOf(target));
  result.outcome = ERepairOutcome::Repaired;
  result.strFile = target;
  return result;
}

// What the plan alone decides. True when there is something to do.
bool IsToBeDone(SRepairResult& result) {
  if (result.plan.state == ERepairState::Sound) result.outcome = ERepairOutcome::Sound;
  if (result.plan.state == ERepairState::Refused) {
    result = Failed(std::move(result), ERepairOutcome::Refused, {});
    result.strError = result.plan.strPath + ": " + result.plan.strProblem;
  }
  return result.plan.state == ERepairState::Broken;
}

// Finishes or takes back what an interrupted repair left. False when that fails; the result tells why then.
bool SettleEarlier(const std::string& path, SRepairResult& result) {
  if (!IsRepairInterrupted(path)) return true;
  CHeadRepair head(path);
  std::string error;
  if (head.Open(error) && head.Settle(result.bFinishedEarlier, error)) return true;
  result = Failed(std::move(result), ERepairOutcome::Failed, error);
  return false;
}

}  // namespace

std::string RepairSidePath(const std::string& path) {
  return platform::LinkedPath(path) + ".carvello-repair";
}

bool IsRepairInterrupted(const std::string& path) {
  return platform::GetNameStatus(RepairSidePath(path)).has_value();
}

SRepairResult RepairInPlace(const std::string& given, const SGivenFacts& facts) {
  SRepairResult result;
  const std::string path = platform::LinkedPath(given);
  result.plan = PlanRepair(path, facts);
  // A file that is in order need not be one that may be changed.
  if (!IsRepairInterrupted(path) && !IsToBeDone(result)) return result;
  CHeadRepair head(path);
  std::string error;
  if (!head.Open(error) || !head.Settle(result.bFinishedEarlier, error)) {
    return Failed(std::move(result), ERepairOutcome::Failed, error);
  }
  result.plan = PlanRepair(path, facts);
  if (!IsToBeDone(result)) return result;
  if (!result.plan.strOnlyAsNewFile.empty()) {
    error = path + ": " + result.plan.strOnlyAsNewFile + "; it can be repaired into another folder";
    return Failed(std::move(result), ERepairOutcome::Refused, error);
  }
  if (!head.IsAsPlanned(result.plan)) {
    return Failed(std::move(result), ERepairOutcome::Failed, path + ": was changed meanwhile");
  }
  if (!head.Apply(result.plan, error)) return Failed(std::move(result), ERepairOutcome::Failed, error);
  result.outcome = ERepairOutcome::Repaired;
  result.strFile = path;
  return result;
}

SRepairResult RepairInto(const std::string& given, const std::string& folder, const SGivenFacts& facts,
                         const RepairProgress& progress) {
  SRepairResult result;
  const std::string path = platform::LinkedPath(given);
  if (!SettleEarlier(path, result)) return result;
  result.plan = PlanRepair(path, facts);
  if (!IsToBeDone(result)) return result;
  const std::string target = platform::JoinPath(folder, platform::NameOf(given));
  if (platform::GetNameStatus(target)) {
    return Failed(std::move(result), ERepairOutcome::Exists, target + ": exists already");
  }
  CFile source;
  if (!source.Open(path, platform::EOpenMode::ReadShared)) {
    return Failed(std::move(result), ERepairOutcome::Unreadable, path + ": cannot be opened: " + SystemErrorText());
  }
  const auto status = source.Status();
  if (!status || SFileStamp(*status) != result.plan.stamp) {
    return Failed(std::move(result), ERepairOutcome::Failed, path + ": was changed meanwhile");
  }
  return WriteCopy(std::move(result), source, target, progress);
}

}  // namespace carvello
