#include "ui/kept_lists.h"

#include <QCoreApplication>
#include <QDateTime>
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <new>
#include <utility>

#include "overview/left_threads.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/mutex.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {

namespace {

constexpr std::size_t kMostLists = 20;
constexpr char kSuffix[] = ".json";
constexpr char kAsideSuffix[] = ".aside.json";
constexpr char kLockSuffix[] = ".lock";
constexpr int kLockTries = 10;

// A name: which recording, when it was begun, and by which window, for programs may begin at the same moment.
constexpr std::size_t kKeyLength = 16;
constexpr std::size_t kTimeLength = 14;

// Of the first file, whichever of its set was selected.
std::string KeyOfRecording(const CRecordingSet& recording) {
  std::uint64_t hash = 14'695'981'039'346'656'037U;  // FNV-1a, http://www.isthe.com/chongo/tech/comp/fnv/
  const std::string path =
      recording.files.empty() ? "" : platform::FileNameKey(platform::AbsolutePath(recording.files.front().strPath));
  for (const char c : path) hash = (hash ^ static_cast<unsigned char>(c)) * 1'099'511'628'211U;
  return Format("%016llx", static_cast<unsigned long long>(hash));
}

bool IsOfRecording(const SJobFile& job, const CRecordingSet& recording) {
  if (std::max(job.given.nPart, 1U) != std::max(recording.nPart, 1U)) return false;
  return IsFileOf(recording, job.strInput);
}

// When the list of that name was begun; nothing for a name that is none.
std::optional<std::int64_t> TimeOf(const std::string& name) {
  if (name.size() < kKeyLength + 1 + kTimeLength || name[kKeyLength] != '-' || !name.ends_with(kSuffix)) {
    return std::nullopt;
  }
  std::int64_t time = 0;
  for (const char c : name.substr(kKeyLength + 1, kTimeLength)) {
    if (c < '0' || c > '9') return std::nullopt;
    time = time * 10 + (c - '0');
  }
  return time;
}

// By which window; of a name that has a time.
std::string OwnerOf(const std::string& name) {
  const std::string owner = name.substr(std::min(name.size(), kKeyLength + kTimeLength + 2));
  return owner.substr(0, owner.find('.'));
}

std::string LockPath(const std::string& folder, const std::string& owner) {
  return platform::JoinPath(folder, owner + kLockSuffix);
}

// Whether another window lives that has begun the list. What one that was killed has locked is tidied away.
bool IsAtWork(const std::string& folder, const std::string& owner) {
  const std::string path = LockPath(folder, owner);
  return !owner.empty() && !platform::RemoveUnusedFile(path) && platform::GetFileStatus(path).has_value();
}

// Names of lists, the newest first.
std::vector<std::string> Names(const std::string& folder) {
  std::vector<std::string> names = platform::ListFolder(folder).value_or(std::vector<std::string>());
  std::erase_if(names, [](const std::string& name) { return !TimeOf(name); });
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return TimeOf(a) > TimeOf(b) || (TimeOf(a) == TimeOf(b) && a > b);
  });
  return names;
}

std::optional<SKeptList> ReadList(const std::string& folder, const std::string& name) {
  SKeptList kept{platform::JoinPath(folder, name), TimeOf(name).value_or(0), {}};
  std::string error;
  try {
    if (ReadJobFile(kept.strPath, kept.job, error) && !kept.job.entries.empty()) return kept;
  } catch (const std::bad_alloc&) {
    // One that is too large for this machine is none.
  }
  return std::nullopt;
}

// What a program that was killed left half written, and the oldest lists.
void TidyUp(const std::string& folder) {
  const std::string half = std::string(kSuffix) + ".part";
  for (const std::string& name : platform::ListFolder(folder).value_or(std::vector<std::string>())) {
    if (name.find(half) != std::string::npos) platform::RemoveUnusedFile(platform::JoinPath(folder, name));
  }
  const std::vector<std::string> names = Names(folder);
  for (std::size_t i = kMostLists; i < names.size(); ++i) {
    if (!IsAtWork(folder, OwnerOf(names[i]))) platform::RemoveFile(platform::JoinPath(folder, names[i]));
  }
}

std::string NewOwner() {
  static std::atomic<int> number = 0;
  return Format("%lld-%lld-%d", static_cast<long long>(QCoreApplication::applicationPid()),
                static_cast<long long>(QDateTime::currentMSecsSinceEpoch()), ++number);
}

}  // namespace

// What is to be written, and who does it: a thread that lasts as long as there is something.
struct CKeptLists::SWork {
  // A file that is to hold the job, or to have another name, or to be gone.
  struct SOrder {
    std::string strPath;
    std::optional<SJobFile> job;
    std::string strNewPath{};
    std::string strInstead{};  // not gone unless this file is there
    bool bEnd = false;         // the window is gone

    bool IsPlain() const { return strNewPath.empty() && strInstead.empty() && !bEnd; }
  };

  CMutex lock;
  std::condition_variable ended;
  std::deque<SOrder> orders CARVELLO_GUARDED_BY(lock);
  bool bWorking CARVELLO_GUARDED_BY(lock) = false;
  std::string strFolder;
  std::string strOwner;
  std::function<void(const std::string&)> problem;
  // The worker's alone:
  bool bTidied = false;
  CFile lockFile;

  // Gives true when a worker is to be started. Of several orders in a row for what a file holds only the last counts.
  bool Add(SOrder order) {
    const CLockGuard guard(lock);
    if (!orders.empty() && orders.back().strPath == order.strPath && orders.back().IsPlain() && order.IsPlain()) {
      orders.pop_back();
    }
    orders.push_back(std::move(order));
    return !std::exchange(bWorking, true);
  }

  std::optional<SOrder> Next() {
    const CLockGuard guard(lock);
    if (orders.empty()) {
      bWorking = false;
      ended.notify_all();
      return std::nullopt;
    }
    SOrder order = std::move(orders.front());
    orders.pop_front();
    return order;
  }

  void Run() {
    while (const std::optional<SOrder> order = Next()) {
      try {
        if (order->bEnd) {
          Unlock();
        } else if (order->job) {
          Write(*order);
        } else if (!order->strNewPath.empty()) {
          Rename(*order);
        } else if (order->strInstead.empty() || platform::IsReadable(order->strInstead)) {
          platform::RemoveFile(order->strPath);
        }
      } catch (const std::exception& failure) {  // no memory, or times that no calendar has
        problem(order->strPath + ": " + failure.what());
      }
    }
  }

  void Write(const SOrder& order) {
    if (!CreateFolders(strFolder)) {
      problem(strFolder + ": " + SystemErrorText());
      return;
    }
    if (!std::exchange(bTidied, true)) {
      Lock();
      TidyUp(strFolder);
    }
    const std::string text = JobFileText(*order.job);
    std::string error;
    if (!WriteWholeFile(order.strPath, text.data(), text.size(), true, error)) problem(error);
  }

  // Another window that tidies up may be quicker than the lock. Where there are no locks, the lists are as those of a
  // window that has ended.
  void Lock() {
    const std::string path = LockPath(strFolder, strOwner);
    for (int i = 0; i < kLockTries && !platform::GetFileStatus(path); ++i) {
      lockFile.Open(path, platform::EOpenMode::CreateNew);
    }
  }

  void Unlock() {
    if (!lockFile.IsOpen()) return;
    lockFile.Close();
    platform::RemoveUnusedFile(LockPath(strFolder, strOwner));
  }

  void Rename(const SOrder& order) {
    if (!platform::RenameFile(order.strPath, order.strNewPath, true)) problem(order.strPath + ": " + SystemErrorText());
  }

  static void Order(const std::shared_ptr<SWork>& pWork, SOrder order) {
    if (!pWork->Add(std::move(order))) return;
    if (!StartLeftThread(
            "Lists", [pWork] { pWork->Run(); }, ELeft::Writes))
      pWork->Run();
  }
};

CKeptLists::CKeptLists(std::string folder, std::function<void(const std::string&)> problem)
    : m_strFolder(std::move(folder)), m_strOwner(NewOwner()), m_pWork(std::make_shared<SWork>()) {
  m_pWork->strFolder = m_strFolder;
  m_pWork->strOwner = m_strOwner;
  m_pWork->problem = std::move(problem);
}

CKeptLists::~CKeptLists() {
  if (m_bUsed) SWork::Order(m_pWork, {.strPath = {}, .job = std::nullopt, .bEnd = true});
}

void CKeptLists::Keep(const CRecordingSet& recording, SJobFile job) {
  if (m_strFolder.empty() || !m_bWanted) return;
  if (job.entries.empty()) {
    if (m_present) Forget(*std::exchange(m_present, std::nullopt));
    return;
  }
  if (!m_present) {
    const std::int64_t now = QDateTime::currentMSecsSinceEpoch();
    const std::string name = Format("%s-%014lld-%s%s", KeyOfRecording(recording).c_str(), static_cast<long long>(now),
                                    m_strOwner.c_str(), kSuffix);
    m_present = SKeptList{platform::JoinPath(m_strFolder, name), now, {}};
  }
  m_bUsed = true;
  m_present->job = job;
  SWork::Order(m_pWork, {m_present->strPath, std::move(job)});
}

void CKeptLists::Leave() {
  if (m_present) m_left = std::exchange(m_present, std::nullopt);
}

std::function<std::optional<SKeptList>()> CKeptLists::Find(const CRecordingSet& recording) const {
  if (m_strFolder.empty() || !m_bWanted || recording.files.empty()) return [] { return std::nullopt; };
  // It may not be written yet.
  if (m_left && IsOfRecording(m_left->job, recording)) return [left = m_left] { return left; };
  return [recording, folder = m_strFolder, own = m_strOwner]() -> std::optional<SKeptList> {
    const std::string key = KeyOfRecording(recording);
    for (const std::string& name : Names(folder)) {
      if (!name.starts_with(key) || name.ends_with(kAsideSuffix)) continue;
      if (const std::string owner = OwnerOf(name); owner != own && IsAtWork(folder, owner)) continue;
      std::optional<SKeptList> kept = ReadList(folder, name);
      if (kept && IsOfRecording(kept->job, recording)) return kept;
    }
    return std::nullopt;
  };
}

std::function<std::vector<SKeptList>()> CKeptLists::All() const {
  return [folder = m_strFolder] {
    std::vector<SKeptList> all;
    for (const std::string& name : Names(folder)) {
      if (auto kept = ReadList(folder, name)) all.push_back(std::move(*kept));
    }
    return all;
  };
}

void CKeptLists::SetAside(const SKeptList& kept) {
  std::string path = kept.strPath;
  if (path.ends_with(kAsideSuffix)) return;
  path.replace(path.size() - std::char_traits<char>::length(kSuffix), std::string::npos, kAsideSuffix);
  if (m_left && m_left->strPath == kept.strPath) m_left.reset();
  SWork::Order(m_pWork, {kept.strPath, std::nullopt, path});
}

void CKeptLists::TakenBack(const SKeptList& kept) {
  if (!m_present) {
    SetAside(kept);
    return;
  }
  if (m_left && m_left->strPath == kept.strPath) m_left.reset();
  SWork::Order(m_pWork, {kept.strPath, std::nullopt, {}, m_present->strPath});
}

void CKeptLists::Forget(const SKeptList& kept) {
  if (m_left && m_left->strPath == kept.strPath) m_left.reset();
  SWork::Order(m_pWork, {kept.strPath, std::nullopt});
}

void CKeptLists::Wait() const {
  CLockGuard guard(m_pWork->lock);
  while (m_pWork->bWorking) guard.Wait(m_pWork->ended);
}

}  // namespace carvello
