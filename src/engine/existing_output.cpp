#include "engine/existing_output.h"

#include "engine/output_rate.h"
#include "engine/output_stretch.h"
#include "input/lookup_cache.h"
#include "recording/metadata_xml.h"
#include "recording/sigmf_writer.h"
#include "recording/written_file.h"
#include "recording/written_sigmf.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

bool IsMeta(const std::string& path) {
  return path.ends_with(kSigMfMetaExtension);
}

// Whether a file is of the entry's stretch and frequency, by what its metadata tells. Its name tells the minute only. A
// later part begins later, so only the first is looked at.
bool IsOfStretch(const SFileFacts& facts, const OutputEntry& entry) {
  SMetadataLists metadata;
  ParseMetadataXml(facts.strXml, metadata);
  if (metadata.names.empty() || metadata.FindNumber("Sequence") != 0) return true;
  return metadata.FindNumber("UTCSeconds") == static_cast<std::uint32_t>(entry.tStart) &&
         metadata.FindNumber("RadioCenterFreq") == entry.nOutputFrequency;
}

struct SPart {
  SWrittenFile file;
  bool bOfStretch = true;
};

SPart LookAtPart(const std::string& path, const OutputEntry& entry) {
  if (entry.format != EOutputFormat::SigMf && !IsMeta(path)) {
    const SFileFacts facts = LookupMetadata(path);
    if (facts.nError != 0) return {};  // of whatever stretch it is
    return {InspectWrittenFile(path), IsOfStretch(facts, entry)};
  }
  const SWrittenSigMf found = InspectWrittenSigMf(path);
  const bool told = found.file.format.nSamplesPerSec != 0;
  return {found.file, !told || (found.tAsked == entry.tStart && found.nFrequency == entry.nOutputFrequency)};
}

// Whether the meta file that belongs to a finished WAV file has come to its end too.
bool LacksMeta(const std::string& path, const SWrittenFile& file, const OutputEntry& entry) {
  if (entry.format != EOutputFormat::WaveAndMeta || IsMeta(path)) return false;
  return InspectWrittenSigMf(path).frames != file.Frames();
}

// Whether a meta file that this program has not written for it stands in the place of the one that belongs to a WAV
// file.
bool HasForeignMeta(const std::string& path, const OutputEntry& entry) {
  if (entry.format != EOutputFormat::WaveAndMeta || IsMeta(path)) return false;
  // An empty one is what a job leaves that was killed at that moment.
  const auto meta = platform::GetFileStatus(SigMfMetaPath(path));
  if (!meta) return !platform::MeansMissing(platform::LastError());
  const EWrittenState state = InspectWrittenSigMf(path).file.state;
  return meta->nSize > 0 && (state == EWrittenState::Foreign || state == EWrittenState::Unreadable);
}

// Of files that together are one output.
SExistingOutput Judge(const std::vector<std::string>& files, const OutputEntry& entry,
                      const std::set<std::int64_t>& due) {
  SExistingOutput output{.kind = EExistingOutput::Incomplete, .files = files, .strReason = {}};
  const std::uint32_t rate = TrueOutputRate(entry.nInputSampleRate, entry.nOutputSampleRate);
  std::int64_t frames = 0;
  for (const std::string& path : files) {
    const std::string name = platform::NameOf(path);
    const auto [file, isOfStretch] = LookAtPart(path, entry);
    if (file.state == EWrittenState::Unreadable || file.state == EWrittenState::Foreign) {
      output.kind = EExistingOutput::Other;
      output.strReason = name + " exists and is no recording that could be read";
      return output;
    }
    if (HasForeignMeta(path, entry)) {
      output.kind = EExistingOutput::Other;
      output.strReason = platform::NameOf(SigMfMetaPath(path)) + " exists and tells of another recording";
      return output;
    }
    if (file.state == EWrittenState::Finished &&
        (file.format.nSamplesPerSec != rate || file.format.wBitsPerSample != entry.nBitsPerSample)) {
      output.kind = EExistingOutput::Other;
      output.strReason = Format("%s exists and is another recording, %u bits at %u Hz", name.c_str(),
                                unsigned{file.format.wBitsPerSample}, file.format.nSamplesPerSec);
      return output;
    }
    if (!isOfStretch) {
      output.kind = EExistingOutput::Other;
      output.strReason = name + " exists and is another recording, of another start or frequency";
      return output;
    }
    const bool unfinished = file.state == EWrittenState::Unfinished || LacksMeta(path, file, entry);
    if (unfinished && output.strReason.empty()) output.strReason = name + " is not finished";
    frames += file.Frames();
  }
  if (output.strReason.empty() && frames < *due.rbegin() && !due.contains(frames)) {
    output.strReason = Format("%s is not finished: %lld of %lld frames", platform::NameOf(entry.strFileName).c_str(),
                              static_cast<long long>(frames), static_cast<long long>(*due.rbegin()));
  }
  if (output.strReason.empty()) output.kind = EExistingOutput::Whole;
  return output;
}

}  // namespace

CExistingOutputs::CExistingOutputs(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording,
                                   COutputFolders& folders)
    : m_input(recording), m_folders(folders), m_late{0} {
  for (const OutputEntry* entry : entries) m_late.insert(m_input.Late(entry->nStartSample));
}

// Of the frames that the entry is due in any of the jobs, the most is the last.
std::set<std::int64_t> CExistingOutputs::FramesDue(const OutputEntry& entry) const {
  std::set<std::int64_t> due;
  for (const std::int64_t late : m_late) {
    if (late > entry.nStartSample) break;
    due.insert(OutputFramesOf(entry, m_input.Due(entry, late)));
  }
  if (due.size() > 1) due.erase(0);  // where a late start leaves nothing, the entry fails and there is no output
  return due;
}

SExistingOutput CExistingOutputs::Find(const OutputEntry& entry) const {
  const std::vector<std::string> files = m_folders.ExistingOutputFiles(entry);
  if (!m_folders.Problem().empty()) return {EExistingOutput::Other, files, m_folders.Problem(), true};
  if (files.empty()) return {};
  // Meta files are looked at with the files that they belong to; where there are none, they are what there is.
  std::vector<std::string> samples = files;
  if (HasMeta(entry)) std::erase_if(samples, IsMeta);
  if (samples.empty()) samples = files;
  SExistingOutput output = FindIn(samples, entry);
  output.files = files;
  return output;
}

SExistingOutput CExistingOutputs::FindIn(std::vector<std::string> files, const OutputEntry& entry) const {
  const std::set<std::int64_t> due = FramesDue(entry);
  if (files.front() != entry.strFileName) return Judge(files, entry, due);
  // One file of this name. For a split output it stands beside the parts, which alone count unless it is whole.
  SExistingOutput output = Judge({entry.strFileName}, entry, due);
  files.erase(files.begin());
  if (output.kind == EExistingOutput::Whole || files.empty()) return output;
  return Judge(files, entry, due);
}

}  // namespace carvello
