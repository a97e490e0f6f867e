// The program as a function: everything but the way its arguments come in.
#pragma once

#include <string>
#include <vector>

namespace carvello {

// `arguments`: UTF-8, the program's own name first. Returns the exit code and throws nothing.
int RunProgram(const std::vector<std::string>& arguments) noexcept;

}  // namespace carvello
