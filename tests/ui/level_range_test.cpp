#include "ui/level_range.h"

#include "spectrum/level_code.h"
#include "ui/ui_test.h"

namespace carvello {

namespace {

std::uint8_t CodeOf(double level) {
  return LevelCode(static_cast<float>(std::pow(10.0, level / 10.0)));
}

double Brightness(std::uint32_t colour) {
  return 0.2126 * ((colour >> 16U) & 255U) + 0.7152 * ((colour >> 8U) & 255U) + 0.0722 * (colour & 255U);
}

}  // namespace

class LevelRangeTest : public QObject {
  Q_OBJECT

 private slots:
  void AutomaticLevelsSpanFromTheNoiseToTheStrongest();
  void NoiseAloneStaysDark();
  void NothingKnownGivesNoLevels();
  void WhatIsNotKnownCountsForNothing();
  void SmallChangesAreNotWorthIt();
  void LevelsKeepADistance();
  void ColoursRiseFromTheLowLevelToTheHighOne();
  void WhatIsNotKnownIsTransparent();
};

void LevelRangeTest::AutomaticLevelsSpanFromTheNoiseToTheStrongest() {
  std::vector<std::uint8_t> codes(10'000, CodeOf(-108.0));
  std::fill_n(codes.begin(), 200, CodeOf(-30.0));
  const auto levels = AutomaticLevels(codes);
  QVERIFY(levels);
  QVERIFY2(levels->dLow <= -109.0 && levels->dLow >= -116.0, qPrintable(QString::number(levels->dLow)));
  QVERIFY2(levels->dHigh >= -30.0 && levels->dHigh <= -24.0, qPrintable(QString::number(levels->dHigh)));
}

void LevelRangeTest::NoiseAloneStaysDark() {
  const std::vector<std::uint8_t> codes(10'000, CodeOf(-100.0));
  const auto levels = AutomaticLevels(codes);
  QVERIFY(levels);
  const double part = (-100.0 - levels->dLow) / (levels->dHigh - levels->dLow);
  QVERIFY2(part > 0.05 && part < 0.25, qPrintable(QString::number(part)));
}

void LevelRangeTest::NothingKnownGivesNoLevels() {
  QVERIFY(!AutomaticLevels({}));
  QVERIFY(!AutomaticLevels(std::vector<std::uint8_t>(100, kUnknownLevel)));
}

void LevelRangeTest::WhatIsNotKnownCountsForNothing() {
  std::vector<std::uint8_t> codes(100, CodeOf(-90.0));
  const auto levels = AutomaticLevels(codes);
  codes.resize(10'000, kUnknownLevel);
  QCOMPARE(AutomaticLevels(codes), levels);
}

void LevelRangeTest::SmallChangesAreNotWorthIt() {
  QVERIFY(!IsWorthAChange({-110.0, -40.0}, {-111.0, -41.0}));
  QVERIFY(IsWorthAChange({-110.0, -40.0}, {-113.0, -40.0}));
  QVERIFY(IsWorthAChange({-110.0, -40.0}, {-110.0, -36.0}));
}

void LevelRangeTest::LevelsKeepADistance() {
  const SLevels before{-110.0, -40.0};
  QCOMPARE(HeldLevels({-100.0, -50.0}, before), (SLevels{-100.0, -50.0}));
  QCOMPARE(HeldLevels({-30.0, -40.0}, before), (SLevels{-46.0, -40.0}));
  QCOMPARE(HeldLevels({-110.0, -120.0}, before), (SLevels{-110.0, -104.0}));
  QCOMPARE(HeldLevels({-500.0, 500.0}, before), (SLevels{-150.0, 10.0}));
}

void LevelRangeTest::ColoursRiseFromTheLowLevelToTheHighOne() {
  for (const EPalette palette : {EPalette::Viridis, EPalette::Turbo, EPalette::Grey}) {
    const auto table = ColourTable(palette, {-100.0, -40.0});
    QCOMPARE(table[CodeOf(-101.0)], table[CodeOf(-140.0)]);
    QCOMPARE(table[CodeOf(-39.0)], table[CodeOf(0.0)]);
    QVERIFY(table[CodeOf(-98.0)] != table[CodeOf(-42.0)]);
    for (std::size_t code = 2; code < table.size(); ++code) {
      QVERIFY2(Brightness(table[code]) >= Brightness(table[code - 1]) - 1.0, qPrintable(QString::number(code)));
    }
  }
}

void LevelRangeTest::WhatIsNotKnownIsTransparent() {
  const auto table = ColourTable(EPalette::Viridis, {-100.0, -40.0});
  QCOMPARE(table[kUnknownLevel], 0U);
  for (std::size_t code = 1; code < table.size(); ++code) QCOMPARE(table[code] >> 24U, 255U);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::LevelRangeTest)
#include "level_range_test.moc"
