#include "cli/program.h"
#include "support/build_commit.h"
#include "support/platform.h"
#include "support/version.h"

namespace {

// Ahead of every other initialiser, as those of the option parser take memory.
[[gnu::constructor(101)]] void Prepare() noexcept {
  carvello::PrepareForLittleMemory();
}

}  // namespace

int main(int argc, char** argv) {
  carvello::platform::PrepareProcess();
  carvello::platform::UseUtf8Console();
  carvello::SetBuildCommit(carvello::kBuildCommit);
  return carvello::RunProgram(argc, argv);
}
