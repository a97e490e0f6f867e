#include "overview/narrow_picture.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "spectrum/narrow_samples.h"
#include "spectrum/power_spectrum.h"
#include "spectrum/spectrum_grid.h"

namespace carvello {
namespace {

constexpr std::int64_t kLeastDecimation = 4;  // below, the second transforms take what the first ones save
constexpr std::int64_t kLeastRow = 64;        // samples of the lower rate: its rows begin a part of one aside
constexpr std::int64_t kFramesPerUnit = 8;    // of spectrum

// Transforms the narrow samples, which come in order, and gives their powers to the rows.
class CNarrowRows {
 public:
  CNarrowRows(const SNarrowBand& band, const CPicturePlan& plan, const CTransformLine& line, EPictureLevels levels,
              CPictureRows& rows)
      : m_nLength(static_cast<std::int64_t>(plan.Length())),
        m_line(line),
        m_bMean(levels == EPictureLevels::Mean),
        m_rows(rows),
        m_spectrum(plan.Length(), EWindow::Hann),
        m_powers(plan.Length()),
        m_turned(plan.Length()),
        m_nLowest(LowestBin(band, m_nLength)),
        m_llFirst(line.FirstFrame(0)) {}

  // From this narrow sample on samples are wanted, and no longer from that one on.
  std::int64_t First() const { return m_line.FirstFrame(0); }
  std::int64_t End() const { return m_line.FirstFrame(m_line.Count() - 1) + m_nLength; }

  // `first` follows the last sample of the call before. What lies before First() is passed over.
  void Append(std::int64_t first, const std::vector<SComplex>& samples) {
    const std::int64_t nSkip = std::max<std::int64_t>(m_llFirst + Held() - first, 0);
    if (nSkip >= static_cast<std::int64_t>(samples.size())) return;
    m_samples.insert(m_samples.end(), samples.begin() + nSkip, samples.end());
    std::int64_t nUsed = 0;
    for (; m_nNext < m_line.Count(); ++m_nNext) {
      const std::int64_t nPlace = m_line.FirstFrame(m_nNext, m_nRow) - m_llFirst;
      nUsed = std::min(nPlace, Held());
      if (nPlace + m_nLength > Held()) break;
      Transform(m_samples.data() + nPlace);
    }
    m_samples.erase(m_samples.begin(), m_samples.begin() + nUsed);
    m_llFirst += nUsed;
  }

 private:
  std::int64_t Held() const { return static_cast<std::int64_t>(m_samples.size()); }

  // Of the bins in their own order (the lowest frequency of the lower rate first), the one that stands lowest around
  // the picture's centre.
  static std::size_t LowestBin(const SNarrowBand& band, std::int64_t length) {
    const auto nTurn = std::llround(band.dCentre / band.span.dSampleRate * static_cast<double>(length));
    return static_cast<std::size_t>((nTurn % length + length) % length);
  }

  void Transform(const SComplex* samples) {
    if (m_bMean) {
      m_spectrum.Add(samples, m_powers.data());
    } else {
      m_spectrum.Largest(samples, m_powers.data());
    }
    ++m_nTransforms;
    if (!m_line.IsLastOfRow(m_nNext, m_nRow)) return;
    std::rotate_copy(m_powers.begin(), m_powers.begin() + static_cast<std::ptrdiff_t>(m_nLowest), m_powers.end(),
                     m_turned.begin());
    m_rows.Add(m_turned, m_nTransforms);
    m_rows.Finish(m_nRow++);
    std::fill(m_powers.begin(), m_powers.end(), 0.0f);
    m_nTransforms = 0;
  }

  std::int64_t m_nLength;
  const CTransformLine& m_line;
  bool m_bMean;
  CPictureRows& m_rows;
  CPowerSpectrum m_spectrum;
  std::vector<float> m_powers;  // of the row so far
  std::vector<float> m_turned;
  std::size_t m_nLowest;
  std::vector<SComplex> m_samples;
  std::int64_t m_llFirst;          // of the samples
  std::int64_t m_nNext = 0;        // transform
  std::int64_t m_nRow = 0;         // that it is of
  std::int64_t m_nTransforms = 0;  // of the row so far
};

// A unit is some frames of spectrum.
class CNarrowWorker : public IUnitWorker {
 public:
  CNarrowWorker(const SNarrowBand& band, std::int64_t firstFrame, std::int64_t endFrame, CNarrowRows& rows)
      : m_band(band), m_nFirstFrame(firstFrame), m_nEndFrame(endFrame), m_rows(rows), m_narrow(band.plan) {}

  // Silence stands beside the recording.
  bool Read(std::int64_t unit, IFrameSource& source) override {
    const std::int64_t nFirst = FrameFirst(Begin(unit));
    const std::int64_t nEnd = FrameEnd(End(unit) - 1);
    const std::int64_t nFrom = std::clamp<std::int64_t>(nFirst, 0, m_band.nOldFrames);
    const std::int64_t nTo = std::clamp(nEnd, nFrom, m_band.nOldFrames);
    m_frames.resize(static_cast<std::size_t>(nEnd - nFirst));
    std::fill(m_frames.begin(), m_frames.begin() + (nFrom - nFirst), SComplex{});
    std::fill(m_frames.begin() + (nTo - nFirst), m_frames.end(), SComplex{});
    return nTo == nFrom || ReadAll(source, nFrom, m_frames.data() + (nFrom - nFirst), nTo - nFrom);
  }

  void Work(std::int64_t unit) override {
    const std::int64_t nPerFrame = m_band.plan.SamplesPerFrame();
    const std::int64_t nBegin = Begin(unit);
    m_samples.resize(static_cast<std::size_t>((End(unit) - nBegin) * nPerFrame));
    for (std::int64_t n = nBegin; n < End(unit); ++n) {
      const std::int64_t nPlace = n - nBegin;
      m_narrow.Take(m_frames.data() + nPlace * kFrameHop, m_samples.data() + nPlace * nPerFrame);
    }
  }

  void Merge(std::int64_t unit) override { m_rows.Append(Begin(unit) * m_band.plan.SamplesPerFrame(), m_samples); }

 private:
  std::int64_t Begin(std::int64_t unit) const { return m_nFirstFrame + unit * kFramesPerUnit; }
  std::int64_t End(std::int64_t unit) const { return std::min(Begin(unit + 1), m_nEndFrame); }

  const SNarrowBand& m_band;
  std::int64_t m_nFirstFrame;
  std::int64_t m_nEndFrame;
  CNarrowRows& m_rows;
  CNarrowSamples m_narrow;
  std::vector<SComplex> m_frames;
  std::vector<SComplex> m_samples;
};

}  // namespace

std::optional<SNarrowBand> NarrowBandOf(const SPictureSpan& span) {
  const double fHalfRate = span.dSampleRate / 2.0;
  if (span.dLowFrequency < -fHalfRate || span.dHighFrequency > fHalfRate) return std::nullopt;
  const double fCentre = (span.dLowFrequency + span.dHighFrequency) / 2.0;
  // The centre is a whole number of Hz.
  const double fShare = span.dSampleRate / (span.dHighFrequency - span.dLowFrequency + 1.0);
  if (fShare < static_cast<double>(kLeastDecimation)) return std::nullopt;
  constexpr double kMost = 2.0 * kLargestBandDecimation;
  SBandWish wish{.nInputRate = static_cast<std::uint32_t>(span.dSampleRate),
                 .llShift = std::llround(fCentre),
                 .nStep = static_cast<std::uint32_t>(std::min(fShare, kMost)),
                 .nPhases = 1};
  std::optional<SBandPlan> plan = PlanBand(wish);
  if (plan) {
    // With a start at the end of its lead, it begins with the recording, and no sample stands between two of it.
    wish.llStart = static_cast<std::int64_t>(plan->nLead) * wish.nStep;
    plan = PlanBand(wish);
  }
  if (!plan || plan->nDecimation < kLeastDecimation || span.nFrames / plan->nDecimation < kLeastRow * span.nRows) {
    return std::nullopt;
  }
  SNarrowBand band{.plan = *plan, .dCentre = fCentre, .nOldFrames = span.nTotalFrames, .span = span};
  SPictureSpan& narrow = band.span;
  narrow.nTotalFrames /= plan->nDecimation;
  narrow.dSampleRate /= static_cast<double>(plan->nDecimation);
  narrow.nFirstFrame /= plan->nDecimation;
  narrow.nFrames = (span.nFirstFrame + span.nFrames) / plan->nDecimation - narrow.nFirstFrame;
  // Bins stand where they do in a whole number of turns of the lower rate.
  const auto fLength = static_cast<double>(PictureTransformLength(narrow));
  band.dCentre = std::round(fCentre / narrow.dSampleRate * fLength) * narrow.dSampleRate / fLength;
  narrow.dLowFrequency -= band.dCentre;
  narrow.dHighFrequency -= band.dCentre;
  return band;
}

bool MakeNarrowPicture(IFrameSource& source, const SNarrowBand& band, const CPicturePlan& plan,
                       const CTransformLine& line, EPictureLevels levels, CPictureRows& rows, unsigned threads,
                       const GoesOn& goesOn, std::string& error) {
  CNarrowRows narrow(band, plan, line, levels, rows);
  const std::int64_t nPerFrame = band.plan.SamplesPerFrame();
  const std::int64_t nFirst = narrow.First() / nPerFrame;
  const std::int64_t nEnd = (narrow.End() + nPerFrame - 1) / nPerFrame;
  return WorkInOrder((nEnd - nFirst + kFramesPerUnit - 1) / kFramesPerUnit, threads, source,
                     [&] { return std::make_unique<CNarrowWorker>(band, nFirst, nEnd, narrow); }, goesOn, error);
}

}  // namespace carvello
