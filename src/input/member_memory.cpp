#include "input/member_memory.h"

#include <unordered_map>
#include <utility>

#include "support/mutex.h"

namespace carvello {

namespace {

struct SMemory {
  CMutex lock;
  std::unordered_map<std::string, std::pair<SFileStamp, std::string>> members CARVELLO_GUARDED_BY(lock);
};

SMemory& Memory() {
  static SMemory memory;
  return memory;
}

}  // namespace

void RememberMember(const std::string& member, const SFileStamp& stamp, const std::string& read) {
  SMemory& memory = Memory();
  const CLockGuard lock(memory.lock);
  memory.members.insert_or_assign(member, std::pair(stamp, read));
}

std::optional<std::string> FileReadFor(const std::string& member) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(member);
  if (!status || !platform::IsReadable(member)) return std::nullopt;
  SMemory& memory = Memory();
  const CLockGuard lock(memory.lock);
  const auto found = memory.members.find(member);
  if (found == memory.members.end() || found->second.first != SFileStamp(*status)) return std::nullopt;
  return found->second.second;
}

}  // namespace carvello
