#include "engine/background_thread_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "engine/block_reader.h"
#include "engine/output_files.h"
#include "engine/output_rate.h"
#include "recording/metadata_xml.h"
#include "support/formatting.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

namespace {

// Samples that are shifted and decimated at a time: few enough to stay in the processor's cache in between.
constexpr std::int32_t kPieceFrames = 4'096;
// Output samples that a stretch may bring beyond what its length says: filters give them out when they have them.
constexpr double kUnevenSamples = 1'024.0;
// Output samples by which the filters of a library are late that does not tell.
constexpr std::int64_t kUsualDelay = 64;
// What rounding in the stages may add to what a library tells.
constexpr std::int64_t kDelayRounding = 2;
// Looks at the clock in one interval of saving.
constexpr int kLooksPerInterval = 4;

const wchar_t* const kApplicationName = L"Carvello";

std::string RecordingTag() {
  const auto seconds = static_cast<std::uint64_t>(CurrentTime());
  return Format("%04X-%04X-%04X", static_cast<unsigned>((seconds >> 16) & 0xFFFF),
                static_cast<unsigned>(seconds & 0xFFFF), CurrentMilliseconds());
}

}  // namespace

CBackgroundThreadWriter::CBackgroundThreadWriter(const DspBinding& dsp, CBackgroundThreadBase& reader,
                                                 std::condition_variable& blockDone, COutputAccount& account)
    : m_dsp(dsp),
      m_reader(reader),
      m_blockDone(blockDone),
      m_account(account),
      m_pFinishedNotice(reader.TakeRequest(request::kWriterFinished)),
      m_pCloseRequest(TakeRequest(request::kCloseOutput)),
      m_buffer(m_output),
      m_pPiece(AllocComplex(kPieceFrames)),
      m_hDsp(dsp.AllocInstance(kApplicationName)) {
  SetSaveInterval(kSaveInterval);
}

CBackgroundThreadWriter::~CBackgroundThreadWriter() {
  m_dsp.ReleaseInstance(m_hDsp);
}

void CBackgroundThreadWriter::SetSaveInterval(std::chrono::milliseconds interval) {
  m_buffer.SetSaveInterval(interval);
  SetWakeInterval(std::max(interval / kLooksPerInterval, std::chrono::milliseconds(1)));
}

void CBackgroundThreadWriter::GiveBlock(RequestPtr request) noexcept {
  ++m_nBlocksGiven;
  Post(std::move(request));
}

void CBackgroundThreadWriter::PostClose() noexcept {
  if (m_pCloseRequest) Post(std::move(m_pCloseRequest));
}

// What a step cannot do ends the entry, and nothing else: only impossible times and exhausted memory raise exceptions.
template <typename TStep>
void CBackgroundThreadWriter::Guard(TStep step) noexcept {
  try {
    step();
  } catch (const std::bad_alloc&) {
    Fail(kNotEnoughMemory);
  } catch (const std::exception& error) {
    Fail(error.what());
  }
}

void CBackgroundThreadWriter::HandleRequest(CBackgroundRequest& request, std::uint32_t /*remaining*/) {
  switch (request.nCode) {
    case request::kStartEntry:
      Guard([&] { StartEntry(*request.pEntry); });
      break;
    case request::kDataBlock:
      if (!m_bFinished) Guard([&] { ProcessBlock(request); });
      request.block.reset();
      ++m_nBlocksDone;
      m_blockDone.notify_one();
      break;
    case request::kCloseOutput:
      CloseOutput();
      m_bFileOpen = false;
      break;
    case request::kInputSkipped:
      InputSkipped(request.llParam1);
      break;
    default:
      break;
  }
}

// Nothing came for a while: what waits here goes into the file all the same.
void CBackgroundThreadWriter::OnWakeTimeout() noexcept {
  if (m_bFileOpen && !m_account.HasFailed()) Guard([this] { CheckWritten(m_buffer.SaveIfDue()); });
}

void CBackgroundThreadWriter::StartEntry(const OutputEntry& entry) {
  m_pEntry = &entry;
  m_bStarted = false;
  m_llSkip = entry.nStartSample;
  m_llLeft = entry.nTotalSamples;
  if (!m_pPiece || !m_buffer.HasMemory()) throw std::bad_alloc();
  PrepareDownconverter();
  if (m_account.HasFailed()) return;
  LogEntry();

  DescribeOutput();
  if (m_output.Policy().bReplace) {
    if (const auto problem = RemoveOldParts(entry)) {
      Fail(*problem);
      return;
    }
  }
  m_bFileOpen = m_output.Open(entry.strFileName, 0, RecordingTag());
  if (m_bFileOpen) return;
  Log("Error creating %s - %s", entry.strFileName.c_str(), m_output.LastError().c_str());
  m_account.Fail(m_output.LastError());
  Finish();
}

// The library tells of no failure; whether it can do what it was asked for shows in the rate that it gives.
void CBackgroundThreadWriter::PrepareDownconverter() {
  const OutputEntry& entry = *m_pEntry;
  if (m_hDsp == 0) {
    Fail("The downconverter library has no memory for it");
    return;
  }
  m_dsp.DownconvertInit(m_hDsp, entry.nInputSampleRate, entry.nOutputSampleRate);
  if (DecimatesByWholeNumber(entry.nOutputSampleRate)) m_dsp.DisableFractionalResampler(m_hDsp);
  if (m_dsp.DownconvertRateOut(m_hDsp) == 0) {
    Fail(Format("The downconverter library does not bring %u to %u samples per second", entry.nInputSampleRate,
                entry.nOutputSampleRate));
    return;
  }
  const double share = static_cast<double>(entry.nOutputSampleRate) / entry.nInputSampleRate;
  const double longest = std::ceil(kStretchFrames * share) + kUnevenSamples;
  m_buffer.Begin(entry.nBitsPerSample, static_cast<std::int64_t>(longest) * 2 * (entry.nBitsPerSample / 8));
}

void CBackgroundThreadWriter::LogEntry() {
  const OutputEntry& entry = *m_pEntry;
  const auto ll = [](std::int64_t value) { return static_cast<long long>(value); };
  const bool rf64 = entry.nFileSizeMB == 0;
  Log("Input frequency .....: %lld", ll(entry.nInputFrequency));
  Log("      sample rate ...: %u", entry.nInputSampleRate);
  Log("Output filename .....: %s", entry.strFileName.c_str());
  Log("       WAV RF64 .....: %d", rf64 ? 1 : 0);
  Log("       frequency ....: %lld", ll(entry.nOutputFrequency));
  Log("       sample rate ..: %u", entry.nOutputSampleRate);
  Log("%s", "");
  Log("Downconverter .......: %u to %u", entry.nInputSampleRate, entry.nOutputSampleRate);
  Log("%s", "");
  Log("Samples: start ......: %lld", ll(m_llSkip));
  Log("         total ......: %lld", ll(m_llLeft));
  Log("%s", "");
}

void CBackgroundThreadWriter::DescribeOutput() {
  const OutputEntry& entry = *m_pEntry;
  const SMetadataLists& metadata = entry.strMetadata.Lists();

  SRecordingDescription description;
  if (metadata.Has("RadioModel")) description.strRadioModel = metadata.Find("RadioModel");
  if (metadata.Has("RadioSerial")) description.strRadioSerial = metadata.Find("RadioSerial");
  if (metadata.Has("ADFrequency")) {
    description.nADFrequency = static_cast<std::uint32_t>(metadata.FindNumber("ADFrequency"));
  }
  description.nRadioCenterFreq = entry.nOutputFrequency;
  // The file tells the rate that its samples really have: with whole-number decimation that can differ from the one
  // asked for (1.5 MHz out of 2.4 MHz gives 1.2 MHz).
  description.nSampleRate = m_dsp.DownconvertRateOut(m_hDsp);
  if (description.nSampleRate != entry.nOutputSampleRate) Log("True sample rate ....: %u", description.nSampleRate);
  description.tStart = entry.tStart;
  description.bStartValid = true;
  description.nBitsPerSample = entry.nBitsPerSample;
  description.bRF64 = IsSingleRf64(entry);
  description.nSplitMB = description.bRF64 ? 0 : entry.nFileSizeMB;
  description.strTitle = entry.strTitle;
  m_output.Reset();
  m_output.Describe(std::move(description));
}

void CBackgroundThreadWriter::InputSkipped(std::int64_t samples) {
  m_llSkip = std::max<std::int64_t>(0, m_llSkip - samples);
  Log("Seek offset ..: %lld", static_cast<long long>(samples));
  Log("Start in .....: %lld", static_cast<long long>(m_llSkip));
}

void CBackgroundThreadWriter::ProcessBlock(const CBackgroundRequest& request) {
  const SComplex* data = request.block.get();
  std::int32_t count = request.nParam2;
  if (TrimToEntry(data, count)) Downconvert(data, count);
  if (request.nParam1 != 0) m_buffer.EndStretch();
  CheckWritten(m_buffer.SaveIfDue());
}

// Cuts the block to the entry's span; false when nothing of it lies inside.
bool CBackgroundThreadWriter::TrimToEntry(const SComplex*& data, std::int32_t& count) {
  if (!m_bStarted) {
    if (m_llSkip >= count) {
      m_llSkip -= count;
      return false;
    }
    data += m_llSkip;
    count -= static_cast<std::int32_t>(m_llSkip);
    m_llSkip = 0;
    m_bStarted = true;
    Log("Starting after %lld samples", static_cast<long long>(m_pEntry->nStartSample));
  }
  if (m_llLeft != 0) {
    count = static_cast<std::int32_t>(std::min<std::int64_t>(count, m_llLeft));
    m_llLeft -= count;
    if (m_llLeft == 0) {
      Log("Finishing after %lld samples", static_cast<long long>(m_pEntry->nTotalSamples));
      Finish();
    }
  }
  return true;
}

void CBackgroundThreadWriter::GrowWorkBuffer(std::int32_t count) {
  if (count <= m_nWorkCapacity) return;
  m_pWork.reset(AllocComplex(count));
  m_nWorkCapacity = m_pWork ? count : 0;
  if (!m_pWork) throw std::bad_alloc();
}

void CBackgroundThreadWriter::Downconvert(const SComplex* data, std::int32_t count) {
  GrowWorkBuffer(count);
  const std::int64_t shift = m_pEntry->nOutputFrequency - m_pEntry->nInputFrequency;
  std::uint32_t outputCount = 0;
  for (std::int32_t done = 0; done < count; done += kPieceFrames) {
    const auto pieceCount = static_cast<std::uint32_t>(std::min(kPieceFrames, count - done));
    std::uint32_t produced = 0;
    // Into a place of this writer's own: the block belongs to all of them.
    m_dsp.NCO(m_hDsp, shift, m_pEntry->nInputSampleRate, data + done, pieceCount, m_pPiece.get());
    m_dsp.DownconvertRun(m_hDsp, m_pPiece.get(), pieceCount, m_pWork.get() + outputCount, &produced);
    outputCount += produced;
  }
  m_llInputSamples += count;
  m_account.CountGiven(count);
  if (outputCount == 0) return;
  StoreOutput(outputCount);
  // Wraps on purpose: the line is a sign of life in very long jobs only.
  m_nDataCalls = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nDataCalls) + 1);
  if (m_nDataCalls < 1) Log("Data call %d, samples %d > %u", m_nDataCalls, count, outputCount);
}

// The filters hold the last output samples back until the input behind them arrives. At the entry's end silence takes
// its place, so that an output is as long as the stretch it was cut from, which counts most in very narrow ones.
void CBackgroundThreadWriter::CompleteOutput() {
  const OutputEntry& entry = *m_pEntry;
  const std::int64_t due = OutputFramesDue(m_llInputSamples, entry.nInputSampleRate, entry.nOutputSampleRate);
  const std::int64_t missing = due - m_llOutputSamples;
  if (missing <= 0) return;
  const std::optional<std::uint32_t> told = DownconvertDelay(m_dsp, m_hDsp);
  if (told && missing > std::int64_t{*told} + kDelayRounding) {
    // Samples that were lost on the way: silence must not take their place.
    Fail(Format("The downconverter library gave %lld samples where %lld were due, of which it may keep %u back",
                static_cast<long long>(m_llOutputSamples), static_cast<long long>(due), *told));
    return;
  }
  GrowWorkBuffer(kPieceFrames);
  std::fill_n(m_pPiece.get(), kPieceFrames, SComplex{});
  // Twice the silence that the missing samples and the delay span: enough at any rate, and an end where none ever come.
  const auto ratio = static_cast<double>(entry.nInputSampleRate) / entry.nOutputSampleRate;
  const std::int64_t delay = told.value_or(kUsualDelay);
  auto left = static_cast<std::int64_t>(2.0 * ratio * static_cast<double>(missing + delay)) + kPieceFrames;
  for (; m_llOutputSamples < due && left > 0 && !m_account.HasFailed(); left -= kPieceFrames) {
    std::uint32_t produced = 0;
    m_dsp.DownconvertRun(m_hDsp, m_pPiece.get(), kPieceFrames, m_pWork.get(), &produced);
    StoreOutput(static_cast<std::uint32_t>(std::min<std::int64_t>(produced, due - m_llOutputSamples)));
  }
}

void CBackgroundThreadWriter::StoreOutput(std::uint32_t outputCount) {
  if (outputCount == 0) return;
  const std::uint32_t bits = m_pEntry->nBitsPerSample;
  const std::uint32_t bytes = outputCount * 2 * (bits / 8);
  std::uint8_t* const destination = m_buffer.Reserve(bytes);
  CheckWritten(destination != nullptr);
  if (destination == nullptr) return;
  if (bits == 16) {
    FloatToInt16(&m_pWork[0].re, reinterpret_cast<std::int16_t*>(destination),
                 static_cast<std::int32_t>(2 * outputCount), kRoundHalfAway, 0);
  } else {
    // Floats keep the engine's scale, 16-bit full scale being 32768: a wide recording and the cuts made from it then
    // show the same levels.
    std::memcpy(destination, m_pWork.get(), bytes);
  }
  m_buffer.Commit(bytes);
  m_llOutputSamples += outputCount;
}

void CBackgroundThreadWriter::CheckWritten(bool written) {
  if (!written) Fail(m_output.LastError());
}

void CBackgroundThreadWriter::CloseOutput() noexcept {
  if (!m_bFileOpen) return;
  Log("Closing");
  if (!m_account.HasFailed()) {
    Guard([this] {
      m_buffer.EndStretch();
      // An output that ends too early ends with samples that are right: silence would bend the last ones.
      if (m_account.IsSpanGiven()) CompleteOutput();
    });
  }
  // What is there is kept, also of an entry that is not complete.
  Guard([this] { CheckWritten(m_buffer.Flush()); });
  Guard([this] {
    m_output.Close();
    if (!m_output.LastError().empty()) Fail(m_output.LastError());
  });
}

void CBackgroundThreadWriter::CloseAccount(const SJobEnd& end) noexcept {
  std::vector<std::string> files;
  Guard([&] { files = m_output.Files(); });
  m_account.Close(end, m_output.Description().nSampleRate, m_output.TotalDataBytes(), std::move(files));
}

void CBackgroundThreadWriter::Finish() noexcept {
  m_bFinished = true;
  if (m_pFinishedNotice) m_reader.Post(std::move(m_pFinishedNotice));
}

// The first reason is kept and logged; what was written before stays. The job goes on for the other entries.
void CBackgroundThreadWriter::Fail(std::string_view reason) noexcept {
  if (!m_account.HasFailed()) {
    m_account.Fail(reason);
    const std::string& name = m_output.FileName().empty() ? m_account.Entry().strFileName : m_output.FileName();
    Log("[ERROR] %s: %s", name.c_str(), m_account.Reason().c_str());
  }
  Finish();
}

}  // namespace carvello
