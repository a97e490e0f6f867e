// CMyMFCListCtrl: a list with columns. Whole rows are selected, also several; the Delete key asks to delete them,
// Enter, F2 and a double click to edit one, and Ctrl+C copies them. While it is disabled nothing can be selected or
// deleted, but it can be read and scrolled like any other.
#pragma once

#include <QHash>
#include <QStringList>
#include <QTreeView>
#include <cstddef>
#include <vector>

#include "ui/list_rows.h"
#include "ui/readable_colours.h"

namespace carvello {

class CMyMFCListCtrl : public QTreeView {
  Q_OBJECT

 public:
  explicit CMyMFCListCtrl(QWidget* parent = nullptr);

  // A few rows; all the rest is what the layout has to give.
  QSize minimumSizeHint() const override;
  QSize sizeHint() const override { return minimumSizeHint(); }

  // The last column is that of SetLastCell.
  void SetColumns(const QStringList& titles);
  // Replaces all rows, then sizes every column to its contents and header; every column but the last is 10 pixels
  // wider than that. None is selected, and the keyboard goes on from where it was.
  void SetRows(const std::vector<QStringList>& rows);
  // What stands in the last column of a row. Nothing is done when it stands there already. A text that is too long for
  // the column is told in brief and, where that is too long as well, cut at its end; its tool tip tells the whole.
  void SetLastCell(int row, const SToneText& text);
  // Scrolls sideways so far that the last column is in view.
  void ShowLastColumn();
  // Scrolls as a list that has the keyboard does; false when the key means nothing to it.
  bool ScrollByKey(int key);
  // What is told of a row under the mouse, in place of the text of a cell; that of the last column stays.
  void SetRowTip(CListRows::RowTip tip) { m_pRows->SetRowTip(std::move(tip)); }
  int RowCount() const { return m_pRows->rowCount(); }
  int ColumnCount() const { return m_pRows->columnCount(); }
  QString Title(int column) const;
  QString Cell(int row, int column) const { return m_pRows->Text(row, column); }
  // Indices of the selected rows, ascending.
  std::vector<std::size_t> SelectedRows() const;
  bool HasSelection() const;
  // These rows and no others; the first of them is brought into view.
  void SelectRows(const std::vector<std::size_t>& rows);
  // The row that the keyboard is at, -1 for none.
  int CurrentRow() const { return currentIndex().row(); }
  // The keyboard is between this row and the one above: Down goes to it, Up to that. Nothing is selected.
  void GoBefore(int row);
  // The selected rows as lines, with tabs between their cells; without the last column where that is empty in all.
  QString SelectedText() const;
  void CopySelected() const;

 signals:
  void itemSelectionChanged();
  void DeletePressed();
  void EditPressed(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void changeEvent(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void SizeColumns();
  int WidthOf(const QString& text);
  int WidestLastColumn() const;

  CListRows* m_pRows;
  QHash<QString, int> m_widths;  // of texts that were shown, in pixels
  bool m_bBetweenRows = false;   // above the current row
};

}  // namespace carvello
