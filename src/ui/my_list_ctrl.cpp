#include "ui/my_list_ctrl.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <algorithm>
#include <memory>

namespace carvello {

namespace {

constexpr int kColumnRoom = 10;  // pixels between the contents of a column and the next one
constexpr int kRowRoom = 4;      // pixels between the texts of a row and the next one

class CRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, kRowRoom);
  }
};

}  // namespace

CMyMFCListCtrl::CMyMFCListCtrl(QWidget* parent) : QTreeWidget(parent) {
  setItemDelegate(new CRowDelegate(this));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setAlternatingRowColors(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTextElideMode(Qt::ElideMiddle);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  header()->setSectionsMovable(false);
  header()->setStretchLastSection(true);
  header()->setMinimumSectionSize(0);
  header()->setResizeContentsPrecision(-1);  // all rows, not only those in view
}

void CMyMFCListCtrl::SetColumns(const QStringList& titles) {
  setHeaderLabels(titles);
  SizeColumns();
}

void CMyMFCListCtrl::SetRows(const std::vector<QStringList>& rows) {
  setUpdatesEnabled(false);
  clear();
  QList<QTreeWidgetItem*> items;
  items.reserve(static_cast<qsizetype>(rows.size()));
  for (const QStringList& row : rows) {
    auto pItem = std::make_unique<QTreeWidgetItem>(row);
    // A column can be made narrower than its texts.
    for (int column = 0; column < row.size(); ++column) pItem->setToolTip(column, row[column]);
    items.append(pItem.release());
  }
  addTopLevelItems(items);
  SizeColumns();
  setUpdatesEnabled(true);
}

std::vector<std::size_t> CMyMFCListCtrl::SelectedRows() const {
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows())
    rows.push_back(static_cast<std::size_t>(index.row()));
  std::sort(rows.begin(), rows.end());
  return rows;
}

bool CMyMFCListCtrl::HasSelection() const {
  return selectionModel()->hasSelection();
}

void CMyMFCListCtrl::SizeColumns() {
  const int last = columnCount() - 1;
  for (int column = 0; column <= last; ++column) {
    const int width = std::max(sizeHintForColumn(column), header()->sectionSizeHint(column));
    header()->resizeSection(column, column < last ? width + kColumnRoom : width);
  }
}

void CMyMFCListCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
    emit DeletePressed();
    return;
  }
  QTreeWidget::keyPressEvent(event);
}

void CMyMFCListCtrl::changeEvent(QEvent* event) {
  QTreeWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SizeColumns();
}

}  // namespace carvello
