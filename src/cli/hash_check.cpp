#include "cli/hash_check.h"

#include <algorithm>
#include <vector>

#include "support/file.h"
#include "support/formatting.h"
#include "support/sha2.h"
#include "support/text.h"

namespace carvello {

EVerified VerifyHash(const SDataHash& hash, std::string& error) {
  if (hash.strSha512.empty()) return EVerified::NoHash;
  constexpr std::int64_t kPiece = std::int64_t{1} << 20;
  std::vector<char> piece(kPiece);
  CFile file;
  CSha512 sum;
  bool read = file.Open(hash.strPath, platform::EOpenMode::ReadShared) && file.Seek(hash.nOffset);
  if (!read) error = hash.strPath + ": " + SystemErrorText();
  for (std::int64_t left = hash.nBytes; read && left > 0;) {
    const auto count = static_cast<std::size_t>(std::min(left, kPiece));
    read = file.ReadExactly(piece.data(), count);
    if (!read) {
      error = hash.strPath + ": " + (file.ReadError() == 0 ? "the file ends early" : SystemErrorText(file.ReadError()));
    }
    sum.Add(piece.data(), count);
    left -= static_cast<std::int64_t>(count);
  }
  if (!read) return EVerified::Unread;
  if (sum.Hex() == hash.strSha512) return EVerified::Right;
  error = hash.strPath + ": the samples are not those that the meta file tells the hash of (core:sha512)";
  return EVerified::Wrong;
}

}  // namespace carvello
