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

}  // namespace carvello
