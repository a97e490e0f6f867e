// Keeping the computer awake.
#pragma once

#include <QString>
#include <memory>

namespace carvello {

// For as long as it lives the computer does not go to sleep by itself; the screen may.
class CStayAwake {
 public:
  virtual ~CStayAwake() = default;
};

// `reason`: what the system may show as such. Where the system cannot be told, the object does nothing.
std::unique_ptr<CStayAwake> StayAwake(const QString& reason);

}  // namespace carvello
