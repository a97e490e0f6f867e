// What the user says of the recording: which part of it, and what its files do not tell, or tell wrongly.
#include <QTimer>
#include <algorithm>
#include <string>
#include <utility>

#include "jobs/list_job.h"
#include "support/platform.h"
#include "ui/about_dlg.h"
#include "ui/carvello_dlg.h"
#include "ui/facts_dlg.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {

QString FactName(EFact fact) {
  switch (fact) {
    case EFact::SampleType:
      return CCarvelloDlg::tr("sample type");
    case EFact::SampleRate:
      return CCarvelloDlg::tr("sample rate");
    case EFact::Centre:
      return CCarvelloDlg::tr("centre frequency");
    case EFact::Start:
      return CCarvelloDlg::tr("start");
  }
  return {};
}

// What is given stands in for what nobody knows.
SGivenFacts KnownWith(SGivenFacts known, const SGivenFacts& given) {
  if (!known.nSampleRate) known.nSampleRate = given.nSampleRate;
  if (!known.nCentre) known.nCentre = given.nCentre;
  if (!known.start) known.start = given.start;
  if (!known.kind) known.kind = given.kind;
  return known;
}

}  // namespace

void CCarvelloDlg::ConnectFacts() {
  connect(m_ui->partChoice, &CPartChoice::PartChosen, this, &CCarvelloDlg::ChoosePart);
  connect(m_ui->stripFacts, &COfferStrip::Taken, this, &CCarvelloDlg::AskFacts);
  connect(m_ui->stripRepair, &COfferStrip::Taken, this, &CCarvelloDlg::AskRepair);
  connect(m_pJobMenu, &CJobMenu::FactsPressed, this, &CCarvelloDlg::AskFacts);
  connect(m_pJobMenu, &CJobMenu::AboutPressed, this, &CCarvelloDlg::ShowAbout);
}

// A report is likely about the disks that are read and written here. Beside a job nothing is measured: each would slow
// the other.
void CCarvelloDlg::ShowAbout() {
  SDoctorRequest request;
  request.bMeasure = !m_job.IsBusy();
  const std::string input = Input();
  if (!input.empty()) request.folders.push_back(platform::FolderOf(input));
  const std::string output = OutputFolder();
  if (!output.empty() && (request.folders.empty() || request.folders.front() != output)) {
    request.folders.push_back(output);
  }
  CAboutDlg(std::move(request), this).exec();
}

SGivenFacts CCarvelloDlg::GivenFor(const std::string& path) const {
  return path == m_strGivenFor ? m_given : SGivenFacts();
}

void CCarvelloDlg::SetGiven(const std::string& path, const SGivenFacts& given) {
  m_strGivenFor = path;
  m_given = given;
}

// The list goes with the part.
void CCarvelloDlg::ChoosePart(std::uint32_t part) {
  if (m_job.IsRunning() || !m_bInputValid || part == m_input.recording.nPart) return;
  WhenListMayGo(tr("Open Recording"), [this, part, path = m_strInputShown](bool mayGo) {
    if (!mayGo || path != Input()) {
      ShowParts();
      return;
    }
    // What was said of one part says nothing of another.
    SGivenFacts given;
    given.nPart = part;
    SetGiven(path, given);
    SelectInput();
  });
}

void CCarvelloDlg::ShowParts() {
  m_ui->partChoice->ShowParts(m_input.recording.parts, m_input.recording.nPart, IsUtc());
}

// What the input lacks is asked for at once where the user chose it, and offered to be asked for while a path is being
// typed.
void CCarvelloDlg::ShowMissing(const std::string& path, const SReadInput& read) {
  m_missing = read.missing;
  m_known = read.known;
  QStringList names;
  for (const EFact fact : m_missing) names << FactName(fact);
  const bool refused = !read.bValid && !m_givenShown.IsEmpty() && !path.empty();
  if (m_missing.empty() && !refused) {
    m_ui->stripFacts->Clear();
    return;
  }
  m_ui->stripFacts->Offer(m_missing.empty() ? tr("With what was said of it, the recording cannot be read; see the log.")
                                            : tr("Not told by the file: %1").arg(names.join(QLatin1String(", "))),
                          tr("&Give…"));
  if (m_missing.empty() || m_ui->IDC_1000->isModified()) return;
  // When the window is there, and what has happened now is over.
  QTimer::singleShot(0, this, [this, input = m_nInputs] {
    if (input == m_nInputs) AskFacts();
  });
}

void CCarvelloDlg::AskFacts() {
  const std::string path = Input();
  if (m_job.IsRunning() || path.empty()) return;
  const bool shown = path == m_strInputShown;
  const SGivenFacts given = GivenFor(path);
  SGivenFacts known = shown ? m_known : SGivenFacts();
  if (shown && m_bInputValid) {
    const CRecordingSet& recording = m_input.recording;
    known.nSampleRate = recording.nSampleRate;
    known.nCentre = recording.nRadioCenterFreq;
    known.start = SExactTime{recording.tStart, recording.nStartNanoseconds};
    known.kind = recording.kind;
  }
  CFactsDlg form(KnownWith(known, given), given, shown ? m_missing : std::vector<EFact>(), IsUtc(), this);
  // A run, or another input, may have come meanwhile.
  if (form.exec() != QDialog::Accepted || m_job.IsRunning() || path != Input()) return;
  WhenListMayGo(form.windowTitle(), [this, path, said = form.Given()](bool mayGo) {
    if (!mayGo || path != Input()) return;
    SetGiven(path, said);
    SelectInput();
  });
}

SJobFile CCarvelloDlg::ListAsJob() const {
  SJobFile job = JobOfList(m_entries, m_input.recording, m_strInputShown, OutputFolder(), m_bShownUtc);
  job.given = m_givenShown;
  return job;
}

// Whether the recording is open as the job has it: the same part, with the same said of it, if anything.
bool CCarvelloDlg::IsOpenAsIn(const SJobFile& job) const {
  if (std::max(job.given.nPart, 1U) != std::max(m_input.recording.nPart, 1U)) return false;
  SGivenFacts given = m_givenShown;
  given.nPart = job.given.nPart;
  return job.given.IsEmpty() || job.given == given;
}

}  // namespace carvello
