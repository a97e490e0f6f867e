// The program as a function.
#pragma once

#include <string>
#include <vector>

namespace carvello {

// `arguments`: UTF-8, the program's own name first. Returns the exit code and throws nothing.
int RunProgram(const std::vector<std::string>& arguments) noexcept;
// The same with what main was given.
int RunProgram(int argc, char** argv) noexcept;

}  // namespace carvello
