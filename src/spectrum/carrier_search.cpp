#include "spectrum/carrier_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <new>
#include <numbers>

#include "dsp/primitives.h"
#include "fourier/block_transform.h"

namespace carvello {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr std::size_t kBlocks = 4;     // that a filter is long
constexpr double kRatePerReach = 8.0;  // what would fold into reach is held down by 70 dB then
constexpr std::size_t kMostPoints = std::size_t{1} << 18;
constexpr std::size_t kFewestPoints = 64;

// Four terms: nothing beyond four of its bins is above -92 dB.
double BlackmanHarris(double place) {
  const double turn = kTurn * place;
  return 0.35875 - 0.48829 * std::cos(turn) + 0.14128 * std::cos(2 * turn) - 0.01168 * std::cos(3 * turn);
}

// The highest place of a function that has one peak between two places.
template <typename TFunction>
double Peak(double low, double high, const TFunction& function) {
  constexpr double kGolden = 0.6180339887498949;
  double a = high - kGolden * (high - low);
  double b = low + kGolden * (high - low);
  double fa = function(a);
  double fb = function(b);
  for (int i = 0; i < 40; ++i) {
    if (fa > fb) {
      high = b;
      b = a;
      fb = fa;
      fa = function(a = high - kGolden * (high - low));
    } else {
      low = a;
      a = b;
      fa = fb;
      fb = function(b = low + kGolden * (high - low));
    }
  }
  return (low + high) / 2;
}

}  // namespace

CCarrierSearch::CCarrierSearch(double rate, double frequency, double reach)
    : m_rate(rate),
      m_frequency(frequency),
      m_reach(reach),
      m_nFactor(static_cast<std::size_t>(std::clamp(rate / (kRatePerReach * reach), 1.0, 0x1p20))),
      m_turns(m_nFactor),
      m_weights(kBlocks * m_nFactor),
      m_sums(kBlocks) {
  for (std::size_t i = 0; i < m_nFactor; ++i) {
    const double phase = -kTurn * std::fmod(frequency / rate * static_cast<double>(i), 1.0);
    m_turns[i] = {static_cast<float>(std::cos(phase)), static_cast<float>(std::sin(phase))};
  }
  const auto length = static_cast<double>(m_weights.size());
  for (std::size_t i = 0; i < m_weights.size(); ++i) {
    m_weights[i] = static_cast<float>(BlackmanHarris((static_cast<double>(i) + 0.5) / length) / length);
  }
  m_block.reserve(m_nFactor);
}

std::int64_t CCarrierSearch::MostFrames() const {
  return static_cast<std::int64_t>((kMostPoints + kBlocks - 1) * m_nFactor);
}

double CCarrierSearch::Resolution() const {
  const auto factor = static_cast<double>(m_nFactor);
  return 4 * m_rate / (factor * static_cast<double>(std::max<std::size_t>(m_points.size(), 1)));
}

void CCarrierSearch::Add(const SComplex* frames, std::int64_t count) {
  while (count > 0 && m_points.size() < kMostPoints) {
    const auto taken = std::min(static_cast<std::size_t>(count), m_nFactor - m_block.size());
    m_block.insert(m_block.end(), frames, frames + taken);
    frames += taken;
    count -= static_cast<std::int64_t>(taken);
    if (m_block.size() == m_nFactor) AddBlock();
  }
}

// A block is the last quarter of one result, and the first one of the result three further on.
void CCarrierSearch::AddBlock() {
  std::array<SComplex, kBlocks> parts{};  // side by side: sums that do not wait for each other
  for (std::size_t i = 0; i < m_nFactor; ++i) {
    const SComplex& x = m_block[i];
    const SComplex& turn = m_turns[i];
    const float re = x.re * turn.re - x.im * turn.im;
    const float im = x.re * turn.im + x.im * turn.re;
    for (std::size_t part = 0; part < kBlocks; ++part) {
      const float weight = m_weights[(kBlocks - 1 - part) * m_nFactor + i];
      parts[part].re += weight * re;
      parts[part].im += weight * im;
    }
  }
  // Where the oscillator stands when the block begins.
  const double start = std::fmod(m_frequency / m_rate * static_cast<double>(m_nFactor), 1.0);
  const double phase = -kTurn * std::fmod(start * static_cast<double>(m_nBlocks), 1.0);
  for (std::size_t part = 0; part < kBlocks; ++part) {
    m_sums[part].re += parts[part].re * std::cos(phase) - parts[part].im * std::sin(phase);
    m_sums[part].im += parts[part].re * std::sin(phase) + parts[part].im * std::cos(phase);
  }
  m_block.clear();
  if (++m_nBlocks >= static_cast<std::int64_t>(kBlocks)) {
    m_points.push_back({static_cast<float>(m_sums[0].re), static_cast<float>(m_sums[0].im)});
  }
  std::rotate(m_sums.begin(), m_sums.begin() + 1, m_sums.end());
  m_sums.back() = {};
}

// Of windowed points, at a frequency in turns a point.
double CCarrierSearch::PowerAt(double place, const std::vector<SComplex>& points) const {
  constexpr std::size_t kExact = 256;  // points between which the oscillator is set anew
  double re = 0.0;
  double im = 0.0;
  const double stepRe = std::cos(-kTurn * place);
  const double stepIm = std::sin(-kTurn * place);
  double turnRe = 1.0;
  double turnIm = 0.0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i % kExact == 0) {
      const double phase = -kTurn * std::fmod(place * static_cast<double>(i), 1.0);
      turnRe = std::cos(phase);
      turnIm = std::sin(phase);
    }
    re += points[i].re * turnRe - points[i].im * turnIm;
    im += points[i].re * turnIm + points[i].im * turnRe;
    const double next = turnRe * stepRe - turnIm * stepIm;
    turnIm = turnRe * stepIm + turnIm * stepRe;
    turnRe = next;
  }
  return re * re + im * im;
}

std::optional<double> CCarrierSearch::Frequency() const {
  const std::size_t count = m_points.size();
  if (count < kFewestPoints) return std::nullopt;
  std::vector<SComplex> windowed(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double place = (static_cast<double>(i) + 0.5) / static_cast<double>(count);
    // Side lobes of a strong carrier beyond reach are no peaks then.
    const auto weight = static_cast<float>(BlackmanHarris(place));
    windowed[i] = {weight * m_points[i].re, weight * m_points[i].im};
  }
  // Twice as many bins as points, so that no peak falls between two.
  const std::size_t length = std::bit_ceil(2 * count);
  std::vector<SComplex> padded = windowed;
  padded.resize(length);
  const ComplexBuffer bins(AllocComplex(static_cast<std::int64_t>(length)));
  const ComplexBuffer work(AllocComplex(static_cast<std::int64_t>(length)));
  if (!bins || !work) throw std::bad_alloc();
  CBlockTransform(length).Forward(padded.data(), bins.get(), work.get());

  const double lowRate = m_rate / static_cast<double>(m_nFactor);
  const std::size_t last = length / 2 - 1;
  const auto most =
      static_cast<std::int64_t>(std::min(m_reach / lowRate * static_cast<double>(length), static_cast<double>(last)));
  std::vector<double> powers;
  for (std::int64_t k = -most; k <= most; ++k) {
    const SComplex& bin = bins[static_cast<std::size_t>(k) & (length - 1)];
    powers.push_back(double{bin.re} * bin.re + double{bin.im} * bin.im);
  }
  // Only what falls off on both sides is a peak within reach: what rises up to the edge belongs to one beyond it.
  double power = 0.0;
  double place = 0.0;
  for (std::size_t i = 1; i + 1 < powers.size(); ++i) {
    if (powers[i] <= power || powers[i] < powers[i - 1] || powers[i] < powers[i + 1]) continue;
    power = powers[i];
    place = static_cast<double>(i) - static_cast<double>(most);
  }
  std::nth_element(powers.begin(), powers.begin() + static_cast<std::ptrdiff_t>(powers.size() / 2), powers.end());
  const double median = powers[powers.size() / 2];
  // The powers of noise: half of them lie above the mean times ln 2, a share of e^-x above x times the mean.
  const double least = median / std::numbers::ln2 * std::log(1000.0 * static_cast<double>(powers.size()));
  if (power <= 0.0 || power < least) return std::nullopt;

  const double bin = 1.0 / static_cast<double>(length);
  const double found =
      Peak((place - 1) * bin, (place + 1) * bin, [&](double turns) { return PowerAt(turns, windowed); });
  return m_frequency + found * lowRate;
}

}  // namespace carvello
