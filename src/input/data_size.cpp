#include "input/data_size.h"

#include <algorithm>
#include <array>
#include <optional>

#include "input/riff_layout.h"
#include "input/tail_chunks.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kWrap = std::int64_t{1} << 32;
// By so much a recorder's own count may differ from what the file holds: some add or leave out the header.
constexpr std::int64_t kSlack = 64;
// Of files that nobody closed, of unfinished RF64 files, of pipes, and four dashes.
constexpr std::array<std::uint32_t, 4> kOpenSizes = {0, 0xFFFFFFFF, 0x7FFFF000, 0x2D2D2D2D};

// One question about one file.
class CSizeCheck {
 public:
  CSizeCheck(CFile& file, std::uint32_t frameBytes)
      : m_file(file), m_nFrameBytes(frameBytes), m_nBegin(file.Position()), m_nLength(file.Length()) {
    if (m_nLength < 0) m_size.nError = platform::LastError();
    m_nHeld = std::max<std::int64_t>(m_nLength - m_nBegin, 0);
  }

  SDataSize Riff(std::uint32_t claimed, bool elad);
  SDataSize Rf64(std::int64_t claimed);

 private:
  void TakeRiff(std::uint32_t claimed);
  // All that is there, for this fault.
  void TakeAll(ESizeFault fault, const std::string& found);
  void TakeWrapped(std::uint32_t claimed, std::int64_t bytes);
  // The size modulo 4 GiB that fits the file.
  std::optional<std::int64_t> Unwrapped(std::uint32_t claimed);
  bool IsChunkBehind(std::int64_t bytes);
  std::string RestText() const;
  SDataSize Done();

  CFile& m_file;
  const std::uint32_t m_nFrameBytes;
  const std::int64_t m_nBegin;
  const std::int64_t m_nLength;
  std::int64_t m_nHeld = 0;
  SDataSize m_size;
};

SDataSize CSizeCheck::Riff(std::uint32_t claimed, bool elad) {
  if (m_size.nError != 0) return m_size;
  if (elad && claimed <= m_nHeld) {
    m_size.nBytes = m_nHeld;
    return m_size;
  }
  TakeRiff(claimed);
  return Done();
}

void CSizeCheck::TakeRiff(std::uint32_t claimed) {
  const bool fits = claimed <= m_nHeld && m_nHeld - claimed <= 1;  // with or without the byte that makes a size even
  const bool isOdd = IsOpenSize(claimed) || m_nHeld - claimed >= kWrap - kSlack;
  const bool isRight = fits || (claimed < m_nHeld && (!isOdd || IsChunkBehind(claimed)));
  if (!isRight && IsOpenSize(claimed)) {
    TakeAll(ESizeFault::NeverFinal, claimed == 0 ? "Data size 0" : Format("Data size %u (0x%X)", claimed, claimed));
  } else if (!isRight && claimed > m_nHeld) {
    TakeAll(ESizeFault::PastEnd, Format("Data size %u", claimed));
  } else if (const std::optional<std::int64_t> whole = isRight ? std::nullopt : Unwrapped(claimed)) {
    TakeWrapped(claimed, *whole);
  } else {
    m_size.nBytes = claimed;
  }
}

SDataSize CSizeCheck::Rf64(std::int64_t claimed) {
  if (m_size.nError != 0) return m_size;
  if (claimed >= 0 && claimed <= m_nHeld && (claimed > 0 || m_nHeld <= 1 || IsChunkBehind(0))) {
    m_size.nBytes = claimed;
  } else {
    const std::string found = Format("Data size %llu", static_cast<unsigned long long>(claimed));
    TakeAll(claimed == 0 ? ESizeFault::NeverFinal : ESizeFault::PastEnd, found);
  }
  return Done();
}

void CSizeCheck::TakeAll(ESizeFault fault, const std::string& found) {
  const STailChunks tail = FindTailChunks(m_file, m_nBegin, m_nLength);
  m_size.nReadBytes += tail.nReadBytes;
  m_size.nError = tail.nError;
  m_size.fault = fault;
  m_size.nBytes = std::max<std::int64_t>(tail.nBegin - m_nBegin, 0);
  const bool hasTail = tail.nBegin < m_nLength;
  const auto bytes = static_cast<long long>(m_size.nBytes);
  if (fault == ESizeFault::NeverFinal) {
    m_size.strWarning = Format("[WARNING] %s was never made final, the samples are read to %s, %lld bytes",
                               found.c_str(), hasTail ? "the chunks at the file's end" : "the file's end", bytes);
  } else {
    m_size.strWarning =
        Format("[WARNING] %s exceeds the %lld bytes that the file holds, the samples end there", found.c_str(), bytes);
  }
  m_size.strWarning += RestText();
}

void CSizeCheck::TakeWrapped(std::uint32_t claimed, std::int64_t bytes) {
  m_size.fault = ESizeFault::Wrapped;
  m_size.nBytes = bytes;
  m_size.strWarning = Format("[WARNING] Data size %u was counted past 4 GiB from 0 again, %lld bytes are read", claimed,
                             static_cast<long long>(bytes)) +
                      RestText();
}

std::optional<std::int64_t> CSizeCheck::Unwrapped(std::uint32_t claimed) {
  const std::int64_t turns = (m_nHeld - claimed + kSlack) / kWrap;
  if (turns < 1) return std::nullopt;
  const std::int64_t bytes = claimed + turns * kWrap;
  if (bytes > m_nHeld) return m_nHeld;
  if (m_nHeld - bytes <= kSlack || IsChunkBehind(bytes)) return bytes;
  return std::nullopt;
}

bool CSizeCheck::IsChunkBehind(std::int64_t bytes) {
  const std::int64_t behind = m_nBegin + bytes;
  for (const std::int64_t place : {behind, behind + 1}) {
    if (place > behind && bytes % 2 == 0) break;
    m_size.nReadBytes += std::min<std::int64_t>(m_nLength - place, sizeof(SChunkHeader));
    const std::optional<bool> known = IsKnownChunkAt(m_file, place, m_nLength);
    if (!known) m_size.nError = m_file.ReadError() != 0 ? m_file.ReadError() : platform::LastError();
    if (!known || *known) return true;
  }
  return false;
}

std::string CSizeCheck::RestText() const {
  const std::int64_t rest = m_nFrameBytes == 0 ? 0 : m_size.nBytes % m_nFrameBytes;
  return rest == 0 ? "" : Format("; the last %lld are no whole frame", static_cast<long long>(rest));
}

SDataSize CSizeCheck::Done() {
  if (m_size.nError == 0 && !m_file.Seek(m_nBegin)) m_size.nError = platform::LastError();
  return m_size;
}

}  // namespace

bool IsOpenSize(std::uint32_t size) {
  return std::find(kOpenSizes.begin(), kOpenSizes.end(), size) != kOpenSizes.end();
}

SDataSize RiffDataSize(CFile& file, std::uint32_t claimed, bool elad, std::uint32_t frameBytes) {
  return CSizeCheck(file, frameBytes).Riff(claimed, elad);
}

SDataSize Rf64DataSize(CFile& file, std::int64_t claimed, std::uint32_t frameBytes) {
  return CSizeCheck(file, frameBytes).Rf64(claimed);
}

}  // namespace carvello
