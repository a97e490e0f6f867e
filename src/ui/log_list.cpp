#include "ui/log_list.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMenu>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "support/system_time.h"
#include "support/text.h"
#include "ui/log_model.h"

namespace carvello {

namespace {

constexpr int kPortionMilliseconds = 10;   // longest time that bringing lines into view takes at a stretch
constexpr int kIntervalMilliseconds = 20;  // and the pause between two stretches, for the user

}  // namespace

CLogList::CLogList(QWidget* parent)
    : QListView(parent), m_pModel(new CLogModel(this)), m_pTimer(new QTimer(this)), m_clock(CurrentTime) {
  setModel(m_pModel);
  setUniformItemSizes(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTextElideMode(Qt::ElideNone);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  m_pTimer->setSingleShot(true);
  m_pTimer->setInterval(kIntervalMilliseconds);
  connect(m_pTimer, &QTimer::timeout, this, &CLogList::ShowWaiting);
  MarkLines();
  UpdateExtent(0);
}

CLogList::~CLogList() = default;

void CLogList::SetClock(std::function<std::int64_t()> clock) {
  m_clock = std::move(clock);
}

void CLogList::AddLine(const std::string& text) {
  AddLine({}, text);
}

void CLogList::AddLine(const std::string& worker, const std::string& text) {
  const std::int64_t now = m_clock();
  if (m_strTimeText.empty() || now != m_tTimeText) {
    m_tTimeText = now;
    m_strTimeText = FormatLocal("%H:%M:%S", now);
  }
  std::string line = m_strTimeText + "> " + (worker.empty() ? "" : worker + "> ") + text;
  // One entry is one line, here and in the text file that is made of them.
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  m_waiting.push_back(Printable(line));
  if (ToneOfLine(m_waiting.back()) == ETone::Bad) emit ErrorAdded(QString::fromStdString(m_waiting.back()));
  if (!m_pTimer->isActive()) m_pTimer->start();
}

void CLogList::Clear() {
  m_pTimer->stop();
  m_waiting.clear();
  m_pModel->Clear();
  UpdateExtent(0);
}

void CLogList::ClearButErrors() {
  std::vector<std::string> lines = Lines();
  std::erase_if(lines, [](const std::string& line) { return ToneOfLine(line) == ETone::Plain; });
  Clear();
  m_waiting.assign(lines.begin(), lines.end());
  if (!m_waiting.empty()) m_pTimer->start();
}

std::vector<std::string> CLogList::Lines() const {
  std::vector<std::string> lines = m_pModel->Lines();
  lines.insert(lines.end(), m_waiting.begin(), m_waiting.end());
  return lines;
}

int CLogList::WidthOf(const std::string& line) const {
  const bool marked = ToneOfLine(line) != ETone::Plain;
  const QFontMetrics metrics = marked ? QFontMetrics(m_pModel->MarkedFont()) : fontMetrics();
  return metrics.horizontalAdvance(QString::fromStdString(line) + QLatin1Char(' '));
}

void CLogList::ShowWaiting() {
  QElapsedTimer elapsed;
  elapsed.start();
  int extent = m_nExtent;
  std::vector<std::string> portion;
  while (!m_waiting.empty() && elapsed.elapsed() < kPortionMilliseconds) {
    portion.push_back(std::move(m_waiting.front()));
    m_waiting.pop_front();
    extent = std::max(extent, WidthOf(portion.back()));
  }
  if (extent != m_nExtent) UpdateExtent(extent);
  m_pModel->Append(std::move(portion));
  scrollToBottom();
  if (!m_waiting.empty()) m_pTimer->start();
}

// How marked lines look, in the view's colours and font.
void CLogList::MarkLines() {
  QFont marked = font();
  marked.setBold(true);
  const QList<QColor> backgrounds = {palette().color(QPalette::Base)};
  const QColor plain = palette().color(QPalette::Text);
  m_pModel->SetMarks(marked, ToneColour(ETone::Bad, backgrounds, plain),
                     ToneColour(ETone::Caution, backgrounds, plain));
  viewport()->update();
}

void CLogList::UpdateExtent(int extent) {
  m_nExtent = extent;
  const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
  const int height = std::max(fontMetrics().lineSpacing(), QFontMetrics(m_pModel->MarkedFont()).lineSpacing());
  m_pModel->SetLineSize({extent + 2 * margin, height + 1});
  scheduleDelayedItemsLayout();
}

void CLogList::changeEvent(QEvent* event) {
  QListView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) MarkLines();
  if (event->type() != QEvent::FontChange) return;
  MarkLines();
  int extent = 0;
  for (const std::string& line : m_pModel->Lines()) extent = std::max(extent, WidthOf(line));
  UpdateExtent(extent);
}

void CLogList::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    CopySelected();
  } else {
    QListView::keyPressEvent(event);
  }
}

void CLogList::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  QAction* pCopy = menu.addAction(tr("&Copy"), this, &CLogList::CopySelected);
  pCopy->setShortcut(QKeySequence::Copy);
  pCopy->setEnabled(selectionModel()->hasSelection());
  QAction* pAll = menu.addAction(tr("Select &All"), this, &CLogList::selectAll);
  pAll->setShortcut(QKeySequence::SelectAll);
  pAll->setEnabled(m_pModel->rowCount() > 0);
  menu.exec(event->globalPos());
}

void CLogList::CopySelected() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  }
  if (rows.empty()) return;
  std::sort(rows.begin(), rows.end());
  std::string text;
  for (const int row : rows) text += m_pModel->Lines()[static_cast<std::size_t>(row)] + "\n";
  text.pop_back();
  QApplication::clipboard()->setText(QString::fromStdString(text));
}

}  // namespace carvello
