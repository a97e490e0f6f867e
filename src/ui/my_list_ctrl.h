// CMyMFCListCtrl: a list with columns. Whole rows are selected, also several, and the Delete key asks to delete them.
#pragma once

#include <QStringList>
#include <QTreeWidget>
#include <cstddef>
#include <vector>

namespace carvello {

class CMyMFCListCtrl : public QTreeWidget {
  Q_OBJECT

 public:
  explicit CMyMFCListCtrl(QWidget* parent = nullptr);

  void SetColumns(const QStringList& titles);
  // Replaces all rows, then sizes every column to its contents and header; every column but the last is 10 pixels
  // wider than that.
  void SetRows(const std::vector<QStringList>& rows);
  int RowCount() const { return topLevelItemCount(); }
  // Indices of the selected rows, ascending.
  std::vector<std::size_t> SelectedRows() const;
  bool HasSelection() const;

 signals:
  void DeletePressed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SizeColumns();
};

}  // namespace carvello
