// "carvello-cli picture": what a recording looks like, as an image file.
#pragma once

#include <string>

#include "cli/command.h"
#include "cli/given_options.h"
#include "cli/picture_request.h"

namespace carvello {

class CPictureCommand : public CCommand {
 public:
  const char* Name() const override { return "picture"; }
  const char* Summary() const override { return "Draw a recording: levels by frequency and time"; }
  void AddOptions(CCommandOptions& options) override;
  EExit Run() override;

 private:
  SPictureOptions m_options;
  SGivenOptions m_given;
};

}  // namespace carvello
