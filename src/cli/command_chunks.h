// "carvello-cli chunks": the chunks of one file, in the words of the analysis walk.
#pragma once

#include <string>

#include "cli/command.h"

namespace carvello {

class CChunksCommand : public CCommand {
 public:
  const char* Name() const override { return "chunks"; }
  const char* Summary() const override { return "List the chunks of one file"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  std::string m_strFile;
};

}  // namespace carvello
