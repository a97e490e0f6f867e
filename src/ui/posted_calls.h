// CPostedCalls: hands functions from any thread to the one of a window, which calls them in their order. A worker may
// outlive the window: what it posts then is dropped.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

namespace carvello {

class CPostedCalls : public QObject {
  Q_OBJECT

 public:
  // What workers hold; it may be copied, and used after the end of the object that it is of.
  using Poster = std::function<void(std::function<void()>)>;

  explicit CPostedCalls(QObject* pParent = nullptr);
  ~CPostedCalls() override;

  Poster MakePoster() const;

 protected:
  void customEvent(QEvent* event) override;

 private:
  struct SQueue;

  std::shared_ptr<SQueue> m_pQueue;
};

}  // namespace carvello
