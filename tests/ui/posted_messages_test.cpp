#include "ui/posted_messages.h"

#include <QSignalSpy>
#include <thread>
#include <vector>

#include "ui/ui_test.h"

namespace carvello {

class PostedMessagesTest : public QObject {
  Q_OBJECT

 private slots:
  void DeliversOnTheReceiversThreadAndNotBefore();
  void KeepsTheOrderOfEachSender();
  void IgnoresMessagesThatNobodyRegistered();
  void FreesWhatIsNeverReceived();

 private:
  const std::uint32_t m_nLog = RegisterMessage("Carvello::nMsgLogfile");
  const std::uint32_t m_nProgress = RegisterMessage("Carvello::nMsgProgress");
};

void PostedMessagesTest::DeliversOnTheReceiversThreadAndNotBefore() {
  CPostedMessages messages;
  std::vector<std::string> received;
  std::thread::id receiver;
  connect(&messages, &CPostedMessages::LogPosted, this, [&](const std::string& worker, const std::string& text) {
    receiver = std::this_thread::get_id();
    received.push_back(worker + "|" + text);
  });
  connect(&messages, &CPostedMessages::ProgressPosted, this, [&](std::uint64_t total, std::uint64_t done) {
    received.push_back(std::to_string(total) + "/" + std::to_string(done));
  });
  std::thread([&] {
    messages.PostTexts(m_nLog, "Reader", "a text that is longer than what fits into the string object itself");
    messages.PostTexts(m_nLog, "", "no thread");
    messages.PostNumbers(m_nProgress, 10'000, std::uint64_t{1} << 40);
  }).join();
  QVERIFY(received.empty());  // the sender did not wait, and nobody was disturbed

  QCoreApplication::sendPostedEvents(&messages);
  QCOMPARE(received,
           (std::vector<std::string>{"Reader|a text that is longer than what fits into the string object itself",
                                     "|no thread", "10000/1099511627776"}));
  QCOMPARE(receiver, std::this_thread::get_id());
}

void PostedMessagesTest::KeepsTheOrderOfEachSender() {
  constexpr int kSenders = 4;
  constexpr int kLines = 2000;
  CPostedMessages messages;
  std::vector<std::vector<std::string>> received(kSenders);
  connect(&messages, &CPostedMessages::LogPosted, this,
          [&](const std::string& worker, const std::string& text) { received.at(std::stoul(worker)).push_back(text); });
  std::vector<std::thread> senders;
  for (int sender = 0; sender < kSenders; ++sender) {
    senders.emplace_back([&messages, this, sender] {
      for (int line = 0; line < kLines; ++line) {
        messages.PostTexts(m_nLog, std::to_string(sender), std::to_string(line));
      }
    });
  }
  for (std::thread& sender : senders) sender.join();
  QCoreApplication::sendPostedEvents(&messages);
  for (const auto& lines : received) {
    QCOMPARE(lines.size(), std::size_t{kLines});
    for (int line = 0; line < kLines; ++line) QCOMPARE(lines.at(static_cast<std::size_t>(line)), std::to_string(line));
  }
}

void PostedMessagesTest::IgnoresMessagesThatNobodyRegistered() {
  CPostedMessages messages;
  QSignalSpy logs(&messages, &CPostedMessages::LogPosted);
  QSignalSpy progress(&messages, &CPostedMessages::ProgressPosted);
  messages.PostTexts(RegisterMessage("Carvello::nMsgOther"), "Reader", "text");
  QCoreApplication::sendPostedEvents(&messages);
  QCOMPARE(logs.count(), 0);
  QCOMPARE(progress.count(), 0);
}

// The leak checker of a sanitizer build tells when this does not hold.
void PostedMessagesTest::FreesWhatIsNeverReceived() {
  auto messages = std::make_unique<CPostedMessages>();
  QSignalSpy logs(messages.get(), &CPostedMessages::LogPosted);
  messages->PostTexts(m_nLog, "Reader", std::string(1000, 'x'));
  messages.reset();
  QCoreApplication::sendPostedEvents();
  QCOMPARE(logs.count(), 0);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::PostedMessagesTest)
#include "posted_messages_test.moc"
