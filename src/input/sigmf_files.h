// Where the files of SigMF recordings are found: beside each other, in an archive, or named by a collection.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/recording_set.h"
#include "input/sigmf_meta.h"

namespace carvello {

struct SSigMfFiles {
  std::string strName;  // of the meta file, for messages
  SSigMfMeta meta;
  std::string strPath;       // of the file that holds the samples, which may be the archive
  std::int64_t nOffset = 0;  // of the dataset in it
  std::int64_t nBytes = 0;   // of the dataset
  SFileStamp stamp;          // of the file that holds the samples, from before anything was read of it
  std::vector<SDescribingFile> describedBy;
};

// Whether the file is a dataset of SigMF with no meta file beside it, which nothing but the user can describe.
bool IsLoneSigMfData(const std::string& path);

struct SSigMfProblem {
  std::string strText;   // printable
  bool bUnread = false;  // the system did not let a file be read that is there; else none is, or none is in order
};

// All recordings that the selected file leads to, in their order. False when there is none, or when any of them is
// there and cannot be read, so that nobody knows which is which. `warnings` tell what was left out.
bool FindSigMfFiles(const std::string& selectedFile, std::vector<SSigMfFiles>& found,
                    std::vector<std::string>& warnings, SSigMfProblem& problem);

}  // namespace carvello
