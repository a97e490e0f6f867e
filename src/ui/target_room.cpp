#include "ui/target_room.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "engine/output_files.h"
#include "overview/left_threads.h"
#include "support/platform.h"

namespace carvello {

namespace {

// Changes come in bursts.
constexpr int kSoonMilliseconds = 200;
constexpr std::chrono::hours kLongestPatience{1};

using FolderNames = std::map<std::string, std::set<std::string>>;

// Bytes of the files that the output will replace.
std::int64_t BytesThere(const SRoomWanted& wanted, FolderNames& names, COutputFolders& folders) {
  const std::string folder = platform::FolderOf(wanted.strFile);
  const auto [place, isNew] = names.try_emplace(folder);
  if (isNew) {
    if (const auto listed = platform::ListFolder(folder)) place->second = {listed->begin(), listed->end()};
  }
  if (place->second.empty()) return 0;
  OutputEntry entry;
  entry.strFileName = wanted.strFile;
  entry.nFileSizeMB = wanted.nFileSizeMB;
  entry.format = wanted.format;
  std::vector<std::string> files = folders.ExistingParts(entry);
  if (place->second.contains(platform::NameOf(wanted.strFile))) files.push_back(wanted.strFile);
  std::int64_t bytes = 0;
  for (const std::string& file : files) {
    if (const auto status = platform::GetFileStatus(file)) bytes += status->nSize;
  }
  return bytes;
}

}  // namespace

std::vector<SRoom> FindRoom(const std::vector<SRoomWanted>& wanted) {
  COutputFolders folders;
  FolderNames names;
  std::map<std::string, std::int64_t> byFolder;
  for (const SRoomWanted& output : wanted) {
    // One that is larger than what comes in its place makes room for others.
    byFolder[platform::FolderOf(output.strFile)] += output.nBytes - BytesThere(output, names, folders);
  }
  std::vector<SRoom> rooms;
  std::map<std::uint64_t, std::size_t> byVolume;
  for (const auto& [folder, bytes] : byFolder) {
    const auto status = platform::GetFileStatus(folder);
    const auto known = status ? byVolume.find(status->nVolume) : byVolume.end();
    if (known != byVolume.end()) {
      rooms[known->second].nWanted += bytes;
      continue;
    }
    if (status) byVolume.emplace(status->nVolume, rooms.size());
    rooms.push_back({folder, bytes, platform::FreeSpace(folder)});
  }
  return rooms;
}

CTargetRoom::CTargetRoom(std::function<std::vector<SRoomWanted>()> wanted, QObject* pParent, Finder finder,
                         std::chrono::milliseconds patience)
    : QObject(pParent), m_wanted(std::move(wanted)), m_finder(std::move(finder)), m_nPatience(patience) {
  m_soon.setSingleShot(true);
  m_soon.setInterval(kSoonMilliseconds);
  connect(&m_soon, &QTimer::timeout, this, &CTargetRoom::Start);
  m_late.setSingleShot(true);
  m_late.setInterval(m_nPatience);
  connect(&m_late, &QTimer::timeout, this, &CTargetRoom::GiveUp);
}

void CTargetRoom::Ask() {
  ++m_nWanted;
  if (!m_bAsking) m_soon.start();
}

void CTargetRoom::Start() {
  m_nAsked = m_nWanted;
  const std::vector<SRoomWanted> wanted = m_wanted();
  if (wanted.empty()) {
    emit Found({});
    return;
  }
  m_bAsking =
      StartLeftThread("Room", [this, wanted, number = m_nAsked, finder = m_finder, post = m_calls.MakePoster()] {
        std::vector<SRoom> rooms;
        try {
          rooms = finder(wanted);
        } catch (const std::exception&) {
          rooms.clear();  // without memory nothing is known
        }
        post([this, number, rooms] { Take(number, rooms); });
      });
  if (m_bAsking) m_late.start();
}

void CTargetRoom::Take(std::uint64_t number, const std::vector<SRoom>& rooms) {
  if (number != m_nAsked) return;
  m_bAsking = false;
  m_late.stop();
  m_late.setInterval(m_nPatience);
  if (m_nAsked == m_nWanted) {
    emit Found(rooms);
  } else {
    m_soon.start();
  }
}

// The thread is left behind. Each time the next one is given longer, so that few of them wait for a disk that is gone.
void CTargetRoom::GiveUp() {
  m_bAsking = false;
  m_late.setInterval(std::min<std::chrono::milliseconds>(2 * m_late.intervalAsDuration(), kLongestPatience));
  if (m_nAsked != m_nWanted) m_soon.start();
}

}  // namespace carvello
