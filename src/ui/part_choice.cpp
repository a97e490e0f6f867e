#include "ui/part_choice.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <cmath>

#include "support/formatting.h"
#include "support/text.h"
#include "ui/input_texts.h"

namespace carvello {

namespace {

constexpr int kFewestLetters = 20;  // that a part always has room for

// "2: 14.200 MHz, 2.400 MHz wide, 2026-11-21 12:00:00z, 0:30, name": what is not told is left out.
QString PartText(const SRecordingPart& part, std::size_t number, bool utc) {
  QStringList facts;
  facts << QString::fromStdString(FormatFrequency64(part.nFrequency));
  if (part.nSampleRate > 0) {
    facts << CPartChoice::tr("%1 wide").arg(QString::fromStdString(FormatFrequency(part.nSampleRate)));
  }
  if (part.tStart != 0) facts << QString::fromStdString(DateTimeText(part.tStart, utc));
  if (part.dSeconds > 0.0) facts << QString::fromStdString(FormatDuration(part.dSeconds));
  facts << QString::fromStdString(Printable(part.strName));
  return QStringLiteral("%1: %2").arg(QString::number(number), facts.join(QLatin1String(", ")));
}

}  // namespace

CPartChoice::CPartChoice(QWidget* pParent)
    : QFrame(pParent), m_pLabel(new QLabel(tr("Part:"), this)), m_pParts(new QComboBox(this)) {
  m_pParts->setObjectName(QStringLiteral("comboPart"));
  m_pParts->setAccessibleName(tr("Part of the recording"));
  m_pParts->setToolTip(tr("The recording has several parts, which are cut one by one"));
  m_pParts->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_pParts->setMinimumContentsLength(kFewestLetters);
  m_pLabel->setBuddy(m_pParts);
  auto* pLayout = new QHBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(m_pLabel);
  pLayout->addWidget(m_pParts, 1);
  setFocusProxy(m_pParts);
  connect(m_pParts, &QComboBox::activated, this,
          [this](int index) { emit PartChosen(static_cast<std::uint32_t>(index + 1)); });
  hide();
}

void CPartChoice::ShowParts(const std::vector<SRecordingPart>& parts, std::uint32_t chosen, bool utc) {
  m_pParts->clear();
  for (std::size_t i = 0; i < parts.size(); ++i) m_pParts->addItem(PartText(parts[i], i + 1, utc));
  m_pParts->setCurrentIndex(static_cast<int>(chosen) - 1);
  setVisible(parts.size() > 1);
}

}  // namespace carvello
