// COutcomeLabel: a line that tells how something ended, in a colour that tells it too and can be read in every theme.
#pragma once

#include <QLabel>

#include "ui/readable_colours.h"

namespace carvello {

class COutcomeLabel : public QLabel {
  Q_OBJECT

 public:
  explicit COutcomeLabel(QWidget* parent = nullptr);

  // False when that stands there already.
  bool SetText(const SToneText& text);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void UpdateColour();

  ETone m_tone = ETone::Plain;
};

}  // namespace carvello
