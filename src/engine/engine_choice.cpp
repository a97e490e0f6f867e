#include "engine/engine_choice.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "engine/engine_costs.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

// An entry, what it costs, and the input frames that it covers.
struct SCandidate {
  std::size_t nEntry = 0;
  std::int64_t llFrom = 0;
  std::int64_t llTo = 0;
  SEntryCosts costs;

  double Frames() const { return static_cast<double>(llTo - llFrom); }
  double Saved() const { return (costs.fLibrary - costs.fSpectrum) * Frames(); }
};

// Which frames candidates cover together.
struct SCover {
  struct SStretch {
    std::int64_t nFrames = 0;
    double fSaved = 0.0;
  };
  std::vector<std::int64_t> alone;     // frames that nobody else covers, of each
  std::vector<std::size_t> stretchOf;  // the number of the stretch in which each lies
  std::vector<SStretch> stretches;     // frames without a gap that at least one covers
};

SCover CoverOf(const std::vector<SCandidate>& candidates) {
  struct SEdge {
    std::int64_t llAt;
    bool bBegins;
    std::size_t nCandidate;
  };
  std::vector<SEdge> edges;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    edges.push_back({candidates[i].llFrom, true, i});
    edges.push_back({candidates[i].llTo, false, i});
  }
  // Where one begins with another's end they share a stretch.
  std::sort(edges.begin(), edges.end(), [](const SEdge& a, const SEdge& b) {
    return a.llAt != b.llAt ? a.llAt < b.llAt : a.bBegins && !b.bBegins;
  });
  SCover cover;
  cover.alone.resize(candidates.size());
  cover.stretchOf.resize(candidates.size());
  std::size_t nActive = 0;
  std::size_t nSum = 0;  // of the numbers of those: the number itself where there is one
  std::int64_t llBefore = 0;
  for (const SEdge& edge : edges) {
    if (nActive > 0) cover.stretches.back().nFrames += edge.llAt - llBefore;
    if (nActive == 1) cover.alone[nSum] += edge.llAt - llBefore;
    llBefore = edge.llAt;
    if (edge.bBegins) {
      if (nActive++ == 0) cover.stretches.emplace_back();
      nSum += edge.nCandidate;
      cover.stretches.back().fSaved += candidates[edge.nCandidate].Saved();
      cover.stretchOf[edge.nCandidate] = cover.stretches.size() - 1;
    } else {
      --nActive;
      nSum -= edge.nCandidate;
    }
  }
  return cover;
}

double SharedCost(std::int64_t frames) {
  return SharedSpectrumCost() * static_cast<double>(frames);
}

// Leaves the candidates that tell, keeping their order; true when that is not all of them.
template <class TKeep>
bool Keep(std::vector<SCandidate>& candidates, TKeep keep) {
  std::size_t nKept = 0;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (keep(i)) candidates[nKept++] = candidates[i];
  }
  const bool bLess = nKept < candidates.size();
  candidates.resize(nKept);
  return bLess;
}

// Leaves those that are worth the transforms of the frames that they cover.
void KeepWorthwhile(std::vector<SCandidate>& candidates) {
  Keep(candidates, [&](std::size_t i) { return candidates[i].Saved() > 0.0; });
  // What one covers alone is transformed for it alone. Without it, others may be alone.
  for (bool bLess = true; bLess;) {
    const SCover cover = CoverOf(candidates);
    bLess = Keep(candidates, [&](std::size_t i) { return candidates[i].Saved() >= SharedCost(cover.alone[i]); });
  }
  const SCover cover = CoverOf(candidates);
  Keep(candidates, [&](std::size_t i) {
    const SCover::SStretch& stretch = cover.stretches[cover.stretchOf[i]];
    return stretch.fSaved >= SharedCost(stretch.nFrames);
  });
}

std::vector<SCandidate> CandidatesOf(const std::vector<const OutputEntry*>& entries, std::int64_t inputFrames) {
  std::vector<SCandidate> candidates;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const OutputEntry& entry = *entries[i];
    if (entry.stretch) continue;
    const SEntryCosts costs = EntryCosts(entry.nInputSampleRate, entry.nOutputSampleRate);
    const std::int64_t llFrom = std::clamp<std::int64_t>(entry.nStartSample, 0, inputFrames);
    const std::int64_t nLeft = inputFrames - llFrom;
    const std::int64_t nFrames = entry.nTotalSamples > 0 ? std::min(entry.nTotalSamples, nLeft) : nLeft;
    candidates.push_back({i, llFrom, llFrom + nFrames, costs});
  }
  return candidates;
}

// How many hundredths of the library's time the choice takes.
int Percent(const std::vector<SCandidate>& all, const std::vector<SCandidate>& chosen) {
  double fLibrary = 0.0;
  for (const SCandidate& candidate : all) fLibrary += candidate.costs.fLibrary * candidate.Frames();
  double fChosen = fLibrary;
  for (const SCandidate& candidate : chosen) fChosen -= candidate.Saved();
  for (const SCover::SStretch& stretch : CoverOf(chosen).stretches) fChosen += SharedCost(stretch.nFrames);
  return fLibrary > 0.0 ? static_cast<int>(std::lround(100.0 * fChosen / fLibrary)) : 100;
}

std::string EntriesBySpectrum(std::size_t chosen, std::size_t all) {
  if (chosen == all) return all == 1 ? "the entry by the shared spectrum" : "all entries by the shared spectrum";
  return Format("%d of %d entries by the shared spectrum", static_cast<int>(chosen), static_cast<int>(all));
}

// The samples of a stretch are to be those of the whole entry.
std::vector<EEngine> EnginesOfStretches(const std::vector<const OutputEntry*>& entries) {
  std::vector<EEngine> engines;
  engines.reserve(entries.size());
  for (const OutputEntry* entry : entries) {
    engines.push_back(entry->stretch ? entry->stretch->engine : EEngine::Library);
  }
  return engines;
}

}  // namespace

SEngineChoice ChooseEngines(const std::vector<const OutputEntry*>& entries, EEngineSetting setting,
                            std::int64_t inputFrames) {
  SEngineChoice choice{EnginesOfStretches(entries), "all entries by the library"};
  if (!entries.empty() && std::all_of(entries.begin(), entries.end(), [](const auto* x) { return x->stretch; })) {
    choice.strReason = "each stretch by the road of its entry";
    return choice;
  }
  if (setting == EEngineSetting::Library) {
    choice.strReason += ", as asked for";
    return choice;
  }
  const std::vector<SCandidate> all = CandidatesOf(entries, inputFrames);
  std::vector<SCandidate> chosen = all;
  Keep(chosen, [&](std::size_t i) { return chosen[i].costs.bSpectrum; });
  if (chosen.empty()) {
    choice.strReason += ": each is too wide a part of the input's band for the shared spectrum";
    return choice;
  }
  if (setting == EEngineSetting::Spectrum) {
    choice.strReason = EntriesBySpectrum(chosen.size(), all.size()) + ", as asked for";
    if (chosen.size() < all.size()) choice.strReason += "; the others are too wide a part of the input's band for it";
  } else {
    KeepWorthwhile(chosen);
    if (chosen.empty()) {
      choice.strReason += ": a shared spectrum costs more than it saves";
    } else {
      choice.strReason = EntriesBySpectrum(chosen.size(), all.size()) +
                         Format(": about %d %% of the library's processor time", Percent(all, chosen));
    }
  }
  for (const SCandidate& candidate : chosen) choice.engines[candidate.nEntry] = EEngine::Spectrum;
  return choice;
}

}  // namespace carvello
