#include "cli/info_report.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "recording/sigmf_writer.h"
#include "recording/written_file.h"
#include "recording/written_sigmf.h"
#include "support/formatting.h"
#include "support/json_text.h"
#include "support/platform.h"
#include "support/readable.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {
namespace {

using Rows = std::vector<std::vector<std::string>>;

void AddMetadata(CJsonText& json, const SMetadataLists& metadata) {
  std::unordered_set<std::string_view> seen;
  json.BeginObject();
  for (std::size_t i = 0; i < metadata.names.size(); ++i) {
    // A name that comes twice counts with its first value, as everywhere else.
    if (seen.insert(metadata.names[i]).second) json.Member(metadata.names[i], metadata.values[i]);
  }
  json.EndObject();
}

void AddInfoTexts(const SInfoTexts& texts, Rows& rows) {
  const auto add = [&rows](const char* name, const std::string& text) {
    if (!text.empty()) rows.push_back({name, text});
  };
  add("Name (INAM)", texts.strINAM);
  add("Artist (IART)", texts.strIART);
  add("Product (IPRD)", texts.strIPRD);
  add("Comment (ICMT)", texts.strICMT);
  add("Rights (ICOP)", texts.strICOP);
}

std::string ContainerName(const CRecordingSet& recording) {
  if (!recording.strContainer.empty()) return recording.strContainer;
  return recording.bRF64 ? "RF64" : "WAV";
}

// Files of ours whose job was killed or could not write their ends. Other programs end their files as they like.
std::vector<std::string> UnfinishedFiles(const CRecordingSet& recording) {
  std::vector<std::string> files;
  for (const SRecordingFile& file : recording.files) {
    if (!file.strPath.ends_with(kSigMfDataExtension)) continue;
    if (InspectWrittenSigMf(file.strPath).file.state == EWrittenState::Unfinished) files.push_back(file.strPath);
  }
  if (recording.metadata.Find("SoftwareName") != VersionValue("ProductName")) return files;
  for (const SRecordingFile& file : recording.files) {
    if (InspectWrittenFile(file.strPath).state == EWrittenState::Unfinished) files.push_back(file.strPath);
  }
  return files;
}

const char* VerifiedName(EVerified verified) {
  switch (verified) {
    case EVerified::Right:
      return "right";
    case EVerified::Wrong:
      return "wrong";
    case EVerified::Unread:
      return "unreadable";
    case EVerified::NoHash:
    case EVerified::NotAsked:
      break;
  }
  return "no hash";
}

// Of recordings that can have them.
void AddParts(CJsonText& json, const CRecordingSet& recording) {
  if (recording.nPart == 0) return;
  json.Member("part", recording.nPart);
  json.Key("parts");
  json.BeginArray();
  for (const SRecordingPart& part : recording.parts) {
    json.BeginObject();
    json.Member("name", part.strName);
    json.Member("centreFrequency", part.nFrequency);
    json.Member("sampleRate", part.nSampleRate);
    json.Member("startUtc", part.tStart);
    json.Member("seconds", part.dSeconds);
    json.EndObject();
  }
  json.EndArray();
  json.Key("annotations");
  json.BeginArray();
  for (const SRecordingAnnotation& annotation : recording.annotations) {
    json.BeginObject();
    json.Member("firstFrame", annotation.nFirstFrame);
    json.Member("frames", annotation.nFrames);
    if (annotation.lowerEdge) json.Member("lowerEdge", *annotation.lowerEdge);
    if (annotation.upperEdge) json.Member("upperEdge", *annotation.upperEdge);
    json.Member("label", annotation.strLabel);
    json.Member("comment", annotation.strComment);
    json.EndObject();
  }
  json.EndArray();
}

void AddPartRows(const CRecordingSet& recording, Rows& rows) {
  for (std::size_t i = 0; i < recording.parts.size() && recording.parts.size() > 1; ++i) {
    const SRecordingPart& part = recording.parts[i];
    rows.push_back(
        {i + 1 == recording.nPart ? "Part (this)" : "Part",
         Format("%zu: %s, %s, %s, %s", i + 1, FormatFrequency64(part.nFrequency).c_str(),
                FormatIsoTime(part.tStart).c_str(), FormatDuration(part.dSeconds).c_str(), part.strName.c_str())});
  }
  if (!recording.annotations.empty()) rows.push_back({"Annotations", std::to_string(recording.annotations.size())});
}

}  // namespace

std::string InfoJson(const CRecordingSet& recording, const SInfoTexts& texts, EVerified verified) {
  std::vector<std::string> files;
  std::vector<std::int64_t> dataBytes;
  for (const SRecordingFile& file : recording.files) {
    files.push_back(file.strPath);
    dataBytes.push_back(file.nDataBytes);
  }
  CJsonText json;
  json.BeginObject();
  json.Member("source", recording.strSourceName);
  json.Member("files", files);
  json.Member("fileCount", recording.files.size());
  json.Member("dataBytes", dataBytes);
  json.Member("totalBytes", recording.TotalBytes());
  json.Member("sampleRate", recording.nSampleRate);
  json.Member("centreFrequency", recording.nRadioCenterFreq);
  json.Member("bandwidth", recording.nBandwidth);
  json.Member("bitsPerSample", recording.nBitsPerSample);
  json.Member("sampleFormat", recording.bFloat ? "float" : "pcm");
  json.Member("sampleType", recording.kind.IsKnown() ? SampleKindName(recording.kind) : std::string());
  json.Member("container", ContainerName(recording));
  json.Member("startUtc", recording.tStart);
  json.Member("endUtc", recording.tEnd);
  json.Member("startMilliseconds", recording.nStartMilliseconds);
  json.Member("startNanoseconds", recording.nStartNanoseconds);
  json.Member("endMilliseconds", recording.nEndMilliseconds);
  json.Member("seconds", recording.dDuration);
  json.Member("rf64", recording.bRF64);
  AddParts(json, recording);
  if (verified != EVerified::NotAsked) json.Member("verified", VerifiedName(verified));
  json.Key("infoTexts");
  json.BeginObject();
  json.Member("IPRD", texts.strIPRD);
  json.Member("IART", texts.strIART);
  json.Member("ICMT", texts.strICMT);
  json.Member("ICOP", texts.strICOP);
  json.Member("INAM", texts.strINAM);
  json.EndObject();
  json.Member("unfinishedFiles", UnfinishedFiles(recording));
  json.Key("metadata");
  AddMetadata(json, recording.metadata);
  json.EndObject();
  return json.Document();
}

std::string InfoText(const CRecordingSet& recording, const SInfoTexts& texts, EVerified verified) {
  Rows rows;
  rows.push_back({"Source", recording.strSourceName});
  rows.push_back({"Centre", FormatFrequency64(recording.nRadioCenterFreq)});
  rows.push_back({"Sample rate", FormatFrequency(recording.nSampleRate)});
  rows.push_back({"Bandwidth", FormatFrequency(recording.nBandwidth)});
  rows.push_back({"Samples", Format("%u bit %s, %s", recording.nBitsPerSample, recording.bFloat ? "float" : "PCM",
                                    ContainerName(recording).c_str())});
  rows.push_back({"Start", FormatIsoTime(recording.tStart, recording.nStartMilliseconds)});
  rows.push_back({"End", FormatIsoTime(recording.tEnd, recording.nEndMilliseconds)});
  rows.push_back({"Duration", FormatDuration(recording.dDuration)});
  rows.push_back({"Size", FormatBytes(static_cast<double>(recording.TotalBytes()))});
  for (const std::string& file : UnfinishedFiles(recording)) {
    rows.push_back(
        {"State", "not finished: " + platform::NameOf(file) + ", the job that wrote it did not come to its end"});
  }
  AddPartRows(recording, rows);
  if (verified != EVerified::NotAsked) rows.push_back({"Hash", VerifiedName(verified)});
  rows.push_back({"Total files", Format("%zu", recording.files.size())});
  AddInfoTexts(texts, rows);
  for (std::size_t i = 0; i < recording.files.size(); ++i) {
    rows.push_back(
        {i == 0 ? "Files" : "", Format("%s (%s)", recording.files[i].strPath.c_str(),
                                       FormatBytes(static_cast<double>(recording.files[i].nDataBytes)).c_str())});
  }
  std::string text = FormatColumns(rows, "");
  if (recording.metadata.names.empty()) return text;

  Rows metadata;
  for (std::size_t i = 0; i < recording.metadata.names.size(); ++i) {
    metadata.push_back({"  " + recording.metadata.names[i], recording.metadata.values[i]});
  }
  return text + "\nMetadata\n" + FormatColumns(metadata, "");
}

}  // namespace carvello
