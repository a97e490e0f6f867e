// Recordings whose sizes are wrong, since their recorder could not end them: they are open as far as they go, and can
// be repaired from the main dialog.
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <atomic>
#include <memory>

#include "input/file_repair.h"
#include "support/platform.h"
#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui/english_texts.h"
#include "ui/message_boxes.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {

QString Shown(const std::string& text) {
  return QString::fromStdString(Printable(text));
}

enum class ERepairWay { InPlace, IntoFolder, Not };

// What is wrong and what becomes of it, of the first file that has it.
ERepairWay AskRepairWay(QWidget* pWindow, const std::vector<SRepairPlan>& plans) {
  const SRepairPlan& first = plans.front();
  QStringList lines;
  for (const std::string& fault : first.faults) lines << InLanguage(fault);
  lines << QString();
  for (const std::string& change : first.changes) lines << InLanguage(change);
  QMessageBox box(QMessageBox::Question, CCarvelloDlg::tr("Repair Recording"),
                  CCarvelloDlg::tr("Damaged files: %1. The first of them:\n%2")
                      .arg(QString::number(plans.size()), Shown(first.strPath)),
                  QMessageBox::SaveAll | QMessageBox::Cancel, pWindow);
  box.setTextFormat(Qt::PlainText);  // a path may look like markup
  box.setInformativeText(lines.join(QLatin1Char('\n')));
  box.button(QMessageBox::SaveAll)->setText(CCarvelloDlg::tr("Into a &Folder…"));
  box.button(QMessageBox::Cancel)->setText(CCarvelloDlg::tr("Cancel"));
  const bool inPlace =
      std::all_of(plans.begin(), plans.end(), [](const SRepairPlan& plan) { return plan.strOnlyAsNewFile.empty(); });
  if (inPlace) {
    box.addButton(QMessageBox::Apply)->setText(CCarvelloDlg::tr("In &Place"));
    box.button(QMessageBox::Apply)
        ->setToolTip(CCarvelloDlg::tr("Only the head is written to; its old bytes stand beside the file meanwhile"));
  }
  box.setDefaultButton(QMessageBox::Cancel);
  box.setEscapeButton(QMessageBox::Cancel);
  switch (box.exec()) {
    case QMessageBox::Apply:
      return ERepairWay::InPlace;
    case QMessageBox::SaveAll:
      return ERepairWay::IntoFolder;
    default:
      return ERepairWay::Not;
  }
}

// Until one fails, or nobody waits for it any more.
std::vector<SRepairResult> RepairAll(const std::vector<SRepairPlan>& plans, const std::string& folder,
                                     const SGivenFacts& given, const std::atomic<bool>& left) {
  std::vector<SRepairResult> results;
  for (const SRepairPlan& plan : plans) {
    results.push_back(folder.empty() ? RepairInPlace(plan.strPath, given)
                                     : RepairInto(plan.strPath, folder, given, [&left](auto, auto) { return !left; }));
    if (!results.back().strError.empty() || left) break;
  }
  return results;
}

}  // namespace

// On any thread. Only what was odd about the recording is looked at again.
std::vector<SRepairPlan> CCarvelloDlg::BrokenFiles(const std::string& path, const SReadInput& read) {
  std::vector<SRepairPlan> broken;
  if (read.bValid && read.input.warnings.empty()) return broken;
  std::vector<std::string> files;
  for (const SRecordingFile& file : read.input.recording.files) {
    if (file.container == EContainer::Wave) files.push_back(file.strPath);
  }
  if (!read.bValid && !path.empty()) files = {path};
  for (const std::string& file : files) {
    SRepairPlan plan = PlanRepair(file, read.given);
    if (plan.state == ERepairState::Broken) broken.push_back(std::move(plan));
  }
  return broken;
}

void CCarvelloDlg::ShowBroken(std::vector<SRepairPlan> broken) {
  m_broken = std::move(broken);
  if (m_broken.empty()) {
    m_ui->stripRepair->Clear();
    return;
  }
  const SRepairPlan& first = m_broken.front();
  const QString fault = first.faults.empty() ? QString() : InLanguage(first.faults.front());
  m_ui->stripRepair->Offer(
      m_broken.size() == 1
          ? tr("Damaged: %1").arg(fault)
          : tr("Damaged files: %1. The first of them: %2").arg(QString::number(m_broken.size()), fault),
      tr("Repair…"));
}

void CCarvelloDlg::AskRepair() {
  if (m_job.IsRunning() || m_broken.empty()) return;
  const std::vector<SRepairPlan> plans = m_broken;
  const std::string path = m_strInputShown;
  const ERepairWay way = AskRepairWay(this, plans);
  if (way == ERepairWay::Not) return;
  std::string folder;
  if (way == ERepairWay::IntoFolder) {
    const CMyMFCEditBrowseCtrl::SBrowse browse{true, tr("Select the folder for the repaired files"), {}};
    const QString begin = FolderToBegin(QString::fromStdString(OutputFolder()));
    folder = QDir::toNativeSeparators(CMyMFCEditBrowseCtrl::AskWithDialog(this, browse, begin)).toStdString();
    if (folder.empty()) return;
  }
  // A run, or another input, may have come meanwhile.
  WhenListMayGo(tr("Repair Recording"), [this, plans, path, folder](bool mayGo) {
    if (mayGo && !m_job.IsRunning() && path == Input()) Repair(plans, path, folder);
  });
}

// The folder is empty for in place.
void CCarvelloDlg::Repair(const std::vector<SRepairPlan>& plans, const std::string& path, const std::string& folder) {
  const auto pLeft = std::make_shared<std::atomic<bool>>(false);
  const auto work = [this, plans, path, folder, pLeft, given = GivenFor(path)]() -> std::function<void()> {
    const auto pResults = std::make_shared<std::vector<SRepairResult>>(RepairAll(plans, folder, given, *pLeft));
    return [this, path, pResults] { EndRepair(path, *pResults); };
  };
  m_repairWork.Run("Repair", folder.empty() ? path : folder, work, [pLeft] { *pLeft = true; });
}

void CCarvelloDlg::EndRepair(const std::string& path, const std::vector<SRepairResult>& results) {
  std::vector<std::string> lines;
  std::string problem;
  std::string repaired;  // the one to open
  std::size_t count = 0;
  for (const SRepairResult& result : results) {
    if (!result.strError.empty()) problem = result.strError;
    if (result.outcome != ERepairOutcome::Repaired && result.outcome != ERepairOutcome::Sound) continue;
    ++count;
    lines.push_back("Repaired: " + result.strFile);
    if (repaired.empty() || platform::FileNamesEqual(result.plan.strPath, path)) repaired = result.strFile;
  }
  const bool isOpen = path == Input() && !m_job.IsRunning();
  if (isOpen && !repaired.empty()) {
    SetGiven(repaired, GivenFor(path));
    ShowInputPath(repaired);
    SelectInput();
  }
  for (const std::string& line : lines) m_ui->IDC_1022->AddLine(line);
  if (!problem.empty()) m_ui->IDC_1022->AddLine("[ERROR] " + problem);
  const QString text = tr("Files repaired: %1").arg(static_cast<qulonglong>(count));
  ShowMessageBox(this, {tr("Repair Recording").toStdString(),
                        problem.empty() ? text.toStdString() : (text + "\n\n" + InLanguage(problem)).toStdString(),
                        EButtons::Ok, problem.empty() ? EIcon::Exclamation : EIcon::Stop});
}

}  // namespace carvello
