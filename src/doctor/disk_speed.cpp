#include "doctor/disk_speed.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <span>

#include "support/formatting.h"
#include "support/system_facts.h"

namespace carvello {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kPiece = std::size_t{1} << 20U;
constexpr std::int64_t kPiecesAtOnce = 8;  // before they are brought to the medium
constexpr std::int64_t kMostPieces = 64;
constexpr std::int64_t kShareOfFree = 8;
constexpr std::chrono::seconds kLongEnough{2};

double SecondsSince(Clock::time_point begin) {
  constexpr double kLeast = 1e-9;
  return std::max(std::chrono::duration<double>(Clock::now() - begin).count(), kLeast);
}

// Numbers that no file system makes smaller, and others in every piece.
void Fill(std::span<std::uint64_t> piece, std::uint64_t number) {
  std::uint64_t state = 0x9E3779B97F4A7C15U * (number + 1);
  for (std::uint64_t& value : piece) {
    state ^= state << 13U;
    state ^= state >> 7U;
    state ^= state << 17U;
    value = state;
  }
}

class CScratchFile {
 public:
  explicit CScratchFile(platform::FileHandle file) : m_file(file) {}
  ~CScratchFile() {
    if (m_file != platform::kNoFile) platform::CloseFile(m_file);
  }
  CScratchFile(const CScratchFile&) = delete;
  CScratchFile& operator=(const CScratchFile&) = delete;
  platform::FileHandle Handle() const { return m_file; }
  bool IsOpen() const { return m_file != platform::kNoFile; }

 private:
  platform::FileHandle m_file;
};

class CMeasurement {
 public:
  explicit CMeasurement(platform::FileHandle file)
      : m_file(file),
        m_pMemory(new (std::align_val_t{platform::kDirectAlignment}) std::uint64_t[2 * kValues]),
        m_piece(m_pMemory.get(), kValues),
        m_expected(m_pMemory.get() + kValues, kValues) {}

  void Write(std::int64_t pieces, SDiskSpeed& result) {
    const Clock::time_point begin = Clock::now();
    Clock::duration making{};
    while (m_nPieces < pieces && Clock::now() - begin < kLongEnough) {
      for (std::int64_t i = 0; i < kPiecesAtOnce && m_nPieces < pieces; ++i, ++m_nPieces) {
        const Clock::time_point filling = Clock::now();
        Fill(m_piece, static_cast<std::uint64_t>(m_nPieces));
        making += Clock::now() - filling;
        if (platform::WriteFile(m_file, m_piece.data(), kPiece) != kPiece) return Fail(result, "writing: ");
      }
      if (!platform::SyncFile(m_file)) return Fail(result, "bringing it to the medium: ");
    }
    const double seconds = SecondsSince(begin) - std::chrono::duration<double>(making).count();
    result.nBytes = m_nPieces * static_cast<std::int64_t>(kPiece);
    result.fWriteRate = static_cast<double>(result.nBytes) / std::max(seconds, 1e-9);
  }

  void Read(SDiskSpeed& result) {
    const CScratchFile direct(platform::OpenPastCache(m_file));
    // A file system may let it be opened so and refuse to read.
    result.bReadPastCache = direct.IsOpen() && ReadAll(direct.Handle(), result);
    if (!result.bReadPastCache) ReadAll(m_file, result);
  }

 private:
  static constexpr std::size_t kValues = kPiece / sizeof(std::uint64_t);

  struct FreeAligned {
    void operator()(std::uint64_t* memory) const {
      ::operator delete[](memory, std::align_val_t{platform::kDirectAlignment});
    }
  };

  static void Fail(SDiskSpeed& result, const std::string& what) { result.strProblem = what + SystemErrorText(); }

  // False where the file cannot be read in its way; what goes wrong otherwise is the result.
  bool ReadAll(platform::FileHandle file, SDiskSpeed& result) {
    result.strProblem.clear();
    if (!platform::SeekFile(file, 0)) {
      Fail(result, "reading: ");
      return true;
    }
    double seconds = 0;
    for (std::int64_t i = 0; i < m_nPieces; ++i) {
      const Clock::time_point begin = Clock::now();
      std::uint32_t error = 0;
      if (platform::ReadFile(file, m_piece.data(), kPiece, error) != kPiece) {
        result.strProblem = "reading: " + (error == 0 ? std::string("the file ends early") : SystemErrorText(error));
        return i > 0 || !platform::MeansUnsupported(error);
      }
      seconds += SecondsSince(begin);
      Fill(m_expected, static_cast<std::uint64_t>(i));
      if (std::memcmp(m_piece.data(), m_expected.data(), kPiece) != 0) {
        result.strProblem = "what was read back is not what was written";
        return true;
      }
    }
    result.fReadRate = static_cast<double>(result.nBytes) / seconds;
    return true;
  }

  platform::FileHandle m_file;
  std::unique_ptr<std::uint64_t[], FreeAligned> m_pMemory;
  std::span<std::uint64_t> m_piece;
  std::span<std::uint64_t> m_expected;
  std::int64_t m_nPieces = 0;
};

}  // namespace

SDiskSpeed MeasureDisk(const std::string& folder) {
  SDiskSpeed result;
  std::int64_t pieces = kMostPieces;
  if (const std::optional<std::int64_t> space = platform::FreeSpace(folder)) {
    pieces = std::min(pieces, *space / kShareOfFree / static_cast<std::int64_t>(kPiece));
  }
  if (pieces == 0) {
    result.strProblem = "too little is free";
    return result;
  }
  const CScratchFile file(platform::OpenScratchFile(folder));
  if (!file.IsOpen()) {
    result.strProblem = SystemErrorText();
    return result;
  }
  try {
    CMeasurement measurement(file.Handle());
    measurement.Write(pieces, result);
    if (result.strProblem.empty()) measurement.Read(result);
  } catch (const std::bad_alloc&) {
    result.strProblem = "not enough memory";
  }
  return result;
}

}  // namespace carvello
