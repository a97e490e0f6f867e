#include "ui/list_rows.h"

#include "ui/english_texts.h"

namespace carvello {

void CListRows::SetTitles(const QStringList& titles) {
  beginResetModel();
  m_titles = titles;
  endResetModel();
}

void CListRows::SetRows(const std::vector<QStringList>& rows) {
  beginResetModel();
  m_rows = rows;
  m_lastCells.assign(rows.size(), {});
  endResetModel();
}

bool CListRows::SetLastCell(int row, const SToneText& text) {
  SToneText& cell = m_lastCells[static_cast<std::size_t>(row)];
  if (cell == text) return false;
  cell = text;
  const QModelIndex changed = index(row, static_cast<int>(m_titles.size()) - 1);
  emit dataChanged(changed, changed);
  return true;
}

QString CListRows::Text(int row, int column) const {
  const auto index = static_cast<std::size_t>(row);
  if (IsLast(column)) return InLanguage(m_lastCells[index].strText);
  return m_rows[index].value(column);
}

int CListRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CListRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
}

QVariant CListRows::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const bool last = IsLast(index.column());
  const SToneText& cell = m_lastCells[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return Text(index.row(), index.column());
    case Qt::AccessibleTextRole:
      return last ? Text(index.row(), index.column()) : QVariant();
    case Qt::ToolTipRole:
      // What is told of a row is not what became of it, and a column can be made narrower than its texts.
      return last || !m_tip ? Text(index.row(), index.column()) : m_tip(index.row());
    case kToneRole:
      return last ? static_cast<int>(cell.tone) : QVariant();
    case kBriefRole:
      return last ? InLanguage(cell.strBrief) : QVariant();
    default:
      return {};
  }
}

QVariant CListRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return m_titles.value(section);
  return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags CListRows::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

}  // namespace carvello
