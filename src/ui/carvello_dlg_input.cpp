// The main dialog's input recording and output folder.
#include <QSignalBlocker>
#include <algorithm>
#include <new>
#include <utility>

#include "engine/background_thread_base.h"
#include "jobs/fact_texts.h"
#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui/file_manager.h"
#include "ui/input_texts.h"
#include "ui/spoken_text.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {

SReadInput ReadInput(const std::string& path, const SGivenFacts& given) {
  SReadInput read;
  read.given = given;
  try {
    // The window shows which part it is, so that no warning is needed.
    SGivenFacts wanted = given;
    wanted.nPart = std::max(given.nPart, 1U);
    read.bValid = ReadRecordingInput(path, read.input, read.strProblem, wanted);
  } catch (const std::bad_alloc&) {
    read.strProblem = path + ": " + kNotEnoughMemory;
  }
  if (read.bValid) return read;
  read.missing = std::move(read.input.recording.missing);
  read.known = read.input.recording.known;
  read.input = {};
  return read;
}

}  // namespace

// By the user. The list goes with its recording, so one that is kept nowhere is asked about first.
void CCarvelloDlg::InputPathChanged() {
  const std::string before = m_strInputShown;
  WhenListMayGo(tr("Open Recording"), [this, before](bool mayGo) {
    if (mayGo) {
      SelectInput();
    } else {
      ShowInputPath(before);
    }
  });
}

void CCarvelloDlg::ShowInputPath(const std::string& path) {
  const QSignalBlocker blocker(m_ui->IDC_1000);
  m_ui->IDC_1000->SetPath(QString::fromStdString(path));
}

void CCarvelloDlg::SelectInput() {
  const std::string path = Input();
  if (m_jobToApply && m_jobToApply->strInput != path) m_bJobLeft = true;
  m_inputWork.Run("Input", path, [this, path, given = GivenFor(path)]() -> std::function<void()> {
    const auto pRead = std::make_shared<SReadInput>(ReadInput(path, given));
    pRead->broken = BrokenFiles(path, *pRead);
    return [this, path, pRead] { ShowInput(path, std::move(*pRead)); };
  });
}

void CCarvelloDlg::ShowInput(const std::string& path, SReadInput read) {
  ShowWaiting();
  LeaveInput();
  ++m_nInputs;
  m_strInputShown = path;
  m_bInputValid = read.bValid;
  m_input = std::move(read.input);
  m_givenShown = read.given;
  ShowInputTexts();
  ShowParts();
  if (m_bInputValid) {
    m_settings.Write("InputFile", path);
    std::string facts;
    m_settings.Read("InputFacts", facts);
    if (facts != FactsLine(read.given)) m_settings.Write("InputFacts", FactsLine(read.given));
    m_fields.ShowRecording(m_input.recording, IsUtc());
  }
  m_fields.OfferBandwidths(m_input.recording.nSampleRate);
  m_fields.Restore(m_settings, m_input.recording.nRadioCenterFreq);

  ClearLog();
  WriteReadyLines();
  for (const std::string& warning : m_input.warnings) m_ui->IDC_1022->AddLine(warning);
  if (m_bInputValid && !read.given.IsEmpty()) m_ui->IDC_1022->AddLine("As the user says: " + FactsLine(read.given));
  if (!m_bInputValid && !path.empty()) m_ui->IDC_1022->AddLine(read.strProblem);

  m_job.ForgetRun();
  // Entries never outlive the recording that they were made for.
  m_entries.SetRecording(m_input.recording, m_input.infoTexts);
  m_table.SetRecording(m_input.recording);
  ResetEntries();
  ShowSlips({});
  ShowInSpectrum();
  ShowMissing(path, read);
  ShowBroken(std::move(read.broken));
  ArriveAtInput();
}

void CCarvelloDlg::ShowInputTexts() {
  const SInputTexts texts = m_bInputValid ? InputTexts(m_input.recording, IsUtc()) : SInputTexts();
  const auto show = [](QLabel* label, const std::string& text) {
    ShowSpoken(*label, QString::fromStdString(Printable(text)));
  };
  show(m_ui->IDC_1001, texts.strCentre);
  show(m_ui->IDC_1002, texts.strBandwidth);
  show(m_ui->IDC_1003, texts.strSampleSize);
  show(m_ui->IDC_1004, texts.strTotalFiles);
  show(m_ui->IDC_1005, texts.strStart);
  show(m_ui->IDC_1006, texts.strFinish);
  show(m_ui->IDC_1007, texts.strTotal);
  show(m_ui->IDC_1036, texts.strSource);
}

void CCarvelloDlg::OutputFolderChanged() {
  m_folderWork.GiveUp();
  m_bOutputChosen = true;  // also by an empty text
  m_settings.Write("OutputFolder", OutputFolder());
  m_bFolderChanged = true;
  ShowOffers();
  UpdateControlStates();
}

void CCarvelloDlg::UtcClicked() {
  m_settings.Write("UTC", IsUtc());
  if (m_bInputValid) SelectInput();
}

void CCarvelloDlg::ExploreOutputFolder() {
  if (!OutputFolder().empty()) OpenOrTell(this, OutputFolder(), "Open Folder", "explore", m_fileWork);
}

}  // namespace carvello
