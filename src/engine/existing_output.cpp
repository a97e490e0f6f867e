#include "engine/existing_output.h"

#include <algorithm>
#include <cstdint>

#include "engine/output_rate.h"
#include "input/format_chunk.h"
#include "input/lookup_cache.h"
#include "recording/metadata_xml.h"
#include "recording/written_file.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

std::int64_t FramesDue(const OutputEntry& entry, const CRecordingSet& recording) {
  const std::int64_t frameBytes = std::max<std::int64_t>(FrameBytes(recording.format.Format), 1);
  std::int64_t inputFrames = -entry.nStartSample;
  for (const SRecordingFile& file : recording.files) inputFrames += file.nSampleBytes / frameBytes;
  if (entry.nTotalSamples != 0) inputFrames = std::min(inputFrames, entry.nTotalSamples);
  return OutputFramesDue(inputFrames, entry.nInputSampleRate, entry.nOutputSampleRate);
}

// Whether a file is of the entry's stretch and frequency, by what its metadata tells. Its name tells the minute only. A
// later part begins later, so only the first is looked at.
bool IsOfStretch(const std::string& path, const OutputEntry& entry) {
  SMetadataLists metadata;
  ParseMetadataXml(LookupMetadata(path).strXml, metadata);
  if (metadata.names.empty() || metadata.FindNumber("Sequence") != 0) return true;
  return metadata.FindNumber("UTCSeconds") == static_cast<std::uint32_t>(entry.tStart) &&
         metadata.FindNumber("RadioCenterFreq") == entry.nOutputFrequency;
}

// Of files that together are one output.
SExistingOutput Judge(const std::vector<std::string>& files, const OutputEntry& entry, std::int64_t due) {
  SExistingOutput output{.kind = EExistingOutput::Incomplete, .files = files, .strReason = {}};
  const std::uint32_t rate = TrueOutputRate(entry.nInputSampleRate, entry.nOutputSampleRate);
  std::int64_t frames = 0;
  for (const std::string& path : files) {
    const std::string name = platform::NameOf(path);
    const SWrittenFile file = InspectWrittenFile(path);
    if (file.state == EWrittenState::Unreadable || file.state == EWrittenState::Foreign) {
      output.kind = EExistingOutput::Other;
      output.strReason = name + " exists and is no recording that could be read";
      return output;
    }
    if (file.state == EWrittenState::Finished &&
        (file.format.nSamplesPerSec != rate || file.format.wBitsPerSample != entry.nBitsPerSample)) {
      output.kind = EExistingOutput::Other;
      output.strReason = Format("%s exists and is another recording, %u bits at %u Hz", name.c_str(),
                                unsigned{file.format.wBitsPerSample}, file.format.nSamplesPerSec);
      return output;
    }
    if (!IsOfStretch(path, entry)) {
      output.kind = EExistingOutput::Other;
      output.strReason = name + " exists and is another recording, of another start or frequency";
      return output;
    }
    if (file.state == EWrittenState::Unfinished && output.strReason.empty())
      output.strReason = name + " is not finished";
    frames += file.Frames();
  }
  if (output.strReason.empty() && frames < due) {
    output.strReason = Format("%s is not finished: %lld of %lld frames", platform::NameOf(entry.strFileName).c_str(),
                              static_cast<long long>(frames), static_cast<long long>(due));
  }
  if (output.strReason.empty()) output.kind = EExistingOutput::Whole;
  return output;
}

}  // namespace

SExistingOutput FindExistingOutput(const OutputEntry& entry, const CRecordingSet& recording, COutputFolders& folders) {
  SExistingOutput output;
  std::vector<std::string> files = folders.ExistingOutputFiles(entry);
  if (files.empty()) return output;
  const std::int64_t due = FramesDue(entry, recording);
  if (files.front() != entry.strFileName) return Judge(files, entry, due);
  // One file of this name. For a split output it stands beside the parts, which alone count unless it is whole.
  output = Judge({entry.strFileName}, entry, due);
  files.erase(files.begin());
  if (output.kind == EExistingOutput::Whole || files.empty()) return output;
  return Judge(files, entry, due);
}

}  // namespace carvello
