// COverviewCache: overviews that are kept for the next time their recordings are opened.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/recording_set.h"
#include "overview/base_levels.h"

namespace carvello {

// A file a recording in a folder of their own. Its name and what it says itself come from the paths, sizes and times of
// change of the recording's files, so that one that was changed is made anew. It is written under another name and gets
// its own when it is whole: a kill leaves the old file or the new one. What it holds is believed only if all of it is
// as it was written. That none can be read or written is no reason to tell anybody.
class COverviewCache {
 public:
  // `mostBytes`: of all files in the folder; the ones that were written longest ago go first.
  COverviewCache(std::string folder, std::int64_t mostBytes, const CRecordingSet& recording);

  // Fills levels in which nothing is known. On false they are in no state to be used.
  bool Load(CBaseLevels& base) const;
  bool Save(const CBaseLevels& base) const;

  const std::string& Path() const { return m_strPath; }

 private:
  bool Write(const CBaseLevels& base, const std::string& path) const;
  void MakeRoom() const;

  std::string m_strFolder;
  std::int64_t m_nMostBytes;
  std::string m_strKey;   // what the overview belongs to
  std::string m_strPath;  // empty where nothing is kept
};

}  // namespace carvello
