// The window's source over a recording's own overview: pictures and signals of a tone in a file.
#include "ui/overview_source.h"

#include <QFile>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <numbers>

#include "engine/recording_input.h"
#include "overview/left_threads.h"
#include "support/temp_folder.h"
#include "ui/posted_calls.h"
#include "ui/recordings.h"
#include "ui/ui_test.h"

namespace carvello {

namespace {

constexpr std::uint32_t kRate = 96'000;
constexpr std::int64_t kSeconds = 20;
constexpr double kTone = 12'000.0;  // Hz from the centre

// The recording of zeros with noise and a tone of a tenth of full scale in the place of its samples.
void FillWithTone(const QString& path) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::ReadWrite));
  QVERIFY(file.seek(file.size() - kSeconds * kRate * 4));
  std::uint32_t noise = 1;
  QByteArray bytes;
  for (std::int64_t i = 0; i < kSeconds * kRate; ++i) {
    const double phase = 2.0 * std::numbers::pi * kTone / kRate * static_cast<double>(i);
    for (const double part : {std::cos(phase), std::sin(phase)}) {
      noise = noise * 1'664'525U + 1'013'904'223U;
      const auto sample = static_cast<std::int16_t>(std::lround(3276.8 * part + (noise >> 16U) / 655.36 - 50.0));
      bytes.append(static_cast<char>(sample & 0xFF)).append(static_cast<char>(sample >> 8));
    }
  }
  QCOMPARE(file.write(bytes), bytes.size());
}

SSpectrumView WholeView() {
  SSpectrumView view;
  view.dFrames = kSeconds * kRate;
  view.dLowFrequency = -48'000.0;
  view.dHighFrequency = 48'000.0;
  view.nColumns = 192;
  view.nRows = 100;
  return view;
}

}  // namespace

class OverviewSourceTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();
  void ShowsAToneWhereItIs();
  void FindsTheToneAsASignal();
  void FindsTheToneAsACarrier();
  void ASearchThatIsEndedTellsNoMore();
  void AFileThatIsGoneIsToldAsAProblem();

 private:
  std::unique_ptr<ISpectrumSource> Open() {
    return OpenOverview(m_input.recording, {}, [post = m_calls.MakePoster(), this] { post([this] { ++m_nNews; }); });
  }

  test::CTempFolder m_folder;
  CPostedCalls m_calls;
  SRecordingInput m_input;
  int m_nNews = 0;
};

void OverviewSourceTest::init() {
  const std::string path = m_folder / "rec.wav";
  test::WriteRecording(path, {.nSampleRate = kRate, .nSeconds = kSeconds});
  FillWithTone(QString::fromStdString(path));
  std::string problem;
  QVERIFY(ReadRecordingInput(path, m_input, problem));
}

void OverviewSourceTest::cleanup() {
  JoinLeftThreads();
}

void OverviewSourceTest::ShowsAToneWhereItIs() {
  const auto pSource = Open();
  pSource->Show(WholeView());
  QTRY_VERIFY_WITH_TIMEOUT(pSource->Progress() >= 1.0, 60'000);
  QTRY_VERIFY_WITH_TIMEOUT(pSource->Picture() != nullptr && pSource->Picture()->bComplete, 60'000);
  const auto& average = pSource->Picture()->average;
  const auto strongest = std::max_element(average.begin(), average.end()) - average.begin();
  QCOMPARE(strongest, 120);  // 500 Hz a column, from -48 kHz on
  // The average is over the bins of a column, too.
  const float peak = pSource->Picture()->peak[120];
  QVERIFY2(std::abs(peak + 20.0F) < 1.0F, qPrintable(QString::number(peak)));
  QVERIFY(m_nNews > 0);
  QCOMPARE(pSource->Problem(), std::string());
}

void OverviewSourceTest::FindsTheToneAsASignal() {
  const auto pSource = Open();
  std::vector<SSearchNews> news;
  pSource->Search({0.0, kSeconds * kRate, 20.0, 0.0}, [post = m_calls.MakePoster(), &news](const SSearchNews& one) {
    post([&news, one] { news.push_back(one); });
  });
  QTRY_VERIFY_WITH_TIMEOUT(!news.empty() && news.back().bEnded, 60'000);
  QCOMPARE(news.back().strProblem, std::string());
  QCOMPARE(news.back().found.size(), std::size_t{1});
  QVERIFY2(std::abs(news.back().found[0].dFrequency - 7'112'000.0) < 50.0,
           qPrintable(QString::number(news.back().found[0].dFrequency, 'f')));
}

void OverviewSourceTest::FindsTheToneAsACarrier() {
  const auto pSource = Open();
  std::optional<std::optional<double>> answer;
  pSource->FindCarrier(11'500.0, 1'000.0, 0.0, kSeconds * kRate,
                       [post = m_calls.MakePoster(), &answer](std::optional<double> found) {
                         post([&answer, found] { answer = found; });
                       });
  QTRY_VERIFY_WITH_TIMEOUT(answer.has_value(), 60'000);
  QVERIFY(answer->has_value());
  QVERIFY2(std::abs(**answer - kTone) < 0.1, qPrintable(QString::number(**answer, 'f')));
}

void OverviewSourceTest::ASearchThatIsEndedTellsNoMore() {
  auto pSource = Open();
  std::atomic<int> ended = 0;
  pSource->Search({0.0, kSeconds * kRate, 20.0, 0.0}, [&ended](const SSearchNews& one) {
    if (one.bEnded) ++ended;
  });
  pSource->EndSearch();
  pSource->Search({0.0, kSeconds * kRate, 20.0, 0.0}, [&ended](const SSearchNews& one) {
    if (one.bEnded) ++ended;
  });
  pSource.reset();
  JoinLeftThreads();
  QVERIFY2(ended <= 1, qPrintable(QString::number(ended)));  // the first may have been done already
}

void OverviewSourceTest::AFileThatIsGoneIsToldAsAProblem() {
  QVERIFY(QFile::remove(QString::fromStdString(m_folder / "rec.wav")));
  const auto pSource = Open();
  std::vector<SSearchNews> news;
  pSource->Search({0.0, kSeconds * kRate, 20.0, 0.0}, [post = m_calls.MakePoster(), &news](const SSearchNews& one) {
    post([&news, one] { news.push_back(one); });
  });
  QTRY_VERIFY_WITH_TIMEOUT(!news.empty() && news.back().bEnded, 60'000);
  QVERIFY2(news.back().strProblem.find("rec.wav") != std::string::npos, news.back().strProblem.c_str());
  pSource->Show(WholeView());
  QTRY_VERIFY_WITH_TIMEOUT(!pSource->Problem().empty(), 60'000);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::OverviewSourceTest)
#include "overview_source_test.moc"
