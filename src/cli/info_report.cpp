#include "cli/info_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/readable.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

using Json = nlohmann::ordered_json;
using Rows = std::vector<std::vector<std::string>>;

Json MetadataJson(const SMetadataLists& metadata) {
  Json object = Json::object();
  for (std::size_t i = 0; i < metadata.names.size(); ++i) {
    // A name that comes twice counts with its first value, as everywhere else.
    if (!object.contains(metadata.names[i])) object[metadata.names[i]] = metadata.values[i];
  }
  return object;
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

}  // namespace

std::string InfoJson(const CRecordingSet& recording, const SInfoTexts& texts) {
  Json files = Json::array();
  Json dataBytes = Json::array();
  for (const SRecordingFile& file : recording.files) {
    files.push_back(file.strPath);
    dataBytes.push_back(file.nDataBytes);
  }
  Json object;
  object["source"] = recording.strSourceName;
  object["files"] = std::move(files);
  object["fileCount"] = recording.files.size();
  object["dataBytes"] = std::move(dataBytes);
  object["totalBytes"] = recording.TotalBytes();
  object["sampleRate"] = recording.nSampleRate;
  object["centreFrequency"] = recording.nRadioCenterFreq;
  object["bandwidth"] = recording.nBandwidth;
  object["bitsPerSample"] = recording.nBitsPerSample;
  object["sampleFormat"] = recording.bFloat ? "float" : "pcm";
  object["startUtc"] = recording.tStart;
  object["endUtc"] = recording.tEnd;
  object["startMilliseconds"] = recording.nStartMilliseconds;
  object["endMilliseconds"] = recording.nEndMilliseconds;
  object["seconds"] = recording.dDuration;
  object["rf64"] = recording.bRF64;
  object["infoTexts"] = {{"IPRD", texts.strIPRD},
                         {"IART", texts.strIART},
                         {"ICMT", texts.strICMT},
                         {"ICOP", texts.strICOP},
                         {"INAM", texts.strINAM}};
  object["metadata"] = MetadataJson(recording.metadata);
  return PrintableJson(object.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

std::string InfoText(const CRecordingSet& recording, const SInfoTexts& texts) {
  Rows rows;
  rows.push_back({"Source", recording.strSourceName});
  rows.push_back({"Centre", FormatFrequency64(recording.nRadioCenterFreq)});
  rows.push_back({"Sample rate", FormatFrequency(recording.nSampleRate)});
  rows.push_back({"Bandwidth", FormatFrequency(recording.nBandwidth)});
  rows.push_back({"Samples", Format("%u bit %s, %s", recording.nBitsPerSample, recording.bFloat ? "float" : "PCM",
                                    recording.bRF64 ? "RF64" : "WAV")});
  rows.push_back({"Start", FormatIsoTime(recording.tStart, recording.nStartMilliseconds)});
  rows.push_back({"End", FormatIsoTime(recording.tEnd, recording.nEndMilliseconds)});
  rows.push_back({"Duration", FormatDuration(recording.dDuration)});
  rows.push_back({"Size", FormatBytes(static_cast<double>(recording.TotalBytes()))});
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
