// A disk that does not answer: system calls on paths below a folder wait, for as long as the test wants. Linux only; to
// be linked into the test program itself, whose functions stand in front of the C library's.
#pragma once

#include <string>

namespace carvello::test {

class CDeadDisk {
 public:
  // Made on the window's thread: a call of that thread is counted, and refused instead of waiting for ever.
  explicit CDeadDisk(std::string folder);
  // One that answers at once, every call with this error.
  CDeadDisk(std::string folder, int error);
  ~CDeadDisk();  // revives
  CDeadDisk(const CDeadDisk&) = delete;
  CDeadDisk& operator=(const CDeadDisk&) = delete;

  void Revive();        // what waits goes on, and finds the disk as it is
  int Waiting() const;  // calls that wait now
  // Calls that the window's thread made to the disk while it was dead.
  int OnWindowThread() const;
};

}  // namespace carvello::test
