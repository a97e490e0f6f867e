#include "ui/log_model.h"

#include <iterator>

namespace carvello {

ETone ToneOfLine(const std::string& line) {
  // The second is what a writer says of a file that it cannot create.
  for (const char* mark : {"[ERROR]", "> Error "}) {
    if (line.find(mark) != std::string::npos) return ETone::Bad;
  }
  return line.find("[WARNING]") != std::string::npos ? ETone::Caution : ETone::Plain;
}

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

void CLogModel::SetMarks(const QFont& font, const QColor& error, const QColor& warning) {
  m_markedFont = font;
  m_error = error;
  m_warning = warning;
}

int CLogModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant CLogModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::SizeHintRole) return m_lineSize;
  const std::string& line = m_lines[static_cast<std::size_t>(index.row())];
  if (role == Qt::DisplayRole) return QString::fromStdString(line);
  if (role != Qt::ForegroundRole && role != Qt::FontRole) return {};
  const ETone tone = ToneOfLine(line);
  if (tone == ETone::Plain) return {};
  if (role == Qt::FontRole) return m_markedFont;
  return tone == ETone::Bad ? m_error : m_warning;
}

}  // namespace carvello
