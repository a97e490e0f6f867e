// CFactsDlg: asks what a recording's files do not tell, or tell wrongly: sample rate, centre frequency, start and
// sample type.
#pragma once

#include <QDialog>
#include <optional>
#include <vector>

#include "input/given_facts.h"
#include "input/recording_set.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace carvello {

class CFactsDlg : public QDialog {
  Q_OBJECT

 public:
  // `known`: what the fields are filled with. `given`: what of it the user has said before. `missing` must be told.
  CFactsDlg(const SGivenFacts& known, const SGivenFacts& given, const std::vector<EFact>& missing, bool utc,
            QWidget* pParent = nullptr);

  // What the user says now: fields that were left as they were say what they said before, empty ones nothing.
  const SGivenFacts& Given() const { return m_given; }

  void accept() override;  // stays, and says beside the field what is wrong, while something is

 private:
  QLabel* AddField(QFormLayout& form, const QString& name, QWidget* pField, QWidget* pMain);
  QComboBox* MakeKinds(const SGivenFacts& known);
  bool Lacks(EFact fact, bool told) const;
  bool Tell(QLabel* pProblem, QWidget* pField, const QString& problem);
  bool TakeRate();
  bool TakeCentre();
  bool TakeStart();
  bool TakeKind();

  SGivenFacts m_given;
  std::vector<EFact> m_missing;
  QLineEdit* m_pRate;
  QLineEdit* m_pCentre;
  QLineEdit* m_pStart;
  QComboBox* m_pZone;
  QComboBox* m_pKind;
  QLabel* m_pRateProblem;
  QLabel* m_pCentreProblem;
  QLabel* m_pStartProblem;
  QLabel* m_pKindProblem;
  // As the fields were filled.
  QString m_rate;
  QString m_centre;
  QString m_start;
  QString m_zone;
  int m_nKind;
};

// The date and time of a text such as "2026-11-21 12:00:00.25", in a zone unless it tells its own. Nothing when it
// cannot be, or not be before 2106.
std::optional<SExactTime> ReadStart(const QString& text, const STimeZone& zone);

}  // namespace carvello
