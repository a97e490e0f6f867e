// What tests of the spectrum window share: the dialog with a recording of ten minutes around 7.1 MHz, and the window
// beside it, which shows a made-up band.
#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <memory>

#include "ui/dialog_fixture.h"
#include "ui/spectrum_window.h"

namespace carvello::test {

class CSpectrumFixture : public CDialogFixture {
 public:
  static constexpr std::uint32_t kRate = 96'000;
  static constexpr std::int64_t kCentre = 7'100'000;
  static constexpr std::int64_t kSeconds = 600;

  // Opens the dialog with the recording and an output folder, and the window by its button.
  CSpectrumWindow& OpenSpectrum();
  CSpectrumWindow& Window();
  CSpectrumScene& Scene() { return Window().Scene(); }
  SFakeState& Fake() { return *Dialog().m_pSpectrum; }

  template <class T = QWidget>
  T& Part(const char* name) {
    auto* pPart = Window().findChild<T*>(QLatin1String(name));
    if (pPart == nullptr) qFatal("no part %s of this kind", name);
    return *pPart;
  }
  CWaterfallView& Waterfall() { return Part<CWaterfallView>("waterfall"); }
  // Lets everything come that was posted, and what comes of that.
  static void Settle();
  void Press(const char* button);
  QString TextOf(const char* label);
  void ChooseIn(const char* list, const QString& text);
  void SetChecked(const char* box, bool checked);

  // Where the recording's frequency (Hz) and second stand in the waterfall.
  QPoint Spot(double frequency, double second);
  void Drag(QWidget& part, const QPoint& from, const QPoint& to, Qt::MouseButton button = Qt::LeftButton);
  void Drag(double fromFrequency, double fromSecond, double toFrequency, double toSecond);
  void Hover(const QPoint& at);  // over the waterfall
  void Wheel(QWidget& part, const QPoint& at, int notches, Qt::KeyboardModifiers modifiers = {});
  void Key(int key, Qt::KeyboardModifiers modifiers = {});
  // Shows about so much around a place.
  void LookAt(double frequency, double second, double hertz, double seconds);
};

// Tests that each begin with the window open.
class CSpectrumSuite : public QObject {
  Q_OBJECT

 protected:
  std::unique_ptr<CSpectrumFixture> m_pFixture;

 private slots:
  void init() {
    m_pFixture = std::make_unique<CSpectrumFixture>();
    m_pFixture->OpenSpectrum();
  }
  void cleanup() { m_pFixture.reset(); }
};

}  // namespace carvello::test
