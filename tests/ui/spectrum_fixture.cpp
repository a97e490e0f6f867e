#include "ui/spectrum_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

namespace carvello::test {

CSpectrumWindow& CSpectrumFixture::OpenSpectrum() {
  OpenReady({.nSampleRate = kRate, .nCentre = kCentre, .nSeconds = kSeconds});
  Fake().stations = {{-20'000.0, 8'000.0, -50.0}, {15'000.0, 4'000.0, -70.0}};
  QTest::mouseClick(Dialog().findChild<QAbstractButton*>("buttonSpectrum"), Qt::LeftButton);
  if (!QTest::qWaitForWindowActive(&Window())) qFatal("the spectrum window does not come up");
  Settle();
  return Window();
}

void CSpectrumFixture::Settle() {
  for (int i = 0; i < 4; ++i) QCoreApplication::processEvents();
  QTest::qWait(20);  // longer than the window rests between two pictures
}

CSpectrumWindow& CSpectrumFixture::Window() {
  auto* pWindow = Dialog().findChild<CSpectrumWindow*>("CSpectrumWindow");
  if (pWindow == nullptr) qFatal("no spectrum window");
  return *pWindow;
}

void CSpectrumFixture::Press(const char* button) {
  QTest::mouseClick(&Part<QAbstractButton>(button), Qt::LeftButton);
}

QString CSpectrumFixture::TextOf(const char* label) {
  return Part<QLabel>(label).text();
}

void CSpectrumFixture::ChooseIn(const char* list, const QString& text) {
  auto& box = Part<QComboBox>(list);
  const int index = box.findText(text);
  if (index < 0) qFatal("no choice %s in %s", qPrintable(text), list);
  box.setCurrentIndex(index);
}

void CSpectrumFixture::SetChecked(const char* box, bool checked) {
  auto& button = Part<QCheckBox>(box);
  if (button.isChecked() != checked) QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

QPoint CSpectrumFixture::Spot(double frequency, double second) {
  const double x = Carried(frequency, Scene().Frequencies().Shown(), {0.0, 1.0 * Waterfall().width()});
  const double y = Carried(second * kRate, Scene().Frames().Shown(), {0.0, 1.0 * Waterfall().height()});
  return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
}

void CSpectrumFixture::Drag(QWidget& part, const QPoint& from, const QPoint& to, Qt::MouseButton button) {
  QTest::mousePress(&part, button, {}, from);
  for (int step = 1; step <= 4; ++step) {
    const QPoint at = from + (to - from) * step / 4;
    // The toolkit's own helper tells of no buttons that are held.
    QMouseEvent move(QEvent::MouseMove, at, part.mapToGlobal(at), Qt::NoButton, button, {});
    QApplication::sendEvent(&part, &move);
  }
  QTest::mouseRelease(&part, button, {}, to);
  Settle();
}

void CSpectrumFixture::Drag(double fromFrequency, double fromSecond, double toFrequency, double toSecond) {
  Drag(Waterfall(), Spot(fromFrequency, fromSecond), Spot(toFrequency, toSecond));
}

void CSpectrumFixture::Hover(const QPoint& at) {
  QMouseEvent move(QEvent::MouseMove, at, Waterfall().mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
  QApplication::sendEvent(&Waterfall(), &move);
  Settle();
}

void CSpectrumFixture::Wheel(QWidget& part, const QPoint& at, int notches, Qt::KeyboardModifiers modifiers) {
  QWheelEvent wheel(at, part.mapToGlobal(at), {}, {0, 120 * notches}, {}, modifiers, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&part, &wheel);
  Settle();
}

void CSpectrumFixture::Key(int key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(&Waterfall(), static_cast<Qt::Key>(key), modifiers);
  Settle();
}

void CSpectrumFixture::LookAt(double frequency, double second, double hertz, double seconds) {
  const double frame = second * kRate;
  const double frames = seconds * kRate;
  Scene().Show({frequency - hertz / 2.0, frequency + hertz / 2.0}, {frame - frames / 2.0, frame + frames / 2.0});
  Settle();
}

}  // namespace carvello::test
