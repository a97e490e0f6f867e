// What tests of the main dialog share: the real dialog for two processors, worked by clicks and keys, with settings, a
// recording and an output folder of its own.
#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QWidget>
#include <chrono>
#include <memory>
#include <string>

#include "dsp/dsp_binding.h"
#include "support/my_settings_store.h"
#include "support/temp_folder.h"
#include "ui/answers.h"
#include "ui/carvello_dlg.h"
#include "ui/fake_spectrum.h"
#include "ui/my_edit_browse_ctrl.h"
#include "ui/my_list_ctrl.h"
#include "ui/my_masked_edit.h"
#include "ui/recordings.h"

namespace carvello::test {

// The dialog as it is, but for the beep, which is counted, and for what the spectrum window shows.
class CBeepingDlg : public CCarvelloDlg {
 public:
  using CCarvelloDlg::CCarvelloDlg;
  int m_nBeeps = 0;
  std::shared_ptr<SFakeState> m_pSpectrum = std::make_shared<SFakeState>();

 protected:
  void Beep() override { ++m_nBeeps; }
  CSpectrumWindow::SourceMaker SpectrumSource() const override;
};

class CDialogFixture {
 public:
  CDialogFixture();  // forgets all settings
  ~CDialogFixture();
  CDialogFixture(const CDialogFixture&) = delete;
  CDialogFixture& operator=(const CDialogFixture&) = delete;

  // How long the dialogs that are opened from here on stand still for a disk. At first it is longer than any machine
  // takes for a file of a test, so that what is selected is there at once.
  void SetPatience(std::chrono::milliseconds patience);
  // Opens the dialog, closing one that was open.
  CBeepingDlg& Open(const std::string& input = {});
  // The dialog as it is before it is shown and any time has passed for it.
  CBeepingDlg& Make(const std::string& input = {});
  // Opens the dialog with a recording and an output folder selected.
  void OpenReady(const SRecordingSpec& spec = {});
  CBeepingDlg& Dialog() { return *m_pDialog; }
  void CloseDialog() { m_pDialog.reset(); }

  template <class T = QWidget>
  T& Control(int id) {
    auto* control = m_pDialog->findChild<T*>(QString("IDC_%1").arg(id));
    if (control == nullptr) qFatal("no control %d of this kind", id);
    return *control;
  }
  void Click(int id);
  QString Text(int id) { return Control<QLabel>(id).text(); }
  void Choose(int id, const QString& text);  // in a drop-down list
  QStringList Choices(int id);
  void SetFrequency(std::int64_t frequency);
  void SetPath(int id, const std::string& path);
  void Pick(int dateId, int timeId, const QDateTime& dateTime);

  std::string WriteInput(const SRecordingSpec& spec = {}, const std::string& name = "rec.wav");
  std::string OutputFolder() const { return m_folder / "out"; }
  const CTempFolder& Folder() const { return m_folder; }
  CMySettingsStore Settings() const;

  CMyMFCListCtrl& List() { return Control<CMyMFCListCtrl>(1008); }
  QStringList Row(int row);
  QStringList Log();  // without the time of day
  CAnswers& Answers() { return m_answers; }

 private:
  CTempFolder m_folder;
  DspBinding m_dsp;
  std::chrono::milliseconds m_patience = std::chrono::minutes(10);
  CAnswers m_answers;
  std::unique_ptr<CBeepingDlg> m_pDialog;
};

}  // namespace carvello::test
