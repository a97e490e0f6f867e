#include "overview/recording_overview.h"

#include <utility>

#include "overview/overview_core.h"

namespace carvello {

CRecordingOverview::CRecordingOverview(const CRecordingSet& recording, SOverviewOptions options,
                                       std::function<void()> changed)
    : m_pCore(std::make_shared<COverviewCore>(recording, std::move(options), std::move(changed))) {
  m_pCore->Start();
}

CRecordingOverview::~CRecordingOverview() {
  m_pCore->End();
}

void CRecordingOverview::Show(const SSpectrumView& view) {
  m_pCore->Show(view);
}

std::shared_ptr<const SSpectrumPicture> CRecordingOverview::Picture() const {
  return m_pCore->Picture();
}

double CRecordingOverview::Progress() const {
  return m_pCore->Progress();
}

std::string CRecordingOverview::Problem() const {
  return m_pCore->Problem();
}

void CRecordingOverview::FindCarrier(double frequency, double reach, double firstFrame, double frames,
                                     std::function<void(std::optional<double>)> answer) {
  m_pCore->FindCarrier({frequency, reach, firstFrame, frames}, std::move(answer));
}

std::shared_ptr<IBlockListener> CRecordingOverview::Listener() {
  return m_pCore->Listener();
}

void CRecordingOverview::Pause(bool paused) {
  m_pCore->Pause(paused);
}

}  // namespace carvello
