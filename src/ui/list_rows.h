// CListRows: the rows of a list with columns, as texts. The cells of the last column have a tone besides.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <functional>
#include <vector>

#include "ui/readable_colours.h"

namespace carvello {

class CListRows : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum ERole { kToneRole = Qt::UserRole, kBriefRole };
  // What a row is, told under the mouse.
  using RowTip = std::function<QString(int row)>;

  explicit CListRows(QObject* pParent) : QAbstractTableModel(pParent) {}

  void SetTitles(const QStringList& titles);
  // The last cells begin empty, whatever the rows have there.
  void SetRows(const std::vector<QStringList>& rows);
  // False when that stands there already.
  bool SetLastCell(int row, const SToneText& text);
  // Without one, every cell tells its own text.
  void SetRowTip(RowTip tip) { m_tip = std::move(tip); }

  QString Text(int row, int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  bool IsLast(int column) const { return column == m_titles.size() - 1; }

  QStringList m_titles;
  std::vector<QStringList> m_rows;
  std::vector<SToneText> m_lastCells;
  RowTip m_tip;
};

}  // namespace carvello
