#include "ui/my_list_ctrl.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QStyledItemDelegate>
#include <QWheelEvent>
#include <algorithm>
#include <memory>

namespace carvello {

namespace {

constexpr int kColumnRoom = 10;  // pixels between the contents of a column and the next one
constexpr int kRowRoom = 4;      // pixels between the texts of a row and the next one
constexpr int kLastColumnCharacters = 32;
constexpr int kToneRole = Qt::UserRole;

class CRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, kRowRoom);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool enabled = (option->state & QStyle::State_Enabled) != 0;
    const QPalette::ColorGroup group = enabled ? QPalette::Active : QPalette::Disabled;
    QPalette& palette = option->palette;
    const auto tone = static_cast<ETone>(index.data(kToneRole).toInt());
    if (!enabled || tone != ETone::Plain) {
      palette.setColor(
          QPalette::Text,
          ToneColour(tone, {palette.color(group, QPalette::Base), palette.color(group, QPalette::AlternateBase)},
                     palette.color(QPalette::Active, QPalette::Text)));
    }
    if (!enabled) palette.setColor(QPalette::HighlightedText, ReadableOn(palette.color(group, QPalette::Highlight)));
    if (index.column() == index.model()->columnCount() - 1) option->textElideMode = Qt::ElideRight;
  }
};

// Titles that can be read also while the list is disabled.
class CTitles : public QHeaderView {
 public:
  explicit CTitles(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  }

 protected:
  void initStyleOption(QStyleOptionHeader* option) const override {
    QHeaderView::initStyleOption(option);
    option->state |= QStyle::State_Enabled;
    option->palette.setCurrentColorGroup(QPalette::Active);
  }
};

// Can be used also while the list is disabled: who reads on changes nothing.
class CReadingScrollBar : public QScrollBar {
 public:
  using QScrollBar::QScrollBar;

 protected:
  bool event(QEvent* event) override {
    if (isEnabled()) return QScrollBar::event(event);
    switch (event->type()) {
      case QEvent::MouseButtonPress:
        mousePressEvent(static_cast<QMouseEvent*>(event));
        return true;
      case QEvent::MouseMove:
        mouseMoveEvent(static_cast<QMouseEvent*>(event));
        return true;
      case QEvent::MouseButtonRelease:
        mouseReleaseEvent(static_cast<QMouseEvent*>(event));
        return true;
      case QEvent::Wheel:
        wheelEvent(static_cast<QWheelEvent*>(event));
        return true;
      default:
        return QScrollBar::event(event);
    }
  }
  void initStyleOption(QStyleOptionSlider* option) const override {
    QScrollBar::initStyleOption(option);
    option->state |= QStyle::State_Enabled;
    option->palette.setCurrentColorGroup(QPalette::Active);
  }
};

}  // namespace

CMyMFCListCtrl::CMyMFCListCtrl(QWidget* parent) : QTreeWidget(parent) {
  setItemDelegate(new CRowDelegate(this));
  setHeader(new CTitles(this));
  setVerticalScrollBar(new CReadingScrollBar(Qt::Vertical, this));
  setHorizontalScrollBar(new CReadingScrollBar(Qt::Horizontal, this));
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

void CMyMFCListCtrl::SetLastCell(int row, const SToneText& text) {
  const int last = columnCount() - 1;
  QTreeWidgetItem* pItem = topLevelItem(row);
  const QString shown = QString::fromStdString(text.strText);
  const int tone = static_cast<int>(text.tone);
  if (pItem->text(last) == shown && pItem->data(last, kToneRole).toInt() == tone) return;
  pItem->setData(last, kToneRole, tone);
  pItem->setText(last, shown);
  pItem->setToolTip(last, shown);
  pItem->setData(last, Qt::AccessibleTextRole, shown);
  // The column only grows, so that nothing moves to and fro while the texts change.
  const int width = std::min(fontMetrics().horizontalAdvance(shown) + 2 * TextMargin(), WidestLastColumn());
  if (width <= header()->sectionSize(last)) return;
  const QScrollBar* pBar = horizontalScrollBar();
  const bool inView = pBar->value() == pBar->maximum();
  header()->resizeSection(last, width);
  if (inView) ShowLastColumn();
}

void CMyMFCListCtrl::ShowLastColumn() {
  updateGeometries();
  horizontalScrollBar()->setValue(horizontalScrollBar()->maximum());
}

bool CMyMFCListCtrl::ScrollByKey(int key) {
  QAbstractSlider::SliderAction action = QAbstractSlider::SliderNoAction;
  if (key == Qt::Key_PageUp) action = QAbstractSlider::SliderPageStepSub;
  if (key == Qt::Key_PageDown) action = QAbstractSlider::SliderPageStepAdd;
  if (key == Qt::Key_Home) action = QAbstractSlider::SliderToMinimum;
  if (key == Qt::Key_End) action = QAbstractSlider::SliderToMaximum;
  if (action == QAbstractSlider::SliderNoAction) return false;
  verticalScrollBar()->triggerAction(action);
  return true;
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
    header()->resizeSection(column, column < last ? width + kColumnRoom : std::min(width, WidestLastColumn()));
  }
}

int CMyMFCListCtrl::TextMargin() const {
  return style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
}

// A reason can be longer than a window is wide.
int CMyMFCListCtrl::WidestLastColumn() const {
  return kLastColumnCharacters * fontMetrics().averageCharWidth() + 2 * TextMargin();
}

void CMyMFCListCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
    emit DeletePressed();
    return;
  }
  QTreeWidget::keyPressEvent(event);
}

bool CMyMFCListCtrl::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::Wheel || isEnabled()) return QTreeWidget::viewportEvent(event);
  wheelEvent(static_cast<QWheelEvent*>(event));
  return true;
}

void CMyMFCListCtrl::changeEvent(QEvent* event) {
  QTreeWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SizeColumns();
}

}  // namespace carvello
