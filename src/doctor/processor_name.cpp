#include "doctor/processor_name.h"

#include <string>

#include "support/text.h"

#ifdef CARVELLO_X86_64
#include <cpuid.h>

#include <array>
#include <cstring>
#endif

namespace carvello {

platform::Finding ProcessorName() {
#ifdef CARVELLO_X86_64
  // Three answers of 16 characters each.
  constexpr unsigned kFirst = 0x80000002U;
  std::array<unsigned, 12> registers{};
  for (unsigned i = 0; i < 3; ++i) {
    unsigned* const part = registers.data() + std::size_t{4} * i;
    if (__get_cpuid(kFirst + i, &part[0], &part[1], &part[2], &part[3]) == 0) {
      return {"", "the processor does not tell its name"};
    }
  }
  std::string name(sizeof(registers), '\0');
  std::memcpy(name.data(), registers.data(), sizeof(registers));
  name = Trim(name.c_str());
  return name.empty() ? platform::Finding{"", "the processor does not tell its name"} : platform::Finding{name, ""};
#else
  return {"", "this kind of processor is not asked for its name"};
#endif
}

}  // namespace carvello
