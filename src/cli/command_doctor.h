// "carvello-cli doctor": what a report about a fault needs to know of the program and the machine.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"

namespace carvello {

class CDoctorCommand : public CCommand {
 public:
  const char* Name() const override { return "doctor"; }
  const char* Summary() const override { return "Tell what a report about a fault needs: versions, machine, speed"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  std::vector<std::string> m_folders;
  bool m_bJson = false;
  bool m_bNoSpeed = false;
};

}  // namespace carvello
