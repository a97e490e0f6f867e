// Floats for the kernels, aligned to the widest vector.
#pragma once

#include <cstddef>
#include <new>
#include <vector>

namespace vantrel {

template <class T>
struct SAlignedAllocator {
  using value_type = T;
  static constexpr std::align_val_t kAlignment{64};

  SAlignedAllocator() = default;
  template <class TOther>
  SAlignedAllocator(const SAlignedAllocator<TOther>& /*other*/) {}

  T* allocate(std::size_t count) {
    if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(::operator new(count * sizeof(T), kAlignment));
  }
  void deallocate(T* memory, std::size_t /*count*/) { ::operator delete(memory, kAlignment); }

  bool operator==(const SAlignedAllocator&) const = default;
};

using AlignedFloats = std::vector<float, SAlignedAllocator<float>>;

}  // namespace vantrel
