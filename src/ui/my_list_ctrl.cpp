#include "ui/my_list_ctrl.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QStyledItemDelegate>
#include <QWheelEvent>
#include <algorithm>

#include "ui/plain_tool_tip.h"

namespace carvello {

namespace {

constexpr int kColumnRoom = 10;  // pixels between the contents of a column and the next one
constexpr int kRowRoom = 4;      // pixels between the texts of a row and the next one
constexpr int kLastColumnCharacters = 32;
constexpr int kLeastRows = 4;
constexpr qsizetype kMostWidths = 200'000;  // texts whose widths are kept

// Between the edge of a cell and its text.
int TextMargin(const QWidget* pList) {
  const QStyle* pStyle = pList == nullptr ? QApplication::style() : pList->style();
  return pStyle->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, pList) + 1;
}

class CRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, kRowRoom);
  }

  // In the part of the cell that is in view: a text that the list has no room for is left out in its middle, and not
  // cut off where the list ends.
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem visible = option;
    if (const auto* pList = qobject_cast<const CMyMFCListCtrl*>(option.widget)) {
      const QRect view = pList->viewport()->rect();
      visible.rect.setLeft(std::max(option.rect.left(), view.left()));
      visible.rect.setRight(std::min(option.rect.right(), view.right()));
    }
    QStyledItemDelegate::paint(painter, visible, index);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool enabled = (option->state & QStyle::State_Enabled) != 0;
    const QPalette::ColorGroup group = enabled ? QPalette::Active : QPalette::Disabled;
    QPalette& palette = option->palette;
    const auto tone = static_cast<ETone>(index.data(CListRows::kToneRole).toInt());
    if (!enabled || tone != ETone::Plain) {
      palette.setColor(
          QPalette::Text,
          ToneColour(tone, {palette.color(group, QPalette::Base), palette.color(group, QPalette::AlternateBase)},
                     palette.color(QPalette::Active, QPalette::Text)));
    }
    if (!enabled) palette.setColor(QPalette::HighlightedText, ReadableOn(palette.color(group, QPalette::Highlight)));
    if (index.column() != index.model()->columnCount() - 1) return;
    option->textElideMode = Qt::ElideRight;
    const QString brief = index.data(CListRows::kBriefRole).toString();
    const int room = option->rect.width() - 2 * TextMargin(option->widget);
    if (!brief.isEmpty() && option->fontMetrics.horizontalAdvance(option->text) > room) option->text = brief;
  }

  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    if (event->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(event, view, option, index);
    ShowPlainToolTip(event->globalPos(), index.data(Qt::ToolTipRole).toString(), view);
    return true;
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

CMyMFCListCtrl::CMyMFCListCtrl(QWidget* parent) : QTreeView(parent), m_pRows(new CListRows(this)) {
  setModel(m_pRows);
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
  // How much of a cell is in view decides what it shows.
  connect(horizontalScrollBar(), &QScrollBar::valueChanged, viewport(), qOverload<>(&QWidget::update));
}

QSize CMyMFCListCtrl::minimumSizeHint() const {
  const int rows = kLeastRows * (fontMetrics().height() + kRowRoom);
  const int around = 2 * frameWidth() + horizontalScrollBar()->sizeHint().height();
  return {QTreeView::minimumSizeHint().width(), header()->sizeHint().height() + rows + around};
}

void CMyMFCListCtrl::SetColumns(const QStringList& titles) {
  m_pRows->SetTitles(titles);
  SizeColumns();
}

void CMyMFCListCtrl::SetRows(const std::vector<QStringList>& rows) {
  const int place = CurrentRow();
  setUpdatesEnabled(false);
  const bool wasSelected = HasSelection();
  m_pRows->SetRows(rows);
  SizeColumns();
  if (place >= 0) GoBefore(place);
  setUpdatesEnabled(true);
  if (wasSelected) emit itemSelectionChanged();  // a list that begins anew does not tell
}

void CMyMFCListCtrl::SetLastCell(int row, const SToneText& text) {
  if (!m_pRows->SetLastCell(row, text)) return;
  const int last = ColumnCount() - 1;
  // The column only grows, so that nothing moves to and fro while the texts change.
  const int width = std::min(WidthOf(Cell(row, last)), WidestLastColumn());
  if (width <= header()->sectionSize(last)) return;
  const QScrollBar* pBar = horizontalScrollBar();
  const bool inView = pBar->value() == pBar->maximum();
  header()->resizeSection(last, width);
  if (inView) ShowLastColumn();
}

QString CMyMFCListCtrl::Title(int column) const {
  return m_pRows->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
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

void CMyMFCListCtrl::SelectRows(const std::vector<std::size_t>& rows) {
  QItemSelection selection;
  for (std::size_t i = 0; i < rows.size();) {
    // Rows that follow each other are one range: thousands of ranges would make every click slow.
    std::size_t next = i + 1;
    while (next < rows.size() && rows[next] == rows[next - 1] + 1) ++next;
    const int first = static_cast<int>(rows[i]);
    const int last = std::min(static_cast<int>(rows[next - 1]), RowCount() - 1);
    if (first <= last) selection.select(model()->index(first, 0), model()->index(last, ColumnCount() - 1));
    i = next;
  }
  if (!selection.isEmpty()) {
    const QModelIndex first = selection.first().topLeft();
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    m_bBetweenRows = false;
    scrollTo(first);
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void CMyMFCListCtrl::GoBefore(int row) {
  m_bBetweenRows = row < RowCount();
  const QModelIndex place = m_pRows->index(std::min(row, RowCount() - 1), 0);
  selectionModel()->setCurrentIndex(place, QItemSelectionModel::NoUpdate);
  if (place.isValid()) scrollTo(place);
}

QString CMyMFCListCtrl::SelectedText() const {
  const std::vector<std::size_t> rows = SelectedRows();
  const int last = ColumnCount() - 1;
  const bool toldOfAny = std::any_of(rows.begin(), rows.end(),
                                     [&](std::size_t row) { return !Cell(static_cast<int>(row), last).isEmpty(); });
  QString text;
  for (const std::size_t row : rows) {
    QStringList cells;
    for (int column = 0; column < (toldOfAny ? last + 1 : last); ++column) cells << Cell(static_cast<int>(row), column);
    // A name may hold what would begin another cell or line.
    for (QString& cell : cells) cell.replace('\t', ' ').replace('\n', ' ');
    text += cells.join('\t') + '\n';
  }
  return text;
}

void CMyMFCListCtrl::CopySelected() const {
  if (HasSelection()) QApplication::clipboard()->setText(SelectedText());
}

void CMyMFCListCtrl::SizeColumns() {
  if (m_widths.size() > kMostWidths) m_widths.clear();
  const int last = ColumnCount() - 1;
  for (int column = 0; column <= last; ++column) {
    int width = header()->sectionSizeHint(column);
    for (int row = 0; row < RowCount(); ++row) width = std::max(width, WidthOf(Cell(row, column)));
    header()->resizeSection(column, column < last ? width + kColumnRoom : std::min(width, WidestLastColumn()));
  }
}

int CMyMFCListCtrl::WidthOf(const QString& text) {
  const auto known = m_widths.constFind(text);
  if (known != m_widths.constEnd()) return *known;
  const int width = fontMetrics().horizontalAdvance(text) + 2 * TextMargin(this);
  m_widths.insert(text, width);
  return width;
}

// A reason can be longer than a window is wide.
int CMyMFCListCtrl::WidestLastColumn() const {
  return kLastColumnCharacters * fontMetrics().averageCharWidth() + 2 * TextMargin(this);
}

void CMyMFCListCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    CopySelected();
    return;
  }
  if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Delete) {
    emit DeletePressed();
    return;
  }
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if ((enter || event->key() == Qt::Key_F2) && selectionModel()->isRowSelected(CurrentRow(), {})) {
    emit EditPressed(CurrentRow());
    return;
  }
  if (event->key() == Qt::Key_Down && m_bBetweenRows) {
    // From the row above; above the first is none, and Down goes to that.
    selectionModel()->setCurrentIndex(m_pRows->index(CurrentRow() - 1, 0), QItemSelectionModel::NoUpdate);
  }
  m_bBetweenRows = false;
  QTreeView::keyPressEvent(event);
}

void CMyMFCListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
  QTreeView::mouseDoubleClickEvent(event);
  const QModelIndex index = indexAt(event->pos());
  if (index.isValid() && event->button() == Qt::LeftButton) emit EditPressed(index.row());
}

void CMyMFCListCtrl::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  m_bBetweenRows = false;
  emit itemSelectionChanged();
}

bool CMyMFCListCtrl::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::Wheel || isEnabled()) return QTreeView::viewportEvent(event);
  wheelEvent(static_cast<QWheelEvent*>(event));
  return true;
}

void CMyMFCListCtrl::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  m_widths.clear();
  SizeColumns();
}

}  // namespace carvello
