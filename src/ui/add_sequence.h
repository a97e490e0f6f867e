// CAddSequence: asks for a range of frequencies and a step, for adding one entry a frequency.
#pragma once

#include <QDialog>
#include <QFont>
#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class CAddSequence;
}

namespace carvello {

// The steps offered, in kHz.
std::vector<std::uint32_t> SequenceSteps();

class CAddSequence : public QDialog {
  Q_OBJECT

 public:
  // Centre frequency (Hz) and sample rate of the recording; the font of the frequency fields.
  CAddSequence(std::int64_t nCentreFrequency, std::uint32_t nSampleRate, const QFont& fixedFont,
               QWidget* parent = nullptr);
  ~CAddSequence() override;

  // In Hz; the start is never above the end.
  std::int64_t Start() const { return m_nStart; }
  std::int64_t End() const { return m_nEnd; }
  std::int64_t StepSize() const { return m_nStep; }
  // Frequencies of the range that lie within the recorded band. The others are added as well: deliberate.
  std::int64_t Count() const;

 private:
  void UpdateSummary();

  std::unique_ptr<Ui::CAddSequence> m_ui;
  std::int64_t m_nLowest;  // of the recorded band, in Hz; never below 0
  std::int64_t m_nHighest;
  std::int64_t m_nStart = 0;
  std::int64_t m_nEnd = 0;
  std::int64_t m_nStep = 0;
};

}  // namespace carvello
