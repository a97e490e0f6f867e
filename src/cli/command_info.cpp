#include "cli/command_info.h"

#include <CLI/CLI.hpp>

#include "cli/console.h"
#include "cli/help_texts.h"
#include "cli/info_report.h"
#include "engine/recording_input.h"

namespace carvello {

void CInfoCommand::AddOptions(CLI::App& app) {
  app.add_option("INPUT", m_strInput, "Any file of the recording")->type_name("")->required();
  app.add_flag("--json", m_bJson, "Print one JSON object instead of a text");
  app.footer(std::string("Examples:\n"
                         "  carvello-cli info \"rec 000.wav\"\n"
                         "  carvello-cli info --json \"rec 000.wav\"\n\n") +
             kExitCodesHelp);
}

EExit CInfoCommand::Run() {
  SRecordingInput input;
  std::string error;
  if (!ReadRecordingInput(m_strInput, input, error)) {
    PrintMessage(error);
    return EExit::InputUnreadable;
  }
  for (const std::string& warning : input.warnings) PrintMessage(warning);
  PrintOut(m_bJson ? InfoJson(input.recording, input.infoTexts) : InfoText(input.recording, input.infoTexts));
  return EExit::Ok;
}

}  // namespace carvello
