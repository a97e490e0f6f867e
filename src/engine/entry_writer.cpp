#include "engine/entry_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "engine/block_reader.h"
#include "engine/output_files.h"
#include "engine/output_stretch.h"
#include "recording/metadata_xml.h"
#include "support/formatting.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

namespace {

// Output samples that a stretch may bring beyond what its length says: filters give them out when they have them.
constexpr double kUnevenSamples = 1'024.0;
// Output samples that are stored at a time: what the buffer must hold whatever the budget, for each of a thousand.
constexpr std::size_t kStoredSamples = 8'192;
// Output samples by which the filters of a library are late that does not tell.
constexpr std::int64_t kUsualDelay = 64;
// What rounding in the stages may add to what a library tells.
constexpr std::int64_t kDelayRounding = 2;

std::string RecordingTag() {
  const auto seconds = static_cast<std::uint64_t>(CurrentTime());
  return Format("%04X-%04X-%04X", static_cast<unsigned>((seconds >> 16) & 0xFFFF),
                static_cast<unsigned>(seconds & 0xFFFF), CurrentMilliseconds());
}

// At full scale 1, as readers of SigMF take floats to be. A power of two: nothing is rounded.
void StoreAtFullScale(std::span<const SComplex> samples, std::uint8_t* destination) {
  constexpr float kScale = 1.0F / 32'768.0F;
  for (const SComplex& sample : samples) {
    const SComplex scaled{sample.re * kScale, sample.im * kScale};
    std::memcpy(destination, &scaled, sizeof(scaled));
    destination += sizeof(scaled);
  }
}

}  // namespace

CEntryWriter::CEntryWriter(std::unique_ptr<IEntryConverter> converter, CBackgroundThreadBase& reader,
                           COutputAccount& account, CBufferBudget& budget)
    : m_entry(account.Entry()),
      m_reader(reader),
      m_account(account),
      m_pFinishedNotice(reader.TakeRequest(request::kWriterFinished)),
      m_buffer(m_output, budget),
      m_pConverter(std::move(converter)),
      m_llSkip(m_entry.nStartSample),
      m_llLeft(m_entry.nTotalSamples) {
  reader.ShareLogWith(m_log);
}

// What a step cannot do ends the entry, and nothing else: only impossible times and exhausted memory raise exceptions.
template <typename TStep>
void CEntryWriter::Guard(TStep step) noexcept {
  try {
    step();
  } catch (const std::bad_alloc&) {
    Fail(kNotEnoughMemory);
  } catch (const std::exception& error) {
    Fail(error.what());
  }
}

void CEntryWriter::Start() noexcept {
  Guard([this] { StartEntry(); });
}

void CEntryWriter::StartEntry() {
  if (!PrepareConverter()) return;
  LogEntry();

  DescribeOutput();
  if (m_output.Policy().bReplace) {
    if (const auto problem = RemoveOldParts(m_entry)) {
      Fail(*problem);
      return;
    }
  }
  m_bFileOpen = m_output.Open(m_entry.strFileName, 0, RecordingTag());
  if (m_bFileOpen) return;
  m_log.Log("Error creating %s - %s", m_entry.strFileName.c_str(), m_output.LastError().c_str());
  m_account.Fail(m_output.LastError());
  Finish();
}

bool CEntryWriter::PrepareConverter() {
  if (const auto problem = m_pConverter->Begin(ConversionOf(m_entry))) {
    Fail(*problem);
    return false;
  }
  const auto& stretch = m_entry.stretch;
  if (stretch && m_pConverter->Resume(stretch->llOrigin, stretch->nFirst) != m_entry.nStartSample) {
    Fail("The downconverter library does not begin where the stretch of the entry does");
    return false;
  }
  const double share = static_cast<double>(m_pConverter->RateOut()) / m_entry.nInputSampleRate;
  const double longest = std::ceil((kStretchFrames + IEntryConverter::kHeldBackFrames) * share) + kUnevenSamples;
  m_buffer.Begin(m_entry.nBitsPerSample, static_cast<std::int64_t>(longest) * 2 * (m_entry.nBitsPerSample / 8));
  return true;
}

void CEntryWriter::LogEntry() {
  const auto ll = [](std::int64_t value) { return static_cast<long long>(value); };
  const bool rf64 = m_entry.nFileSizeMB == 0;
  m_log.Log("Input frequency .....: %lld", ll(m_entry.nInputFrequency));
  m_log.Log("      sample rate ...: %u", m_entry.nInputSampleRate);
  m_log.Log("Output filename .....: %s", m_entry.strFileName.c_str());
  m_log.Log("       WAV RF64 .....: %d", rf64 ? 1 : 0);
  m_log.Log("       frequency ....: %lld", ll(m_entry.nOutputFrequency));
  m_log.Log("       sample rate ..: %u", m_entry.nOutputSampleRate);
  m_log.Log("%s", "");
  m_log.Log("Downconverter .......: %u to %u", m_entry.nInputSampleRate, m_entry.nOutputSampleRate);
  m_log.Log("%s", "");
  m_log.Log("Samples: start ......: %lld", ll(m_llSkip));
  m_log.Log("         total ......: %lld", ll(m_llLeft));
  m_log.Log("%s", "");
}

void CEntryWriter::DescribeOutput() {
  const SMetadataLists& metadata = m_entry.strMetadata.Lists();

  SRecordingDescription description;
  if (metadata.Has("RadioModel")) description.strRadioModel = metadata.Find("RadioModel");
  if (metadata.Has("RadioSerial")) description.strRadioSerial = metadata.Find("RadioSerial");
  if (metadata.Has("ADFrequency")) {
    description.nADFrequency = static_cast<std::uint32_t>(metadata.FindNumber("ADFrequency"));
  }
  description.nRadioCenterFreq = m_entry.nOutputFrequency;
  // The file tells the rate that its samples really have: with whole-number decimation that can differ from the one
  // asked for (1.5 MHz out of 2.4 MHz gives 1.2 MHz).
  description.nSampleRate = m_pConverter->RateOut();
  if (description.nSampleRate != m_entry.nOutputSampleRate) {
    m_log.Log("True sample rate ....: %u", description.nSampleRate);
  }
  description.tStart = m_entry.tStart;
  description.bStartValid = true;
  description.nBitsPerSample = m_entry.nBitsPerSample;
  description.format = m_entry.format;
  description.bRF64 = IsOneFile(m_entry);
  description.nSplitMB = description.bRF64 ? 0 : m_entry.nFileSizeMB;
  description.strTitle = m_entry.strTitle;
  DescribeOrigin(description);
  m_output.Reset();
  m_output.Describe(std::move(description));
}

// What meta files tell of where the output comes from.
void CEntryWriter::DescribeOrigin(SRecordingDescription& description) const {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  const std::int64_t inputRate = std::max<std::int64_t>(m_entry.nInputSampleRate, 1);
  const std::int64_t late = m_account.Late();
  const std::int64_t first = m_entry.nStartSample + late;
  const std::int64_t nanoseconds = m_entry.nStartNanoseconds + late % inputRate * kNanoseconds / inputRate;
  if (HasMeta(m_entry)) description.tStart += late / inputRate + nanoseconds / kNanoseconds;
  description.nStartNanoseconds = static_cast<std::uint32_t>(nanoseconds % kNanoseconds);
  description.nBandwidth = m_entry.nOutputSampleRate;
  description.nGlobalIndex =
      first / inputRate * description.nSampleRate + first % inputRate * description.nSampleRate / inputRate;
  description.origin = {.strFile = m_entry.strInputName.Text(),
                        .nSampleRate = m_entry.nInputSampleRate,
                        .nFrequency = m_entry.nInputFrequency,
                        .nFirstFrame = first,
                        .tAsked = m_entry.tStart};
}

void CEntryWriter::InputSkipped(std::int64_t frames) noexcept {
  m_llSkip = std::max<std::int64_t>(0, m_llSkip - frames);
  m_log.Log("Seek offset ..: %lld", static_cast<long long>(frames));
  m_log.Log("Start in .....: %lld", static_cast<long long>(m_llSkip));
}

void CEntryWriter::Process(const SInputBlock& block, CConverterWork& work) noexcept {
  if (!m_bFinished) Guard([&] { ProcessBlock(block, work); });
}

void CEntryWriter::ProcessBlock(const SInputBlock& block, CConverterWork& work) {
  std::int32_t offset = 0;
  std::int32_t count = block.nCount;
  if (TrimToEntry(offset, count)) {
    const bool spanEnds = m_account.IsSpanGiven(count);
    // Behind a stretch that does not end its entry the input goes on.
    const bool entryEnds = spanEnds && (!m_entry.stretch || m_entry.stretch->bEndsEntry);
    if (!m_bComplete) ConvertParts({block, offset, count, entryEnds}, work);
    m_account.CountGiven(count);
    if (entryEnds && !m_bComplete && !m_account.HasFailed()) {
      CompleteOutput(block.llPosition + offset + count, work);
    } else if (block.bStretchEnds && !m_bComplete && offset + count == block.nCount) {
      NoteMark(block.llPosition + block.nCount);
    }
    if (spanEnds && !entryEnds) CheckStretch();
  }
  if (block.bStretchEnds) m_buffer.EndStretch();
}

// In front of the first sample of its own it does not know how many there were.
void CEntryWriter::NoteMark(std::int64_t frame) {
  if (m_entry.stretch && m_llGivenSamples > 0) m_marks.push_back({frame, m_entry.stretch->nFirst + m_llGivenSamples});
}

void CEntryWriter::CheckStretch() {
  if (m_llOutputSamples == m_entry.stretch->Samples()) return;
  Fail(Format("The stretch of the input brought %lld of the %lld samples that it was cut for",
              static_cast<long long>(m_llOutputSamples), static_cast<long long>(m_entry.stretch->Samples())));
}

// Cuts the block to the entry's span; false when nothing of it lies inside.
bool CEntryWriter::TrimToEntry(std::int32_t& offset, std::int32_t& count) {
  if (!m_bStarted) {
    if (m_llSkip >= count) {
      m_llSkip -= count;
      return false;
    }
    offset = static_cast<std::int32_t>(m_llSkip);
    count -= offset;
    m_llSkip = 0;
    m_bStarted = true;
    m_log.Log("Starting after %lld samples", static_cast<long long>(m_entry.nStartSample));
  }
  if (m_llLeft != 0) {
    count = static_cast<std::int32_t>(std::min<std::int64_t>(count, m_llLeft));
    m_llLeft -= count;
    if (m_llLeft == 0) {
      m_log.Log("Finishing after %lld samples", static_cast<long long>(m_entry.nTotalSamples));
      Finish();
    }
  }
  return true;
}

// In parts as long as the converter takes them, so that its output of each needs little memory.
void CEntryWriter::ConvertParts(const SBlockPart& part, CConverterWork& work) {
  const std::int32_t longest = m_pConverter->LongestPart();
  for (std::int32_t done = 0; done < part.nCount && !m_account.HasFailed();) {
    const std::int32_t count = std::min(longest, part.nCount - done);
    const bool last = done + count == part.nCount;
    Convert({part.block, part.nOffset + done, count, part.bSpanEnds && last}, work);
    done += count;
  }
}

void CEntryWriter::Convert(const SBlockPart& part, CConverterWork& work) {
  const std::span<const SComplex> samples = m_pConverter->Convert(part, work);
  m_llInputSamples += part.nCount;
  if (samples.empty()) return;
  StoreOutput(samples);
  // Wraps on purpose: the line is a sign of life in very long jobs only.
  m_nDataCalls = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nDataCalls) + 1);
  if (m_nDataCalls < 1) {
    m_log.Log("Data call %d, samples %d > %u", m_nDataCalls, part.nCount, static_cast<unsigned>(samples.size()));
  }
}

// The filters hold the last output samples back until the input behind them arrives. At the entry's end silence takes
// its place, so that an output is as long as the stretch it was cut from, which counts most in very narrow ones. An
// output that ends too early ends with samples that are right: silence would bend the last ones.
void CEntryWriter::CompleteOutput(std::int64_t spanEnd, CConverterWork& work) {
  m_bComplete = true;
  m_buffer.EndStretch();
  NoteMark(spanEnd);
  const std::int64_t due = OutputFramesOf(m_entry, m_llInputSamples);
  const std::int64_t missing = due - m_llOutputSamples;
  if (missing <= 0) return;
  const std::optional<std::uint32_t> told = m_pConverter->Delay();
  if (told && missing > std::int64_t{*told} + kDelayRounding) {
    // Samples that were lost on the way: silence must not take their place.
    Fail(Format("The downconverter library gave %lld samples where %lld were due, of which it may keep %u back",
                static_cast<long long>(m_llOutputSamples), static_cast<long long>(due), *told));
    return;
  }
  // Twice the silence that the missing samples and the delay span: enough at any rate, and an end where none ever come.
  const auto ratio = static_cast<double>(m_entry.nInputSampleRate) / m_entry.nOutputSampleRate;
  const std::int64_t delay = told.value_or(kUsualDelay);
  constexpr std::int64_t kPiece = IEntryConverter::kSilenceFrames;
  auto left = static_cast<std::int64_t>(2.0 * ratio * static_cast<double>(missing + delay)) + kPiece;
  for (; m_llOutputSamples < due && left > 0 && !m_account.HasFailed(); left -= kPiece) {
    const std::span<const SComplex> samples = m_pConverter->ConvertSilence(work);
    const auto wanted = static_cast<std::size_t>(due - m_llOutputSamples);
    StoreOutput(samples.first(std::min(samples.size(), wanted)));
  }
}

void CEntryWriter::StoreOutput(std::span<const SComplex> samples) {
  m_llGivenSamples += static_cast<std::int64_t>(samples.size());
  if (m_entry.stretch) {
    const std::int64_t left = m_entry.stretch->Samples() - m_llOutputSamples;
    if (std::cmp_greater(samples.size(), left)) samples = samples.first(static_cast<std::size_t>(left));
  }
  while (!samples.empty()) {
    const std::span<const SComplex> piece = samples.first(std::min(samples.size(), kStoredSamples));
    if (!StorePiece(piece)) return;
    samples = samples.subspan(piece.size());
  }
}

bool CEntryWriter::StorePiece(std::span<const SComplex> samples) {
  const std::uint32_t bits = m_entry.nBitsPerSample;
  const auto bytes = static_cast<std::uint32_t>(samples.size() * 2 * (bits / 8));
  std::uint8_t* const destination = m_buffer.Reserve(bytes);
  CheckWritten(destination != nullptr);
  if (destination == nullptr) return false;
  if (bits == 16) {
    FloatToInt16(&samples.front().re, reinterpret_cast<std::int16_t*>(destination),
                 static_cast<std::int32_t>(2 * samples.size()), kRoundHalfAway, 0);
  } else if (m_entry.format == EOutputFormat::SigMf) {
    StoreAtFullScale(samples, destination);
  } else {
    // Floats keep the engine's scale, 16-bit full scale being 32768: a wide recording and the cuts made from it then
    // show the same levels.
    std::memcpy(destination, samples.data(), bytes);
  }
  m_buffer.Commit(bytes);
  m_llOutputSamples += static_cast<std::int64_t>(samples.size());
  return true;
}

void CEntryWriter::CheckWritten(bool written) {
  if (!written) Fail(m_output.LastError());
}

bool CEntryWriter::IsSaveDue(COutputBuffer::Clock::time_point now) noexcept {
  return m_bFileOpen && !m_account.HasFailed() && m_buffer.IsSaveDue(now);
}

void CEntryWriter::Save() noexcept {
  Guard([this] { CheckWritten(m_buffer.Save()); });
}

void CEntryWriter::Close() noexcept {
  if (!m_bFileOpen) return;
  m_log.Log("Closing");
  // What is there is kept, also of an entry that is not complete.
  Guard([this] { CheckWritten(m_buffer.Flush()); });
  Guard([this] {
    m_output.Close();
    if (!m_output.LastError().empty()) Fail(m_output.LastError());
  });
  m_bFileOpen = false;
}

void CEntryWriter::CloseAccount(const SJobEnd& end) noexcept {
  std::vector<std::string> files;
  Guard([&] { files = m_output.Files(); });
  m_account.SetMarks(std::move(m_marks));
  m_account.Close(end, m_output.Description().nSampleRate, m_output.TotalDataBytes(), std::move(files));
}

void CEntryWriter::Finish() noexcept {
  m_bFinished = true;
  if (m_pFinishedNotice) m_reader.Post(std::move(m_pFinishedNotice));
}

// The first reason is kept and logged; what was written before stays. The job goes on for the other entries.
void CEntryWriter::Fail(std::string_view reason) noexcept {
  if (!m_account.HasFailed()) {
    m_account.Fail(reason);
    const std::string& name = m_output.FileName().empty() ? m_entry.strFileName : m_output.FileName();
    m_log.Log("[ERROR] %s: %s", name.c_str(), m_account.Reason().c_str());
  }
  Finish();
}

}  // namespace carvello
