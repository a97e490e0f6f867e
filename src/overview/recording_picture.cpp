#include "overview/recording_picture.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "overview/narrow_picture.h"
#include "overview/picture_rows.h"
#include "spectrum/power_spectrum.h"

namespace carvello {
namespace {

constexpr std::int64_t kFramesPerUnit = 65'536;  // stay in a processor's cache
constexpr std::int64_t kLeastPerUnit = 8;        // transforms: the frames that two units share are read twice
constexpr std::int64_t kFastTransforms = 4;      // of a row

// Transforms frames as they are in the recording.
class CPictureWorker : public IUnitWorker {
 public:
  CPictureWorker(const CPicturePlan& plan, const CTransformLine& line, const SPictureRequest& request,
                 CPictureRows& rows)
      : m_nLength(static_cast<std::int64_t>(plan.Length())),
        m_nPerUnit(PerUnit(plan)),
        m_line(line),
        m_nTotal(request.span.nTotalFrames),
        m_bFast(request.bFast),
        m_bMean(request.levels == EPictureLevels::Mean),
        m_rows(rows),
        m_spectrum(plan.Length(), EWindow::Hann) {}

  static std::int64_t Units(const CPicturePlan& plan, const CTransformLine& line) {
    return (line.Count() + PerUnit(plan) - 1) / PerUnit(plan);
  }

  bool Read(std::int64_t unit, IFrameSource& source) override {
    const std::int64_t nBegin = Begin(unit);
    const std::int64_t nEnd = End(unit);
    m_places.clear();
    if (m_bFast) {
      m_frames.resize(static_cast<std::size_t>((nEnd - nBegin) * m_nLength));
      for (std::int64_t n = nBegin; n < nEnd; ++n) {
        m_places.push_back((n - nBegin) * m_nLength);
        if (!ReadPart(source, m_line.FirstFrame(n), m_places.back(), m_nLength)) return false;
      }
      return true;
    }
    const std::int64_t nFirst = m_line.FirstFrame(nBegin);
    const std::int64_t nFrames = m_line.FirstFrame(nEnd - 1) + m_nLength - nFirst;
    m_frames.resize(static_cast<std::size_t>(nFrames));
    std::int64_t nRow = m_line.RowOf(nBegin);
    for (std::int64_t n = nBegin; n < nEnd; ++n) {
      m_places.push_back(m_line.FirstFrame(n, nRow) - nFirst);
      if (m_line.IsLastOfRow(n, nRow)) ++nRow;
    }
    return ReadPart(source, nFirst, 0, nFrames);
  }

  void Work(std::int64_t unit) override {
    m_segments.clear();
    std::int64_t nRow = m_line.RowOf(Begin(unit));
    bool bNew = true;
    for (std::int64_t n = Begin(unit); n < End(unit); ++n) {
      if (bNew) m_segments.push_back({nRow, 0, false, std::vector<float>(m_spectrum.Length())});
      SSegment& segment = m_segments.back();
      const SComplex* const pFrames = m_frames.data() + m_places[static_cast<std::size_t>(n - Begin(unit))];
      if (m_bMean) {
        m_spectrum.Add(pFrames, segment.powers.data());
      } else {
        m_spectrum.Largest(pFrames, segment.powers.data());
      }
      ++segment.nTransforms;
      segment.bEnds = bNew = m_line.IsLastOfRow(n, nRow);
      if (bNew) ++nRow;
    }
  }

  void Merge(std::int64_t) override {
    for (const SSegment& segment : m_segments) {
      m_rows.Add(segment.powers, segment.nTransforms);
      if (segment.bEnds) m_rows.Finish(segment.nRow);
    }
  }

 private:
  // The transforms of a row that a unit has.
  struct SSegment {
    std::int64_t nRow = 0;
    std::int64_t nTransforms = 0;
    bool bEnds = false;         // with the row
    std::vector<float> powers;  // sums, or the largest ones
  };

  static std::int64_t PerUnit(const CPicturePlan& plan) {
    return std::max(kFramesPerUnit / static_cast<std::int64_t>(plan.Length() / 2), kLeastPerUnit);
  }
  std::int64_t Begin(std::int64_t unit) const { return unit * m_nPerUnit; }
  std::int64_t End(std::int64_t unit) const { return std::min(Begin(unit + 1), m_line.Count()); }

  // A recording that is shorter than a transform stands in its middle, with silence around it.
  bool ReadPart(IFrameSource& source, std::int64_t first, std::int64_t place, std::int64_t count) {
    const std::int64_t nThere = std::min(count, m_nTotal - first);
    if (nThere < count) std::fill_n(m_frames.begin() + place, count, SComplex{});
    return ReadAll(source, first, m_frames.data() + place + (count - nThere) / 2, nThere);
  }

  std::int64_t m_nLength;
  std::int64_t m_nPerUnit;  // transforms
  const CTransformLine& m_line;
  std::int64_t m_nTotal;
  bool m_bFast;
  bool m_bMean;
  CPictureRows& m_rows;
  CPowerSpectrum m_spectrum;
  std::vector<SComplex> m_frames;
  std::vector<std::int64_t> m_places;  // of the unit's transforms, in m_frames
  std::vector<SSegment> m_segments;
};

}  // namespace

bool MakeRecordingPicture(IFrameSource& source, const SPictureRequest& request, unsigned threads, const GoesOn& goesOn,
                          SLevelPicture& picture, std::string& error) {
  const std::optional<SNarrowBand> narrow = request.bFast ? std::nullopt : NarrowBandOf(request.span);
  const SPictureSpan& span = narrow ? narrow->span : request.span;
  const CPicturePlan plan(span, PictureTransformLength(span), request.bFast ? kFastTransforms : 0);
  const CTransformLine line(plan);
  picture.nColumns = plan.Columns();
  picture.nRows = plan.Rows();
  picture.dBinWidth = span.dSampleRate / static_cast<double>(plan.Length());
  picture.levels.assign(static_cast<std::size_t>(plan.Columns() * plan.Rows()),
                        -std::numeric_limits<float>::infinity());
  CPictureRows rows(plan, request.levels, picture);
  if (narrow) return MakeNarrowPicture(source, *narrow, plan, line, request.levels, rows, threads, goesOn, error);
  return WorkInOrder(
      CPictureWorker::Units(plan, line), threads, source,
      [&] { return std::make_unique<CPictureWorker>(plan, line, request, rows); }, goesOn, error);
}

}  // namespace carvello
