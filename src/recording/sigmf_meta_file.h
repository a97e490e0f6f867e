// CSigMfMetaFile: the SigMF meta file beside a file of samples while that is written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "recording/sigmf_writer.h"
#include "recording/write_policy.h"
#include "support/file.h"

namespace carvello {

// From Open to Finish the file is locked against other writers. What it holds is right at every moment.
class CSigMfMetaFile {
 public:
  void SetPolicy(const SWritePolicy& policy) { m_policy = policy; }

  // Creates the file and writes the text, without its end. On false nothing is left of a file that was not there.
  bool Open(const std::string& path, SSigMfText text);
  // Before samples are brought to the medium: what describes them stands there first.
  bool Sync();
  // Once the samples stand as they will stay. Puts the end text into its place, holds what stands under the file's name
  // against what was written, and closes.
  bool Finish(std::string_view end);

  bool IsOpen() const { return m_file.IsOpen(); }
  const std::string& Path() const { return m_strPath; }
  // Of the last failure; the code is the system's, 0 for what no call has refused. The text names the file.
  std::uint32_t ErrorCode() const { return m_nErrorCode; }
  const std::string& ErrorText() const { return m_strError; }

 private:
  bool StandsUnderItsName();
  bool Fails();
  bool Fails(std::uint32_t code, const std::string& reason);

  CFile m_file;
  SWritePolicy m_policy;
  std::string m_strPath;
  SSigMfText m_text;
  bool m_bSynced = false;
  std::uint32_t m_nErrorCode = 0;
  std::string m_strError;
};

}  // namespace carvello
