// CCommand: one command of the program, such as "cut": its options and what it does.
#pragma once

#include "cli/command_options.h"
#include "cli/exit_codes.h"

namespace carvello {

class CCommand {
 public:
  CCommand() = default;
  virtual ~CCommand() = default;
  CCommand(const CCommand&) = delete;
  CCommand& operator=(const CCommand&) = delete;

  virtual const char* Name() const = 0;
  virtual const char* Summary() const = 0;
  // Binds the options to members of this object, which must outlive `options`.
  virtual void AddOptions(CCommandOptions& options) = 0;
  // Called once, after the options have been read.
  virtual EExit Run() = 0;
};

}  // namespace carvello
