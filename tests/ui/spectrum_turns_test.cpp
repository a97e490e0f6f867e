// The window stays alive whatever its source does: no turn of the event loop takes longer than drawing a picture does.
#include <QPainter>
#include <atomic>
#include <cmath>
#include <thread>

#include "spectrum/level_code.h"
#include "support/mutex.h"
#include "ui/longest_turn.h"
#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"
#include "ui/user_settings.h"

namespace carvello {

using test::CSpectrumFixture;

namespace {

constexpr int kZooms = 60;
constexpr int kZoomsOfASlowBuild = 20;  // which takes seconds for each

// Makes a picture for each view on a thread of its own, and tells of news without a pause.
class CBusySource : public ISpectrumSource {
 public:
  explicit CBusySource(std::function<void()> changed) : m_changed(std::move(changed)) {
    m_worker = std::thread([this] { Work(); });
  }
  ~CBusySource() override {
    m_bEnds = true;
    m_worker.join();
  }
  CBusySource(const CBusySource&) = delete;
  CBusySource& operator=(const CBusySource&) = delete;

  void Show(const SSpectrumView& view) override {
    const CLockGuard lock(m_mutex);
    m_view = view;
  }
  std::shared_ptr<const SSpectrumPicture> Picture() const override {
    const CLockGuard lock(m_mutex);
    return m_pPicture;
  }
  double Progress() const override { return 0.5; }
  std::string Problem() const override { return {}; }
  void Pause(bool /*pause*/) override {}
  std::shared_ptr<IBlockListener> Listener() override { return nullptr; }
  void FindCarrier(double, double, double, double, std::function<void(std::optional<double>)> answer) override {
    answer(std::nullopt);
  }
  void Search(const SSignalSearch& /*search*/, std::function<void(const SSearchNews&)> /*tell*/) override {}
  void EndSearch() override {}

 private:
  void Work() {
    unsigned made = 0;
    while (!m_bEnds) {
      SSpectrumView view;
      {
        const CLockGuard lock(m_mutex);
        view = m_view;
      }
      if (view.nColumns > 0) {
        auto pPicture = std::make_shared<SSpectrumPicture>();
        pPicture->view = view;
        const auto columns = static_cast<std::size_t>(view.nColumns);
        const std::size_t cells = columns * static_cast<std::size_t>(view.nRows);
        pPicture->mean.assign(cells, static_cast<std::uint8_t>(60 + made++ % 100));
        pPicture->mean[cells / 2] = kUnknownLevel;  // not all is known, so nothing is drawn the fast way
        pPicture->maximum = pPicture->mean;
        pPicture->average.assign(columns, -100.0F);
        pPicture->peak.assign(columns, -90.0F);
        pPicture->dKnown = 0.9;
        const CLockGuard lock(m_mutex);
        m_pPicture = pPicture;
      }
      m_changed();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  std::function<void()> m_changed;
  mutable CMutex m_mutex;
  SSpectrumView m_view CARVELLO_GUARDED_BY(m_mutex);
  std::shared_ptr<const SSpectrumPicture> m_pPicture CARVELLO_GUARDED_BY(m_mutex);
  std::atomic<bool> m_bEnds = false;
  std::thread m_worker;
};

CRecordingSet Recording() {
  CRecordingSet recording;
  recording.files.push_back({.strPath = "rec.wav"});
  recording.nTotalMillions = 60'000;
  recording.tStart = test::kRecordingStart;
  recording.tEnd = recording.tStart + 7'500;
  recording.nSampleRate = 2'000'000;
  recording.nRadioCenterFreq = 7'100'000;
  recording.nBitsPerSample = 16;
  return recording;
}

// What colouring and drawing a picture of this size takes on this machine now.
std::int64_t CostOfAPicture(const QSize& size) {
  const std::vector<std::uint8_t> codes(
      static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()), 100);
  const auto colours = ColourTable(EPalette::Viridis, {});
  constexpr int kTimes = 20;
  QImage target(size, QImage::Format_ARGB32_Premultiplied);
  const std::int64_t before = platform::ProcessCpuMilliseconds();
  for (int i = 0; i < kTimes; ++i) {
    CWaterfallImage image;
    image.Make(codes, size.width(), size.height(), colours);
    QPainter painter(&target);
    image.Paint(painter, {0, 1}, {0, 1}, {0, 1}, {0, 1}, size);
  }
  return (platform::ProcessCpuMilliseconds() - before) / kTimes + 1;
}

}  // namespace

class SpectrumTurnsTest : public QObject {
  Q_OBJECT

 private slots:
  void StaysAliveUnderASourceThatNeverRests();
};

void SpectrumTurnsTest::StaysAliveUnderASourceThatNeverRests() {
  test::ForgetSettings();
  CMySettingsStore settings(OpenUserSettings());
  CSpectrumWindow window(
      [](const CRecordingSet& /*recording*/, bool /*keep*/, std::function<void()> changed) {
        return std::make_unique<CBusySource>(std::move(changed));
      },
      settings, nullptr);
  window.resize(1600, 1000);
  const CRecordingSet recording = Recording();
  window.SetRecording(&recording, true);
  std::vector<SBand> bands;
  for (int i = 0; i < 1000; ++i) bands.push_back({{6'200'000 + 1'800 * i, 1'000, {}, {}}, "band", i == 7});
  window.SetBands(bands);
  window.SetAllowed(true, true);
  window.show();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  auto& waterfall = *window.findChild<CWaterfallView*>("waterfall");
  QTRY_VERIFY(window.Scene().Picture() != nullptr);
  const std::int64_t picture = CostOfAPicture(waterfall.Pixels());

  const test::CLongestTurn turns;
  int keys = 0;
  const SSpectrumPicture* pLast = nullptr;
  int pictures = 0;
  const int zooms = qEnvironmentVariableIsSet("CARVELLO_SLOW") ? kZoomsOfASlowBuild : kZooms;
  while (keys < zooms) {
    QTest::keyClick(&waterfall, keys % 20 < 10 ? Qt::Key_Plus : Qt::Key_Minus);
    QTest::keyClick(&waterfall, Qt::Key_Right, Qt::ShiftModifier);
    ++keys;
    for (int i = 0; i < 4; ++i) QCoreApplication::processEvents();
    if (window.Scene().Picture() != pLast) ++pictures;
    pLast = window.Scene().Picture();
  }
  qInfo("longest turn %lld ms of processor time, a picture %lld ms, %d turns, %d pictures",
        static_cast<long long>(turns.Milliseconds()), static_cast<long long>(picture), turns.Turns(), pictures);
  QVERIFY(pictures > 5);
  // The source's own thread counts along, and a turn draws the line, the axes and a thousand bands besides.
  QVERIFY2(turns.Milliseconds() <= 30 * picture + 40, qPrintable(QString::number(turns.Milliseconds())));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumTurnsTest)
#include "spectrum_turns_test.moc"
