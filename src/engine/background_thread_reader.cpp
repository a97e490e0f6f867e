#include "engine/background_thread_reader.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::uint64_t kProgressTotal = 10'000;
constexpr std::size_t kFileLogGrowth = 1000;
constexpr std::size_t kErrorRoom = 6'000;  // characters of a long reason
constexpr std::int32_t kByItself = 1;      // parameter of a request to stop

}  // namespace

CBackgroundThreadReader::~CBackgroundThreadReader() {
  Stop();
}

void CBackgroundThreadReader::SetProgressTarget(IMessageTarget* target, std::uint32_t progressMessage) {
  m_pProgressTarget = target;
  m_nProgressMessage = progressMessage;
}

void CBackgroundThreadReader::SetInput(std::vector<SRecordingFile> files, const SSampleKind& kind,
                                       const WAVEFORMATEXTENSIBLE& format) {
  m_input.Describe(std::move(files), kind, format);
}

void CBackgroundThreadReader::SetOutputs(const std::vector<const OutputEntry*>& entries) {
  m_policies.assign(entries.size(), SWritePolicy());
  m_engines.assign(entries.size(), EEngine::Library);
  m_accounts.clear();
  for (const OutputEntry* entry : entries) m_accounts.push_back(std::make_unique<COutputAccount>(*entry));
  m_results.clear();
  m_results.resize(entries.size());
  m_strInputError.clear();
  m_strInputError.reserve(kErrorRoom);
  m_pStopRequest = TakeRequest(request::kStopJob);
  m_bStopped = false;
  m_bAccountsOpen = true;

  m_llFirstFrame = carvello::FirstFrame(entries);
  const CInputFrames& frames = m_input.InputFrames();
  const std::int64_t late = frames.Late(m_llFirstFrame);
  for (const auto& account : m_accounts) account->Open(frames.Due(account->Entry(), late), late);
}

void CBackgroundThreadReader::SetEngines(std::vector<EEngine> engines) {
  m_engines = std::move(engines);
  for (std::size_t i = 0; i < m_accounts.size(); ++i) m_accounts[i]->SetEngine(m_engines[i]);
}

void CBackgroundThreadReader::PostStop() noexcept {
  if (m_pStopRequest) Post(std::move(m_pStopRequest));
}

std::vector<SEntryState> CBackgroundThreadReader::EntryStates() const {
  std::vector<SEntryState> states;
  states.reserve(m_accounts.size());
  for (const auto& account : m_accounts) states.push_back(account->State());
  return states;
}

void CBackgroundThreadReader::HandleRequest(CBackgroundRequest& request, std::uint32_t /*remaining*/) {
  switch (request.nCode) {
    case request::kStartJob:
      StartJob(request);
      if (m_bRunning) Post(request::kReadBlock);
      break;
    case request::kStopJob:
      StopJob(request.nParam1 != kByItself);
      break;
    case request::kReadBlock:
      ReadBlock();
      break;
    case request::kHandOnBlock:
      if (m_bRunning) HandOnBlock(request.nParam1);
      break;
    case request::kCreateWriters:
      CreateWriters();
      break;
    case request::kGiveEntry:
      GiveEntry(static_cast<std::size_t>(request.nParam1));
      break;
    case request::kWriterFinished:
      WriterFinished();
      break;
    default:
      break;
  }
}

// Exhausted memory: the entry that it hit fails, or else the job ends with what there is. Either way it ends.
void CBackgroundThreadReader::OnException(const CBackgroundRequest& request, const char* reason) noexcept {
  if (request.nCode == request::kCreateWriters) {
    for (const auto& account : m_accounts) account->Fail(reason);
  } else if (request.nCode == request::kGiveEntry) {
    EntryFails(static_cast<std::size_t>(request.nParam1), reason);
  } else {
    InputFails(reason);
    if (m_bRunning) {
      StopJob(false);
    } else {
      CloseFile();
      CloseWriters();
    }
  }
}

void CBackgroundThreadReader::CreateWriters() {
  m_nActiveWriters = static_cast<std::int32_t>(m_accounts.size());
  m_writers.Create(m_accounts, m_engines);
}

void CBackgroundThreadReader::GiveEntry(std::size_t entry) {
  const char* const problem = m_accounts[entry]->HasFailed() ? "" : m_writers.Begin(entry, m_policies[entry]);
  if (problem != nullptr) EntryFails(entry, problem);
}

// An entry that no thread works on; it may have failed before.
void CBackgroundThreadReader::EntryFails(std::size_t entry, std::string_view reason) noexcept {
  COutputAccount& account = *m_accounts[entry];
  account.Fail(reason);
  Log("[ERROR] %s: %s", account.Entry().strFileName.c_str(), account.Reason().c_str());
  WriterFinished();
}

void CBackgroundThreadReader::WriterFinished() noexcept {
  if (m_nActiveWriters == 0) return;
  --m_nActiveWriters;
  Log("%d active writers", m_nActiveWriters);
}

// Something that takes as long as the disk of the file.
template <typename TStep>
auto CBackgroundThreadReader::WaitForFile(std::size_t file, TStep step) {
  m_nFileWaitedFor = static_cast<int>(file);
  const auto result = step();
  m_nFileWaitedFor = kNoFile;
  ++m_nSteps;
  return result;
}

void CBackgroundThreadReader::StartJob(const CBackgroundRequest& request) {
  m_llBytesRead = 0;
  m_nReads = 0;
  m_nProgress = 0;
  m_nStretchFrames = 0;
  m_bBlockWaits = m_bInputEnded = m_bStretchEnds = false;
  m_strFirstFile = request.strParam;
  m_llSeek = request.llParam1;
  m_llTotalBytes = request.llParam2;
  m_llNextPosition = m_llSeek;
  Log("Start, file = %s", m_strFirstFile.c_str());
  Samples().Log().Clear(kFileLogGrowth);
  PrepareSpectrum();

  std::int64_t remaining = m_llSeek;
  if (!FindFirstFile(remaining)) {
    ReplayFileLog();
    CloseWriters();
    return;
  }
  LogSize(*this, m_llTotalBytes);
  // A skip that ends exactly at a file's start is deliberately neither sought nor told: the writers keep their full
  // start offsets then.
  if (remaining > 0) {
    const long long samples = remaining;
    const long long bytes = samples * Samples().BytesPerFrame();
    Log("Seek %lld samples (%lld bytes)", samples, bytes);
    if (!WaitForFile(m_input.FileIndex(), [&] { return Samples().SkipFrames(remaining); })) {
      InputFails(m_input.Problem());
      CloseFile();
      CloseWriters();
      return;
    }
    m_writers.TellSkipped(m_llSeek);
  } else if (m_llSeek > 0) {
    Log("[WARNING] The first entry begins with the first frame of %s: all entries of this job begin %lld frames later",
        m_input.File().strPath.c_str(), static_cast<long long>(m_llSeek));
  }
  m_statistics.Start();
  m_bRunning = true;
}

void CBackgroundThreadReader::PrepareSpectrum() {
  m_pSpectra.reset();
  if (std::find(m_engines.begin(), m_engines.end(), EEngine::Spectrum) == m_engines.end()) return;
  if (!m_pTransform) m_pTransform = std::make_unique<CBlockTransform>(static_cast<std::size_t>(kFrameSize));
  m_pSpectra = std::make_unique<CSpectrumPool>(*m_pTransform);
}

// Opens a file and leaves it at its first sample. On failure the reason is kept and the file is closed.
bool CBackgroundThreadReader::OpenFile(std::size_t file) {
  if (WaitForFile(file, [&] { return m_input.OpenFile(file); })) return true;
  InputFails(m_input.Problem());
  return false;
}

// Skips whole files until the one that holds the first frame wanted; `remaining` becomes the frames to skip in it. The
// files that are passed over are opened too: what they hold decides where the others stand in the recording.
bool CBackgroundThreadReader::FindFirstFile(std::int64_t& remaining) {
  for (std::size_t file = 0; file < m_input.Files(); ++file) {
    if (!OpenFile(file)) return false;
    const std::int64_t frames = Samples().Frames();
    // The first file's name whatever the index: it names the recording, the index its part.
    Log("Opening [%d] %s", static_cast<int>(file), m_strFirstFile.c_str());
    if (remaining < frames || remaining < 1) return true;
    remaining -= frames;
    m_input.CloseFile();
  }
  InputFails("The input ends before the first entry begins");
  return false;
}

void CBackgroundThreadReader::ReadBlock() {
  if (!m_bRunning || m_bInputEnded) return;
  if (m_nActiveWriters == 0) {
    Log("Stopping (read request)");
    PostEnd();
    return;
  }
  TakeBlock();
  CInputFile& file = Samples();
  const std::uint32_t frames = WaitForFile(m_input.FileIndex(), [&] { return file.ReadBlock(m_pBlock.get()); });
  m_llBlockPosition = m_llNextPosition;
  m_llNextPosition += frames;
  m_llBytesRead += static_cast<std::int64_t>(frames) * file.BytesPerFrame();
  TellProgressOfReading();
  if (m_nReads < 0) Log("Read, %u of %u samples", frames, kBlockFrames);
  m_nReads = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nReads) + 1);

  // What was read in front of a hole is good. Behind it nothing is: not of this file, nor of the next.
  const bool hole = !file.Problem().empty();
  if (hole) InputFails(file.Problem());
  const bool fileEnds = hole || file.AtEnd();
  m_nStretchFrames += frames;
  m_bStretchEnds = fileEnds || m_nStretchFrames == kStretchFrames;
  if (m_bStretchEnds) m_nStretchFrames = 0;

  if (frames > 0) HandOnBlock(static_cast<std::int32_t>(frames));
  if (hole) {
    m_bInputEnded = true;
    if (!m_bBlockWaits) PostEnd();
  } else if (fileEnds) {
    EndOfFile(frames > 0);
  }
}

// A place for the next block. Where its spectrum will be taken, what comes before it in the recording stands in front.
void CBackgroundThreadReader::TakeBlock() {
  const std::shared_ptr<SComplex[]> place = m_blocks.Take();
  if (!place) throw std::bad_alloc();
  m_pBlock = {place, place.get() + kHistoryFrames};
  if (!UsesSpectrum()) return;
  if (m_pLastBlock) {
    std::copy_n(m_pLastBlock.get() + m_nLastFrames - kHistoryFrames, kHistoryFrames, place.get());
  } else {
    std::fill_n(place.get(), kHistoryFrames, SComplex{});
  }
}

void CBackgroundThreadReader::TellProgressOfReading() noexcept {
  if (m_llTotalBytes <= 0) return;
  const std::int64_t done = m_llSeek * Samples().BytesPerFrame() + m_llBytesRead;
  const double share = static_cast<double>(done) / static_cast<double>(m_llTotalBytes);
  const auto progress = static_cast<std::uint64_t>(std::clamp(share, 0.0, 1.0) * kProgressTotal);
  if (progress != m_nProgress) TellProgress(progress);
  m_nProgress = progress;
}

void CBackgroundThreadReader::TellProgress(std::uint64_t progress) noexcept {
  if (m_pProgressTarget == nullptr) return;
  try {
    m_pProgressTarget->PostNumbers(m_nProgressMessage, kProgressTotal, progress);
  } catch (const std::exception&) {
    // Without memory the user is not told how far it is; the job goes on.
  }
}

// Goes on with the next file, or ends the job. A block that still waits in the buffer is handed on first.
void CBackgroundThreadReader::EndOfFile(bool blockRead) {
  const bool more = m_input.FileIndex() + 1 < m_input.Files() && OpenNextFile();
  if (more) {
    // A file without a whole frame brought nothing to hand on, so nothing asks for the next block yet.
    if (!blockRead) Post(request::kReadBlock);
    return;
  }
  m_bInputEnded = true;
  if (!m_bBlockWaits) PostEnd();
}

bool CBackgroundThreadReader::OpenNextFile() {
  CloseFile();
  const std::size_t next = m_input.FileIndex() + 1;
  Log("Opening [%d] %s", static_cast<int>(next), m_input.File(next).strPath.c_str());
  if (!OpenFile(next)) {
    ReplayFileLog();
    Log("Failed");
    return false;
  }
  LogSize(*this, m_input.File().nSampleBytes);
  return true;
}

void CBackgroundThreadReader::HandOnBlock(std::int32_t frames) {
  if (m_nActiveWriters == 0) {
    Log("Stopping (forwarding)");
    PostEnd();
    return;
  }
  m_bBlockWaits = m_writers.IsAnyBusy();
  if (m_bBlockWaits) {
    m_writers.WaitForRoom();
    Post(request::kHandOnBlock, frames);
    return;
  }
  GiveOut(frames);
  if (m_bInputEnded) {
    PostEnd();
  } else if (m_nActiveWriters >= 1) {
    Post(request::kReadBlock);
  }
}

void CBackgroundThreadReader::GiveOut(std::int32_t frames) {
  SGivenBlock block{.samples = std::move(m_pBlock),
                    .spectrum = nullptr,
                    .llPosition = m_llBlockPosition,
                    .nFrames = frames,
                    .bStretchEnds = m_bStretchEnds};
  if (UsesSpectrum()) {
    block.spectrum = m_pSpectra->Take(block.samples, block.llPosition, frames);
    if (!block.spectrum) throw std::bad_alloc();
    m_pLastBlock = block.samples;
    m_nLastFrames = frames;
  }
  m_writers.GiveOut(block);
  if (m_pListener) m_pListener->OnBlock(block.samples, block.llPosition, frames);
}

void CBackgroundThreadReader::PostEnd() {
  Post(request::kStopJob, kByItself);
}

void CBackgroundThreadReader::StopJob(bool byUser) noexcept {
  if (!m_bRunning) return;
  m_bStopped = byUser;
  Log("Stop");
  CloseFile();
  m_statistics.Log(*this, m_llBytesRead);
  CloseWriters();
  m_bRunning = false;  // last, so that whoever waits for the end goes on with other things while files are synced
  TellProgress(kProgressTotal);
}

void CBackgroundThreadReader::CloseWriters() noexcept {
  if (!m_bAccountsOpen) return;
  m_bAccountsOpen = false;
  m_pBlock.reset();
  m_pLastBlock.reset();
  Log("Closing %d writer threads", static_cast<int>(m_writers.Threads()));
  m_writers.Close(m_bStopped);
  const SJobEnd end{m_bStopped, m_strInputError};
  for (std::size_t i = 0; i < m_accounts.size(); ++i) {
    if (CEntryWriter* const entry = m_writers.Entry(i)) {
      entry->CloseAccount(end);
    } else {
      m_accounts[i]->Close(end, 0, 0, {});
    }
    m_results[i] = m_accounts[i]->TakeResult();
  }
  m_writers.Clear();
  m_nActiveWriters = 0;
  Log("Closed");
}

void CBackgroundThreadReader::InputFails(std::string_view reason) noexcept {
  if (m_strInputError.empty()) m_strInputError.assign(reason.substr(0, m_strInputError.capacity()));
  Log("[ERROR] %.*s", static_cast<int>(reason.size()), reason.data());
}

void CBackgroundThreadReader::CloseFile() noexcept {
  try {
    m_input.CloseFile();
    ReplayFileLog();
    if (const std::int64_t silenced = Samples().TakeSilenced(); silenced != 0) {
      Log("[WARNING] %s: %lld samples are no finite numbers and were taken for zero", m_input.File().strPath.c_str(),
          static_cast<long long>(silenced));
    }
  } catch (const std::exception&) {
    // Only the lines that tell of it are lost.
  }
}

void CBackgroundThreadReader::ReplayFileLog() {
  for (const std::string& line : Samples().Log()) Log("... %s", line.c_str());
  Samples().Log().Clear(kFileLogGrowth);
}

}  // namespace carvello
