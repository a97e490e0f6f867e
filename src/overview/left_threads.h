// Threads that outlive what they were started for: nobody waits for them but the end of the program.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace carvello {

enum class ELeft {
  Reads,   // or writes what can be made again; the end of the program may cut it short
  Writes,  // something of the user's, which the end of the program waits for
};

// Starts a thread that runs `body`, which raises no exceptions. False where the system gives none.
bool StartLeftThread(const std::string& name, std::function<void()> body, ELeft kind = ELeft::Reads) noexcept;
// Waits until all of them have ended. Called by the end of the program by itself, and before that by whoever wants to
// be sure.
void JoinLeftThreads() noexcept;
// Waits for those that write, for so long where a limit is given, and no longer than `readers` for those that read: a
// disk may never answer. Whether all have ended; the program must not end in the ordinary way when not, for that waits
// for all.
bool JoinLeftThreadsFor(std::chrono::milliseconds readers,
                        std::optional<std::chrono::milliseconds> writers = std::nullopt) noexcept;

}  // namespace carvello
