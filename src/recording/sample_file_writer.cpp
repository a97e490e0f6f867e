#include "recording/sample_file_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "recording/new_file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

std::optional<std::int64_t> CSampleFileWriter::Create(const std::string& path, std::string_view header,
                                                      std::uint32_t bytesPerFrame) {
  m_nLeftOut = 0;
  m_bDataLost = false;
  m_strPath = path;
  m_nBytesPerFrame = std::max<std::uint32_t>(bytesPerFrame, 1);
  m_nDataBytes = 0;
  m_nToldBytes = 0;
  m_hash = CSha512();
  m_pMeta.reset();

  std::uint32_t code = 0;
  std::string reason;
  if (!OpenNewFile(m_file, path, m_policy, code, reason)) {
    Fails(reason);
    m_nErrorCode = code;
    return std::nullopt;
  }
  if (!WriteAll(header)) {
    Fails();
    RemoveNewFile(m_file, path);
    return std::nullopt;
  }
  if (!CreateMeta(header)) {
    RemoveNewFile(m_file, path);
    return std::nullopt;
  }
  m_bHasOpened = true;
  m_nDataOffset = m_file.Position();
  return m_nDataOffset;
}

// Behind the file of samples, which holds the name: as long as that is locked nobody else gets here.
bool CSampleFileWriter::CreateMeta(std::string_view header) {
  if (!m_facts) return true;
  m_facts->nHeaderBytes = header.size();
  auto pMeta = std::make_unique<CSigMfMetaFile>();
  pMeta->SetPolicy(m_policy);
  const bool opened = pMeta->Open(SigMfMetaPath(m_strPath), BuildSigMfMeta(*m_facts));
  m_pMeta = std::move(pMeta);
  return opened || MetaFails();
}

bool CSampleFileWriter::Write(const void* block, std::uint32_t bytes, std::int64_t now, ETell tell) {
  const std::size_t taken = m_file.Write(block, bytes);
  m_nDataBytes += static_cast<std::int64_t>(taken);
  if (m_pMeta && EndsWithSamples()) m_hash.Add(block, taken);
  bool written = taken == bytes || Fails();
  if (written && tell == ETell::Now && AreSizesDue(now)) written = BringSizesUpToDate(DataEnd());
  if (!written) {
    KeepWholeFrames();
    m_file.Close();
  }
  return written;
}

void CSampleFileWriter::LeaveOut(std::uint32_t bytes) {
  m_nDataBytes -= bytes;
  m_nLeftOut = bytes;
}

bool CSampleFileWriter::MoveLeftOut(CSampleFileWriter& next, std::int64_t now) const {
  std::array<char, 65'536> piece;
  CFile file;
  if (!file.Open(m_strPath, platform::EOpenMode::ReadShared) || !file.Seek(DataEnd())) return next.Fails();
  for (std::int64_t left = m_nLeftOut; left > 0;) {
    const auto count = static_cast<std::uint32_t>(std::min(left, std::int64_t{piece.size()}));
    if (!file.ReadExactly(piece.data(), count)) {
      return file.ReadError() != 0 ? next.Fails() : next.Fails("the file does not hold what was written to it");
    }
    if (!next.Write(piece.data(), count, now, ETell::Later)) return false;
    left -= count;
  }
  return true;
}

bool CSampleFileWriter::Finish(CFile* keep) {
  if (!IsOpen()) return true;
  const std::string tail = Tail();
  if (!WriteEnd(tail)) {
    KeepWholeFrames();
    m_file.Close();
    return false;
  }
  const bool same = StandsUnderItsName() && FinishMeta(tail.size());
  if (same && keep != nullptr) {
    *keep = std::move(m_file);
    return true;
  }
  const bool closed = m_file.Close() || !same || Fails();
  return same && closed;
}

bool CSampleFileWriter::FinishMeta(std::size_t trailingBytes) {
  if (!m_pMeta) return true;
  const std::int64_t frames = m_nDataBytes / m_nBytesPerFrame;
  const std::string hash = EndsWithSamples() ? m_hash.Hex() : std::string();
  return m_pMeta->Finish(SigMfEndText(frames, hash, trailingBytes)) || MetaFails();
}

bool CSampleFileWriter::WriteEnd(std::string_view tail) {
  if (m_nLeftOut != 0 && !(m_file.Seek(DataEnd()) && m_file.Truncate(DataEnd()))) return Fails();
  if (!WriteAll(tail)) return Fails();
  if (!BringSizesUpToDate(DataEnd() + static_cast<std::int64_t>(tail.size()))) return false;
  return !m_policy.bSync || (m_file.Sync() && platform::SyncFolder(platform::FolderOf(m_strPath))) || Fails();
}

// The samples, and what comes behind them when it is there, have to stand on the medium before sizes tell of them.
bool CSampleFileWriter::BringSizesUpToDate(std::int64_t fileSize) {
  if (m_pMeta && !m_pMeta->Sync()) return MetaFails();
  if (m_policy.bSync && !m_file.SyncData()) {
    m_bDataLost = true;
    return Fails();
  }
  return TellSizes(fileSize) || Fails();
}

// Leaves the position at the file's end.
bool CSampleFileWriter::TellSizes(std::int64_t fileSize) {
  if (!PatchSizes(fileSize)) return false;
  m_nToldBytes = m_nDataBytes;
  return m_file.Seek(fileSize);
}

// What whoever opens the file by its name will find. A file that was renamed, replaced or written to by others in the
// meantime is not the output that was asked for.
bool CSampleFileWriter::StandsUnderItsName() {
  CFile named;
  const std::optional<bool> same = OpenByName(m_file, m_strPath, named);
  if (!same) return Fails();
  if (!*same) return Fails("another file stands under its name now");
  bool readable = true;
  if (IsWhole(named, readable)) return true;
  return readable ? Fails("the file does not hold what was written to it") : Fails();
}

// After a failure: leaves a file that ends with its last whole frame and says so. The sizes come first, for the end of
// a file may only be cut off when no size points behind it. Where even that fails the sizes of before hold, and the
// samples that they tell of stand.
void CSampleFileWriter::KeepWholeFrames() {
  // What the system could not bring to the medium is as good as not written, whatever it says when asked again.
  if (m_bDataLost) m_nDataBytes = m_nToldBytes;
  m_nDataBytes -= m_nDataBytes % m_nBytesPerFrame;
  const bool safe = m_bDataLost || !m_policy.bSync || m_file.SyncData();
  const bool told = safe && TellSizes(DataEnd());
  if (!told) m_nDataBytes = m_nToldBytes;
  if (told || EndsWithSamples()) m_file.Truncate(DataEnd());
  if (told && m_policy.bSync) m_file.Sync();
}

bool CSampleFileWriter::Fails() {
  m_nErrorCode = platform::LastError();
  m_strError = SystemErrorText(m_nErrorCode);
  return false;
}

bool CSampleFileWriter::Fails(const std::string& reason) {
  m_nErrorCode = 0;
  m_strError = reason;
  return false;
}

bool CSampleFileWriter::MetaFails() {
  m_nErrorCode = m_pMeta->ErrorCode();
  m_strError = m_pMeta->ErrorText();
  return false;
}

}  // namespace carvello
