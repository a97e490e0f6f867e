#include "ui/facts_dlg.h"

#include <QAccessible>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
#include <ctime>
#include <limits>

#include "jobs/fact_texts.h"
#include "jobs/quantities.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"
#include "ui/bandwidth_text.h"
#include "ui/choice_finder.h"
#include "ui/frequency_text.h"

namespace carvello {

namespace {

constexpr int kColumns = 34;  // of letters, in a field
constexpr int kUtc = 0;       // of the zones that are offered
constexpr int kLocal = 1;

QString KindText(const SSampleKind& kind) {
  QString text;
  switch (kind.number) {
    case ENumber::Signed:
      text = CFactsDlg::tr("%1-bit integers, signed");
      break;
    case ENumber::Unsigned:
      text = CFactsDlg::tr("%1-bit integers, unsigned");
      break;
    case ENumber::Float:
      text = CFactsDlg::tr("%1-bit floats");
      break;
  }
  if (kind.bBigEndian) text = CFactsDlg::tr("%1, big-endian").arg(text);
  return QStringLiteral("%1 (%2)").arg(text.arg(kind.nBits), QString::fromStdString(SampleKindName(kind)));
}

std::vector<SSampleKind> AllKinds() {
  std::vector<SSampleKind> kinds;
  for (const bool bigEndian : {false, true}) {
    for (const ENumber number : {ENumber::Signed, ENumber::Unsigned, ENumber::Float}) {
      for (const std::uint32_t bits : {8U, 16U, 24U, 32U, 64U}) {
        const SSampleKind kind = MakeSampleKind(number, bits, bigEndian && bits > 8);
        if (kind.IsKnown() && (bits > 8 || !bigEndian)) kinds.push_back(kind);
      }
    }
  }
  return kinds;
}

// "2026-11-21 12:00:00.25"
QString StartText(const SExactTime& start, bool utc) {
  std::tm fields{};
  if (!(utc ? platform::UtcTime(start.nSeconds, fields) : platform::LocalTime(start.nSeconds, fields))) return {};
  std::string text = Format("%04d-%02d-%02d %02d:%02d:%02d", fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
                            fields.tm_hour, fields.tm_min, fields.tm_sec);
  if (start.nNanoseconds > 0) {
    text += Format(".%09u", start.nNanoseconds);
    text.erase(text.find_last_not_of('0') + 1);
  }
  return QString::fromStdString(text);
}

}  // namespace

std::optional<SExactTime> ReadStart(const QString& text, const STimeZone& zone) {
  std::string typed = text.trimmed().toStdString();
  std::replace(typed.begin(), typed.end(), ',', '.');
  if (const std::size_t blank = typed.find(' '); blank != std::string::npos) typed[blank] = 'T';
  std::erase(typed, ' ');
  if (!typed.empty() && typed.back() == 'z') typed.back() = 'Z';
  if (const std::optional<SExactTime> zoned = ParseExactTime(typed)) return zoned;
  std::optional<SExactTime> time = ParseExactTime(typed + "Z");
  if (!time) return std::nullopt;
  time->nSeconds = MovedToZone(time->nSeconds, {}, zone);
  if (time->nSeconds < 0 || time->nSeconds > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return time;
}

CFactsDlg::CFactsDlg(const SGivenFacts& known, const SGivenFacts& given, const std::vector<EFact>& missing, bool utc,
                     QWidget* pParent)
    : QDialog(pParent),
      m_given(given),
      m_missing(missing),
      m_pRate(new QLineEdit(this)),
      m_pCentre(new QLineEdit(this)),
      m_pStart(new QLineEdit(this)),
      m_pZone(new QComboBox(this)),
      m_pKind(MakeKinds(known)),
      m_nKind(m_pKind->currentIndex()) {
  setWindowTitle(tr("Facts of the Recording"));
  if (known.nSampleRate) m_rate = QString::fromStdString(FormatFrequency(*known.nSampleRate));
  if (known.nCentre) m_centre = QString::fromStdString(FormatFrequency64(*known.nCentre));
  if (known.start) m_start = StartText(*known.start, utc);
  m_pRate->setText(m_rate);
  m_pRate->setPlaceholderText(tr("for example 2.4 MHz"));
  m_pCentre->setText(m_centre);
  m_pCentre->setPlaceholderText(tr("for example 7.1 MHz"));
  m_pStart->setText(m_start);
  m_pStart->setPlaceholderText(QStringLiteral("2026-11-21 12:00:00.25"));
  m_pZone->addItems({tr("UTC"), tr("Local time")});
  m_pZone->setEditable(true);
  m_pZone->setInsertPolicy(QComboBox::NoInsert);
  m_pZone->setCurrentIndex(utc ? kUtc : kLocal);
  m_zone = m_pZone->currentText();

  auto* pForm = new QFormLayout;
  pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  m_pRateProblem = AddField(*pForm, tr("Sample &rate:"), m_pRate, m_pRate);
  m_pCentreProblem = AddField(*pForm, tr("&Centre frequency:"), m_pCentre, m_pCentre);
  auto* pStartFields = new QWidget(this);
  auto* pStartLayout = new QHBoxLayout(pStartFields);
  pStartLayout->setContentsMargins(0, 0, 0, 0);
  pStartLayout->addWidget(m_pStart, 1);
  pStartLayout->addWidget(m_pZone);
  m_pStartProblem = AddField(*pForm, tr("&Start:"), pStartFields, m_pStart);
  m_pZone->setAccessibleName(tr("Time zone of the start"));
  m_pZone->lineEdit()->setAccessibleName(m_pZone->accessibleName());
  m_pZone->setToolTip(tr("Hours and minutes ahead of UTC can be typed, for example +02:00"));
  m_pKindProblem = AddField(*pForm, tr("Sample &type:"), m_pKind, m_pKind);
  MakeChoicesFindable(*this);
  m_pRate->setObjectName(QStringLiteral("editRate"));
  m_pCentre->setObjectName(QStringLiteral("editCentre"));
  m_pStart->setObjectName(QStringLiteral("editStart"));
  m_pZone->setObjectName(QStringLiteral("comboZone"));
  m_pKind->setObjectName(QStringLiteral("comboKind"));

  auto* pHint = new QLabel(tr("What the files tell is filled in. A field that is emptied is left to them."), this);
  pHint->setWordWrap(true);
  auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  pButtons->button(QDialogButtonBox::Ok)->setText(tr("OK"));
  pButtons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
  connect(pButtons, &QDialogButtonBox::accepted, this, &CFactsDlg::accept);
  connect(pButtons, &QDialogButtonBox::rejected, this, &CFactsDlg::reject);
  auto* pLayout = new QVBoxLayout(this);
  pLayout->setSizeConstraint(QLayout::SetFixedSize);  // that of what is told beside the fields, too
  pLayout->addWidget(pHint);
  pLayout->addLayout(pForm);
  pLayout->addWidget(pButtons);
  m_pRate->setMinimumWidth(fontMetrics().averageCharWidth() * kColumns);
}

// Below the field there is room for what is wrong with it.
QLabel* CFactsDlg::AddField(QFormLayout& form, const QString& name, QWidget* pField, QWidget* pMain) {
  auto* pLabel = new QLabel(name, this);
  pLabel->setBuddy(pMain);
  QString spoken = name;
  pMain->setAccessibleName(spoken.remove('&').remove(':').trimmed());
  form.addRow(pLabel, pField);
  auto* pProblem = new QLabel(this);
  pProblem->setTextFormat(Qt::PlainText);
  pProblem->setWordWrap(true);
  QFont bold = pProblem->font();
  bold.setBold(true);
  pProblem->setFont(bold);
  pProblem->hide();
  form.addRow(nullptr, pProblem);
  return pProblem;
}

QComboBox* CFactsDlg::MakeKinds(const SGivenFacts& known) {
  auto* pKinds = new QComboBox(this);
  pKinds->addItem(tr("As the file tells"));
  for (const SSampleKind& kind : AllKinds()) {
    const QString name = QString::fromStdString(SampleKindName(kind));
    pKinds->addItem(KindText(kind), name);
    if (known.kind && name.toStdString() == SampleKindName(*known.kind)) pKinds->setCurrentIndex(pKinds->count() - 1);
  }
  return pKinds;
}

void CFactsDlg::accept() {
  // All of them, so that all that is wrong is told at once.
  const bool taken[] = {TakeRate(), TakeCentre(), TakeStart(), TakeKind()};
  if (std::find(std::begin(taken), std::end(taken), false) == std::end(taken)) {
    QDialog::accept();
    return;
  }
  QWidget* const fields[] = {m_pRate, m_pCentre, m_pStart, m_pKind};
  for (std::size_t i = 0; i < std::size(fields); ++i) {
    if (taken[i]) continue;
    fields[i]->setFocus();
    break;
  }
}

bool CFactsDlg::Lacks(EFact fact, bool told) const {
  return !told && std::find(m_missing.begin(), m_missing.end(), fact) != m_missing.end();
}

// True when there is nothing to tell.
bool CFactsDlg::Tell(QLabel* pProblem, QWidget* pField, const QString& problem) {
  pProblem->setText(problem);
  pProblem->setVisible(!problem.isEmpty());
  pField->setAccessibleDescription(problem);
  if (problem.isEmpty()) return true;
  QAccessibleEvent event(pProblem, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
  return false;
}

bool CFactsDlg::TakeRate() {
  const QString text = m_pRate->text().trimmed();
  if (Lacks(EFact::SampleRate, !text.isEmpty())) {
    return Tell(m_pRateProblem, m_pRate, tr("The files do not tell it."));
  }
  if (text != m_rate) {
    const std::optional<std::uint32_t> rate = ParseBandwidth(text.toStdString());
    if (!text.isEmpty() && rate.value_or(0) == 0) {
      return Tell(m_pRateProblem, m_pRate, tr("No sample rate. Accepted: for example 2.4 MHz, 250k or 48000 Hz"));
    }
    m_given.nSampleRate = rate;
  }
  return Tell(m_pRateProblem, m_pRate, {});
}

bool CFactsDlg::TakeCentre() {
  const QString text = m_pCentre->text().trimmed();
  if (Lacks(EFact::Centre, !text.isEmpty())) {
    return Tell(m_pCentreProblem, m_pCentre, tr("The files do not tell it."));
  }
  if (text != m_centre) {
    std::optional<std::int64_t> centre = ReadFrequency(text.toStdString());
    if (!centre) centre = ParseFrequency(text.toStdString());
    if (!text.isEmpty() && !centre) {
      return Tell(m_pCentreProblem, m_pCentre, tr("No frequency. Accepted: for example 7.1 MHz, 7100 kHz or 10.489G"));
    }
    m_given.nCentre = centre;
  }
  return Tell(m_pCentreProblem, m_pCentre, {});
}

bool CFactsDlg::TakeStart() {
  const QString text = m_pStart->text().trimmed();
  if (Lacks(EFact::Start, !text.isEmpty())) return Tell(m_pStartProblem, m_pStart, tr("The files do not tell it."));
  const QString zoneText = m_pZone->currentText().trimmed();
  if (text != m_start || zoneText != m_zone) {
    std::optional<STimeZone> zone = ParseTimeZone(zoneText.toStdString());
    if (zoneText == m_pZone->itemText(kUtc)) zone = STimeZone{};
    if (zoneText == m_pZone->itemText(kLocal)) zone = STimeZone{true, 0};
    if (!zone) {
      return Tell(m_pStartProblem, m_pStart,
                  tr("No time zone. Accepted: %1, %2 or hours and minutes ahead of UTC, for example +02:00")
                      .arg(m_pZone->itemText(kUtc), m_pZone->itemText(kLocal)));
    }
    const std::optional<SExactTime> start = ReadStart(text, *zone);
    if (!text.isEmpty() && !start) {
      return Tell(m_pStartProblem, m_pStart,
                  tr("No date and time. Accepted: for example 2026-11-21 12:00:00, with decimals if wanted"));
    }
    m_given.start = start;
  }
  return Tell(m_pStartProblem, m_pStart, {});
}

bool CFactsDlg::TakeKind() {
  const int index = m_pKind->currentIndex();
  if (Lacks(EFact::SampleType, index > 0)) return Tell(m_pKindProblem, m_pKind, tr("The files do not tell it."));
  if (index != m_nKind) m_given.kind = ParseSampleKind(m_pKind->currentData().toString().toStdString());
  return Tell(m_pKindProblem, m_pKind, {});
}

}  // namespace carvello
