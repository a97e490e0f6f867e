// Any bytes as a SigMF meta file, a collection and a time: what is read can be counted on, and what is not is told in
// one printable line.
#include "input/sigmf_meta.h"

#include "fuzz_checks.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string_view text = fuzz::Text(bytes, count);
  SSigMfMeta meta;
  std::string error;
  if (ParseSigMfMeta(text, meta, error)) {
    fuzz::Require(!meta.strDataType.empty() && meta.nOffset >= 0 && meta.nChannels >= 0 && meta.nTrailingBytes >= 0);
    fuzz::Require(meta.global.names.size() == meta.global.values.size());
    for (const SSigMfCapture& capture : meta.captures) {
      fuzz::Require(capture.nSampleStart >= 0 && capture.nHeaderBytes >= 0);
      ParseSigMfTime(capture.strDateTime);
    }
    for (const SSigMfAnnotation& annotation : meta.annotations) fuzz::Require(annotation.nSampleStart >= 0);
  } else {
    fuzz::Require(!error.empty());
    fuzz::RequirePrintable(error);
  }
  SigMfStreams streams;
  if (!ParseSigMfCollection(text, streams, error)) fuzz::RequirePrintable(error);
  if (const auto time = ParseSigMfTime(text)) fuzz::Require(time->nNanoseconds < 1'000'000'000);
  return 0;
}
