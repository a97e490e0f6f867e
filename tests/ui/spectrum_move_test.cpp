#include <QAccessible>
#include <QRegularExpression>
#include <cmath>

#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumFixture;
using test::CSpectrumSuite;

class SpectrumMoveTest : public CSpectrumSuite {
  Q_OBJECT

 private slots:
  void TheWheelZoomsAtTheCursor();
  void CtrlWheelZoomsTheTimeAlone();
  void ShiftWheelZoomsTheFrequenciesAlone();
  void TheWheelOverAnAxisZoomsThatAxis();
  void TheMiddleButtonPans();
  void TheSpaceBarPansWithTheLeftButton();
  void TheTimeAxisIsPannedByDragging();
  void ADoubleClickOnAnAxisShowsAll();
  void KeysZoom_data();
  void KeysZoom();
  void HomeShowsAll();
  void PageKeysPan();
  void ArrowsMoveTheCursorAndTellWhatIsThere();
  void TheViewFollowsACursorThatLeavesIt();
  void ThePointerTellsFrequencyTimeAndLevel();
  void TheReadingIsAsExactAsTheView();
  void GoesDownToSingleTransforms();
  void ZoomingAsksForThatView();
  void ZoomingOutAgainShowsWhatWasSeenAtOnce();
  void TheTransformIsChosenOrFollowsTheZoom();

 private:
  SSpan Hertz() { return m_pFixture->Scene().Frequencies().Shown(); }
  SSpan Seconds() { return m_pFixture->Scene().Seconds(); }
};

namespace {

bool Near(double a, double b, double by) {
  return std::abs(a - b) <= by;
}

}  // namespace

void SpectrumMoveTest::TheWheelZoomsAtTheCursor() {
  const QPoint at = m_pFixture->Spot(7'080'000.0, 150.0);
  m_pFixture->Wheel(m_pFixture->Waterfall(), at, 5);
  QVERIFY2(Near(Hertz().Length(), 96'000.0 * std::pow(0.8, 5), 1.0), qPrintable(QString::number(Hertz().Length())));
  QVERIFY(Near(Seconds().Length(), 600.0 * std::pow(0.8, 5), 0.01));
  QVERIFY((m_pFixture->Spot(7'080'000.0, 150.0) - at).manhattanLength() <= 4);  // of a pixel, five times closer
  m_pFixture->Wheel(m_pFixture->Waterfall(), at, -5);
  QVERIFY(m_pFixture->Scene().Frequencies().ShowsAll() && m_pFixture->Scene().Frames().ShowsAll());
}

void SpectrumMoveTest::CtrlWheelZoomsTheTimeAlone() {
  m_pFixture->Wheel(m_pFixture->Waterfall(), {100, 100}, 2, Qt::ControlModifier);
  QVERIFY(m_pFixture->Scene().Frequencies().ShowsAll());
  QVERIFY(Near(Seconds().Length(), 384.0, 0.01));
}

void SpectrumMoveTest::ShiftWheelZoomsTheFrequenciesAlone() {
  m_pFixture->Wheel(m_pFixture->Waterfall(), {100, 100}, 2, Qt::ShiftModifier);
  QVERIFY(m_pFixture->Scene().Frames().ShowsAll());
  QVERIFY(Near(Hertz().Length(), 61'440.0, 1.0));
}

void SpectrumMoveTest::TheWheelOverAnAxisZoomsThatAxis() {
  m_pFixture->Wheel(m_pFixture->Part("frequencyAxis"), {100, 5}, 1);
  QVERIFY(m_pFixture->Scene().Frames().ShowsAll());
  QVERIFY(Near(Hertz().Length(), 76'800.0, 1.0));
  m_pFixture->Wheel(m_pFixture->Part("timeAxis"), {5, 100}, 1);
  QVERIFY(Near(Hertz().Length(), 76'800.0, 1.0));
  QVERIFY(Near(Seconds().Length(), 480.0, 0.01));
  m_pFixture->Wheel(m_pFixture->Part("spectrumLine"), {100, 50}, 1);
  QVERIFY(Near(Hertz().Length(), 61'440.0, 1.0));
}

void SpectrumMoveTest::TheMiddleButtonPans() {
  m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0);
  const QPoint from = m_pFixture->Spot(7'100'000.0, 300.0);
  const QPoint to = from + QPoint(40, 30);
  m_pFixture->Drag(m_pFixture->Waterfall(), from, to, Qt::MiddleButton);
  QVERIFY((m_pFixture->Spot(7'100'000.0, 300.0) - to).manhattanLength() <= 1);
  QVERIFY(!m_pFixture->Scene().Pending());
}

void SpectrumMoveTest::TheSpaceBarPansWithTheLeftButton() {
  m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0);
  const QPoint from = m_pFixture->Spot(7'100'000.0, 300.0);
  QTest::keyPress(&m_pFixture->Waterfall(), Qt::Key_Space);
  QCOMPARE(m_pFixture->Waterfall().cursor().shape(), Qt::OpenHandCursor);
  m_pFixture->Drag(m_pFixture->Waterfall(), from, from + QPoint(-50, 20));
  QTest::keyRelease(&m_pFixture->Waterfall(), Qt::Key_Space);
  QVERIFY((m_pFixture->Spot(7'100'000.0, 300.0) - from - QPoint(-50, 20)).manhattanLength() <= 1);
  QVERIFY(!m_pFixture->Scene().Pending());
  QCOMPARE(m_pFixture->Waterfall().cursor().shape(), Qt::ArrowCursor);
  m_pFixture->Drag(m_pFixture->Waterfall(), from, from + QPoint(50, 0));  // without it, a drag chooses
  QVERIFY(m_pFixture->Scene().Pending());
}

void SpectrumMoveTest::TheTimeAxisIsPannedByDragging() {
  m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0);
  const double perPixel = 60.0 / m_pFixture->Waterfall().height();
  m_pFixture->Drag(m_pFixture->Part("timeAxis"), {10, 100}, {10, 140});
  QVERIFY(Near(Seconds().dFrom, 270.0 - 40.0 * perPixel, 0.01));
  QVERIFY(!m_pFixture->Scene().Pending());
}

void SpectrumMoveTest::ADoubleClickOnAnAxisShowsAll() {
  m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0);
  QTest::mouseDClick(&m_pFixture->Part("frequencyAxis"), Qt::LeftButton);
  QVERIFY(m_pFixture->Scene().Frequencies().ShowsAll() && !m_pFixture->Scene().Frames().ShowsAll());
  QTest::mouseDClick(&m_pFixture->Part("timeAxis"), Qt::LeftButton);
  QVERIFY(m_pFixture->Scene().Frames().ShowsAll());
  QVERIFY(!m_pFixture->Scene().Pending());
}

void SpectrumMoveTest::KeysZoom_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<int>("modifiers");
  QTest::addColumn<double>("hertz");
  QTest::addColumn<double>("seconds");
  const auto row = [](const char* name, int key, Qt::KeyboardModifiers modifiers, int hertz, int seconds) {
    QTest::newRow(name) << key << static_cast<int>(modifiers) << 48'000.0 * std::pow(0.8, hertz)
                        << 300.0 * std::pow(0.8, seconds);
  };
  row("+", Qt::Key_Plus, {}, 1, 1);
  row("shifted +", Qt::Key_Plus, Qt::ShiftModifier, 1, 1);
  row("number pad", Qt::Key_Plus, Qt::KeypadModifier, 1, 1);
  row("-", Qt::Key_Minus, {}, -1, -1);
  row("Ctrl +", Qt::Key_Plus, Qt::ControlModifier, 0, 1);
  row("Ctrl -", Qt::Key_Minus, Qt::ControlModifier, 0, -1);
  row("I", Qt::Key_I, {}, 1, 1);
  row("O", Qt::Key_O, {}, -1, -1);
  row("Shift I", Qt::Key_I, Qt::ShiftModifier, 1, 0);
  row("Shift O", Qt::Key_O, Qt::ShiftModifier, -1, 0);
  row("Ctrl I", Qt::Key_I, Qt::ControlModifier, 0, 1);
  row("Ctrl O", Qt::Key_O, Qt::ControlModifier, 0, -1);
}

void SpectrumMoveTest::KeysZoom() {
  QFETCH(int, key);
  QFETCH(int, modifiers);
  QFETCH(double, hertz);
  QFETCH(double, seconds);
  m_pFixture->LookAt(7'100'000.0, 300.0, 48'000.0, 300.0);
  m_pFixture->Key(key, Qt::KeyboardModifiers(modifiers));
  QVERIFY2(Near(Hertz().Length(), hertz, 1.0), qPrintable(QString::number(Hertz().Length())));
  QVERIFY2(Near(Seconds().Length(), seconds, 0.01), qPrintable(QString::number(Seconds().Length())));
  QVERIFY(Near(Hertz().Middle(), 7'100'000.0, 1.0) && Near(Seconds().Middle(), 300.0, 0.01));
}

void SpectrumMoveTest::HomeShowsAll() {
  const auto zoom = [this] { m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0); };
  zoom();
  m_pFixture->Key(Qt::Key_Home, Qt::ControlModifier);
  QVERIFY(m_pFixture->Scene().Frames().ShowsAll() && !m_pFixture->Scene().Frequencies().ShowsAll());
  zoom();
  m_pFixture->Key(Qt::Key_Home, Qt::ShiftModifier);
  QVERIFY(!m_pFixture->Scene().Frames().ShowsAll() && m_pFixture->Scene().Frequencies().ShowsAll());
  zoom();
  m_pFixture->Key(Qt::Key_Home);
  QVERIFY(m_pFixture->Scene().Frames().ShowsAll() && m_pFixture->Scene().Frequencies().ShowsAll());
}

void SpectrumMoveTest::PageKeysPan() {
  m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0);
  m_pFixture->Key(Qt::Key_PageDown);
  QVERIFY(Near(Seconds().Middle(), 345.0, 0.01));
  m_pFixture->Key(Qt::Key_PageUp);
  QVERIFY(Near(Seconds().Middle(), 300.0, 0.01));
  m_pFixture->Key(Qt::Key_PageDown, Qt::ShiftModifier);
  QVERIFY(Near(Hertz().Middle(), 7'107'500.0, 1.0));
  m_pFixture->Key(Qt::Key_PageUp, Qt::ShiftModifier);
  QVERIFY(Near(Hertz().Middle(), 7'100'000.0, 1.0));
}

void SpectrumMoveTest::ArrowsMoveTheCursorAndTellWhatIsThere() {
  m_pFixture->LookAt(7'080'000.0, 300.0, 10'000.0, 60.0);
  m_pFixture->Key(Qt::Key_Right);
  const SCursor first = *m_pFixture->Scene().Cursor();
  const double step = 8.0 * 10'000.0 / m_pFixture->Waterfall().width();
  QVERIFY(Near(first.dFrequency, 7'080'000.0 + step, 0.1));
  QVERIFY(Near(first.dFrame, 300.0 * CSpectrumFixture::kRate, 1.0));
  m_pFixture->Key(Qt::Key_Down, Qt::ControlModifier);  // the smallest step
  QVERIFY(Near(m_pFixture->Scene().Cursor()->dFrame - first.dFrame,
               60.0 * CSpectrumFixture::kRate / m_pFixture->Waterfall().height(), 1.0));
  const QString reading = m_pFixture->TextOf("labelReading");
  QVERIFY2(reading.endsWith(", -50.0 dBFS") || reading.endsWith(", -49.8 dBFS"), qPrintable(reading));
  QVERIFY2(reading.contains("00:04:00.") && reading.contains("z,"), qPrintable(reading));
  // Whoever cannot see it is told the same.
  QCOMPARE(m_pFixture->Waterfall().accessibleName(), "Waterfall: " + reading);
  QAccessibleInterface* pAccessible = QAccessible::queryAccessibleInterface(&m_pFixture->Waterfall());
  QVERIFY(pAccessible != nullptr);
  QCOMPARE(pAccessible->text(QAccessible::Value), reading);
}

void SpectrumMoveTest::TheViewFollowsACursorThatLeavesIt() {
  m_pFixture->LookAt(7'080'000.0, 300.0, 1'000.0, 60.0);
  const int steps = m_pFixture->Waterfall().width() / 8;
  for (int i = 0; i < steps; ++i) m_pFixture->Key(Qt::Key_Right);
  QVERIFY(Hertz().dFrom > 7'079'600.0);
  QVERIFY(Near(Hertz().Length(), 1'000.0, 0.1));
  QVERIFY(Hertz().Holds(m_pFixture->Scene().Cursor()->dFrequency));
}

void SpectrumMoveTest::ThePointerTellsFrequencyTimeAndLevel() {
  m_pFixture->Hover(m_pFixture->Spot(7'115'000.0, 60.0));
  const QString reading = m_pFixture->TextOf("labelReading");
  QVERIFY2(reading.startsWith("7.11") && reading.contains("-70.2 dBFS"), qPrintable(reading));
  m_pFixture->Hover(m_pFixture->Spot(7'130'000.0, 60.0));
  QVERIFY2(m_pFixture->TextOf("labelReading").contains("-109.8 dBFS"), qPrintable(m_pFixture->TextOf("labelReading")));
}

void SpectrumMoveTest::TheReadingIsAsExactAsTheView() {
  m_pFixture->LookAt(7'080'000.0, 300.0, 20.0, 0.5);
  m_pFixture->Key(Qt::Key_Left);
  const QString reading = m_pFixture->TextOf("labelReading");
  QVERIFY2(QRegularExpression(R"(^7\.07999\d\d MHz|^7\.0800\d\d\d MHz)").match(reading).hasMatch(),
           qPrintable(reading));
  QVERIFY2(QRegularExpression(R"(\d\d:\d\d:\d\d\.\d{3,6}z)").match(reading).hasMatch(), qPrintable(reading));
}

void SpectrumMoveTest::GoesDownToSingleTransforms() {
  for (int i = 0; i < 100; ++i) m_pFixture->Key(Qt::Key_Plus);
  QCOMPARE(m_pFixture->Scene().Frames().Shown().Length(), 1024.0);
  QVERIFY(Hertz().Length() <= 1.0);
  QCOMPARE(m_pFixture->Fake().views.back().dFrames, 1024.0);
}

void SpectrumMoveTest::ZoomingAsksForThatView() {
  const std::size_t before = m_pFixture->Fake().views.size();
  m_pFixture->LookAt(7'090'000.0, 100.0, 10'000.0, 60.0);
  QCOMPARE(m_pFixture->Fake().views.size(), before + 1);
  const SSpectrumView& view = m_pFixture->Fake().views.back();
  QVERIFY(Near(view.dLowFrequency, -15'000.0, 0.01) && Near(view.dHighFrequency, -5'000.0, 0.01));
  QVERIFY(Near(view.dFirstFrame, 70.0 * 96'000, 0.1) && Near(view.dFrames, 60.0 * 96'000, 0.1));
}

// The picture of the whole stands in until a better one is there.
void SpectrumMoveTest::ZoomingOutAgainShowsWhatWasSeenAtOnce() {
  m_pFixture->Scene().SetLook({.bAutomatic = false, .levels = {-120.0, -40.0}});
  m_pFixture->LookAt(7'080'000.0, 300.0, 4'000.0, 60.0);
  m_pFixture->Scene().ShowAll(EAxes::Both);  // and nothing was asked for yet
  const QImage picture = m_pFixture->Waterfall().grab().toImage();
  const QPoint away = m_pFixture->Spot(7'115'000.0, 60.0);
  const QPoint noise = m_pFixture->Spot(7'130'000.0, 60.0);
  QVERIFY(picture.pixel(away) != picture.pixel(noise));
}

void SpectrumMoveTest::TheTransformIsChosenOrFollowsTheZoom() {
  QCOMPARE(m_pFixture->Fake().views.back().nTransform, std::size_t{0});
  m_pFixture->ChooseIn("comboTransform", "1 M");
  m_pFixture->Settle();
  QCOMPARE(m_pFixture->Fake().views.back().nTransform, std::size_t{1'048'576});
  QVERIFY2(m_pFixture->TextOf("labelView").contains("1048576 points, 0.09 Hz a bin"),
           qPrintable(m_pFixture->TextOf("labelView")));
  m_pFixture->ChooseIn("comboWindow", "Blackman-Harris");
  m_pFixture->Settle();
  QCOMPARE(m_pFixture->Fake().views.back().window, EWindow::BlackmanHarris);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumMoveTest)
#include "spectrum_move_test.moc"
