// The instances that handles name.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "downconverter.h"
#include "fir_stage.h"
#include "mutex.h"
#include "oscillator.h"
#include "partitioned_filter.h"

namespace vantrel {

struct SInstance {
  std::string strApplication;
  COscillator oscillator;
  CDownconverter downconverter;
  std::unique_ptr<CFirStage> pFractional;
  std::unique_ptr<CPartitionedFilter> pPartitionedFilter;
};

// Thread-safe. An instance that is released while a call works on it lives until that call ends.
class CInstanceRegistry {
 public:
  std::uint32_t Add(std::shared_ptr<SInstance> instance);
  std::shared_ptr<SInstance> Find(std::uint32_t handle);  // nullptr when there is none
  void Remove(std::uint32_t handle);
  void RemoveAll();

 private:
  CMutex m_Mutex;
  std::uint32_t m_nLastHandle VANTREL_GUARDED_BY(m_Mutex) = 0;
  std::map<std::uint32_t, std::shared_ptr<SInstance>> m_Instances VANTREL_GUARDED_BY(m_Mutex);
};

}  // namespace vantrel
