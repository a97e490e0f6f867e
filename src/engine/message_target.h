// Where workers report to. The dialog turns the messages into posted events, the command line into a queue. Posting
// never waits and may happen on any thread.
#pragma once

#include <cstdint>
#include <string>

namespace carvello {

// Names of the two registered messages.
inline constexpr const char* kLogMessageName = "Carvello::nMsgLogfile";
inline constexpr const char* kProgressMessageName = "Carvello::nMsgProgress";

// The process-wide number of a message name; the same name always gives the same number, never 0.
std::uint32_t RegisterMessage(const std::string& name);

class IMessageTarget {
 public:
  virtual ~IMessageTarget() = default;
  // A line of the log. `worker` is the sending thread's name; empty for a line without a thread.
  virtual void PostTexts(std::uint32_t message, std::string worker, std::string text) = 0;
  // `done` of `total`, in the same unit.
  virtual void PostNumbers(std::uint32_t message, std::uint64_t total, std::uint64_t done) = 0;
};

}  // namespace carvello
