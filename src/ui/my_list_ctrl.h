// CMyMFCListCtrl: a list with columns. Whole rows are selected, also several, and the Delete key asks to delete them.
// While it is disabled nothing can be selected or deleted, but it can be read and scrolled like any other.
#pragma once

#include <QStringList>
#include <QTreeWidget>
#include <cstddef>
#include <vector>

#include "ui/readable_colours.h"

namespace carvello {

class CMyMFCListCtrl : public QTreeWidget {
  Q_OBJECT

 public:
  explicit CMyMFCListCtrl(QWidget* parent = nullptr);

  void SetColumns(const QStringList& titles);
  // Replaces all rows, then sizes every column to its contents and header; every column but the last is 10 pixels
  // wider than that.
  void SetRows(const std::vector<QStringList>& rows);
  // What stands in the last column of a row. Nothing is done when it stands there already. A text that is too long for
  // the column is cut at its end; its tool tip tells the whole.
  void SetLastCell(int row, const SToneText& text);
  // Scrolls sideways so far that the last column is in view.
  void ShowLastColumn();
  // Scrolls as a list that has the keyboard does; false when the key means nothing to it.
  bool ScrollByKey(int key);
  int RowCount() const { return topLevelItemCount(); }
  // Indices of the selected rows, ascending.
  std::vector<std::size_t> SelectedRows() const;
  bool HasSelection() const;

 signals:
  void DeletePressed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void SizeColumns();
  int TextMargin() const;
  int WidestLastColumn() const;
};

}  // namespace carvello
