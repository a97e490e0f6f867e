#include "ui/dialog_fixture.h"

#include <QDateEdit>
#include <QTest>
#include <QTimeEdit>

#include "dsp/start_dsp.h"
#include "ui/log_list.h"
#include "ui/test_desktop.h"
#include "ui/user_settings.h"

namespace carvello::test {

CSpectrumWindow::SourceMaker CBeepingDlg::SpectrumSource() const {
  return [pState = m_pSpectrum](const CRecordingSet& /*recording*/, bool keep, std::function<void()> changed) {
    ++pState->nOpened;
    pState->bKeeps = keep;
    pState->changed = std::move(changed);
    return std::make_unique<CFakeSpectrum>(pState);
  };
}

CDialogFixture::CDialogFixture() {
  ForgetSettings();
  std::filesystem::create_directory(PathOf(OutputFolder()));
  if (!StartDsp(m_dsp)) qFatal("no downconverter library beside the test");
}

CDialogFixture::~CDialogFixture() = default;

void CDialogFixture::SetPatience(std::chrono::milliseconds patience) {
  m_patience = patience;
}

CBeepingDlg& CDialogFixture::Make(const std::string& input) {
  m_pDialog.reset();
  m_pDialog = std::make_unique<CBeepingDlg>(m_dsp, input, 2U, m_patience);
  return *m_pDialog;
}

CBeepingDlg& CDialogFixture::Open(const std::string& input) {
  Make(input);
  m_pDialog->show();
  m_pDialog->activateWindow();
  if (!QTest::qWaitForWindowActive(m_pDialog.get())) qFatal("the dialog does not come up");
  return *m_pDialog;
}

void CDialogFixture::OpenReady(const SRecordingSpec& spec) {
  Open();
  SetPath(1000, WriteInput(spec));
  SetPath(1009, OutputFolder());
}

void CDialogFixture::Click(int id) {
  auto& button = Control<QAbstractButton>(id);
  // A check box or radio button is hit on its mark; its widget may be wider than that.
  const QPoint spot = button.isCheckable() ? QPoint(8, button.height() / 2) : button.rect().center();
  QTest::mouseClick(&button, Qt::LeftButton, {}, spot);
}

void CDialogFixture::Choose(int id, const QString& text) {
  auto& list = Control<QComboBox>(id);
  const int index = list.findText(text);
  if (index < 0) qFatal("no choice %s in %d", qPrintable(text), id);
  list.setCurrentIndex(index);
}

QStringList CDialogFixture::Choices(int id) {
  auto& list = Control<QComboBox>(id);
  QStringList texts;
  for (int i = 0; i < list.count(); ++i) texts << list.itemText(i);
  return texts;
}

void CDialogFixture::SetFrequency(std::int64_t frequency) {
  Control<CMyMFCMaskedEdit>(1010).SetFrequency(frequency);
}

void CDialogFixture::SetPath(int id, const std::string& path) {
  Control<CMyMFCEditBrowseCtrl>(id).SetPath(QString::fromStdString(path));
}

void CDialogFixture::Pick(int dateId, int timeId, const QDateTime& dateTime) {
  Control<QDateEdit>(dateId).setDate(dateTime.date());
  Control<QTimeEdit>(timeId).setTime(dateTime.time());
}

std::string CDialogFixture::WriteInput(const SRecordingSpec& spec, const std::string& name) {
  const std::string path = m_folder / name;
  WriteRecording(path, spec);
  return path;
}

CMySettingsStore CDialogFixture::Settings() const {
  return CMySettingsStore(OpenUserSettings());
}

QStringList CDialogFixture::Row(int row) {
  QStringList texts;
  for (int column = 0; column < List().ColumnCount(); ++column) texts << List().Cell(row, column);
  return texts;
}

QStringList CDialogFixture::Log() {
  QStringList texts;
  for (const std::string& line : Control<CLogList>(1022).Lines()) texts << QString::fromStdString(line).mid(10);
  return texts;
}

}  // namespace carvello::test
