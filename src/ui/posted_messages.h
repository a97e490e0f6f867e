// CPostedMessages: what the workers tell the dialog. Posting puts an event that owns its texts into the queue of the
// dialog's thread and returns at once; the signals come on that thread. Events still waiting at the end of this object
// are freed with their texts.
#pragma once

#include <QObject>
#include <cstdint>
#include <string>

#include "engine/message_target.h"

namespace carvello {

class CPostedMessages : public QObject, public IMessageTarget {
  Q_OBJECT

 public:
  explicit CPostedMessages(QObject* pParent = nullptr);

  void PostTexts(std::uint32_t message, std::string worker, std::string text) override;
  void PostNumbers(std::uint32_t message, std::uint64_t total, std::uint64_t done) override;

 signals:
  void LogPosted(const std::string& worker, const std::string& text);
  void ProgressPosted(std::uint64_t total, std::uint64_t done);

 protected:
  void customEvent(QEvent* event) override;

 private:
  std::uint32_t m_nLogMessage;
  std::uint32_t m_nProgressMessage;
};

}  // namespace carvello
