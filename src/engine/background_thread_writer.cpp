#include "engine/background_thread_writer.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include "engine/output_rate.h"
#include "recording/metadata_xml.h"
#include "support/formatting.h"
#include "support/system_time.h"

namespace carvello {

namespace {

constexpr std::uint32_t kOutputBytes = 16'777'216;
// Samples that are shifted and decimated at a time: few enough to stay in the processor's cache in between.
constexpr std::int32_t kPieceFrames = 4'096;
// Output samples by which the filters of a library are late that does not tell.
constexpr std::int64_t kUsualDelay = 64;

const wchar_t* const kApplicationName = L"Carvello";

std::string RecordingTag() {
  const auto seconds = static_cast<std::uint64_t>(CurrentTime());
  return Format("%04X-%04X-%04X", static_cast<unsigned>((seconds >> 16) & 0xFFFF),
                static_cast<unsigned>(seconds & 0xFFFF), CurrentMilliseconds());
}

}  // namespace

CBackgroundThreadWriter::CBackgroundThreadWriter(const DspBinding& dsp, CBackgroundThreadBase& reader,
                                                 std::condition_variable& blockDone)
    : m_dsp(dsp),
      m_reader(reader),
      m_blockDone(blockDone),
      m_hDsp(dsp.AllocInstance(kApplicationName)),
      m_pPiece(AllocComplex(kPieceFrames)),
      m_pOutput(AllocComplex(kOutputBytes / sizeof(SComplex))) {}

CBackgroundThreadWriter::~CBackgroundThreadWriter() {
  m_dsp.ReleaseInstance(m_hDsp);
}

void CBackgroundThreadWriter::HandOn(CBackgroundThreadWriter& writer, SharedBlock block, std::int32_t count) {
  RequestPtr request = writer.TakeRequest(request::kDataBlock);
  request->nParam2 = count;
  request->block = std::move(block);
  writer.Post(std::move(request));
}

void CBackgroundThreadWriter::HandleRequest(CBackgroundRequest& request, std::uint32_t /*remaining*/) {
  // Only impossible times and exhausted memory raise exceptions. They end this entry, never the chain.
  try {
    switch (request.nCode) {
      case request::kStartEntry:
        StartEntry(*request.pEntry);
        break;
      case request::kDataBlock:
        ProcessBlock(request);
        break;
      case request::kCloseOutput:
        CloseOutput();
        break;
      case request::kInputSkipped:
        InputSkipped(request.llParam1);
        break;
      default:
        break;
    }
  } catch (const std::bad_alloc&) {
    Fail("Not enough memory");
  } catch (const std::exception& error) {
    Fail(error.what());
  }
  if (request.nCode == request::kDataBlock) {
    request.block.reset();
    ++m_nBlocksDone;
    m_blockDone.notify_one();
  } else if (request.nCode == request::kCloseOutput) {
    m_bFileOpen = false;
    if (m_pNext != nullptr) m_pNext->Post(request::kCloseOutput);
  }
}

void CBackgroundThreadWriter::StartEntry(const OutputEntry& entry) {
  m_pEntry = &entry;
  m_dsp.DownconvertInit(m_hDsp, entry.nInputSampleRate, entry.nOutputSampleRate);
  if (DecimatesByWholeNumber(entry.nOutputSampleRate)) m_dsp.DisableFractionalResampler(m_hDsp);
  m_nOutputFill = 0;
  m_bFinished = m_bStarted = false;
  m_llSkip = entry.nStartSample;
  m_llLeft = entry.nTotalSamples;
  LogEntry();
  if (!m_pPiece || !m_pOutput) throw std::bad_alloc();

  DescribeOutput();
  m_bFileOpen = m_output.Open(entry.strFileName, 0, RecordingTag());
  if (!m_bFileOpen) {
    Log("Error creating %s - %s", entry.strFileName.c_str(), m_output.LastError().c_str());
    m_strError = m_output.LastError();
    Finish();
    return;
  }
  // An entry that ends before it begins holds nothing; without this it would count as one without a limit.
  if (m_llLeft < 0) Finish();
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
  // Handed on first, so that the writers run side by side on the same stretch of input.
  if (m_pNext != nullptr) HandOn(*m_pNext, request.block, request.nParam2);
  if (m_bFinished) return;

  const SComplex* data = request.block.get();
  std::int32_t count = request.nParam2;
  if (TrimToEntry(data, count)) Downconvert(data, count);
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
  if (outputCount == 0) return;
  StoreOutput(outputCount);
  // Wraps on purpose: the line is a sign of life in very long jobs only.
  m_nDataCalls = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nDataCalls) + 1);
  if (m_nDataCalls < 1) Log("Data call %d, samples %d > %u", m_nDataCalls, count, outputCount);
}

// The filters hold the last output samples back until the input behind them arrives. At the entry's end silence takes
// its place, so that an output is as long as the stretch it was cut from, which counts most in very narrow ones.
void CBackgroundThreadWriter::CompleteOutput() {
  const std::int64_t due = OutputSamplesDue();
  const std::int64_t missing = due - m_llOutputSamples;
  if (missing <= 0) return;
  GrowWorkBuffer(kPieceFrames);
  std::fill_n(m_pPiece.get(), kPieceFrames, SComplex{});
  // Twice the silence that the missing samples and the delay span: enough at any rate, and an end where none ever come.
  const auto ratio = static_cast<double>(m_pEntry->nInputSampleRate) / m_pEntry->nOutputSampleRate;
  const std::int64_t delay = DownconvertDelay(m_dsp, m_hDsp).value_or(kUsualDelay);
  auto left = static_cast<std::int64_t>(2.0 * ratio * static_cast<double>(missing + delay)) + kPieceFrames;
  for (; m_llOutputSamples < due && left > 0; left -= kPieceFrames) {
    std::uint32_t produced = 0;
    m_dsp.DownconvertRun(m_hDsp, m_pPiece.get(), kPieceFrames, m_pWork.get(), &produced);
    StoreOutput(static_cast<std::uint32_t>(std::min<std::int64_t>(produced, due - m_llOutputSamples)));
  }
}

// Output samples whose time lies within the input given so far.
std::int64_t CBackgroundThreadWriter::OutputSamplesDue() const {
  return OutputFramesDue(m_llInputSamples, m_pEntry->nInputSampleRate, m_pEntry->nOutputSampleRate);
}

void CBackgroundThreadWriter::StoreOutput(std::uint32_t outputCount) {
  const std::uint32_t bits = m_pEntry->nBitsPerSample;
  if (bits != 16 && bits != 32) return;
  const std::uint32_t bytes = outputCount * 2 * (bits / 8);
  if (m_nOutputFill + bytes > kOutputBytes && !FlushOutput()) return;
  std::uint8_t* const destination = reinterpret_cast<std::uint8_t*>(m_pOutput.get()) + m_nOutputFill;
  if (bits == 16) {
    FloatToInt16(&m_pWork[0].re, reinterpret_cast<std::int16_t*>(destination),
                 static_cast<std::int32_t>(2 * outputCount), kRoundHalfAway, 0);
  } else {
    // Floats keep the engine's scale, 16-bit full scale being 32768: a wide recording and the cuts made from it then
    // show the same levels.
    std::memcpy(destination, m_pWork.get(), bytes);
  }
  m_nOutputFill += bytes;
  m_llOutputSamples += outputCount;
}

bool CBackgroundThreadWriter::FlushOutput() {
  const std::uint32_t bits = m_pEntry->nBitsPerSample;
  const std::uint32_t fill = m_nOutputFill;
  m_nOutputFill = 0;
  if (fill == 0 || m_output.Write(m_pOutput.get(), fill / (bits / 8), bits)) return true;
  Fail(m_output.LastError());
  return false;
}

void CBackgroundThreadWriter::CloseOutput() {
  if (!m_bFileOpen) return;
  Log("Closing");
  if (m_strError.empty()) CompleteOutput();
  if (m_strError.empty()) FlushOutput();
  m_output.Close();
  if (!m_output.LastError().empty()) Fail(m_output.LastError());
}

void CBackgroundThreadWriter::Finish() {
  if (m_bFinished) return;
  m_bFinished = true;
  m_reader.Post(request::kWriterFinished);
}

// The first reason is kept and logged; what was written before stays. The job goes on for the other entries.
void CBackgroundThreadWriter::Fail(const std::string& reason) {
  if (m_strError.empty()) {
    m_strError = reason.empty() ? "Unknown error" : reason;
    const std::string& name = m_output.FileName().empty() ? m_pEntry->strFileName : m_output.FileName();
    Log("[ERROR] %s: %s", name.c_str(), m_strError.c_str());
  }
  Finish();
}

SOutputResult CBackgroundThreadWriter::Result() const {
  SOutputResult result;
  result.bOk = m_strError.empty();
  result.strError = m_strError;
  result.state = result.bOk ? EOutputState::Done : EOutputState::Failed;
  if (m_pEntry == nullptr) return result;
  result.strFileName = m_pEntry->strFileName;
  result.files = m_output.Files();
  result.nOutputFrequency = m_pEntry->nOutputFrequency;
  result.nBandwidth = m_pEntry->nOutputSampleRate;
  result.nSampleRate = m_output.Description().nSampleRate;
  result.nBitsPerSample = m_pEntry->nBitsPerSample;
  result.nBytes = static_cast<std::uint64_t>(m_output.TotalDataBytes());
  const std::uint32_t bytesPerFrame = 2 * (m_pEntry->nBitsPerSample / 8);
  if (bytesPerFrame != 0) result.nFrames = m_output.TotalDataBytes() / bytesPerFrame;
  return result;
}

}  // namespace carvello
