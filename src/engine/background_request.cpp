#include "engine/background_request.h"

namespace carvello {

void CBackgroundRequest::Reset() {
  pOwner = nullptr;
  bCancelled = false;
  nCode = 0;
  nParam1 = nParam2 = 0;
  llParam1 = llParam2 = 0;
  strParam.clear();
  pEntry = nullptr;
  block.reset();
}

}  // namespace carvello
