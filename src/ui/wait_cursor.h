// CWaitCursor: the wait cursor, for as long as the object lives.
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace carvello {

class CWaitCursor {
 public:
  CWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~CWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
  CWaitCursor(const CWaitCursor&) = delete;
  CWaitCursor& operator=(const CWaitCursor&) = delete;
};

}  // namespace carvello
