// CChunkWalk: visits every chunk of one open recording file and collects what describes the recording, without reading
// samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "input/scan_result.h"
#include "input/source_recognition.h"
#include "support/file.h"
#include "support/my_string_array.h"

namespace carvello {

struct SDataSize;

// Made for one walk over one file. File, log and result must outlive it.
//
// Whatever a file says of its sizes, the walk ends and its memory stays bounded: chunks and LIST sub-chunks are counted
// up to a limit, and bodies are read up to a size each and in all. Once format and samples are known, damage behind
// them ends the walk but does not fail it: such a recording can be read. A file that the system does not let be read is
// another matter: the walk then fails whatever was found before, for nobody knows what stands behind.
class CChunkWalk {
 public:
  CChunkWalk(CFile& file, const std::string& fileName, CMyStringArray& log, SScanResult& result);

  // From the file's start. True when a data chunk was found.
  bool Run();

 private:
  // Each handles one chunk behind its identifier. False ends the walk.
  bool HandleChunk();
  bool HandleFileHeader(bool rf64);
  bool HandleDs64();
  bool HandleFormat();
  bool HandleData();
  // Counts what was read to find a data size. False when that failed.
  bool CountRead(const SDataSize& data);
  bool HandleList();
  bool HandleSubChunks(const std::string& listType, std::uint32_t listSize);
  bool HandleMeta();
  bool HandleElad();
  bool HandleNote();
  bool HandleAuxi();
  bool HandleRcvr();
  bool HandleUnknown();

  bool Read(void* buffer, std::size_t bytes);
  bool ReadMarker(std::string& marker);
  // Reads the chunk's size; on failure logs the text behind the identifier and ends the walk.
  bool ReadSize(const char* failure, std::uint32_t& size);
  // A chunk body of believable size. Nothing when it is not, or cannot be read: it is logged and skipped then.
  std::optional<std::string> ReadBody(std::uint32_t size, const char* failure);
  std::int64_t BytesLeft();  // 0 when the length cannot be had
  bool HasReachedEnd();
  // Stands behind the present chunk and reads the next one's identifier. False at the file's end.
  bool ReadNextMarker();

  // Adds a line that begins with the chunk's identifier.
  void Log(const std::string& text);
  // The same for the reason why the walk ends here. Always false.
  bool Fail(const std::string& text);
  // The same for what the user should know too.
  void Warn(const std::string& text);
  void WarnOfSize(const std::string& text);
  void Tell(const std::string& text);  // without a line in the log
  // The system does not let the file be read. Always false.
  bool Break(std::uint32_t code);
  void Recognise();
  void StoreInfoText(const std::string& marker, const std::string& text);

  CFile& m_file;
  CMyStringArray& m_log;
  SScanResult& m_result;

  std::string m_strMarker;     // identifier of the present chunk, as its four bytes
  std::int64_t m_nSkip = 0;    // bytes to skip behind the present chunk
  bool m_bHeaderSeen = false;  // "RIFF" or "RF64"
  bool m_bData = false;
  std::string m_strEnd;  // why the walk ended before a data chunk; empty at the file's end
  std::uint32_t m_nRiffSize = 0;
  bool m_bWrongSize = false;  // that of the samples: no other one of the file is believed
  bool m_bDs64 = false;
  std::int64_t m_nRiffSize64 = 0;  // of ds64
  std::int64_t m_nDataSize64 = 0;  // of ds64
  SSourceEvidence m_evidence;
  std::uint32_t m_nSubChunks = 0;  // over all LIST chunks
  std::int64_t m_nBodyBytes = 0;   // over all bodies
};

}  // namespace carvello
