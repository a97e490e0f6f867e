#include "engine/joined_entry.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

#include "engine/block_reader.h"
#include "engine/entry_writer.h"
#include "engine/input_frames.h"
#include "engine/output_rate.h"

namespace carvello {
namespace {

// Gives for every stretch what was there at its end.
class CJoinConverter final : public IEntryConverter {
 public:
  explicit CJoinConverter(ISampleSource& source) : m_source(source) {}

  std::optional<std::string> Begin(const SConversion& conversion) override {
    m_conversion = conversion;
    return std::nullopt;
  }
  std::uint32_t RateOut() const override { return TrueOutputRate(m_conversion.nInputRate, m_conversion.nOutputRate); }
  // What was held back came with the samples.
  std::optional<std::uint32_t> Delay() const override { return std::nullopt; }

  std::span<const SComplex> Convert(const SBlockPart& part, CConverterWork& work) override {
    return Give(m_source.GivenBy(part.Position() + part.nCount) - m_nGiven, work);
  }
  std::span<const SComplex> ConvertSilence(CConverterWork& work) override {
    return Give(std::int64_t{2} * kSilenceFrames, work);
  }
  // Who asks for silence takes no more than is due.
  void SetDue(std::int64_t due) { m_nDue = due; }

 private:
  std::span<const SComplex> Give(std::int64_t wanted, CConverterWork& work) {
    const std::int64_t count = std::clamp<std::int64_t>(wanted, 0, m_nDue - m_nGiven);
    SComplex* const output = work.Room(CConverterWork::kOutput, count);
    m_source.Read(output, static_cast<std::size_t>(count));
    m_nGiven += count;
    return {output, static_cast<std::size_t>(count)};
  }

  ISampleSource& m_source;
  SConversion m_conversion;
  std::int64_t m_nDue = 0;
  std::int64_t m_nGiven = 0;
};

// Stands where the reader of a job stands: nothing is read, and what is posted to it is handled by nobody.
class CNoReader final : public CBackgroundThreadBase {
  void HandleRequest(CBackgroundRequest& /*request*/, std::uint32_t /*remaining*/) override {}
};

}  // namespace

SOutputResult JoinEntry(const OutputEntry& entry, const CRecordingSet& recording, const SWholeJob& job,
                        const SWritePolicy& policy, ISampleSource& source, const std::function<bool()>& isStopped) {
  const CInputFrames frames(recording);
  COutputAccount account(entry);
  const std::int64_t due = frames.Due(entry, job.llLate);
  account.Open(due, job.llLate);

  auto converter = std::make_unique<CJoinConverter>(source);
  converter->SetDue(OutputFramesDue(due, entry.nInputSampleRate, entry.nOutputSampleRate));
  CNoReader reader;
  CBufferBudget budget;
  CEntryWriter writer(std::move(converter), reader, account, budget);
  writer.SetPolicy(policy);
  if (!account.HasFailed()) writer.Start();
  if (job.llLate == 0 && job.llReadFrom > 0) writer.InputSkipped(job.llReadFrom);

  CConverterWork work;
  SJobEnd end;
  for (std::int64_t position = job.llReadFrom; position < frames.Total() && !writer.IsFinished();) {
    end.bStopped = isStopped();
    if (end.bStopped) break;
    // Stretches count in every file from where reading began in it.
    const std::int64_t fileEnd = frames.End(frames.FileOf(position));
    const std::int64_t next = std::min<std::int64_t>(position + kStretchFrames, fileEnd);
    writer.Process({.nCount = static_cast<std::int32_t>(next - position), .llPosition = position, .bStretchEnds = true},
                   work);
    position = next;
    if (writer.IsSaveDue(COutputBuffer::Clock::now())) writer.Save();
  }
  writer.Close();
  writer.CloseAccount(end);
  return account.TakeResult();
}

}  // namespace carvello
