// Is wrong on purpose and never built: ./test lint holds the analysis of locks to finding it.
#include "support/mutex.h"

struct SUnlocked {
  int Value() const { return m_nValue; }

  carvello::CMutex m_lock;
  int m_nValue CARVELLO_GUARDED_BY(m_lock) = 0;
};
