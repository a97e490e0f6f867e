// CPartChoice: which part of a recording is open, where it has several: a line that is there only then.
#pragma once

#include <QFrame>
#include <cstdint>
#include <vector>

#include "input/recording_set.h"

class QComboBox;
class QLabel;

namespace carvello {

class CPartChoice : public QFrame {
  Q_OBJECT

 public:
  explicit CPartChoice(QWidget* pParent = nullptr);

  // `chosen` from 1. Hidden for fewer than two parts.
  void ShowParts(const std::vector<SRecordingPart>& parts, std::uint32_t chosen, bool utc);

 signals:
  void PartChosen(std::uint32_t part);  // by the user

 private:
  QLabel* m_pLabel;
  QComboBox* m_pParts;
};

}  // namespace carvello
