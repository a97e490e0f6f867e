// SSynthFile: a file of made-up samples, and all that stands around them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "recording/sample_kind.h"

namespace carvello {

struct SSynthText {
  std::string strPath;
  std::string strText;
};

// Frames that the receiver lost: the signal went on behind them.
struct SSynthLoss {
  std::int64_t nFrame = 0;  // in front of which they are missing
  std::int64_t nLost = 0;
};

struct SSynthFile {
  // Of this many frames; the text is as long for any other number.
  using Text = std::function<std::string(std::int64_t frames)>;

  std::string strPath;
  SSampleKind kind;
  std::int64_t nFrames = 0;
  Text head;  // in front of all samples
  Text tail;  // behind them
  // Where samples come in blocks, what stands in front of the block that begins with frame `first`.
  std::int64_t nBlockFrames = 0;
  std::function<std::string(std::int64_t first, std::int64_t frames)> blockHead;
  std::vector<SSynthLoss> losses;      // in their order
  std::vector<SSynthText> describing;  // files beside it
};

}  // namespace carvello
