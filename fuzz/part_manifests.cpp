// Any bytes as what stands beside a part: nothing, or numbers that can be of one, which read as the same again.
#include "cluster/part_manifest.h"

#include "fuzz_checks.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::optional<SPartManifest> manifest = ParseManifest(fuzz::Text(bytes, count));
  if (!manifest) return 0;
  fuzz::Require(manifest->nFirst >= 0 && manifest->nFrames >= 0);
  for (const SStretchMark& mark : manifest->marks) fuzz::Require(mark.llFrame >= 0 && mark.nOutput >= 0);
  const std::optional<SPartManifest> again = ParseManifest(PartManifestText(*manifest));
  fuzz::Require(again && again->nFirst == manifest->nFirst && again->nFrames == manifest->nFrames &&
                again->marks.size() == manifest->marks.size());
  return 0;
}
