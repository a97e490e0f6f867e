// CSignalList: looks for signals in what the spectrum window shows, lists them, and hands out those that the user
// takes.
#pragma once

#include <QObject>
#include <vector>

#include "ui/posted_calls.h"
#include "ui/spectrum_scene.h"

namespace Ui {
class CSpectrumWindow;
}

namespace carvello {

class CSignalList : public QObject {
  Q_OBJECT

 public:
  // Both must outlive it.
  CSignalList(Ui::CSpectrumWindow& ui, CSpectrumScene& scene, QObject* pParent);

  // Where signals are looked for; null when there is no recording. Forgets what was found.
  void SetSource(ISpectrumSource* pSource);
  void SetAllowed(bool allowed);
  void Choose(std::size_t signal);

 signals:
  void CutsWanted(const std::vector<carvello::SCut>& cuts);

 private:
  void FindOrStop();
  void Tell(const SSearchNews& news, const SSpan& frequencies);
  void End();
  void Show();
  void Update();
  void Take(bool all);

  Ui::CSpectrumWindow& m_ui;
  CSpectrumScene& m_scene;
  CPostedCalls m_calls;
  ISpectrumSource* m_pSource = nullptr;
  bool m_bSearching = false;
  bool m_bAllowed = true;
  int m_nSearch = 0;
};

}  // namespace carvello
