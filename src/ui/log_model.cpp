#include "ui/log_model.h"

#include <iterator>

namespace carvello {

void CLogModel::Append(std::vector<std::string> lines) {
  if (lines.empty()) return;
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(lines.size()) - 1);
  m_lines.insert(m_lines.end(), std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
  endInsertRows();
}

void CLogModel::Clear() {
  beginResetModel();
  m_lines.clear();
  endResetModel();
}

int CLogModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant CLogModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::SizeHintRole) return m_lineSize;
  if (role == Qt::DisplayRole) return QString::fromStdString(m_lines[static_cast<std::size_t>(index.row())]);
  return {};
}

}  // namespace carvello
