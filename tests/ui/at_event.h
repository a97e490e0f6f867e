// CAtEvent: what happens in the middle of something else.
#pragma once

#include <QEvent>
#include <QObject>
#include <functional>
#include <utility>

namespace carvello::test {

// Does something at an event of an object, or of any object, once.
class CAtEvent : public QObject {
 public:
  CAtEvent(QObject& watched, std::function<bool(QObject&, const QEvent&)> isIt, std::function<void()> action)
      : m_isIt(std::move(isIt)), m_action(std::move(action)) {
    watched.installEventFilter(this);
  }
  bool eventFilter(QObject* object, QEvent* event) override {
    if (m_action && m_isIt(*object, *event)) std::exchange(m_action, nullptr)();
    return false;
  }

 private:
  std::function<bool(QObject&, const QEvent&)> m_isIt;
  std::function<void()> m_action;
};

}  // namespace carvello::test
