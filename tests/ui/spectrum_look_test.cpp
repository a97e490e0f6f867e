#include <QApplication>
#include <QSet>
#include <QSpinBox>
#include <cmath>

#include "ui/readable_colours.h"
#include "ui/spectrum_fixture.h"
#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumSuite;

class SpectrumLookTest : public CSpectrumSuite {
  Q_OBJECT

 private slots:
  void LevelsComeFromTheNoiseByThemselves();
  void LevelsAreSetByHand();
  void TheScaleIsDragged();
  void TheWheelOverTheScaleShiftsAndStretches();
  void ADoubleClickOnTheScaleMakesLevelsAutomatic();
  void AnotherPaletteRecoloursAndAsksForNothing();
  void StrongerIsBrighterInEveryPalette();
  void PeakShowsTheMaxima();
  void WhatIsNotKnownIsHatchedAndToldInWords();
  void TheStripTellsWhichRowsAreKnown();
  void TheLineReachesToTheStrongestPeak();
  void CanBeReadInEveryTheme();
  void PicturesAreAsSharpAsTheScreen();

 private:
  QColor ColourAt(double frequency, double second) {
    m_pFixture->Scene().SetCursor(std::nullopt);
    const QImage picture = m_pFixture->Waterfall().grab().toImage();
    return picture.pixelColor(m_pFixture->Spot(frequency, second) * picture.devicePixelRatio());
  }
  SLevels Levels() { return m_pFixture->Scene().Look().levels; }
  bool IsAutomatic() { return m_pFixture->Part<QAbstractButton>("checkAutomatic").isChecked(); }
};

namespace {

double Brightness(const QColor& colour) {
  return 0.2126 * colour.red() + 0.7152 * colour.green() + 0.0722 * colour.blue();
}

}  // namespace

void SpectrumLookTest::LevelsComeFromTheNoiseByThemselves() {
  QVERIFY(IsAutomatic());
  QVERIFY2(Levels().dLow < -110.0 && Levels().dLow > -120.0, qPrintable(QString::number(Levels().dLow)));
  QVERIFY2(Levels().dHigh >= -50.0 && Levels().dHigh < -40.0, qPrintable(QString::number(Levels().dHigh)));
  m_pFixture->Fake().dNoise = -80.0;
  m_pFixture->Key(Qt::Key_Plus);
  QVERIFY2(Levels().dLow > -90.0, qPrintable(QString::number(Levels().dLow)));
}

void SpectrumLookTest::LevelsAreSetByHand() {
  auto& low = m_pFixture->Part<QSpinBox>("spinLow");
  low.setFocus();
  low.selectAll();
  QTest::keyClicks(&low, "-90");
  QTest::keyClick(&low, Qt::Key_Return);
  QCOMPARE(Levels().dLow, -90.0);
  QVERIFY(!IsAutomatic());
  m_pFixture->Fake().dNoise = -60.0;
  m_pFixture->Key(Qt::Key_Plus);
  QCOMPARE(Levels().dLow, -90.0);  // stays
  m_pFixture->SetChecked("checkAutomatic", true);
  QVERIFY(Levels().dLow > -90.0);
}

void SpectrumLookTest::TheScaleIsDragged() {
  auto& scale = m_pFixture->Part<CLevelScale>("levelScale");
  const auto at = [&](double level) { return QPoint(12, static_cast<int>(std::lround(scale.YOf(level)))); };
  const SLevels before = Levels();
  m_pFixture->Drag(scale, at(before.dHigh), at(-20.0));
  QVERIFY2(std::abs(Levels().dHigh + 20.0) <= 1.0, qPrintable(QString::number(Levels().dHigh)));
  QCOMPARE(Levels().dLow, before.dLow);
  QVERIFY(!IsAutomatic());
  QCOMPARE(m_pFixture->Part<QSpinBox>("spinHigh").value(), static_cast<int>(Levels().dHigh));
  const SLevels wide = Levels();
  m_pFixture->Drag(scale, at(-70.0), at(-60.0));  // both
  QVERIFY(std::abs(Levels().dLow - wide.dLow - 10.0) <= 1.0 && std::abs(Levels().dHigh - wide.dHigh - 10.0) <= 1.0);
  m_pFixture->Drag(scale, at(Levels().dLow), at(Levels().dHigh + 10.0));
  QCOMPARE(Levels().dLow, Levels().dHigh - kLeastLevels);
}

void SpectrumLookTest::TheWheelOverTheScaleShiftsAndStretches() {
  const SLevels before = Levels();
  m_pFixture->Wheel(m_pFixture->Part("levelScale"), {12, 100}, 1);
  QCOMPARE(Levels(), (SLevels{before.dLow + 2.0, before.dHigh + 2.0}));
  m_pFixture->Wheel(m_pFixture->Part("levelScale"), {12, 100}, 1, Qt::ControlModifier);
  QCOMPARE(Levels(), (SLevels{before.dLow + 4.0, before.dHigh}));
}

void SpectrumLookTest::ADoubleClickOnTheScaleMakesLevelsAutomatic() {
  m_pFixture->Part<QSpinBox>("spinLow").setValue(-60);
  QVERIFY(!IsAutomatic());
  QTest::mouseDClick(&m_pFixture->Part("levelScale"), Qt::LeftButton, {}, {12, 60});
  QVERIFY(IsAutomatic());
  QVERIFY(Levels().dLow < -100.0);
}

void SpectrumLookTest::AnotherPaletteRecoloursAndAsksForNothing() {
  const std::size_t asked = m_pFixture->Fake().views.size();
  const QColor viridis = ColourAt(7'115'000.0, 300.0);
  m_pFixture->ChooseIn("comboPalette", "Turbo");
  m_pFixture->Settle();
  const QColor turbo = ColourAt(7'115'000.0, 300.0);
  m_pFixture->ChooseIn("comboPalette", "Grey");
  m_pFixture->Part<QSpinBox>("spinLow").setValue(-100);
  m_pFixture->Settle();
  const QColor grey = ColourAt(7'115'000.0, 300.0);
  QVERIFY(viridis != turbo && turbo != grey);
  QVERIFY(grey.red() == grey.green() && grey.green() == grey.blue());
  QCOMPARE(m_pFixture->Fake().views.size(), asked);
}

void SpectrumLookTest::StrongerIsBrighterInEveryPalette() {
  for (const char* palette : {"Viridis", "Turbo", "Grey"}) {
    m_pFixture->ChooseIn("comboPalette", palette);
    const double noise = Brightness(ColourAt(7'130'000.0, 300.0));
    const double weak = Brightness(ColourAt(7'115'000.0, 300.0));
    const double strong = Brightness(ColourAt(7'080'000.0, 300.0));
    QVERIFY2(noise < weak && weak < strong, palette);
  }
}

void SpectrumLookTest::PeakShowsTheMaxima() {
  QVERIFY(!m_pFixture->Scene().Look().bPeak);
  const auto& picture = *m_pFixture->Scene().Picture();
  QCOMPARE(&CodesOf(picture, m_pFixture->Scene().Look()), &picture.mean);
  m_pFixture->ChooseIn("comboShow", "Peak");
  QCOMPARE(&CodesOf(picture, m_pFixture->Scene().Look()), &picture.maximum);
}

void SpectrumLookTest::WhatIsNotKnownIsHatchedAndToldInWords() {
  m_pFixture->Fake().dKnown = 0.5;
  m_pFixture->ChooseIn("comboTransform", "2 k");  // asks anew
  m_pFixture->Settle();
  const QImage picture = m_pFixture->Waterfall().grab().toImage();
  QSet<QRgb> colours;
  for (int x = 200; x < 260; ++x) colours.insert(picture.pixel(x, picture.height() * 3 / 4));
  QVERIFY(colours.size() > 1);                                               // a pattern
  for (const QRgb colour : colours) QCOMPARE(qRed(colour), qGreen(colour));  // in no colour of viridis
  const QPoint unknown = m_pFixture->Spot(7'080'000.0, 500.0);
  m_pFixture->Hover(unknown);
  QVERIFY2(m_pFixture->TextOf("labelReading").endsWith("level not known yet"),
           qPrintable(m_pFixture->TextOf("labelReading")));
}

void SpectrumLookTest::TheStripTellsWhichRowsAreKnown() {
  m_pFixture->Fake().dKnown = 0.5;
  m_pFixture->ChooseIn("comboTransform", "2 k");
  m_pFixture->Settle();
  QWidget& strip = m_pFixture->Part("knownStrip");
  const QImage picture = strip.grab().toImage();
  QCOMPARE(strip.height(), m_pFixture->Waterfall().height());
  const QColor top = picture.pixelColor(1, picture.height() / 4);
  const QColor bottom = picture.pixelColor(1, picture.height() * 3 / 4);
  QVERIFY(ContrastOf(top, bottom) > 3.0);
  QVERIFY(!strip.toolTip().isEmpty());
}

void SpectrumLookTest::TheLineReachesToTheStrongestPeak() {
  m_pFixture->Fake().stations.push_back({30'000.0, 500.0, -7.0});
  m_pFixture->Key(Qt::Key_Plus);
  const SSpan levels = m_pFixture->Part<CSpectrumLine>("spectrumLine").Levels();
  QCOMPARE(levels.dTo, 0.0);
  QVERIFY(levels.dFrom < -100.0);
}

void SpectrumLookTest::CanBeReadInEveryTheme() {
  for (const test::STheme& theme : test::Themes()) {
    QApplication::setPalette(theme.palette);
    m_pFixture->Settle();
    for (const char* part : {"frequencyAxis", "timeAxis", "levelAxis", "spectrumLine"}) {
      const QImage picture = m_pFixture->Part(part).grab().toImage();
      const double contrast = test::BestContrast(picture);
      QVERIFY2(contrast >= 4.5, qPrintable(QString("%1, %2: %3").arg(theme.name, part).arg(contrast)));
    }
  }
  QApplication::setPalette({});
}

void SpectrumLookTest::PicturesAreAsSharpAsTheScreen() {
  const SSpectrumView& view = m_pFixture->Fake().views.back();
  const double ratio = m_pFixture->Waterfall().devicePixelRatioF();
  QCOMPARE(view.nColumns, static_cast<int>(std::lround(m_pFixture->Waterfall().width() * ratio)));
  QCOMPARE(view.nRows, static_cast<int>(std::lround(m_pFixture->Waterfall().height() * ratio)));
  // The edge of a station is as hard as it is: next to one pixel of it lies one of noise.
  m_pFixture->LookAt(7'076'000.0, 300.0, 2'000.0, 60.0);
  m_pFixture->Scene().SetCursor(std::nullopt);
  const QImage picture = m_pFixture->Waterfall().grab().toImage();
  QSet<QRgb> colours;
  for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, picture.height() / 2));
  QCOMPARE(colours.size(), 2);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumLookTest)
#include "spectrum_look_test.moc"
