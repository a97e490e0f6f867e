// CLogModel: the lines of the log, for a view.
#pragma once

#include <QAbstractListModel>
#include <QSize>
#include <string>
#include <vector>

namespace carvello {

class CLogModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  const std::vector<std::string>& Lines() const { return m_lines; }
  void Append(std::vector<std::string> lines);
  void Clear();
  // The size of every line in the view, in pixels.
  void SetLineSize(const QSize& size) { m_lineSize = size; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<std::string> m_lines;
  QSize m_lineSize;
};

}  // namespace carvello
