// CTargetRoom: whether what the list of entries will make has room where it goes. The disks are asked on a thread of
// their own, so that a network folder that does not answer keeps nobody waiting.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "recording/output_format.h"
#include "ui/posted_calls.h"

namespace carvello {

// An output: its file, and the bytes that it will have.
struct SRoomWanted {
  std::string strFile;
  std::uint32_t nFileSizeMB = 0;
  std::int64_t nBytes = 0;
  EOutputFormat format = EOutputFormat::Wave;
};

// A disk that outputs go to.
struct SRoom {
  std::string strFolder;  // one of those on it
  // What is wanted beyond the files that stand there already and will be replaced.
  std::int64_t nWanted = 0;
  std::optional<std::int64_t> nFree;  // nothing where it could not be asked
  bool Fits() const { return !nFree || nWanted <= *nFree; }
};

// Asks the disks; takes as long as they take.
std::vector<SRoom> FindRoom(const std::vector<SRoomWanted>& wanted);

class CTargetRoom : public QObject {
  Q_OBJECT

 public:
  using Finder = std::function<std::vector<SRoom>(const std::vector<SRoomWanted>&)>;

  // `wanted` is called on the thread of this object when the disks are about to be asked.
  explicit CTargetRoom(std::function<std::vector<SRoomWanted>()> wanted, QObject* pParent = nullptr,
                       Finder finder = FindRoom, std::chrono::milliseconds patience = std::chrono::seconds(5));

  // Something may have changed: it is asked soon, and not twice at a time unless the disks are silent for longer than
  // the patience. An answer to what was asked before is told to nobody.
  void Ask();

 signals:
  void Found(const std::vector<SRoom>& rooms);

 private:
  void Start();
  void Take(std::uint64_t number, const std::vector<SRoom>& rooms);
  void GiveUp();

  std::function<std::vector<SRoomWanted>()> m_wanted;
  Finder m_finder;
  CPostedCalls m_calls;
  QTimer m_soon;
  std::chrono::milliseconds m_nPatience;
  QTimer m_late;  // runs while an answer is waited for
  bool m_bAsking = false;
  std::uint64_t m_nWanted = 0;  // number of the last call of Ask
  std::uint64_t m_nAsked = 0;   // of the last that the disks were asked for
};

}  // namespace carvello
