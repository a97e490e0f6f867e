#include "recording/sigmf_meta_file.h"

#include <utility>

#include "recording/new_file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

bool CSigMfMetaFile::Open(const std::string& path, SSigMfText text) {
  m_strPath = path;
  m_text = std::move(text);
  m_bSynced = false;
  std::uint32_t code = 0;
  std::string reason;
  if (!OpenNewFile(m_file, path, m_policy, code, reason)) return Fails(code, reason);
  if (m_file.Write(m_text.strText.data(), m_text.strText.size()) == m_text.strText.size()) return true;
  Fails();
  RemoveNewFile(m_file, path);
  return false;
}

bool CSigMfMetaFile::Sync() {
  if (m_bSynced || !m_policy.bSync) return true;
  m_bSynced = m_file.Sync() && platform::SyncFolder(platform::FolderOf(m_strPath));
  return m_bSynced || Fails();
}

// One write, within what a disk writes as a whole.
bool CSigMfMetaFile::Finish(std::string_view end) {
  m_text.strText.replace(m_text.nEndPlace, end.size(), end);
  const bool written = m_file.Seek(static_cast<std::int64_t>(m_text.nEndPlace)) &&
                       m_file.Write(end.data(), end.size()) == end.size() && (!m_policy.bSync || m_file.Sync());
  if (!written) {
    Fails();
    m_file.Close();
    return false;
  }
  const bool same = StandsUnderItsName();
  const bool closed = m_file.Close() || !same || Fails();
  return same && closed;
}

bool CSigMfMetaFile::StandsUnderItsName() {
  CFile named;
  const std::optional<bool> same = OpenByName(m_file, m_strPath, named);
  if (!same) return Fails();
  if (!*same) return Fails(0, "another file stands under its name now");
  std::string text(m_text.strText.size(), '\0');
  const bool whole = named.Length() == static_cast<std::int64_t>(text.size()) &&
                     named.ReadExactly(text.data(), text.size()) && text == m_text.strText;
  if (named.ReadError() != 0) return Fails();
  return whole || Fails(0, "the file does not hold what was written to it");
}

bool CSigMfMetaFile::Fails() {
  const std::uint32_t code = platform::LastError();
  return Fails(code, SystemErrorText(code));
}

bool CSigMfMetaFile::Fails(std::uint32_t code, const std::string& reason) {
  m_nErrorCode = code;
  m_strError = platform::NameOf(m_strPath) + ": " + reason;
  return false;
}

}  // namespace carvello
