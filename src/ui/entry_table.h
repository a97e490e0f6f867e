// CEntryTable: what the list of the dialog shows of entries: its columns, of which some are shown only when the user
// wants them, the texts in them, and what is told of a row under the mouse.
#pragma once

#include <QString>
#include <QStringList>
#include <unordered_map>
#include <vector>

#include "engine/entry_list.h"
#include "engine/input_frames.h"
#include "support/my_settings_store.h"

namespace carvello {

class CEntryTable {
 public:
  // Columns that are shown when they are wanted, in their order in the list.
  enum EExtra { Folder, Bits, FileSize, ExpectedSize, kExtras };

  // The settings must outlive this object; they keep which columns are wanted.
  explicit CEntryTable(CMySettingsStore& settings);

  bool IsShown(EExtra column) const { return m_shown[column]; }
  void Show(EExtra column, bool show);
  static QString Title(EExtra column);
  // Of all columns that are shown; the last one, for states, has none.
  QStringList Titles() const;

  // The recording that the entries are of.
  void SetRecording(const CRecordingSet& recording);
  // A text for each column, with times in UTC or local. What was shown before is not made anew, so that a list of
  // thousands can change often.
  std::vector<QStringList> Rows(const CEntryList& entries, bool utc);
  QString Tip(const OutputEntry& entry) const;

 private:
  QStringList Row(const OutputEntry& entry) const;
  QString ExtraText(EExtra column, const OutputEntry& entry) const;

  CMySettingsStore& m_settings;
  bool m_shown[kExtras] = {};
  CInputFrames m_input{{}, {}};
  bool m_bUtc = true;
  // Rows by entry, and what keeps those entries from making place for others at the same address.
  std::unordered_map<const OutputEntry*, QStringList> m_rows;
  CEntryList::Saved m_known;
};

// "3.0 MB", "1.25 GB": what FormatBytes gives.
QString BytesText(std::int64_t bytes);

}  // namespace carvello
