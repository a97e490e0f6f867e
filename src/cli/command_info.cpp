#include "cli/command_info.h"

#include "cli/console.h"
#include "cli/hash_check.h"
#include "cli/help_texts.h"
#include "cli/info_report.h"
#include "cli/recording_opening.h"

namespace carvello {

void CInfoCommand::AddOptions(CCommandOptions& options) {
  options.Add("INPUT", &m_strInput, "Any file of the recording").Required();
  options.Add("--json", &m_bJson, "Print one JSON object instead of a text");
  options.Add("--verify", &m_bVerify, "Read all samples and compare their hash with the one that the recording tells");
  m_given.AddTo(options);
  options.SetFooter(std::string("Examples:\n"
                                "  carvello-cli info \"rec 000.wav\"\n"
                                "  carvello-cli info --json \"rec 000.wav\"\n"
                                "  carvello-cli info capture.iq --sample-type ci16 --rate 2M --centre 7.1M \\\n"
                                "      --start-time 2026-11-21T12:00:00Z\n\n") +
                    kExitCodesHelp);
}

EExit CInfoCommand::Run() {
  SRecordingInput input;
  const EExit described = DescribeRecording(m_strInput, m_given, input);
  if (described != EExit::Ok) return described;
  std::string error;
  EVerified verified = EVerified::NotAsked;
  if (m_bVerify) verified = VerifyHash(input.recording.dataHash, error);
  PrintOut(m_bJson ? InfoJson(input.recording, input.infoTexts, verified)
                   : InfoText(input.recording, input.infoTexts, verified));
  if (error.empty()) return EExit::Ok;
  PrintMessage(error);
  return EExit::InputUnreadable;
}

}  // namespace carvello
