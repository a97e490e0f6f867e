#include "instance_registry.h"

#include <utility>

namespace vantrel {

std::uint32_t CInstanceRegistry::Add(std::shared_ptr<SInstance> instance) {
  const CLockGuard lock(m_Mutex);
  do {
    ++m_nLastHandle;
  } while (m_nLastHandle == 0 || m_Instances.contains(m_nLastHandle));
  m_Instances.emplace(m_nLastHandle, std::move(instance));
  return m_nLastHandle;
}

std::shared_ptr<SInstance> CInstanceRegistry::Find(std::uint32_t handle) {
  const CLockGuard lock(m_Mutex);
  const auto found = m_Instances.find(handle);
  return found != m_Instances.end() ? found->second : nullptr;
}

void CInstanceRegistry::Remove(std::uint32_t handle) {
  std::shared_ptr<SInstance> last;  // destroyed after the lock is given back
  const CLockGuard lock(m_Mutex);
  const auto found = m_Instances.find(handle);
  if (found == m_Instances.end()) return;
  last = std::move(found->second);
  m_Instances.erase(found);
}

void CInstanceRegistry::RemoveAll() {
  std::map<std::uint32_t, std::shared_ptr<SInstance>> last;
  const CLockGuard lock(m_Mutex);
  last.swap(m_Instances);
}

}  // namespace vantrel
