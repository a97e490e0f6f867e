#include "ui/add_sequence.h"

#include <algorithm>
#include <tuple>

#include "support/formatting.h"
#include "support/text.h"
#include "ui/choice_finder.h"
#include "ui/english_texts.h"
#include "ui/mnemonics.h"
#include "ui/spoken_text.h"
#include "ui_add_sequence.h"

namespace carvello {

namespace {

constexpr std::uint32_t kFirstSelectedStep = 100;  // kHz

struct SStepRun {
  std::uint32_t nFirst;
  std::uint32_t nLast;
  std::uint32_t nBy;
};

QString Summary(std::int64_t start, std::int64_t end, std::int64_t step, std::int64_t count) {
  return InLanguage(Format("%s to %s in steps of %s. Total entries %lld.", FormatFrequency64(start).c_str(),
                           FormatFrequency64(end).c_str(), FormatFrequency64(step).c_str(),
                           static_cast<long long>(count)));
}

}  // namespace

std::vector<std::uint32_t> SequenceSteps() {
  std::vector<std::uint32_t> steps;
  for (const SStepRun& run : {SStepRun{1, 25, 1}, {30, 100, 5}, {110, 250, 10}, {275, 1000, 25}}) {
    for (std::uint32_t step = run.nFirst; step <= run.nLast; step += run.nBy) steps.push_back(step);
  }
  return steps;
}

CAddSequence::CAddSequence(std::int64_t nCentreFrequency, std::uint32_t nSampleRate, const QFont& fixedFont,
                           QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::CAddSequence>()),
      m_nLowest(std::max<std::int64_t>(nCentreFrequency - nSampleRate / 2, 0)),
      m_nHighest(nCentreFrequency + nSampleRate / 2) {
  m_ui->setupUi(this);
  MakeMnemonicsImmediate(*this);
  MakeChoicesFindable(*this);
  for (CMyMFCMaskedEdit* pEdit : {m_ui->IDC_1010, m_ui->IDC_1011}) pEdit->setFont(fixedFont);
  m_ui->IDC_1012->setMinimumWidth(m_ui->IDC_1010->sizeHint().width());  // one column, one width
  m_ui->IDC_1010->SetFrequency(m_nLowest);
  m_ui->IDC_1011->SetFrequency(m_nHighest);
  for (const std::uint32_t step : SequenceSteps()) {
    m_ui->IDC_1012->addItem(QString::fromStdString(Format("%u%s", step, " kHz")), step);
  }
  m_ui->IDC_1012->setCurrentIndex(m_ui->IDC_1012->findData(kFirstSelectedStep));
  // Room for usual summaries, so that the window keeps its size while they change.
  m_ui->IDC_1021->setMinimumWidth(fontMetrics().horizontalAdvance(Summary(888'888'000, 888'888'000, 888'000, 8888)));
  // Connected only now, so that the summary is not made of fields that are half set up.
  connect(m_ui->IDC_1010, &CMyMFCMaskedEdit::FrequencyChanged, this, &CAddSequence::UpdateSummary);
  connect(m_ui->IDC_1011, &CMyMFCMaskedEdit::FrequencyChanged, this, &CAddSequence::UpdateSummary);
  connect(m_ui->IDC_1012, &QComboBox::currentIndexChanged, this, &CAddSequence::UpdateSummary);
  connect(m_ui->IDC_1, &QPushButton::clicked, this, &QDialog::accept);
  connect(m_ui->IDC_2, &QPushButton::clicked, this, &QDialog::reject);
  UpdateSummary();
  m_ui->IDC_1010->setFocus();
  m_ui->IDC_1010->selectAll();
}

CAddSequence::~CAddSequence() = default;

std::int64_t CAddSequence::Count() const {
  if (m_nStep <= 0) return 0;
  const std::int64_t below = std::max<std::int64_t>(m_nLowest - m_nStart, 0);
  const std::int64_t first = m_nStart + (below + m_nStep - 1) / m_nStep * m_nStep;
  const std::int64_t last = std::min(m_nEnd, m_nHighest);
  return first <= last ? (last - first) / m_nStep + 1 : 0;
}

void CAddSequence::UpdateSummary() {
  std::tie(m_nStart, m_nEnd) = std::minmax({m_ui->IDC_1010->Frequency(), m_ui->IDC_1011->Frequency()});
  m_nStep = std::int64_t{m_ui->IDC_1012->currentData().toUInt()} * 1000;
  ShowSpoken(*m_ui->IDC_1021, Summary(m_nStart, m_nEnd, m_nStep, Count()));
}

}  // namespace carvello
