// CSampleFile: the samples of one open file as frames one behind the other, wherever they lie in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "input/sample_layout.h"
#include "input/wave_file_reader.h"
#include "recording/sample_kind.h"

namespace carvello {

// Used by one thread at a time. Nothing is thrown.
class CSampleFile {
 public:
  // Opens the file and logs it. It has no samples before Begin.
  bool Open(const std::string& fileName);
  void Close();
  bool IsOpen() const { return m_file.IsOpen(); }
  // The open file, for whoever finds the samples in it.
  CWaveFileReader& File() { return m_file; }
  const CWaveFileReader& File() const { return m_file; }

  // The samples are of this kind and lie like this; stands at the first frame then.
  void Begin(const SSampleKind& kind, const SSampleLayout& layout);
  // As the streaming parse of the file found them.
  void BeginWave(const SSampleKind& kind);

  const SSampleKind& Kind() const { return m_kind; }
  std::uint32_t FrameBytes() const { return m_kind.FrameBytes(); }
  std::int64_t Frames() const { return m_nFrames; }
  // Frames in front of the next one that is read.
  std::int64_t Position() const { return m_nPosition; }
  // Stands so many frames behind the first one then. False on failure.
  bool Seek(std::int64_t frame);

  // Frames from here on that lie in one run, or that were lost; 0 at the end.
  struct SAhead {
    std::int64_t nFrames = 0;
    bool bSilence = false;
  };
  SAhead Ahead() const;
  // Reads so many whole frames, no more than lie ahead, and passes those that were read. Fewer when the file ends too
  // early or cannot be read.
  std::int64_t Read(void* buffer, std::int64_t frames);
  // Passes lost frames, no more than lie ahead.
  void Pass(std::int64_t frames);

 private:
  // Bytes that are read at once.
  struct SStretch {
    std::int64_t nPosition = 0;
    std::int64_t nBytes = 0;
  };
  SStretch StretchAt(const SSampleRun& run, std::int64_t frame, std::int64_t wanted) const;
  std::int64_t TakeOut(const SSampleRun& run, std::int64_t inPiece, std::uint8_t* bytes, std::int64_t count) const;
  void FindRun();

  CWaveFileReader m_file;
  SSampleKind m_kind;
  std::vector<SSampleRun> m_runs;
  std::vector<std::int64_t> m_begins;  // first frames of the runs
  std::int64_t m_nFrames = 0;
  std::size_t m_nRun = 0;  // that the position stands in
  std::int64_t m_nPosition = 0;
};

}  // namespace carvello
