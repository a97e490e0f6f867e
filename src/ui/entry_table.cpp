#include "ui/entry_table.h"

#include <QCoreApplication>
#include <utility>

#include "engine/expected_size.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/readable.h"
#include "support/text.h"
#include "ui/input_texts.h"
#include "ui/output_choices.h"

namespace carvello {

namespace {

constexpr char kColumnsKey[] = "ListColumns";  // a bit for each

QString Text(const char* text) {
  return QCoreApplication::translate("CEntryTable", text);
}

QString FileSizeText(const OutputEntry& entry) {
  for (const SChoice& choice : FileSizeChoices()) {
    if (choice.nValue == FileSizeChoice(entry)) return QString::fromStdString(choice.strText);
  }
  return QString::fromStdString(Format("%u MB", entry.nFileSizeMB));
}

}  // namespace

QString BytesText(std::int64_t bytes) {
  return QString::fromStdString(FormatBytes(static_cast<double>(bytes)));
}

CEntryTable::CEntryTable(CMySettingsStore& settings) : m_settings(settings) {
  std::uint32_t shown = 0;
  m_settings.Read(kColumnsKey, shown);
  for (int column = 0; column < kExtras; ++column) m_shown[column] = (shown >> column & 1) != 0;
}

void CEntryTable::Show(EExtra column, bool show) {
  m_shown[column] = show;
  std::uint32_t shown = 0;
  for (int each = 0; each < kExtras; ++each) shown |= (m_shown[each] ? 1U : 0U) << each;
  m_settings.Write(kColumnsKey, shown);
  m_rows.clear();
}

QString CEntryTable::Title(EExtra column) {
  switch (column) {
    case Folder:
      return Text(QT_TRANSLATE_NOOP("CEntryTable", "Folder"));
    case Bits:
      return Text(QT_TRANSLATE_NOOP("CEntryTable", "Bits"));
    case FileSize:
      return Text(QT_TRANSLATE_NOOP("CEntryTable", "File size"));
    case ExpectedSize:
      return Text(QT_TRANSLATE_NOOP("CEntryTable", "Expected size"));
    case kExtras:
      break;
  }
  return {};
}

QStringList CEntryTable::Titles() const {
  QStringList titles = {Text(QT_TRANSLATE_NOOP("CEntryTable", "Centre")), Text(QT_TRANSLATE_NOOP("CEntryTable", "Bw")),
                        Text(QT_TRANSLATE_NOOP("CEntryTable", "Start")),
                        Text(QT_TRANSLATE_NOOP("CEntryTable", "Finish")),
                        Text(QT_TRANSLATE_NOOP("CEntryTable", "Filename"))};
  for (int column = 0; column < kExtras; ++column) {
    if (m_shown[column]) titles << Title(static_cast<EExtra>(column));
  }
  return titles << QString();
}

void CEntryTable::SetRecording(const CRecordingSet& recording) {
  m_input = CInputFrames(recording);
  m_rows.clear();
  m_known.clear();
}

std::vector<QStringList> CEntryTable::Rows(const CEntryList& entries, bool utc) {
  if (std::exchange(m_bUtc, utc) != utc) m_rows.clear();
  std::unordered_map<const OutputEntry*, QStringList> made;
  std::vector<QStringList> rows;
  made.reserve(entries.Size());
  rows.reserve(entries.Size());
  for (const OutputEntry* pEntry : entries.Pointers()) {
    const auto known = m_rows.find(pEntry);
    rows.push_back(known == m_rows.end() ? Row(*pEntry) : known->second);
    made.emplace(pEntry, rows.back());
  }
  m_rows = std::move(made);
  m_known = entries.Save();
  return rows;
}

QStringList CEntryTable::Row(const OutputEntry& entry) const {
  QStringList row;
  for (const std::string& text :
       {GroupDigits(entry.nOutputFrequency), FormatFrequency(entry.nOutputSampleRate),
        DateTimeText(entry.tStart, m_bUtc), DateTimeText(entry.tEnd, m_bUtc), entry.strDisplayName}) {
    row << QString::fromStdString(text);
  }
  for (int column = 0; column < kExtras; ++column) {
    if (m_shown[column]) row << ExtraText(static_cast<EExtra>(column), entry);
  }
  return row << QString();
}

QString CEntryTable::ExtraText(EExtra column, const OutputEntry& entry) const {
  switch (column) {
    case Folder:
      return QString::fromStdString(Printable(platform::FolderOf(entry.strFileName)));
    case Bits:
      return QString::number(entry.nBitsPerSample);
    case FileSize:
      return FileSizeText(entry);
    case ExpectedSize:
      return BytesText(ExpectedBytes(entry, m_input));
    case kExtras:
      break;
  }
  return {};
}

QString CEntryTable::Tip(const OutputEntry& entry) const {
  const auto shown = [](const std::string& text) { return QString::fromStdString(Printable(text)); };
  return Text(QT_TRANSLATE_NOOP("CEntryTable",
                                "%1\n%2 to %3\nFile name: %4\nFolder: %5\nSample size: %6 bit\nFile size: %7\n"
                                "Expected size: %8"))
      .arg(shown(entry.strTitle), shown(DateTimeText(entry.tStart, m_bUtc)), shown(DateTimeText(entry.tEnd, m_bUtc)),
           shown(entry.strDisplayName), ExtraText(Folder, entry), ExtraText(Bits, entry), ExtraText(FileSize, entry),
           ExtraText(ExpectedSize, entry));
}

}  // namespace carvello
