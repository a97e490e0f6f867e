// CLogList: the log. Follows its newest line; Ctrl+C copies the selected lines. Adding a line costs next to nothing:
// lines wait in a queue and come into view in portions, so that a burst of them never keeps the user waiting.
#pragma once

#include <QListView>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

class QTimer;

namespace carvello {

class CLogModel;

class CLogList : public QListView {
  Q_OBJECT

 public:
  explicit CLogList(QWidget* parent = nullptr);
  ~CLogList() override;

  // Adds "HH:MM:SS> text", or "HH:MM:SS> worker> text" when the worker's name is not empty. Local time, now.
  void AddLine(const std::string& text);
  void AddLine(const std::string& worker, const std::string& text);
  void Clear();
  // Clears all lines but those that are marked as an error or a warning.
  void ClearButErrors();
  // All lines, also those that are not in view yet.
  std::vector<std::string> Lines() const;

  // The widest line since the log was cleared, in pixels.
  int HorizontalExtent() const { return m_nExtent; }
  // Seconds since 1970 UTC; for tests.
  void SetClock(std::function<std::int64_t()> clock);

 signals:
  void ErrorAdded(const QString& line);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  int WidthOf(const std::string& line) const;
  void ShowWaiting();
  void UpdateExtent(int extent);
  void MarkLines();
  void CopySelected() const;

  CLogModel* m_pModel;
  QTimer* m_pTimer;
  std::deque<std::string> m_waiting;
  std::function<std::int64_t()> m_clock;
  std::int64_t m_tTimeText = 0;
  std::string m_strTimeText;
  int m_nExtent = 0;
};

}  // namespace carvello
