#include "cli/program.h"

#include <array>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>

#include "cli/command.h"
#include "cli/command_chunks.h"
#include "cli/command_completions.h"
#include "cli/command_cut.h"
#include "cli/command_doctor.h"
#include "cli/command_info.h"
#include "cli/command_join.h"
#include "cli/command_line.h"
#include "cli/command_picture.h"
#include "cli/command_plan.h"
#include "cli/command_repair.h"
#include "cli/command_run.h"
#include "cli/command_scan.h"
#include "cli/command_synth.h"
#include "cli/console.h"
#include "cli/help_texts.h"
#include "doctor/program_facts.h"
#include "support/hresult.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

EExit ParseAndRun(const std::vector<std::string>& arguments) {
  SProgramSyntax syntax{
      .strName = kProgramName,
      .strSummary = "Carvello: cuts narrow-band IQ recordings out of wide-band ones.",
      .strFooter = std::string("Help for a command: ") + kProgramName + " COMMAND --help\n\n" + kExitCodesHelp,
      .version = [] { return VersionReport(); },
      .commands = {}};
  const std::array<std::unique_ptr<CCommand>, 12> commands = {
      std::make_unique<CInfoCommand>(),    std::make_unique<CCutCommand>(),
      std::make_unique<CPictureCommand>(), std::make_unique<CScanCommand>(),
      std::make_unique<CPlanCommand>(),    std::make_unique<CRunCommand>(),
      std::make_unique<CJoinCommand>(),    std::make_unique<CRepairCommand>(),
      std::make_unique<CChunksCommand>(),  std::make_unique<CSynthCommand>(),
      std::make_unique<CDoctorCommand>(),  std::make_unique<CCompletionsCommand>(syntax)};
  for (const auto& command : commands) {
    syntax.commands.push_back({command->Name(), command->Summary(), {}});
    command->AddOptions(syntax.commands.back().options);
  }
  const SParsedLine line = ParseCommandLine(syntax, arguments);
  switch (line.kind) {
    case SParsedLine::EKind::Answer:
      PrintOut(line.strText);
      return EExit::Ok;
    case SParsedLine::EKind::Refusal:
      PrintMessageLines(line.strText);
      return EExit::Usage;
    case SParsedLine::EKind::Command:
      break;
  }
  return commands[line.nCommand]->Run();
}

// Runs the program and turns what it throws into a message and an exit code. Even a message may find no memory.
template <typename Run>
int Guarded(Run run) noexcept {
  EExit result = EExit::OutputFailed;
  try {
    try {
      result = run();
    } catch (const CHResultError& error) {
      result = EExit::InputUnreadable;
      PrintMessage(std::string("the input holds a date that does not exist: ") + error.what());
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      PrintMessage(error.what());
    }
  } catch (...) {
    PrintPlainMessage("not enough memory");
  }
  if (!FlushOut()) {
    PrintPlainMessage("the result could not be written to stdout");
    // What went wrong before is worse than the loss of the report about it.
    if (result == EExit::Ok) result = EExit::OutputFailed;
  }
  return static_cast<int>(result);
}

std::terminate_handler g_pUsualEnd = nullptr;

// Called where an exception cannot go on. With so little memory that not even an exception can be made (the C++ library
// ends the program then), or where one that tells of it came upon a noexcept function, that is an end like any other
// for want of memory; everything else is a slip of the program's and ends as such.
[[noreturn]] void EndForWantOfMemory() {
  bool outOfMemory = false;
  if (const std::exception_ptr failure = std::current_exception()) {
    try {
      std::rethrow_exception(failure);
    } catch (const std::bad_alloc&) {
      outOfMemory = true;
    } catch (...) {
      outOfMemory = false;
    }
  } else {
    constexpr std::size_t kException = 1024;
    void* const room = std::malloc(kException);  // an exception and what belongs to it
    outOfMemory = room == nullptr;
    std::free(room);
  }
  if (!outOfMemory) g_pUsualEnd();
  PrintPlainMessage("not enough memory");
  std::_Exit(static_cast<int>(EExit::OutputFailed));
}

}  // namespace

void PrepareForLittleMemory() noexcept {
  g_pUsualEnd = std::set_terminate(EndForWantOfMemory);
}

int RunProgram(const std::vector<std::string>& arguments) noexcept {
  return Guarded([&] { return ParseAndRun(arguments); });
}

int RunProgram(int argc, char** argv) noexcept {
  return Guarded([&] { return ParseAndRun(platform::ProgramArguments(argc, argv)); });
}

}  // namespace carvello
