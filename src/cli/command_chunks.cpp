#include "cli/command_chunks.h"

#include "cli/console.h"
#include "cli/help_texts.h"
#include "engine/recording_input.h"
#include "input/wave_file_reader.h"
#include "support/file.h"

namespace carvello {

namespace {

bool HasRiffHead(const std::string& path) {
  CFile file;
  std::string head(4, '\0');
  if (!file.Open(path, platform::EOpenMode::ReadShared)) return true;  // what is wrong with it was told
  file.Read(head.data(), head.size());
  return file.ReadError() != 0 || head == "RIFF" || head == "RF64";
}

}  // namespace

void CChunksCommand::AddOptions(CCommandOptions& options) {
  options.Add("FILE", &m_strFile, "The file, WAV or RF64").Required();
  options.SetFooter(std::string("Example:\n"
                                "  carvello-cli chunks \"rec 000.wav\"\n\n") +
                    kExitCodesHelp);
}

EExit CChunksCommand::Run() {
  const std::string problem = OpenProblem(m_strFile);
  if (!problem.empty()) {
    PrintMessage(m_strFile + ": " + problem);
    return EExit::InputUnreadable;
  }
  CWaveFileReader reader;
  SScanResult result;
  const bool found = reader.ScanChunks(m_strFile, result);
  for (const std::string& line : reader.Log()) PrintOutLine(line);
  if (found) return EExit::Ok;
  if (!HasRiffHead(m_strFile)) {
    PrintMessage(
        m_strFile +
        ": no RIFF or RF64 file: there are no chunks to walk over. \"carvello-cli info\" tells of recordings of "
        "other kinds");
    return EExit::InputUnreadable;
  }
  const std::string reason = LastProblem(reader.Log());
  PrintMessage(m_strFile + ": no samples can be read from it" + (reason.empty() ? "" : ": " + reason));
  return EExit::InputUnreadable;
}

}  // namespace carvello
