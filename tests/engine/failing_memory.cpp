#include "engine/failing_memory.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> allocations = 0;
std::atomic<std::int64_t> failAt = 0;  // 0: none
std::atomic<bool> failForGood = false;
thread_local bool failHere = false;

bool Fails() {
  if (failHere) return true;
  const std::int64_t number = ++allocations;
  return failForGood ? number >= failAt : number == failAt;
}

void* Allocate(std::size_t bytes) {
  return Fails() ? nullptr : std::malloc(bytes);
}

void* AllocateAligned(std::size_t bytes, std::align_val_t alignment) {
  const auto size = static_cast<std::size_t>(alignment);
  return Fails() ? nullptr : std::aligned_alloc(size, (bytes + size - 1) / size * size);
}

}  // namespace

void* operator new(std::size_t bytes) {
  if (void* const memory = Allocate(bytes)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t bytes) {
  return operator new(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(bytes);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  if (void* const memory = AllocateAligned(bytes, alignment)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t& /*tag*/) noexcept {
  return AllocateAligned(bytes, alignment);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}

namespace carvello::test {

std::int64_t FailAllocations(std::int64_t at, bool forGood) {
  failForGood = forGood;
  failAt = at;
  return allocations.exchange(0);
}

void FailAllocationsOfThisThread(bool fail) {
  failHere = fail;
}

}  // namespace carvello::test
