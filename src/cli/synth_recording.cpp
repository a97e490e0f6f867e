#include "cli/synth_recording.h"

#include <algorithm>

#include "cli/sample_packer.h"
#include "cli/signal_generator.h"
#include "cli/stop_requests.h"
#include "recording/metadata_xml.h"
#include "recording/riff_file_writer.h"
#include "recording/wave_format.h"
#include "support/formatting.h"
#include "support/system_time.h"

namespace carvello {
namespace {

// Not the product's own name: that would claim that float samples stand at 16-bit full scale, and these do not.
constexpr const char* kSoftwareName = "Carvello synth";
constexpr std::size_t kBlocksAtOnce = 64;  // signal blocks written together

WAVEFORMATEX WaveFormat(const SSynthSettings& settings) {
  WAVEFORMATEX format;
  format.wFormatTag = settings.format == ESynthFormat::Float32 ? kFormatTagFloat : kFormatTagPcm;
  format.nChannels = 2;
  format.nSamplesPerSec = settings.nSampleRate;
  format.wBitsPerSample = static_cast<std::uint16_t>(BitsOf(settings.format));
  format.nBlockAlign = static_cast<std::uint16_t>(2 * format.wBitsPerSample / 8);
  format.nAvgBytesPerSec = format.nBlockAlign * settings.nSampleRate;
  return format;
}

std::string Metadata(const SSynthSettings& settings, const std::vector<std::string>& files, std::uint32_t file,
                     std::int64_t framesBefore) {
  SMetadataFacts facts;
  facts.strSoftwareName = kSoftwareName;
  facts.tCreated = CurrentTime();
  facts.tStart = settings.tStart + framesBefore / settings.nSampleRate;
  facts.strFileName = files[file];
  facts.strFirstFile = files.front();
  if (file > 0) facts.strPreviousFile = files[file - 1];
  facts.strRadioModel = kSoftwareName;
  facts.nSequence = static_cast<std::int32_t>(file);
  facts.nBitsPerSample = BitsOf(settings.format);
  facts.nBytesPerSecond = WaveFormat(settings).nAvgBytesPerSec;
  facts.nRadioCenterFreq = settings.nCentre;
  facts.nSampleRate = settings.nSampleRate;
  return BuildMetadataXml(facts);
}

SInfoTexts InfoTexts(const SSynthSettings& settings) {
  SInfoTexts texts;
  texts.strINAM = "Test recording, " + FormatFrequency64(settings.nCentre);
  texts.strIPRD = "SDR Data (IQ) Recordings";
  texts.strIART = kSoftwareName;
  texts.strICMT = "Made-up signals";
  return texts;
}

// Fills the open file. False when the file is full or the user has had enough; `result` tells which.
bool WriteFrames(std::int64_t frames, ESynthFormat format, CSignalGenerator& generator, CRiffFileWriter& writer,
                 SSynthResult& result) {
  std::vector<double> values(2 * kSignalBlock);
  std::vector<std::uint8_t> bytes;
  while (frames > 0) {
    if (StopRequests() > 0) {
      result.bStopped = true;
      return false;
    }
    bytes.clear();
    for (std::size_t i = 0; i < kBlocksAtOnce && frames > 0; ++i) {
      const auto count = static_cast<std::size_t>(std::min<std::int64_t>(frames, kSignalBlock));
      generator.Next(values.data(), count);
      result.nClipped += PackSamples(values.data(), 2 * count, format, bytes);
      frames -= static_cast<std::int64_t>(count);
    }
    if (!writer.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), CurrentTime())) return false;
  }
  return true;
}

}  // namespace

SSynthResult WriteSynthRecording(const SSynthSettings& settings) {
  SSynthResult result;
  const std::vector<std::string> files = SynthFiles(settings);
  CSignalGenerator generator(settings);
  std::int64_t framesBefore = 0;
  for (std::uint32_t i = 0; i < settings.nFiles && !result.bStopped; ++i) {
    CRiffFileWriter writer;
    // Made-up signals can be made up again: nothing waits for the disk.
    writer.SetPolicy({.bReplace = true, .bSync = false});
    bool written = writer.Open(files[i], WaveFormat(settings), Metadata(settings, files, i, framesBefore),
                               InfoTexts(settings), settings.bRf64, SSignalFacts()) > 0;
    const std::int64_t frames = SynthFrames(settings, i);
    if (written) written = WriteFrames(frames, settings.format, generator, writer, result);
    const bool finished = writer.Finish();
    if ((!written && !result.bStopped) || !finished) {
      result.strError = files[i] + ": " + writer.ErrorText();
      return result;
    }
    result.files.push_back(files[i]);
    framesBefore += frames;
  }
  return result;
}

}  // namespace carvello
