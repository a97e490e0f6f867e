#include "cli/synth_recording.h"

#include <algorithm>

#include "cli/sample_packer.h"
#include "cli/signal_generator.h"
#include "cli/stop_requests.h"
#include "cli/synth_layout.h"
#include "cli/synth_raw.h"
#include "recording/metadata_xml.h"
#include "recording/riff_file_writer.h"
#include "recording/wave_format.h"
#include "support/file.h"
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

// Makes frames and hands their bytes on, as `pack` makes them of values. False when they could not be written or the
// user has had enough; `result` tells which.
template <class Pack, class Write>
bool WriteFrames(std::int64_t frames, CSignalGenerator& generator, SSynthResult& result, const Pack& pack,
                 const Write& write) {
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
      result.nClipped += pack(values.data(), 2 * count, bytes);
      frames -= static_cast<std::int64_t>(count);
    }
    if (!write(bytes)) return false;
  }
  return true;
}

bool WriteText(CFile& file, const std::string& text) {
  return file.Write(text.data(), text.size()) == text.size();
}

bool WriteWhole(const SSynthText& text) {
  CFile file;
  return file.Open(text.strPath, platform::EOpenMode::Replace) && WriteText(file, text.strText) && file.Close();
}

// Samples in blocks, each behind its head. Counts the frames that were written.
class CBlockWriter {
 public:
  CBlockWriter(const SSynthFile& layout, CFile& file) : m_layout(layout), m_file(file) {}

  std::int64_t Frames() const { return m_nFrames; }
  bool Write(const std::vector<std::uint8_t>& bytes) {
    const std::int64_t frameBytes = m_layout.kind.FrameBytes();
    for (std::size_t done = 0; done < bytes.size();) {
      std::int64_t frames = static_cast<std::int64_t>(bytes.size() - done) / frameBytes;
      if (m_layout.blockHead) {
        const std::int64_t inBlock = m_nFrames % m_layout.nBlockFrames;
        const std::int64_t block = std::min(m_layout.nBlockFrames, m_layout.nFrames - m_nFrames + inBlock);
        if (inBlock == 0 && !WriteText(m_file, m_layout.blockHead(m_nFrames, block))) return false;
        frames = std::min(frames, block - inBlock);
      }
      const auto count = static_cast<std::size_t>(frames * frameBytes);
      if (m_file.Write(bytes.data() + done, count) != count) return false;
      m_nFrames += frames;
      done += count;
    }
    return true;
  }

 private:
  const SSynthFile& m_layout;
  CFile& m_file;
  std::int64_t m_nFrames = 0;
};

// The samples with what the receiver lost left out between them.
bool WriteStretches(const SSynthFile& layout, CSignalGenerator& generator, SSynthResult& result, CBlockWriter& writer) {
  const auto pack = [&layout](const double* values, std::size_t count, std::vector<std::uint8_t>& bytes) {
    return PackKind(values, count, layout.kind, bytes);
  };
  const auto passOver = [](const double*, std::size_t, std::vector<std::uint8_t>&) { return std::int64_t{0}; };
  const auto write = [&writer](const std::vector<std::uint8_t>& bytes) { return writer.Write(bytes); };
  for (const SSynthLoss& loss : layout.losses) {
    if (!WriteFrames(loss.nFrame - writer.Frames(), generator, result, pack, write)) return false;
    if (!WriteFrames(loss.nLost, generator, result, passOver, write)) return false;
  }
  return WriteFrames(layout.nFrames - writer.Frames(), generator, result, pack, write);
}

// False when a file cannot be written; its path is in the error then.
bool WriteLaidOut(const SSynthFile& layout, CSignalGenerator& generator, SSynthResult& result) {
  for (const SSynthText& text : layout.describing) {
    if (!WriteWhole(text)) {
      result.strError = text.strPath + ": " + SystemErrorText();
      return false;
    }
  }
  CFile file;
  CBlockWriter writer(layout, file);
  const auto text = [&writer](const SSynthFile::Text& of) { return of ? of(writer.Frames()) : std::string(); };
  const std::string head = layout.head ? layout.head(layout.nFrames) : std::string();
  bool written = file.Open(layout.strPath, platform::EOpenMode::Replace) && WriteText(file, head);
  if (written) {
    written = WriteStretches(layout, generator, result, writer) || result.bStopped;
    written = written && WriteText(file, text(layout.tail));
    // Stopped, it holds fewer samples than it was to.
    if (written && result.bStopped) written = file.Seek(0) && WriteText(file, text(layout.head));
  }
  const std::string reason = SystemErrorText();
  if (!written || !file.Close()) {
    result.strError = layout.strPath + ": " + reason;
    return false;
  }
  result.files.push_back(layout.strPath);
  for (const SSynthText& each : layout.describing) result.files.push_back(each.strPath);
  return true;
}

SSynthResult WriteLayout(const SSynthSettings& settings) {
  SSynthResult result;
  CSignalGenerator generator(settings);
  const SSynthLayout layout = LayOutSynth(settings);
  for (const SSynthFile& file : layout.files) {
    if (result.bStopped || !WriteLaidOut(file, generator, result)) return result;
  }
  for (const SSynthText& text : layout.over) {
    if (!WriteWhole(text)) {
      result.strError = text.strPath + ": " + SystemErrorText();
      return result;
    }
    result.files.push_back(text.strPath);
  }
  return result;
}

}  // namespace

SSynthResult WriteSynthRecording(const SSynthSettings& settings) {
  if (settings.raw) return WriteLayout(settings);
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
    const auto pack = [&settings](const double* values, std::size_t count, std::vector<std::uint8_t>& bytes) {
      return PackSamples(values, count, settings.format, bytes);
    };
    const auto write = [&writer](const std::vector<std::uint8_t>& bytes) {
      return writer.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), CurrentTime());
    };
    if (written) written = WriteFrames(frames, generator, result, pack, write);
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
