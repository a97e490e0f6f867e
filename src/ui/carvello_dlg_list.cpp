// The main dialog's list at work: its columns, menus and sums, editing an entry in its place, and quick entry.
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>
#include <set>

#include "engine/expected_size.h"
#include "support/formatting.h"
#include "ui/bandwidth_text.h"
#include "ui/carvello_dlg.h"
#include "ui/choice_finder.h"
#include "ui/list_sums.h"
#include "ui/meant_frequency.h"
#include "ui_carvello_dlg.h"

namespace carvello {

void CCarvelloDlg::ConnectList() {
  CMyMFCListCtrl& list = *m_ui->IDC_1008;
  MakeChoicesFindable(*this);
  connect(m_ui->buttonReplace, &QAbstractButton::clicked, this, &CCarvelloDlg::ReplaceEdited);
  connect(&list, &CMyMFCListCtrl::EditPressed, this, &CCarvelloDlg::EditEntry);
  connect(&list, &CMyMFCListCtrl::itemSelectionChanged, this, &CCarvelloDlg::LookAtEdited);
  connect(m_ui->IDC_1010, &CMyMFCMaskedEdit::FrequencyChanged, this, &CCarvelloDlg::OfferMeantFrequency);
  connect(m_ui->buttonMeant, &QAbstractButton::clicked, this, &CCarvelloDlg::TakeMeantFrequency);
  connect(&m_room, &CTargetRoom::Found, this, [this](const std::vector<SRoom>& rooms) {
    m_rooms = rooms;
    ShowSums();
  });
  connect(&m_job, &CJobRunner::RunningChanged, this, [this] {
    if (!m_job.IsRunning()) m_room.Ask();
  });
  connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
    // Room may have been made in another program.
    if (state == Qt::ApplicationActive && !m_job.IsRunning()) m_room.Ask();
  });
  list.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&list, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& spot) { ShowListMenu(m_ui->IDC_1008->viewport()->mapToGlobal(spot)); });
  list.header()->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(list.header(), &QWidget::customContextMenuRequested, this, [this](const QPoint& spot) {
    QMenu menu(this);
    AddColumnActions(menu);
    menu.exec(m_ui->IDC_1008->header()->mapToGlobal(spot));
  });
  list.SetRowTip([this](int row) {
    const auto index = static_cast<std::size_t>(row);
    return index < m_entries.Size() ? m_table.Tip(m_entries[index]) : QString();
  });
  list.SetColumns(m_table.Titles());
}

void CCarvelloDlg::AddColumnActions(QMenu& menu) {
  for (int i = 0; i < CEntryTable::kExtras; ++i) {
    const auto column = static_cast<CEntryTable::EExtra>(i);
    QAction* pAction = menu.addAction(CEntryTable::Title(column));
    pAction->setObjectName(QString("columnAction%1").arg(i));
    pAction->setCheckable(true);
    pAction->setChecked(m_table.IsShown(column));
    connect(pAction, &QAction::toggled, this, [this, column](bool show) { ShowColumn(column, show); });
  }
}

void CCarvelloDlg::ShowColumn(CEntryTable::EExtra column, bool show) {
  const std::vector<std::size_t> selected = m_ui->IDC_1008->SelectedRows();
  m_table.Show(column, show);
  m_ui->IDC_1008->SetRows({});
  m_ui->IDC_1008->SetColumns(m_table.Titles());
  ShowEntries();
  m_ui->IDC_1008->SelectRows(selected);
}

void CCarvelloDlg::ShowListMenu(const QPoint& spot) {
  CMyMFCListCtrl& list = *m_ui->IDC_1008;
  QMenu menu(this);
  const auto add = [&](const char* name, const QString& text, const QKeySequence& key, bool enabled, auto slot) {
    QAction* pAction = menu.addAction(text, this, slot);
    pAction->setObjectName(name);
    pAction->setShortcut(key);
    pAction->setEnabled(enabled);
  };
  const bool one = list.SelectedRows().size() == 1;
  add("actionEdit", tr("&Edit"), Qt::Key_F2, one,
      [this, &list] { EditEntry(static_cast<int>(list.SelectedRows()[0])); });
  add("actionDelete", tr("&Delete"), QKeySequence::Delete, list.HasSelection(), [this] { m_ui->IDC_1025->click(); });
  add("actionCopy", tr("&Copy"), QKeySequence::Copy, list.HasSelection(), [&list] { list.CopySelected(); });
  add("actionSelectAll", tr("Select &all"), QKeySequence::SelectAll, list.RowCount() > 0,
      [&list] { list.selectAll(); });
  menu.addSeparator();
  AddColumnActions(*menu.addMenu(tr("C&olumns")));
  menu.exec(spot);
}

void CCarvelloDlg::CountSums() {
  const CInputFrames input(m_input.recording);
  m_sums = {};
  m_sums.nEntries = m_entries.Size();
  for (std::size_t i = 0; i < m_entries.Size(); ++i) {
    m_sums.dSeconds += ExpectedSeconds(m_entries[i], input);
    m_sums.nBytes += ExpectedBytes(m_entries[i], input);
  }
  m_rooms.clear();
  m_room.Ask();
  ShowSums();
}

void CCarvelloDlg::ShowSums() {
  m_sums.rooms = m_rooms;
  const SToneText text = ListSumsText(m_sums);
  QFont font = m_ui->IDC_1027->font();
  font.setBold(text.tone != ETone::Plain);
  m_ui->labelSums->setFont(font);
  m_ui->labelSums->SetText(text);
  const QString shown = QString::fromStdString(text.strText);
  m_ui->labelSums->setToolTip(shown);
  m_ui->labelSums->setAccessibleName(shown.isEmpty() ? tr("Sums of the list") : tr("Sums of the list: %1").arg(shown));
}

std::vector<SRoomWanted> CCarvelloDlg::RoomWanted() const {
  const CInputFrames input(m_input.recording);
  std::vector<SRoomWanted> wanted;
  wanted.reserve(m_entries.Size());
  for (const OutputEntry* pEntry : m_entries.Pointers()) {
    wanted.push_back({pEntry->strFileName, pEntry->nFileSizeMB, ExpectedBytes(*pEntry, input), pEntry->format});
  }
  return wanted;
}

// The rows of the outputs that these are, or that the list had already.
void CCarvelloDlg::SelectKeys(const std::set<OutputKey>& keys) {
  std::vector<std::size_t> rows;
  for (std::size_t i = 0; i < m_entries.Size(); ++i) {
    if (keys.contains(KeyOf(m_entries[i]))) rows.push_back(i);
  }
  m_ui->IDC_1008->SelectRows(rows);
}

void CCarvelloDlg::EditEntry(int row) {
  const auto index = static_cast<std::size_t>(row);
  if (m_job.IsRunning() || index >= m_entries.Size() || !m_ui->IDC_1015->isEnabled()) return;
  m_ui->IDC_1008->SelectRows({index});
  m_pEdited = &m_entries[index];
  m_editedCut = EntryCut(*m_pEdited);
  m_fields.ShowCut(m_editedCut, IsUtc());
  m_fields.ShowStorage(*m_pEdited);
  m_editedTimes = m_fields.State();
  UpdateControlStates();
  m_ui->IDC_1010->setFocus(Qt::ShortcutFocusReason);
}

// It is edited as long as it is the selected one.
void CCarvelloDlg::LookAtEdited() {
  if (m_pEdited == nullptr) return;
  const std::vector<std::size_t> rows = m_ui->IDC_1008->SelectedRows();
  if (rows.size() == 1 && rows[0] < m_entries.Size() && &m_entries[rows[0]] == m_pEdited) return;
  m_pEdited = nullptr;
  UpdateControlStates();
}

void CCarvelloDlg::ReplaceEdited() {
  const std::vector<std::size_t> rows = m_ui->IDC_1008->SelectedRows();
  if (m_pEdited == nullptr || rows.size() != 1 || RefuseBandwidth()) return;
  SEntryFields fields = EntryFields();
  // Times that were not touched stay exactly those of the entry, also where the pickers cannot show them.
  SFieldState state = m_fields.State();
  state.nFrequency = m_editedTimes.nFrequency;
  state.nBandwidth = m_editedTimes.nBandwidth;
  if (state == m_editedTimes) {
    SCut cut = m_editedCut;
    cut.nFrequency = fields.nFrequency;
    cut.nBandwidth = fields.nBandwidth;
    fields = FieldsOf(cut, fields);
  }
  const auto problem = ReplaceEntry(rows[0], fields);
  if (!problem) {
    m_fields.Save(m_settings);
    m_ui->IDC_1008->setFocus();
    return;
  }
  AnswerProblem(*problem);
}

// Whether a bandwidth was typed that is none; it is told beside the button.
bool CCarvelloDlg::RefuseBandwidth() {
  if (!m_fields.RefusesBandwidth()) return false;
  const CBandwidthBox& box = *m_ui->IDC_1011;
  ShowHint(box.IsUnreadable() ? tr("\"%1\" is no bandwidth: type 12.5k, 10 kHz or 12500 Hz").arg(box.currentText())
                              : tr("A bandwidth of %1 cannot be cut: 10 Hz to %2")
                                    .arg(QString::fromStdString(BandwidthText(box.Bandwidth())),
                                         QString::fromStdString(FormatFrequency(m_input.recording.nSampleRate))));
  m_ui->IDC_1011->setFocus(Qt::OtherFocusReason);
  m_ui->IDC_1011->lineEdit()->selectAll();
  Beep();
  return true;
}

void CCarvelloDlg::OfferMeantFrequency() {
  const std::int64_t typed = m_fields.Frequency();
  m_meant = m_bInputValid ? MeantFrequency(typed, m_input.recording.nRadioCenterFreq, m_input.recording.nSampleRate)
                          : std::nullopt;
  m_ui->buttonMeant->setVisible(m_meant.has_value());
  if (!m_meant) return;
  const QString meant = QString::fromStdString(FormatFrequency64(*m_meant));
  const QString outside = tr("%1 is outside the recording").arg(QString::fromStdString(FormatFrequency64(typed)));
  m_ui->buttonMeant->setText(tr("&Is it %1?").arg(meant));
  m_ui->buttonMeant->setToolTip(outside);
  m_ui->buttonMeant->setAccessibleName(tr("%1: is it %2?").arg(outside, meant));
}

// An entry that was just added with what was typed is changed along.
void CCarvelloDlg::TakeMeantFrequency() {
  if (!m_meant) return;
  const std::int64_t meant = *m_meant;
  const std::int64_t typed = m_fields.Frequency();
  m_ui->IDC_1010->setFocus(Qt::ShortcutFocusReason);
  m_fields.SetFrequency(meant);
  const std::vector<std::size_t> rows = m_ui->IDC_1008->SelectedRows();
  if (rows.size() != 1 || m_entries[rows[0]].nOutputFrequency != typed) return;
  SCut cut = EntryCut(m_entries[rows[0]]);
  cut.nFrequency = meant;
  ChangeEntry(rows[0], cut);
}

}  // namespace carvello
