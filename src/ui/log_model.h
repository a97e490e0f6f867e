// CLogModel: the lines of the log, for a view.
#pragma once

#include <QAbstractListModel>
#include <QColor>
#include <QFont>
#include <QSize>
#include <string>
#include <vector>

#include "ui/readable_colours.h"

namespace carvello {

// Bad for a line marked "[ERROR]" or that begins with "Error ", Caution for one marked "[WARNING]", else Plain.
ETone ToneOfLine(const std::string& line);

class CLogModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  const std::vector<std::string>& Lines() const { return m_lines; }
  void Append(std::vector<std::string> lines);
  void Clear();
  // The size of every line in the view, in pixels.
  void SetLineSize(const QSize& size) { m_lineSize = size; }

  // How lines that tell of errors and warnings stand out.
  void SetMarks(const QFont& font, const QColor& error, const QColor& warning);
  const QFont& MarkedFont() const { return m_markedFont; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<std::string> m_lines;
  QSize m_lineSize;
  QFont m_markedFont;
  QColor m_error;
  QColor m_warning;
};

}  // namespace carvello
