// The program as a function.
#pragma once

#include <string>
#include <vector>

namespace carvello {

// To be called before anything takes memory: where there is too little even for an exception, the program ends with a
// message and the exit code of a failed output.
void PrepareForLittleMemory() noexcept;

// `arguments`: UTF-8, the program's own name first. Returns the exit code and throws nothing.
int RunProgram(const std::vector<std::string>& arguments) noexcept;
// The same with what main was given.
int RunProgram(int argc, char** argv) noexcept;

}  // namespace carvello
