// CSampleFileWriter: a file of samples being written, whatever form it has, and where it is wanted the SigMF meta file
// beside it.
//
// The file can be read at every moment, so that it is of use when its program was killed. Samples stand on the medium
// before anything tells of them, so that a power cut leaves such a file too. From its opening to Finish the file is
// locked against other writers.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "recording/sigmf_meta_file.h"
#include "recording/sigmf_writer.h"
#include "recording/write_policy.h"
#include "support/file.h"
#include "support/sha2.h"

namespace carvello {

class CSampleFileWriter {
 public:
  virtual ~CSampleFileWriter() = default;  // lets go of an open file without finishing it
  CSampleFileWriter(const CSampleFileWriter&) = delete;
  CSampleFileWriter& operator=(const CSampleFileWriter&) = delete;

  // Before the file is opened: how it is created and kept safe; and what its meta file tells, if it is to have one. The
  // writer fills in where the samples begin.
  void SetPolicy(const SWritePolicy& policy) { m_policy = policy; }
  void SetMeta(SSigMfFacts facts) { m_facts = std::move(facts); }

  // Appends a block of samples as it stands. `now`, in seconds since 1970, is the clock by which sizes may be
  // rewritten; with ETell::Later no sizes are. On failure the file keeps the whole frames that it took, its sizes are
  // made to fit and it is closed.
  bool Write(const void* block, std::uint32_t bytes, std::int64_t now, ETell tell = ETell::Now);

  // The last `bytes`, which no size tells of yet, are no samples of this file: they are cut off when it is finished,
  // and can be had until then. MoveLeftOut appends them to another file, on whose behalf it fails.
  void LeaveOut(std::uint32_t bytes);
  bool MoveLeftOut(CSampleFileWriter& next, std::int64_t now) const;

  // Appends what comes behind the samples, makes the sizes final, holds what stands under the file's name against what
  // was written, and closes; then completes the meta file. False when some of that failed; the sizes then cover the
  // samples alone. True when nothing is open. With `keep` a finished file is not closed but handed over, still locked.
  bool Finish(CFile* keep = nullptr);

  bool IsOpen() const { return m_file.IsOpen(); }
  // Whether the file was ever open, even if it is closed again.
  bool HasOpened() const { return m_bHasOpened; }
  // Full path of the meta file; empty without one.
  std::string MetaPath() const { return m_pMeta ? m_pMeta->Path() : std::string(); }
  // Sample bytes that the sizes tell of, or will at the next time they are written; also when the file is closed.
  std::int64_t DataBytes() const { return m_nDataBytes; }
  // Of the last failure; the code is the system's, 0 for what no call has refused.
  std::uint32_t ErrorCode() const { return m_nErrorCode; }
  const std::string& ErrorText() const { return m_strError; }

 protected:
  CSampleFileWriter() = default;

  // Creates the file, and its meta file, with what comes in front of the samples. Gives the offset of the first sample;
  // nothing on failure, ErrorText() then tells why. A file that could not even take its header is removed again.
  std::optional<std::int64_t> Create(const std::string& path, std::string_view header, std::uint32_t bytesPerFrame);

  // What comes behind the samples.
  virtual std::string Tail() const { return {}; }
  // Whether sizes are to be rewritten after a write at this time.
  virtual bool AreSizesDue(std::int64_t now) = 0;
  // Rewrites the sizes in the file for one that is so long. Leaves the position anywhere.
  virtual bool PatchSizes(std::int64_t fileSize) = 0;
  // Whether no size in the file says where samples end, but its end alone.
  virtual bool EndsWithSamples() const = 0;
  // Whether this, the finished file found under its name, holds what was written. False also where it cannot be read;
  // LastError() then tells why, and `readable` becomes false.
  virtual bool IsWhole(CFile& named, bool& readable) const = 0;

  bool WriteAll(std::string_view bytes) { return m_file.Write(bytes.data(), bytes.size()) == bytes.size(); }
  bool Patch(std::int64_t offset, std::string_view bytes) { return m_file.Seek(offset) && WriteAll(bytes); }
  std::int64_t DataOffset() const { return m_nDataOffset; }
  std::uint32_t BytesPerFrame() const { return m_nBytesPerFrame; }
  const SWritePolicy& Policy() const { return m_policy; }

 private:
  bool CreateMeta(std::string_view header);
  bool FinishMeta(std::size_t trailingBytes);
  bool BringSizesUpToDate(std::int64_t fileSize);
  bool TellSizes(std::int64_t fileSize);
  bool WriteEnd(std::string_view tail);
  bool StandsUnderItsName();
  std::int64_t DataEnd() const { return m_nDataOffset + m_nDataBytes; }
  void KeepWholeFrames();
  bool Fails();
  bool Fails(const std::string& reason);
  bool MetaFails();

  CFile m_file;
  std::string m_strPath;
  SWritePolicy m_policy;
  std::optional<SSigMfFacts> m_facts;
  std::unique_ptr<CSigMfMetaFile> m_pMeta;
  CSha512 m_hash;  // of the samples, where the meta file is to tell it
  bool m_bHasOpened = false;
  std::int64_t m_nLeftOut = 0;  // bytes behind the samples
  bool m_bDataLost = false;     // the system could not bring samples to the medium
  std::uint32_t m_nErrorCode = 0;
  std::string m_strError;
  std::uint32_t m_nBytesPerFrame = 1;
  std::int64_t m_nDataOffset = 0;  // of the first sample
  std::int64_t m_nDataBytes = 0;
  std::int64_t m_nToldBytes = 0;  // sample bytes that the sizes in the file tell of
};

}  // namespace carvello
