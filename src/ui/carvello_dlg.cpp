#include "ui/carvello_dlg.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <algorithm>

#include "input/recording_names.h"
#include "support/text.h"
#include "support/version.h"
#include "ui/control_states.h"
#include "ui/english_texts.h"
#include "ui/field_scroller.h"
#include "ui/file_manager.h"
#include "ui/fixed_font.h"
#include "ui/mnemonics.h"
#include "ui/resources.h"
#include "ui/spoken_text.h"
#include "ui/system_command.h"
#include "ui/user_settings.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {

constexpr char kGeometryKey[] = "Geometry";

// How the width is shared.
constexpr int kListShare = 7;
constexpr int kLogShare = 3;

constexpr int kRoomBehindNames = 3;  // pixels

constexpr int kCountLabel = 1027;
constexpr int kSourceLabel = 1036;

constexpr unsigned kSystemCommandMask = 0xFFF0;  // the lower bits are the system's own
constexpr unsigned kAboutCommand = 0x0010;

// Timer 100 of the dialog: when the window is there, the input path loses its selection highlight.
constexpr int kDeselectDelayMilliseconds = 100;

// A run that goes on, or whose next batch is due, is not left. One that waits for a disk may be.
bool HoldsOpen(const CJobRunner& job) {
  return job.IsBusy() && !job.IsPreparing() && !job.IsStopping();
}

// Of the kinds of files that are recordings; their endings by themselves would be more than a line can tell.
QString InputFilters() {
  QString filters = CCarvelloDlg::tr("WAV recording files (*.WAV)|*.WAV|Winradio files (*.DDC)|*.DDC||");
  filters.chop(1);  // more follow
  const QString sigMf = QStringLiteral("*.sigmf-meta;*.sigmf-data;*.sigmf;*.sigmf-collection");
  const QString sdriq = QStringLiteral("*.sdriq");
  QStringList raw;
  for (const std::string_view ending : RawEndings()) raw << QStringLiteral("*.%1").arg(QLatin1StringView(ending));
  const QString all = QStringList{"*.wav", "*.ddc", sigMf, sdriq, raw.join(';')}.join(';');
  for (const auto& [name, patterns] :
       {std::pair(CCarvelloDlg::tr("All recordings"), all),
        std::pair(CCarvelloDlg::tr("SigMF recordings (*.sigmf-meta, …)"), sigMf),
        std::pair(CCarvelloDlg::tr("SDRangel files (*.sdriq)"), sdriq),
        std::pair(CCarvelloDlg::tr("Raw samples (*.cf32, *.cs16, *.cu8, …)"), raw.join(';')),
        std::pair(CCarvelloDlg::tr("All files"), QStringLiteral("*"))}) {
    filters += QStringLiteral("%1|%2|").arg(name, patterns);
  }
  return filters + QLatin1Char('|');
}

std::unique_ptr<Ui::CCarvelloDlg> BuildControls(CCarvelloDlg& dialog) {
  auto ui = std::make_unique<Ui::CCarvelloDlg>();
  ui->setupUi(&dialog);
  return ui;
}

}  // namespace

CCarvelloDlg::CCarvelloDlg(const DspBinding& dsp, const std::string& input, unsigned processors,
                           std::chrono::milliseconds patience)
    : QDialog(nullptr, Qt::Window),
      m_ui(BuildControls(*this)),
      m_patience(patience),
      m_settings(OpenUserSettings()),
      m_fields(*m_ui),
      m_messages(this),
      m_job(dsp, m_messages, m_entries, processors, this, patience),
      m_taskbar(CreateTaskbarProgress(this)),
      m_place(*this, kGeometryKey),
      m_pAnnouncer(new CAnnouncer(this)),
      m_kept(KeptListsFolder(), TellKeepProblem()),
      m_inputWork(patience),
      m_folderWork(patience),
      m_fileWork(patience),
      m_keptWork(patience),
      m_repairWork(patience) {
  m_clock.start();
  PrepareControls();
  ConnectControls();
  ConnectList();
  ConnectDrops();
  ConnectSpectrum();
  ConnectKept();
  ConnectJobFiles();
  ConnectFacts();
  ConnectWaiting();
  ConnectUnattended();
  ClearLog();
  WriteReadyLines();
  UpdateControlStates();
  RestorePaths(NamesJob(input) ? std::string() : input);
  if (NamesJob(input)) {
    // When the window is there, for questions may follow.
    QTimer::singleShot(0, this, [this, input] { OpenJobFile(input); });
  }
  m_place.Restore();
  ShareWidth();
  QTimer::singleShot(kDeselectDelayMilliseconds, this, [this] {
    m_ui->IDC_1000->deselect();
    m_ui->IDC_1000->setCursorPosition(m_ui->IDC_1000->cursorPosition());
  });
}

CCarvelloDlg::~CCarvelloDlg() = default;

void CCarvelloDlg::PrepareControls() {
  setWindowTitle(QString::fromStdString(
      Format("%s v%s", VersionValue("ProductName").c_str(), VersionValue("ProductVersion").c_str())));
  setWindowIcon(ProgramIcon());
  m_ui->IDC_1000->SetFileBrowse(InputFilters());
  m_ui->IDC_1009->SetFolderBrowse(tr("Select the folder where the output files are created"));
  for (CMyMFCEditBrowseCtrl* pField : {m_ui->IDC_1000, m_ui->IDC_1009}) {
    pField->SetChooser([](QWidget* pParent, const CMyMFCEditBrowseCtrl::SBrowse& browse, const QString& path) {
      return CMyMFCEditBrowseCtrl::AskWithDialog(pParent, browse, FolderToBegin(path));
    });
  }

  m_fixedFont = FixedPitchFont();
  m_ui->IDC_1010->setFont(m_fixedFont);
  m_ui->IDC_1008->setFont(m_fixedFont);
  m_ui->IDC_1022->setFont(m_fixedFont);
  m_ui->IDC_1026->Load();
  MakeMnemonicsImmediate(*this);
  m_ui->IDC_1011->lineEdit()->setAccessibleName(m_ui->IDC_1011->accessibleName());  // which has the keyboard
  // Some texts are painted wider than the toolkit reckons, by what their letters have between them.
  for (QLabel* pLabel : findChildren<QLabel*>(QRegularExpression(QStringLiteral("^label_")))) {
    pLabel->setContentsMargins(0, 0, kRoomBehindNames, 0);
  }

  bool utc = true;
  m_settings.Read("UTC", utc);
  m_ui->IDC_1034->setChecked(utc);
  bool onePass = false;
  m_settings.Read("OnePass", onePass);
  m_ui->checkOnePass->setChecked(onePass);
  m_job.SetOnePass(onePass);
  ShowSpoken(*m_ui->IDC_1027, InLanguage(Format("Maximum entries: %d", static_cast<int>(m_job.MaxEntries()))));
  // There is nothing to tell before the first job, but the longest text has its place from the beginning.
  m_ui->IDC_1021->setMinimumWidth(QLabel("100.00%", this).sizeHint().width());
  QSizePolicy policy = m_ui->IDC_1021->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  m_ui->IDC_1021->setSizePolicy(policy);
  m_ui->IDC_1021->hide();

  // On a low screen the fields scroll; the list, Start and Stop stay where they are.
  new CFieldScroller(*m_ui->leftLayout, {m_ui->inputGroup, m_ui->outputGroup});
}

// Most for the list, whose rows are wider than the lines of the log; from there on, they grow in the same way.
void CCarvelloDlg::ShareWidth() {
  const int log = std::max(m_ui->logGroup->minimumSizeHint().width(), width() * kLogShare / (kLogShare + kListShare));
  m_ui->splitter->setSizes({width() - log, log});
  m_ui->splitter->setStretchFactor(0, kListShare);
  m_ui->splitter->setStretchFactor(1, kLogShare);
}

void CCarvelloDlg::ConnectControls() {
  connect(m_ui->IDC_1000, &CMyMFCEditBrowseCtrl::PathChanged, this, &CCarvelloDlg::InputPathChanged);
  connect(m_ui->IDC_1009, &CMyMFCEditBrowseCtrl::PathChanged, this, &CCarvelloDlg::OutputFolderChanged);
  connect(m_ui->IDC_1032, &QAbstractButton::clicked, this, [this] { ShowFileInFolder(this, Input(), m_fileWork); });
  connect(m_ui->IDC_1033, &QAbstractButton::clicked, this, &CCarvelloDlg::ExploreOutputFolder);
  connect(m_ui->IDC_1034, &QAbstractButton::clicked, this, &CCarvelloDlg::UtcClicked);
  connect(m_ui->IDC_1035, &QAbstractButton::clicked, this,
          [this] { m_fields.SetFrequency(m_input.recording.nRadioCenterFreq); });
  for (const QAbstractButton* mode : {m_ui->IDC_1085, m_ui->IDC_1086, m_ui->IDC_1083, m_ui->IDC_1084, m_ui->IDC_1087}) {
    connect(mode, &QAbstractButton::toggled, this, &CCarvelloDlg::UpdateControlStates);
  }

  connect(m_ui->IDC_1015, &QAbstractButton::clicked, this, &CCarvelloDlg::AddEntry);
  connect(m_ui->IDC_1016, &QAbstractButton::clicked, this, &CCarvelloDlg::AddSequence);
  connect(m_ui->checkOnePass, &QAbstractButton::clicked, this, &CCarvelloDlg::OnePassClicked);
  connect(m_ui->IDC_1025, &QAbstractButton::clicked, this, &CCarvelloDlg::DeleteSelectedEntries);
  connect(m_ui->IDC_1008, &CMyMFCListCtrl::DeletePressed, m_ui->IDC_1025, &QAbstractButton::click);
  connect(m_ui->IDC_1008, &CMyMFCListCtrl::itemSelectionChanged, this, &CCarvelloDlg::UpdateControlStates);
  connect(m_ui->IDC_1017, &QAbstractButton::clicked, this, [this] {
    LeaveState(ListState());
    ResetEntries();
  });

  connect(m_ui->IDC_1018, &QAbstractButton::clicked, this, &CCarvelloDlg::Start);
  connect(m_ui->IDC_1019, &QAbstractButton::clicked, &m_job, &CJobRunner::Stop);
  connect(&m_job, &CJobRunner::Starting, this, &CCarvelloDlg::JobStarting);
  connect(&m_job, &CJobRunner::Started, this, &CCarvelloDlg::JobStarted);
  connect(&m_job, &CJobRunner::AccountChanged, this, &CCarvelloDlg::ShowAccount);
  connect(&m_job, &CJobRunner::RunningChanged, this, &CCarvelloDlg::UpdateControlStates);
  connect(&m_job, &CJobRunner::EntriesRemoved, this, &CCarvelloDlg::ShowEntries);
  // As if the user had clicked, and after what is happening now.
  connect(&m_job, &CJobRunner::NextBatch, m_ui->IDC_1018, &QAbstractButton::click, Qt::QueuedConnection);

  connect(&m_messages, &CPostedMessages::LogPosted, this,
          [this](const std::string& worker, const std::string& text) { m_ui->IDC_1022->AddLine(worker, text); });
  connect(m_ui->IDC_1022, &CLogList::ErrorAdded, m_pAnnouncer, &CAnnouncer::Announce);
  connect(&m_messages, &CPostedMessages::ProgressPosted, this, &CCarvelloDlg::ShowProgress);
  connect(m_ui->IDC_1023, &QAbstractButton::clicked, this, &CCarvelloDlg::ViewLogAsText);
  connect(m_ui->IDC_1024, &QAbstractButton::clicked, m_ui->IDC_1026, &CMyRichEditCtrl::ShowHelp);
}

void CCarvelloDlg::reject() {
  if (HoldsOpen(m_job) || (m_job.IsStopping() && !MayLeaveJob())) {
    Beep();
    return;
  }
  const std::size_t unsettled = UnsettledEntries();
  Settle(unsettled == 0 ? EClosing::Close : AskBeforeClosing(this, unsettled, m_kept.IsWanted()), [this](bool closes) {
    if (closes) Close();
  });
}

void CCarvelloDlg::Close() {
  // A run may have begun below the question.
  if (HoldsOpen(m_job)) {
    Beep();
    return;
  }
  if (m_job.IsPreparing()) m_job.Stop();
  m_place.Save();
  QDialog::reject();
}

void CCarvelloDlg::keyPressEvent(QKeyEvent* event) {
  // No button is the default one, so Enter does nothing wherever it is pressed.
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return;
  if (event->key() == Qt::Key_Escape && GiveUpWaiting()) return;
  // From any field: what was just added has the selection.
  if (event->key() == Qt::Key_F2) {
    const std::vector<std::size_t> rows = m_ui->IDC_1008->SelectedRows();
    if (rows.size() == 1) EditEntry(static_cast<int>(rows[0]));
    return;
  }
  // During a run the list cannot be gone to, but it can be read.
  if (m_job.IsRunning() && m_ui->IDC_1008->ScrollByKey(event->key())) return;
  QDialog::keyPressEvent(event);
}

bool CCarvelloDlg::nativeEvent(const QByteArray& eventType, void* message, qintptr* result) {
  if (const auto command = SystemCommandOf(eventType, message)) OnSystemCommand(*command);
  return QDialog::nativeEvent(eventType, message, result);
}

void CCarvelloDlg::OnSystemCommand(unsigned command) {
  if ((command & kSystemCommandMask) == kAboutCommand) ShowAbout();
}

void CCarvelloDlg::Beep() {
  QApplication::beep();
}

void CCarvelloDlg::UpdateControlStates() {
  QWidget* pFocus = focusWidget();
  SDialogState state;
  state.bInputValid = m_bInputValid;
  state.bOutputChosen = m_bOutputChosen;
  state.bRunning = m_job.IsRunning();
  state.bRowSelected = m_ui->IDC_1008->HasSelection();
  state.bHasRows = m_entries.Size() > 0;
  state.nStartMode = m_fields.StartMode();
  state.nEndMode = m_fields.EndMode();
  // Controls are named "IDC_<id>" and their parts "IDC_<id>_<part>"; the texts that belong to them are "label_<id>".
  for (QWidget* control : findChildren<QWidget*>()) {
    const QString name = control->objectName();
    const bool named = name.startsWith("IDC_") || name.startsWith("label_");
    if (named) control->setEnabled(IsControlEnabled(name.section('_', 1, 1).toInt(), state));
  }
  m_ui->buttonReplace->setEnabled(m_ui->IDC_1015->isEnabled() && m_pEdited != nullptr);
  m_ui->buttonMeant->setEnabled(m_ui->IDC_1015->isEnabled());
  m_ui->checkOnePass->setEnabled(IsControlEnabled(kCountLabel, state));  // it says how to count
  m_ui->checkUnattended->setEnabled(!state.bRunning);
  m_ui->buttonSpectrum->setEnabled(IsControlEnabled(kSourceLabel, state));  // it shows what is known of the input
  m_ui->buttonJob->setEnabled(!state.bRunning);
  m_pJobMenu->SetAllowed(!state.bRunning, state.bHasRows, !Input().empty());
  m_ui->partChoice->setEnabled(!state.bRunning);
  m_ui->stripFacts->setEnabled(!state.bRunning);
  m_ui->stripRepair->setEnabled(!state.bRunning);
  m_ui->stripList->setEnabled(!state.bRunning);
  m_ui->stripFolder->setEnabled(!state.bRunning);
  if (m_pSpectrum != nullptr) m_pSpectrum->SetAllowed(!state.bRunning, m_ui->IDC_1015->isEnabled());
  KeepFocus(state.bRunning, pFocus);
}

// What the user was at has the keyboard again after a run, unless the user went elsewhere meanwhile. The toolkit would
// leave it to the input, where the next key chooses another recording. `pFocus`: what had it before the change.
void CCarvelloDlg::KeepFocus(bool running, QWidget* pFocus) {
  if (std::exchange(m_bWasRunning, running) == running) return;
  if (running) {
    m_pFocusBefore = pFocus;
    m_pFocusDuring = focusWidget();
    return;
  }
  if (pFocus != nullptr && pFocus->isEnabled() && pFocus != m_pFocusDuring) return;
  QWidget* pBack = m_pFocusBefore != nullptr && m_pFocusBefore->isEnabled() ? m_pFocusBefore.data() : m_ui->IDC_1008;
  pBack->setFocus();
}

bool CCarvelloDlg::IsUtc() const {
  return m_ui->IDC_1034->isChecked();
}

std::string CCarvelloDlg::Input() const {
  return m_ui->IDC_1000->Path().toStdString();
}

std::string CCarvelloDlg::OutputFolder() const {
  return m_ui->IDC_1009->Path().toStdString();
}

}  // namespace carvello
