#include "ui/field_scroller.h"

#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QScrollBar>
#include <algorithm>

namespace carvello {

namespace {
constexpr int kLeastLines = 6;
}

CFieldScroller::CFieldScroller(QBoxLayout& layout, const QList<QWidget*>& widgets)
    : QScrollArea(layout.parentWidget()) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);  // what is in it has the keyboard, and brings it along

  auto* pColumn = new QWidget(this);
  auto* pLayout = new QVBoxLayout(pColumn);
  pLayout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* pWidget : widgets) {
    layout.removeWidget(pWidget);
    pLayout->addWidget(pWidget);
  }
  setWidget(pColumn);
  // As high as the column is, or higher where something in it takes the room.
  const bool bGrows = (pLayout->expandingDirections() & Qt::Vertical) != 0;
  setSizePolicy(QSizePolicy::Preferred, bGrows ? QSizePolicy::Expanding : QSizePolicy::Maximum);
  // The window's own background shows through.
  pColumn->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  layout.insertWidget(0, this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* pNow) { KeepInView(pNow); });
}

// Fields lose the keyboard when they end, which they do behind this.
CFieldScroller::~CFieldScroller() {
  disconnect(qApp, nullptr, this, nullptr);
}

QSize CFieldScroller::sizeHint() const {
  return widget()->sizeHint().expandedTo(minimumSizeHint());
}

QSize CFieldScroller::minimumSizeHint() const {
  const QSize column = widget()->minimumSizeHint();
  const int bar = verticalScrollBar()->sizeHint().width();
  return {column.width() + bar, std::min(column.height(), kLeastLines * fontMetrics().lineSpacing())};
}

bool CFieldScroller::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

void CFieldScroller::KeepInView(QWidget* pFocused) {
  if (pFocused != nullptr && widget()->isAncestorOf(pFocused)) ensureWidgetVisible(pFocused);
}

}  // namespace carvello
