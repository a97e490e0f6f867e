// The name by which the processor calls itself.
#pragma once

#include "support/system_facts.h"

namespace carvello {

platform::Finding ProcessorName();

}  // namespace carvello
