#include "ui/carvello_dlg.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QSettings>

#include "support/text.h"
#include "support/version.h"
#include "ui/about_dlg.h"
#include "ui/control_states.h"
#include "ui/file_manager.h"
#include "ui/fixed_font.h"
#include "ui/mnemonics.h"
#include "ui/resources.h"
#include "ui/system_command.h"
#include "ui/user_settings.h"
#include "ui_carvello_dlg.h"

namespace carvello {

namespace {

constexpr char kInputFilter[] = "WAV recording files (*.WAV)|*.WAV|Winradio files (*.DDC)|*.DDC||";
constexpr char kFolderTitle[] = "Select the folder where the output files are created";
constexpr char kGeometryKey[] = "Geometry";

constexpr unsigned kSystemCommandMask = 0xFFF0;  // the lower bits are the system's own
constexpr unsigned kAboutCommand = 0x0010;

// Timer 100 of the dialog: when the window is there, the input path loses its selection highlight.
constexpr int kDeselectDelayMilliseconds = 100;

std::unique_ptr<Ui::CCarvelloDlg> BuildControls(CCarvelloDlg& dialog) {
  auto ui = std::make_unique<Ui::CCarvelloDlg>();
  ui->setupUi(&dialog);
  return ui;
}

std::string AbsolutePath(const std::string& path) {
  return QDir::toNativeSeparators(QFileInfo(QString::fromStdString(path)).absoluteFilePath()).toStdString();
}

}  // namespace

CCarvelloDlg::CCarvelloDlg(const DspBinding& dsp, const std::string& input, unsigned processors)
    : QDialog(nullptr, Qt::Window),
      m_ui(BuildControls(*this)),
      m_settings(OpenUserSettings()),
      m_fields(*m_ui),
      m_messages(this),
      m_job(dsp, m_messages, m_entries, processors, this),
      m_taskbar(CreateTaskbarProgress(this)) {
  m_clock.start();
  PrepareControls();
  ConnectControls();
  ClearLog();
  WriteReadyLines();
  UpdateControlStates();
  RestorePaths(input);
  restoreGeometry(QSettings().value(kGeometryKey).toByteArray());
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
  m_ui->IDC_1000->SetFileBrowse(kInputFilter);
  m_ui->IDC_1009->SetFolderBrowse(kFolderTitle);

  m_fixedFont = FixedPitchFont();
  m_ui->IDC_1010->setFont(m_fixedFont);
  m_ui->IDC_1008->setFont(m_fixedFont);
  m_ui->IDC_1022->setFont(m_fixedFont);
  m_ui->IDC_1008->SetColumns({"Centre", "Bw", "Start", "Finish", "Filename", ""});
  m_ui->IDC_1026->Load();
  MakeMnemonicsImmediate(*this);

  bool utc = true;
  m_settings.Read("UTC", utc);
  m_ui->IDC_1034->setChecked(utc);
  m_ui->IDC_1027->setText(QString::fromStdString(Format("Maximum entries: %d", static_cast<int>(m_job.MaxEntries()))));
  // There is nothing to tell before the first job, but the longest text has its place from the beginning.
  m_ui->IDC_1021->setMinimumWidth(QLabel("100.00%", this).sizeHint().width());
  QSizePolicy policy = m_ui->IDC_1021->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  m_ui->IDC_1021->setSizePolicy(policy);
  m_ui->IDC_1021->hide();

  // The left half as wide as its fields need, the log all the rest; from there on, both grow alike.
  const int left = m_ui->leftHalf->sizeHint().width();
  m_ui->splitter->setSizes({left, width() - left});
}

void CCarvelloDlg::ConnectControls() {
  connect(m_ui->IDC_1000, &CMyMFCEditBrowseCtrl::PathChanged, this, &CCarvelloDlg::SelectInput);
  connect(m_ui->IDC_1009, &CMyMFCEditBrowseCtrl::PathChanged, this, &CCarvelloDlg::OutputFolderChanged);
  connect(m_ui->IDC_1032, &QAbstractButton::clicked, this, [this] { ShowFileInFolder(this, Input()); });
  connect(m_ui->IDC_1033, &QAbstractButton::clicked, this, &CCarvelloDlg::ExploreOutputFolder);
  connect(m_ui->IDC_1034, &QAbstractButton::clicked, this, &CCarvelloDlg::UtcClicked);
  connect(m_ui->IDC_1035, &QAbstractButton::clicked, this,
          [this] { m_fields.SetFrequency(m_input.recording.nRadioCenterFreq); });
  for (const QAbstractButton* mode : {m_ui->IDC_1085, m_ui->IDC_1086, m_ui->IDC_1083, m_ui->IDC_1084, m_ui->IDC_1087}) {
    connect(mode, &QAbstractButton::toggled, this, &CCarvelloDlg::UpdateControlStates);
  }

  connect(m_ui->IDC_1015, &QAbstractButton::clicked, this, &CCarvelloDlg::AddEntry);
  connect(m_ui->IDC_1016, &QAbstractButton::clicked, this, &CCarvelloDlg::AddSequence);
  connect(m_ui->IDC_1025, &QAbstractButton::clicked, this, &CCarvelloDlg::DeleteSelectedEntries);
  connect(m_ui->IDC_1008, &CMyMFCListCtrl::DeletePressed, m_ui->IDC_1025, &QAbstractButton::click);
  connect(m_ui->IDC_1008, &QTreeWidget::itemSelectionChanged, this, &CCarvelloDlg::UpdateControlStates);
  connect(m_ui->IDC_1017, &QAbstractButton::clicked, this, &CCarvelloDlg::ResetEntries);

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
  connect(&m_messages, &CPostedMessages::ProgressPosted, this, &CCarvelloDlg::ShowProgress);
  connect(m_ui->IDC_1023, &QAbstractButton::clicked, this, &CCarvelloDlg::ViewLogAsText);
  connect(m_ui->IDC_1024, &QAbstractButton::clicked, m_ui->IDC_1026, &CMyRichEditCtrl::ShowHelp);
}

void CCarvelloDlg::RestorePaths(const std::string& input) {
  // Remembered with its folder: the next start may be from another one.
  std::string path = input.empty() ? input : AbsolutePath(input);
  if (path.empty()) m_settings.Read("InputFile", path);
  // A given input is selected even when it cannot be read, so that the log tells why.
  if (!path.empty() && (!input.empty() || platform::IsReadable(path))) {
    m_ui->IDC_1000->SetPath(QString::fromStdString(path));
  }
  std::string folder;
  m_settings.Read("OutputFolder", folder);
  if (!folder.empty() && platform::IsReadable(folder)) m_ui->IDC_1009->SetPath(QString::fromStdString(folder));
}

void CCarvelloDlg::reject() {
  if (m_job.IsRunning()) {
    Beep();
    return;
  }
  QSettings().setValue(kGeometryKey, saveGeometry());
  QDialog::reject();
}

void CCarvelloDlg::keyPressEvent(QKeyEvent* event) {
  // No button is the default one, so Enter does nothing wherever it is pressed.
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return;
  // During a run the list cannot be gone to, but it can be read.
  if (m_job.IsRunning() && m_ui->IDC_1008->ScrollByKey(event->key())) return;
  QDialog::keyPressEvent(event);
}

bool CCarvelloDlg::nativeEvent(const QByteArray& eventType, void* message, qintptr* result) {
  if (const auto command = SystemCommandOf(eventType, message)) OnSystemCommand(*command);
  return QDialog::nativeEvent(eventType, message, result);
}

void CCarvelloDlg::OnSystemCommand(unsigned command) {
  if ((command & kSystemCommandMask) == kAboutCommand) CAboutDlg(this).exec();
}

void CCarvelloDlg::Beep() {
  QApplication::beep();
}

void CCarvelloDlg::UpdateControlStates() {
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
