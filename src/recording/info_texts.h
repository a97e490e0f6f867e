// The five texts of a recording's RIFF INFO list.
#pragma once

#include <string>

namespace carvello {

struct SInfoTexts {
  std::string strIPRD;  // product
  std::string strIART;  // artist
  std::string strICMT;  // comment
  std::string strICOP;  // rights notice
  std::string strINAM;  // name

  bool IsEmpty() const {
    return strIPRD.empty() && strIART.empty() && strICMT.empty() && strICOP.empty() && strINAM.empty();
  }
};

// The LIST chunk that ends a recording: its texts in the system code page, together at most 65,536 bytes. A text that
// would not fit is cut at a character's border.
std::string BuildInfoTrailer(const SInfoTexts& texts);

}  // namespace carvello
