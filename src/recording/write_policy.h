// SWritePolicy, ETell: how an output file comes into being and how safe it is before it counts as written.
#pragma once

namespace carvello {

struct SWritePolicy {
  // What stands under the name is replaced; else the file is created only where nothing stands. The parts of a split
  // output are always created anew: those of an earlier output are removed before.
  bool bReplace = false;
  // What is written stands on the medium before the sizes tell of it, and the whole file with its name when it is
  // closed. Without, a power cut can take what the system had not written yet.
  bool bSync = true;
  // An RF64 file tells its samples in frames, as most readers expect, instead of in single I and Q values.
  bool bCountFrames = false;
};

// When a file's sizes tell of what is written to it, which is also when that is brought to the medium.
enum class ETell {
  Now,
  Later,  // with a later write, or when the file is closed
};

}  // namespace carvello
