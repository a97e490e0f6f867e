#include "ui/job_menu.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <memory>
#include <utility>

#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr char kRecentName[] = "RecentJob";
constexpr char kKeepName[] = "KeepLists";
constexpr char kFramesName[] = "Ds64Frames";
constexpr int kMostRecent = 8;

// As the text of an action: no mnemonic, nothing that is obeyed.
QString Shown(const std::string& text) {
  return QString::fromStdString(Printable(text)).replace('&', QStringLiteral("&&"));
}

}  // namespace

CJobMenu::CJobMenu(CMySettingsStore& settings, KeptLists lists, const std::string& folder,
                   std::chrono::milliseconds patience, QWidget* pWindow)
    : QMenu(pWindow), m_settings(settings), m_lists(std::move(lists)), m_strFolder(folder), m_work(patience) {
  const auto add = [this, pWindow](const QString& text, const QKeySequence& keys, auto signal) {
    QAction* pAction = addAction(text);
    pAction->setShortcut(keys);
    connect(pAction, &QAction::triggered, this, signal);
    pWindow->addAction(pAction);  // so that its keys work while the menu is closed
    m_idle.push_back(pAction);
    return pAction;
  };
  add(tr("&Open…"), QKeySequence::Open, &CJobMenu::OpenPressed);
  m_pRecent = addMenu(tr("Open &Recent"));
  m_pLists = addMenu(tr("&Earlier Lists"));
  m_idle.push_back(m_pRecent->menuAction());
  m_idle.push_back(m_pLists->menuAction());
  addSeparator();
  m_save = {add(tr("&Save"), QKeySequence::Save, &CJobMenu::SavePressed),
            add(tr("Save &As…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), &CJobMenu::SaveAsPressed)};
  addSeparator();
  add(tr("&Undo"), QKeySequence::Undo, &CJobMenu::UndoPressed);
  add(tr("Re&do"), QKeySequence(Qt::CTRL | Qt::Key_Y), &CJobMenu::RedoPressed)
      ->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
  addSeparator();
  m_pFacts = addAction(tr("&Correct Facts of the Recording…"));
  m_pFacts->setToolTip(tr("Say what its files do not tell, or tell wrongly: rate, centre, start and time zone, type"));
  connect(m_pFacts, &QAction::triggered, this, &CJobMenu::FactsPressed);
  addSeparator();
  m_pFrames = addAction(tr("Count &Frames in RF64 Files"));
  m_pFrames->setCheckable(true);
  m_pFrames->setToolTip(tr("RF64 files tell their samples in frames, as most programs expect, not in single values"));
  bool frames = false;
  m_settings.Read(kFramesName, frames);
  m_pFrames->setChecked(frames);
  connect(m_pFrames, &QAction::triggered, this, [this](bool checked) {
    m_settings.Write(kFramesName, checked);
    emit CountingChanged();
  });
  m_idle.push_back(m_pFrames);
  setToolTipsVisible(true);
  m_pKeep = addAction(tr("&Keep Lists by Themselves"));
  m_pKeep->setCheckable(true);
  bool keep = true;
  m_settings.Read(kKeepName, keep);
  m_pKeep->setChecked(keep);
  connect(m_pKeep, &QAction::triggered, this, [this](bool checked) {
    m_settings.Write(kKeepName, checked);
    emit KeepChanged();
  });
  addSeparator();
  connect(addAction(tr("A&bout Carvello…")), &QAction::triggered, this, &CJobMenu::AboutPressed);
  connect(m_pRecent, &QMenu::aboutToShow, this, &CJobMenu::ShowRecent);
  connect(m_pLists, &QMenu::aboutToShow, this, &CJobMenu::LookForLists);
}

void CJobMenu::SetAllowed(bool idle, bool hasRows, bool hasInput) {
  m_pFacts->setEnabled(idle && hasInput);
  for (QAction* pAction : m_idle) pAction->setEnabled(idle);
  for (QAction* pAction : m_save) pAction->setEnabled(idle && hasRows);
}

std::vector<std::string> CJobMenu::RecentFiles() const {
  std::vector<std::string> files;
  for (int i = 0; i < kMostRecent; ++i) {
    std::string path;
    if (m_settings.Read(i, kRecentName, path) && !path.empty()) files.push_back(path);
  }
  return files;
}

void CJobMenu::NoteFile(const std::string& path) {
  std::vector<std::string> files = RecentFiles();
  std::erase_if(files, [&path](const std::string& file) { return platform::FileNamesEqual(file, path); });
  files.insert(files.begin(), path);
  files.resize(std::min<std::size_t>(files.size(), kMostRecent));
  for (std::size_t i = 0; i < files.size(); ++i) m_settings.Write(static_cast<int>(i), kRecentName, files[i]);
}

void CJobMenu::ShowRecent() {
  m_pRecent->clear();
  for (const std::string& path : RecentFiles()) {
    QAction* pAction = m_pRecent->addAction(Shown(path));
    connect(pAction, &QAction::triggered, this, [this, path] { emit FilePressed(path); });
  }
  if (m_pRecent->isEmpty()) m_pRecent->addAction(tr("None"))->setEnabled(false);
}

void CJobMenu::LookForLists() {
  m_pLists->clear();
  m_work.Run("Lists", m_strFolder, [this, lists = m_lists]() -> std::function<void()> {
    const auto pLists = std::make_shared<std::vector<SKeptList>>(lists());
    return [this, pLists] { ShowLists(*pLists); };
  });
  if (m_work.IsWaiting()) m_pLists->addAction(tr("Waiting for %1…").arg(Shown(m_strFolder)))->setEnabled(false);
}

void CJobMenu::ShowLists(const std::vector<SKeptList>& lists) {
  m_pLists->clear();
  for (const SKeptList& kept : lists) {
    const QString time = QLocale().toString(QDateTime::fromMSecsSinceEpoch(kept.tBegun), QLocale::ShortFormat);
    const QString text =
        tr("%1: %2, entries: %3")
            .arg(time, Shown(platform::NameOf(kept.job.strInput)), QString::number(kept.job.entries.size()));
    connect(m_pLists->addAction(text), &QAction::triggered, this, [this, kept] { emit ListPressed(kept); });
  }
  if (m_pLists->isEmpty()) m_pLists->addAction(tr("None"))->setEnabled(false);
}

}  // namespace carvello
