#include "engine/background_thread_reader.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <thread>

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
constexpr double kMega = 1 << 20;
constexpr double kGiga = 1 << 30;

std::int64_t WallMilliseconds() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

CBackgroundThreadReader::~CBackgroundThreadReader() {
  Stop();
  for (const auto& writer : m_writers) writer->Stop();
}

void CBackgroundThreadReader::SetProgressTarget(IMessageTarget* target, std::uint32_t progressMessage) {
  m_pProgressTarget = target;
  m_nProgressMessage = progressMessage;
}

void CBackgroundThreadReader::SetInput(std::vector<std::string> files, bool floatScale) {
  m_files = std::move(files);
  m_file.SetFloatScale(floatScale);
}

void CBackgroundThreadReader::HandleRequest(CBackgroundRequest& request, std::uint32_t /*remaining*/) {
  switch (request.nCode) {
    case request::kStartJob:
      StartJob(request);
      if (m_bRunning) Post(request::kReadBlock);
      break;
    case request::kStopJob:
      StopJob();
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

void CBackgroundThreadReader::CreateWriters(std::int32_t count) {
  CloseWriters();
  m_results.clear();
  for (std::int32_t i = 0; i < count; ++i) {
    auto writer = std::make_unique<CBackgroundThreadWriter>(m_dsp, *this, m_blockDone);
    writer->SetName(Format("Writer [%d]", i));
    ShareLogWith(*writer);
    if (!m_writers.empty()) m_writers.back()->SetNext(writer.get());
    m_writers.push_back(std::move(writer));
  }
  m_nActiveWriters = count;
}

void CBackgroundThreadReader::GiveEntry(std::int32_t writer, const OutputEntry& entry) {
  CBackgroundThreadWriter& target = *m_writers[static_cast<std::size_t>(writer)];
  RequestPtr request = target.TakeRequest(request::kStartEntry);
  request->pEntry = &entry;
  target.Post(std::move(request));
  target.SetEntry(entry);
  target.Start();
  if (target.Priority() != kWriterPriority) target.Post(request::kSetPriority, kWriterPriority);
  target.WaitIdle();
}

void CBackgroundThreadReader::WriterFinished() {
  --m_nActiveWriters;
  Log("%d active writers", m_nActiveWriters);
}

void CBackgroundThreadReader::StartJob(const CBackgroundRequest& request) {
  m_strFirstFile = request.strParam;
  m_llSeek = request.llParam1;
  m_llTotalBytes = request.llParam2;
  Log("Start, file = %s", m_strFirstFile.c_str());
  m_nFile = 0;
  m_llBytesRead = 0;
  m_nReads = 0;
  m_nProgress = 0;
  m_nBlocksHandedOn = 0;
  m_bBlockWaits = m_bInputEnded = false;
  m_strInputError.clear();
  m_file.Log().Clear(kFileLogGrowth);
  // A writer without its thread would hold up the chain for ever.
  const bool allRun =
      std::all_of(m_writers.begin(), m_writers.end(), [](const auto& w) { return w->IsThreadRunning(); });
  if (!allRun) InputFails("A thread could not be started");

  std::int64_t remaining = m_llSeek;
  if (!allRun || !FindFirstFile(remaining)) {
    ReplayFileLog();
    CloseWriters();
    return;
  }
  LogSize(m_llTotalBytes);
  // A skip that ends exactly at a file's start is deliberately neither sought nor told: the writers keep their full
  // start offsets then.
  if (remaining > 0) {
    m_file.SkipFrames(remaining);
    const long long samples = remaining;
    const long long bytes = samples * m_file.BytesPerFrame();
    Log("Seek %lld samples (%lld bytes)", samples, bytes);
    for (const auto& writer : m_writers) {
      RequestPtr skipped = writer->TakeRequest(request::kInputSkipped);
      skipped->llParam1 = m_llSeek;
      writer->Post(std::move(skipped));
    }
  }
  m_nCpuStart = platform::ProcessCpuMilliseconds();
  m_nWallStart = WallMilliseconds();
  m_bRunning = true;
}

// Opens the file at m_nFile and leaves it at its first sample. On failure the reason is kept and the file is closed.
bool CBackgroundThreadReader::OpenFile(std::int64_t& dataSize) {
  const std::string& name = m_files[m_nFile];
  WAVEFORMATEXTENSIBLE format;
  if (!m_file.Open(name)) {
    InputFails(Format("%s: cannot be opened", name.c_str()));
    return false;
  }
  if (!m_file.ParseWave(format, dataSize)) {
    InputFails(Format("%s: no samples could be found in it", name.c_str()));
  } else if (!CanConvert(format)) {
    InputFails(Format("%s: %s", name.c_str(), UnsupportedFormatText(format).c_str()));
  } else {
    return true;
  }
  m_file.Close();
  return false;
}

// Skips whole files until the one that holds the first frame wanted; `remaining` becomes the frames to skip in it.
bool CBackgroundThreadReader::FindFirstFile(std::int64_t& remaining) {
  for (m_nFile = 0; m_nFile < m_files.size(); ++m_nFile) {
    std::int64_t dataSize = 0;
    if (!OpenFile(dataSize)) return false;
    const std::int64_t frames = dataSize / m_file.BytesPerFrame();
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
    Post(request::kStopJob);
    return;
  }
  std::uint32_t frames = 0;
  try {
    m_pBlock = m_blocks.Take();
    if (!m_pBlock) throw std::bad_alloc();
    frames = m_blockReader.ReadBlock(m_file, m_pBlock.get());
  } catch (const std::bad_alloc&) {
    InputFails("Not enough memory");
    Post(request::kStopJob);
    return;
  }
  m_llBytesRead += static_cast<std::int64_t>(frames) * m_file.BytesPerFrame();
  if (m_pProgressTarget != nullptr && m_llTotalBytes > 0) {
    const std::int64_t done = (m_llSeek * m_file.BytesPerFrame() + m_llBytesRead);
    const double share = static_cast<double>(done) / static_cast<double>(m_llTotalBytes);
    const auto progress = static_cast<std::uint64_t>(std::clamp(share, 0.0, 1.0) * kProgressTotal);
    if (progress != m_nProgress) m_pProgressTarget->PostNumbers(m_nProgressMessage, kProgressTotal, progress);
    m_nProgress = progress;
  }
  if (m_nReads < 0) Log("Read, %u of %u samples", frames, kBlockFrames);
  m_nReads = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nReads) + 1);

  if (frames > 0) HandOnBlock(static_cast<std::int32_t>(frames));
  if (frames < kBlockFrames) EndOfFile(frames > 0);
}

// Goes on with the next file, or ends the job. A block that still waits in the buffer is handed on first.
void CBackgroundThreadReader::EndOfFile(bool blockRead) {
  if (m_file.DataBytesRead() < m_file.DataBytesTotal() - (m_file.BytesPerFrame() - 1)) {
    InputFails(Format("%s: reading stopped at byte %lld of its %lld sample bytes", m_file.FileName().c_str(),
                      static_cast<long long>(m_file.DataBytesRead()), static_cast<long long>(m_file.DataBytesTotal())));
  }
  const bool more = m_nFile + 1 < m_files.size() && OpenNextFile();
  if (more) {
    // A file that ended with its last full block brought nothing to hand on, so nothing asks for the next block yet.
    if (!blockRead) Post(request::kReadBlock);
    return;
  }
  m_bInputEnded = true;
  if (!m_bBlockWaits) Post(request::kStopJob);
}

bool CBackgroundThreadReader::OpenNextFile() {
  m_file.Close();
  ReplayFileLog();
  ++m_nFile;
  Log("Opening [%d] %s", static_cast<int>(m_nFile), m_files[m_nFile].c_str());
  std::int64_t dataSize = 0;
  if (!OpenFile(dataSize)) {
    ReplayFileLog();
    Log("Failed");
    return false;
  }
  LogSize(dataSize);
  return true;
}

bool CBackgroundThreadReader::AnyWriterBusy() const {
  return std::any_of(m_writers.begin(), m_writers.end(), [this](const auto& writer) {
    // The queue's length alone would let a slow writer at the chain's end collect the blocks of all queues before it.
    return writer->Queued() >= kMaxQueued || m_nBlocksHandedOn - writer->BlocksDone() >= kMaxBlocksAhead;
  });
}

void CBackgroundThreadReader::HandOnBlock(std::int32_t frames) {
  if (m_nActiveWriters == 0) {
    Log("Stopping (forwarding)");
    Post(request::kStopJob);
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
  CBackgroundThreadWriter::HandOn(*m_writers.front(), std::move(m_pBlock), frames);
  ++m_nBlocksHandedOn;
  if (m_bInputEnded) {
    Post(request::kStopJob);
  } else if (m_nActiveWriters >= 1) {
    Post(request::kReadBlock);
  }
}

void CBackgroundThreadReader::StopJob() {
  if (!m_bRunning) return;
  Log("Stop");
  m_file.Close();
  ReplayFileLog();
  m_bRunning = false;
  LogStatistics();
  CloseWriters();
  if (m_pProgressTarget != nullptr) {
    m_pProgressTarget->PostNumbers(m_nProgressMessage, kProgressTotal, kProgressTotal);
  }
}

void CBackgroundThreadReader::CloseWriters() {
  if (m_writers.empty()) return;
  Log("Closing %d writer threads", static_cast<int>(m_writers.size()));
  m_writers.front()->Post(request::kCloseOutput);
  // The request travels down the chain; behind a writer without its thread it must be set off again.
  for (std::size_t i = 1; i < m_writers.size(); ++i) {
    if (!m_writers[i - 1]->IsThreadRunning()) m_writers[i]->Post(request::kCloseOutput);
  }
  const auto isOpen = [](const auto& writer) { return writer->IsFileOpen() && writer->IsThreadRunning(); };
  while (std::any_of(m_writers.begin(), m_writers.end(), isOpen)) std::this_thread::sleep_for(kClosePause);
  for (const auto& writer : m_writers) {
    writer->WaitIdle();
    writer->Stop();
    m_results.push_back(writer->Result());
    if (!m_strInputError.empty() && m_results.back().bOk && !writer->ReachedEnd()) {
      m_results.back().bOk = false;
      m_results.back().state = EOutputState::Failed;
      m_results.back().strError = m_strInputError;
    } else if (m_results.back().bOk && !writer->ReachedEnd() && !m_bInputEnded) {
      m_results.back().state = EOutputState::Stopped;
    }
  }
  m_writers.clear();
  Log("Closed");
}

void CBackgroundThreadReader::InputFails(const std::string& reason) {
  if (m_strInputError.empty()) m_strInputError = reason;
  Log("[ERROR] %s", reason.c_str());
}

void CBackgroundThreadReader::ReplayFileLog() {
  for (const std::string& line : m_file.Log()) Log("... %s", line.c_str());
  m_file.Log().Clear(kFileLogGrowth);
}

void CBackgroundThreadReader::LogSize(std::int64_t bytes) {
  const auto size = static_cast<double>(bytes);
  if (size < kGiga) {
    Log("Size = %.1f MB", size / kMega);
  } else {
    Log("Size = %.2f GB", size / kGiga);
  }
}

void CBackgroundThreadReader::LogStatistics() {
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
