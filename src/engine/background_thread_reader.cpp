#include "engine/background_thread_reader.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <thread>
#include <utility>

#include "input/format_chunk.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::uint64_t kProgressTotal = 10'000;
constexpr std::uint32_t kMaxQueued = 3;       // requests waiting at one writer
constexpr std::uint64_t kMaxBlocksAhead = 3;  // blocks between the reader and the slowest writer
constexpr int kWriterPriority = -2;
constexpr std::chrono::milliseconds kBusyPause{1};
constexpr std::chrono::milliseconds kClosePause{10};
constexpr std::size_t kFileLogGrowth = 1000;
constexpr std::size_t kErrorRoom = 6'000;  // characters of a long reason
constexpr std::int32_t kByItself = 1;      // parameter of a request to stop
constexpr double kMega = 1 << 20;
constexpr double kGiga = 1 << 30;

std::int64_t WallMilliseconds() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

CBackgroundThreadReader::~CBackgroundThreadReader() {
  Stop();
  for (const auto& writer : m_writers) {
    if (writer) writer->Stop();
  }
}

void CBackgroundThreadReader::SetProgressTarget(IMessageTarget* target, std::uint32_t progressMessage) {
  m_pProgressTarget = target;
  m_nProgressMessage = progressMessage;
}

void CBackgroundThreadReader::SetInput(std::vector<SRecordingFile> files, const WAVEFORMATEXTENSIBLE& format,
                                       bool floatScale) {
  m_files = std::move(files);
  m_nFrameBytes = FrameBytes(format.Format);
  m_file.Describe(format, floatScale);
}

void CBackgroundThreadReader::SetOutputs(const std::vector<const OutputEntry*>& entries) {
  m_policies.assign(entries.size(), SWritePolicy());
  m_accounts.clear();
  for (const OutputEntry* entry : entries) m_accounts.push_back(std::make_unique<COutputAccount>(*entry));
  m_results.clear();
  m_results.resize(entries.size());
  m_strInputError.clear();
  m_strInputError.reserve(kErrorRoom);
  m_pStopRequest = TakeRequest(request::kStopJob);
  m_bStopped = false;
  m_bAccountsOpen = true;

  m_llFirstFrame = entries.empty() ? 0 : entries.front()->nStartSample;
  for (const OutputEntry* entry : entries) m_llFirstFrame = std::min(m_llFirstFrame, entry->nStartSample);
  std::int64_t inputFrames = 0;
  std::int64_t late = 0;
  for (const SRecordingFile& file : m_files) {
    // Where a file begins with the first frame wanted, nothing is sought in it and the writers are not told of the
    // files before: they skip as much once more. See FindFirstFile and StartJob.
    if (inputFrames > 0 && inputFrames == m_llFirstFrame) late = m_llFirstFrame;
    inputFrames += FramesIn(file);
  }
  for (const auto& account : m_accounts) account->Open(inputFrames, late);
}

std::int64_t CBackgroundThreadReader::FramesIn(const SRecordingFile& file) const {
  return m_nFrameBytes == 0 ? 0 : file.nSampleBytes / m_nFrameBytes;
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
      CreateWriters(request.nParam1);
      break;
    case request::kGiveEntry:
      GiveEntry(request.nParam1, *request.pEntry);
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

void CBackgroundThreadReader::CreateWriters(std::int32_t count) {
  m_nActiveWriters = count;
  m_writers.clear();
  m_writers.resize(static_cast<std::size_t>(count));
  m_givenOut.clear();
  m_givenOut.resize(m_writers.size());
  for (std::size_t i = 0; i < m_writers.size(); ++i) {
    try {
      auto writer = std::make_unique<CBackgroundThreadWriter>(m_dsp, *this, m_blockDone, *m_accounts[i]);
      writer->SetName(Format("Writer [%d]", static_cast<int>(i)));
      writer->SetSaveInterval(m_saveInterval);
      ShareLogWith(*writer);
      m_writers[i] = std::move(writer);
    } catch (const std::bad_alloc&) {
      m_accounts[i]->Fail(kNotEnoughMemory);
    }
  }
}

// The writer begins on its own thread, so that all of them design their filters side by side.
void CBackgroundThreadReader::GiveEntry(std::int32_t writer, const OutputEntry& entry) {
  const auto index = static_cast<std::size_t>(writer);
  if (m_accounts[index]->HasFailed()) {
    EntryFails(index, {});
    return;
  }
  CBackgroundThreadWriter& target = *m_writers[index];
  target.SetPolicy(m_policies[index]);
  RequestPtr request = target.TakeRequest(request::kStartEntry);
  RequestPtr priority = target.TakeRequest(request::kSetPriority);
  request->pEntry = &entry;
  priority->nParam1 = kWriterPriority;
  target.Post(std::move(request));
  if (!target.Start()) {
    EntryFails(index, "A thread could not be started");
    return;
  }
  if (target.Priority() != kWriterPriority) target.Post(std::move(priority));
}

// An entry that no thread works on; it may have failed before.
void CBackgroundThreadReader::EntryFails(std::size_t entry, std::string_view reason) noexcept {
  COutputAccount& account = *m_accounts[entry];
  account.Fail(reason);
  Log("[ERROR] %s: %s", account.Entry().strFileName.c_str(), account.Reason().c_str());
  // Blocks that nobody takes off its queue would pile up, the whole input in the end.
  if (entry < m_writers.size()) m_writers[entry].reset();
  WriterFinished();
}

void CBackgroundThreadReader::WriterFinished() noexcept {
  if (m_nActiveWriters == 0) return;
  --m_nActiveWriters;
  Log("%d active writers", m_nActiveWriters);
}

void CBackgroundThreadReader::StartJob(const CBackgroundRequest& request) {
  m_nFile = 0;
  m_llBytesRead = 0;
  m_nReads = 0;
  m_nProgress = 0;
  m_nStretchFrames = 0;
  m_bBlockWaits = m_bInputEnded = m_bStretchEnds = false;
  m_strFirstFile = request.strParam;
  m_llSeek = request.llParam1;
  m_llTotalBytes = request.llParam2;
  Log("Start, file = %s", m_strFirstFile.c_str());
  m_file.Log().Clear(kFileLogGrowth);

  std::int64_t remaining = m_llSeek;
  if (!FindFirstFile(remaining)) {
    ReplayFileLog();
    CloseWriters();
    return;
  }
  LogSize(m_llTotalBytes);
  // A skip that ends exactly at a file's start is deliberately neither sought nor told: the writers keep their full
  // start offsets then.
  if (remaining > 0) {
    const long long samples = remaining;
    const long long bytes = samples * m_file.BytesPerFrame();
    Log("Seek %lld samples (%lld bytes)", samples, bytes);
    if (!m_file.SkipFrames(remaining)) {
      InputFails(m_file.Problem());
      CloseFile();
      CloseWriters();
      return;
    }
    for (const auto& writer : m_writers) {
      if (!writer) continue;
      RequestPtr skipped = writer->TakeRequest(request::kInputSkipped);
      skipped->llParam1 = m_llSeek;
      writer->Post(std::move(skipped));
    }
  } else if (m_llSeek > 0) {
    Log("[WARNING] The first entry begins with the first frame of %s: all entries of this job begin %lld frames later",
        m_files[m_nFile].strPath.c_str(), static_cast<long long>(m_llSeek));
  }
  m_nCpuStart = platform::ProcessCpuMilliseconds();
  m_nWallStart = WallMilliseconds();
  m_bRunning = true;
}

// Opens the file at m_nFile and leaves it at its first sample. On failure the reason is kept and the file is closed.
bool CBackgroundThreadReader::OpenFile() {
  if (m_file.Open(m_files[m_nFile])) return true;
  InputFails(m_file.Problem());
  return false;
}

// Skips whole files until the one that holds the first frame wanted; `remaining` becomes the frames to skip in it. The
// files that are passed over are opened too: what they hold decides where the others stand in the recording.
bool CBackgroundThreadReader::FindFirstFile(std::int64_t& remaining) {
  for (m_nFile = 0; m_nFile < m_files.size(); ++m_nFile) {
    if (!OpenFile()) return false;
    const std::int64_t frames = m_file.Frames();
    // The first file's name whatever the index: it names the recording, the index its part.
    Log("Opening [%d] %s", static_cast<int>(m_nFile), m_strFirstFile.c_str());
    if (remaining < frames || remaining < 1) return true;
    remaining -= frames;
    m_file.Close();
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
  m_pBlock = m_blocks.Take();
  if (!m_pBlock) throw std::bad_alloc();
  const std::uint32_t frames = m_file.ReadBlock(m_pBlock.get());
  m_llBytesRead += static_cast<std::int64_t>(frames) * m_file.BytesPerFrame();
  TellProgressOfReading();
  if (m_nReads < 0) Log("Read, %u of %u samples", frames, kBlockFrames);
  m_nReads = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nReads) + 1);

  // What was read in front of a hole is good. Behind it nothing is: not of this file, nor of the next.
  const bool hole = !m_file.Problem().empty();
  if (hole) InputFails(m_file.Problem());
  const bool fileEnds = hole || m_file.AtEnd();
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

void CBackgroundThreadReader::TellProgressOfReading() noexcept {
  if (m_llTotalBytes <= 0) return;
  const std::int64_t done = m_llSeek * m_file.BytesPerFrame() + m_llBytesRead;
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
  const bool more = m_nFile + 1 < m_files.size() && OpenNextFile();
  if (more) {
    // A file without a whole frame brought nothing to hand on, so nothing asks for the next block yet.
    if (!blockRead) Post(request::kReadBlock);
    return;
  }
  m_bInputEnded = true;
  if (!m_bBlockWaits) PostEnd();
}

bool CBackgroundThreadReader::OpenNextFile() {
  m_file.Close();
  ReplayFileLog();
  ++m_nFile;
  Log("Opening [%d] %s", static_cast<int>(m_nFile), m_files[m_nFile].strPath.c_str());
  if (!OpenFile()) {
    ReplayFileLog();
    Log("Failed");
    return false;
  }
  LogSize(m_files[m_nFile].nSampleBytes);
  return true;
}

bool CBackgroundThreadReader::AnyWriterBusy() const {
  return std::any_of(m_writers.begin(), m_writers.end(), [](const auto& writer) {
    if (!writer || writer->IsFinished() || !writer->IsThreadRunning()) return false;
    // The queue alone does not hold the block that is being worked on.
    return writer->Queued() >= kMaxQueued || writer->BlocksAhead() >= kMaxBlocksAhead;
  });
}

void CBackgroundThreadReader::HandOnBlock(std::int32_t frames) {
  if (m_nActiveWriters == 0) {
    Log("Stopping (forwarding)");
    PostEnd();
    return;
  }
  m_bBlockWaits = AnyWriterBusy();
  if (m_bBlockWaits) {
    // In short steps, for requests to stop to come through; a notice that comes before the wait is not missed for long.
    std::unique_lock guard(m_blockDoneLock);
    m_blockDone.wait_for(guard, kBusyPause);
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

// To every writer from here, so that what one of them gets does not depend on another. All requests are there before
// the first is posted: either all writers get the block or none.
void CBackgroundThreadReader::GiveOut(std::int32_t frames) {
  const SharedBlock block = std::move(m_pBlock);
  for (std::size_t i = 0; i < m_writers.size(); ++i) {
    m_givenOut[i].reset();
    if (!m_writers[i] || m_writers[i]->IsFinished()) continue;
    m_givenOut[i] = m_writers[i]->TakeRequest(request::kDataBlock);
    m_givenOut[i]->nParam1 = m_bStretchEnds ? 1 : 0;
    m_givenOut[i]->nParam2 = frames;
    m_givenOut[i]->block = block;
  }
  for (std::size_t i = 0; i < m_writers.size(); ++i) {
    if (m_givenOut[i]) m_writers[i]->GiveBlock(std::move(m_givenOut[i]));
  }
}

void CBackgroundThreadReader::PostEnd() {
  Post(request::kStopJob, kByItself);
}

void CBackgroundThreadReader::StopJob(bool byUser) noexcept {
  if (!m_bRunning) return;
  m_bStopped = byUser;
  Log("Stop");
  CloseFile();
  LogStatistics();
  CloseWriters();
  m_bRunning = false;  // last, so that whoever waits for the end goes on with other things while files are synced
  TellProgress(kProgressTotal);
}

void CBackgroundThreadReader::CloseWriters() noexcept {
  if (!m_bAccountsOpen) return;
  m_bAccountsOpen = false;
  m_pBlock.reset();
  Log("Closing %d writer threads", static_cast<int>(m_writers.size()));
  for (const auto& writer : m_writers) {
    if (writer) writer->PostClose();
  }
  const auto isOpen = [](const auto& writer) { return writer && writer->IsFileOpen() && writer->IsThreadRunning(); };
  while (std::any_of(m_writers.begin(), m_writers.end(), isOpen)) std::this_thread::sleep_for(kClosePause);
  const SJobEnd end{m_bStopped, m_strInputError};
  for (std::size_t i = 0; i < m_accounts.size(); ++i) {
    if (i < m_writers.size() && m_writers[i]) {
      m_writers[i]->WaitIdle();
      m_writers[i]->Stop();
      m_writers[i]->CloseAccount(end);
    } else {
      m_accounts[i]->Close(end, 0, 0, {});
    }
    m_results[i] = m_accounts[i]->TakeResult();
  }
  m_writers.clear();
  m_nActiveWriters = 0;
  Log("Closed");
}

void CBackgroundThreadReader::InputFails(std::string_view reason) noexcept {
  if (m_strInputError.empty()) m_strInputError.assign(reason.substr(0, m_strInputError.capacity()));
  Log("[ERROR] %.*s", static_cast<int>(reason.size()), reason.data());
}

void CBackgroundThreadReader::CloseFile() noexcept {
  try {
    m_file.Close();
    ReplayFileLog();
  } catch (const std::exception&) {
    // Only the lines that tell of it are lost.
  }
}

void CBackgroundThreadReader::ReplayFileLog() {
  for (const std::string& line : m_file.Log()) Log("... %s", line.c_str());
  m_file.Log().Clear(kFileLogGrowth);
}

void CBackgroundThreadReader::LogSize(std::int64_t bytes) noexcept {
  const auto size = static_cast<double>(bytes);
  if (size < kGiga) {
    Log("Size = %.1f MB", size / kMega);
  } else {
    Log("Size = %.2f GB", size / kGiga);
  }
}

void CBackgroundThreadReader::LogStatistics() noexcept {
  const auto cpu = static_cast<long long>(platform::ProcessCpuMilliseconds() - m_nCpuStart);
  Log("CPU = %lld.%03lld seconds", cpu / 1000, cpu % 1000);
  Log("%s", "");
  const std::int64_t elapsed = WallMilliseconds() - m_nWallStart;
  if (elapsed <= 0) return;
  const double rate = static_cast<double>(m_llBytesRead) / static_cast<double>(elapsed) * 1000.0;
  if (rate < kGiga) {
    Log("Input data rate = %.2f MB", rate / kMega);
  } else {
    Log("Input data rate = %.2f GB", rate / kGiga);
  }
  Log("Elapsed         = %d.%03d seconds", static_cast<int>(elapsed / 1000), static_cast<int>(elapsed % 1000));
  Log("%s", "");
}

}  // namespace carvello
