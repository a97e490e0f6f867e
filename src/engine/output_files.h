// Which files on disk an entry would write, and which of them exist already.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/output_entry.h"
#include "support/platform.h"

namespace carvello {

// What stands in the output folders; each folder is listed once, when it is first asked for. Lives as long as one
// question about them. Where the system does not tell all that was asked for, Problem() holds what, and why.
class COutputFolders {
 public:
  // Full paths of the numbered parts ("name 000.wav", ...) of an earlier output of this name, in order; none for an
  // entry that is not split. Only names that a split gives count: three digits, and from part 1000 on as many as it
  // takes.
  std::vector<std::string> ExistingParts(const OutputEntry& entry);
  // The same of the meta files of such parts ("name 000.sigmf-meta", ...).
  std::vector<std::string> ExistingMetaParts(const OutputEntry& entry);
  // Full paths of existing files that writing this entry would replace or stand beside as parts of one output: the file
  // itself, for a split output its parts, and the meta files where it has some. What cannot be read does not count, but
  // a link that leads nowhere does.
  std::vector<std::string> ExistingOutputFiles(const OutputEntry& entry);
  // The input files that writing this entry would replace, by name or by being the same file under another name.
  std::vector<std::string> InputFilesReplaced(const OutputEntry& entry, const std::vector<std::string>& inputFiles);

  // Of the last question; empty when what was given is all.
  const std::string& Problem() const { return m_strProblem; }

 private:
  using Names = std::multimap<std::string, std::string>;  // of what may be parts, by what tells outputs apart roughly
  struct SFolder {
    Names names;
    bool bClosed = false;    // may not be listed, but may hold files that have names which are known
    std::string strProblem;  // why it could not be listed otherwise
  };

  std::vector<std::string> PartsNamed(const OutputEntry& entry, const std::string& path);
  void AddMetaPaths(const OutputEntry& entry, std::vector<std::string>& files);
  const SFolder& NumberedNames(const std::string& folder);
  bool Counts(const std::string& path);
  std::optional<platform::FileStatus> StatusOf(const std::string& path);
  void TellProblem(const std::string& path);

  std::map<std::string, SFolder> m_folders;
  std::string m_strProblem;
};

// Removes the numbered parts of an earlier output of this entry: those of a longer one would read as the end of the new
// one. The reason when one of them cannot be removed; one that another program is writing is left alone.
std::optional<std::string> RemoveOldParts(const OutputEntry& entry);

}  // namespace carvello
