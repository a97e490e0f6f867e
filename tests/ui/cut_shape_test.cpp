#include "ui/cut_shape.h"

#include "ui/ui_test.h"

namespace carvello {

namespace {

// Ten minutes from second 1000 on, 96,000 frames a second.
SCutRules Rules(std::uint32_t raster = 0) {
  return {1000, 1600, 600 * 96'000, 96'000, raster};
}

SSpan Seconds(double from, double to) {
  return {from * 96'000, to * 96'000};
}

}  // namespace

class CutShapeTest : public QObject {
  Q_OBJECT

 private slots:
  void TakesTheSmallestBandThatHoldsTheDraggedOne();
  void WiderThanAllIsTheWidest();
  void WithoutATimeItIsTheWholeRecording();
  void TimesGrowToWholeSeconds();
  void ATimeUpToAnEdgeOfTheRecordingGoesOnToIt();
  void ATimeBehindTheLastSecondIsOneWithin();
  void ARasterMovesTheMiddleAndTheBandStillHolds();
  void ACarrierIsTheMiddle();
  void TheMiddleIsNeverBelowZero();
  void AnEdgeMovesAndTheOppositeOneStays();
  void OnARasterTheMiddleStays();
  void AnEdgeNeverPassesTheOther();
  void AStepIsTheNextBandwidthOrASecond();
  void TellsWhereACutLies();
};

void CutShapeTest::TakesTheSmallestBandThatHoldsTheDraggedOne() {
  QCOMPARE(CutOf({{7'000'000.0, 7'002'700.0}, {}}, Rules()), (SCut{7'001'350, 3'000, {}, {}}));
  QCOMPARE(CutOf({{7'000'000.0, 7'005'000.0}, {}}, Rules()), (SCut{7'002'500, 5'000, {}, {}}));
  QCOMPARE(CutOf({{7'000'000.0, 7'005'001.0}, {}}, Rules()).nBandwidth, 6'000U);
  QCOMPARE(CutOf({{7'000'000.0, 7'000'000.0}, {}}, Rules()), (SCut{7'000'000, 10, {}, {}}));
}

void CutShapeTest::WiderThanAllIsTheWidest() {
  QCOMPARE(CutOf({{7'000'000.0, 7'096'000.0}, {}}, Rules()), (SCut{7'048'000, 90'000, {}, {}}));
}

void CutShapeTest::WithoutATimeItIsTheWholeRecording() {
  const SCut cut = CutOf({{7'000'000.0, 7'003'000.0}, {}}, Rules());
  QVERIFY(!cut.tStart && !cut.tEnd);
}

void CutShapeTest::TimesGrowToWholeSeconds() {
  const SCut cut = CutOf({{7e6, 7.003e6}, Seconds(10.4, 20.1)}, Rules());
  QCOMPARE(cut.tStart.value_or(0), 1010);
  QCOMPARE(cut.tEnd.value_or(0), 1021);
  const SCut exact = CutOf({{7e6, 7.003e6}, Seconds(10.0, 20.0)}, Rules());
  QCOMPARE(exact.tStart.value_or(0), 1010);
  QCOMPARE(exact.tEnd.value_or(0), 1020);
  const SCut brief = CutOf({{7e6, 7.003e6}, Seconds(10.0, 10.0)}, Rules());
  QCOMPARE(brief.tStart.value_or(0), 1010);
  QCOMPARE(brief.tEnd.value_or(0), 1011);
}

void CutShapeTest::ATimeUpToAnEdgeOfTheRecordingGoesOnToIt() {
  const SCut start = CutOf({{7e6, 7.003e6}, Seconds(0.5, 20.0)}, Rules());
  QVERIFY(!start.tStart);
  QCOMPARE(start.tEnd.value_or(0), 1020);
  const SCut end = CutOf({{7e6, 7.003e6}, Seconds(20.0, 599.5)}, Rules());
  QCOMPARE(end.tStart.value_or(0), 1020);
  QVERIFY(!end.tEnd);
}

void CutShapeTest::ATimeBehindTheLastSecondIsOneWithin() {
  SCutRules rules = Rules();
  rules.nFrames = 600 * 96'000 + 50'000;  // the last half second is not of the recording's whole seconds
  const SCut cut = CutOf({{7e6, 7.003e6}, Seconds(600.1, 600.4)}, rules);
  QCOMPARE(cut.tStart.value_or(0), 1599);
  QVERIFY(!cut.tEnd);
}

void CutShapeTest::ARasterMovesTheMiddleAndTheBandStillHolds() {
  // 7.0023 to 7.0101 MHz: the middle is 7.0062, and 7.005 is next to it; 5.1 kHz to the upper edge.
  QCOMPARE(CutOf({{7'002'300.0, 7'010'100.0}, {}}, Rules(5'000)), (SCut{7'005'000, 11'000, {}, {}}));
  QCOMPARE(CutOf({{7'000'100.0, 7'009'900.0}, {}}, Rules(5'000)), (SCut{7'005'000, 10'000, {}, {}}));
  QCOMPARE(CutOf({{1'000'000.0, 1'010'000.0}, {}}, Rules(9'000)).nFrequency, 1'008'000);
  QCOMPARE(CutOf({{118'007'000.0, 118'015'000.0}, {}}, Rules(12'500)).nFrequency, 118'012'500);
}

void CutShapeTest::ACarrierIsTheMiddle() {
  QCOMPARE(CutOf({{7'002'000.0, 7'010'000.0}, {}}, Rules(5'000), 7'006'200.4), (SCut{7'006'200, 9'000, {}, {}}));
}

void CutShapeTest::TheMiddleIsNeverBelowZero() {
  const SCut cut = CutOf({{-8'000.0, -4'000.0}, {}}, Rules());
  QCOMPARE(cut, (SCut{0, 16'000, {}, {}}));  // and the band still holds what was dragged
}

void CutShapeTest::AnEdgeMovesAndTheOppositeOneStays() {
  const SCut cut{7'005'000, 10'000, 1100, 1200};
  QCOMPARE(WithEdgeAt(cut, ECutEdge::High, 7'017'300.0, Rules()), (SCut{7'009'000, 18'000, 1100, 1200}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::Low, 7'006'000.0, Rules()), (SCut{7'008'000, 4'000, 1100, 1200}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::Start, Seconds(50.4, 0).dFrom, Rules()), (SCut{7'005'000, 10'000, 1050, 1200}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::End, Seconds(300.6, 0).dFrom, Rules()), (SCut{7'005'000, 10'000, 1100, 1301}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::End, Seconds(700.0, 0).dFrom, Rules()), (SCut{7'005'000, 10'000, 1100, {}}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::Start, Seconds(-5.0, 0).dFrom, Rules()), (SCut{7'005'000, 10'000, {}, 1200}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::None, 1.0, Rules()), cut);
}

void CutShapeTest::OnARasterTheMiddleStays() {
  const SCut cut{7'005'000, 10'000, {}, {}};
  QCOMPARE(WithEdgeAt(cut, ECutEdge::High, 7'014'000.0, Rules(5'000)), (SCut{7'005'000, 18'000, {}, {}}));
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::Low, -1, Rules(5'000)), (SCut{7'005'000, 11'000, {}, {}}));
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::Low, 1, Rules(5'000)), (SCut{7'005'000, 9'000, {}, {}}));
}

void CutShapeTest::AnEdgeNeverPassesTheOther() {
  const SCut cut{7'005'000, 10'000, 1100, 1200};
  QCOMPARE(WithEdgeAt(cut, ECutEdge::High, 6'900'000.0, Rules()), (SCut{7'000'005, 10, 1100, 1200}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::Start, Seconds(500.0, 0).dFrom, Rules()), (SCut{7'005'000, 10'000, 1199, 1200}));
  QCOMPARE(WithEdgeAt(cut, ECutEdge::End, Seconds(1.0, 0).dFrom, Rules()), (SCut{7'005'000, 10'000, 1100, 1101}));
}

void CutShapeTest::AStepIsTheNextBandwidthOrASecond() {
  const SCut cut{7'005'000, 10'000, 1100, 1200};
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::High, 1, Rules()), (SCut{7'005'500, 11'000, 1100, 1200}));
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::High, -1, Rules()), (SCut{7'004'500, 9'000, 1100, 1200}));
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::Low, -1, Rules()), (SCut{7'004'500, 11'000, 1100, 1200}));
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::Start, 1, Rules()), (SCut{7'005'000, 10'000, 1101, 1200}));
  QCOMPARE(WithEdgeMoved(cut, ECutEdge::End, -1, Rules()), (SCut{7'005'000, 10'000, 1100, 1199}));
  const SCut narrowest{7'000'005, 10, {}, {}};
  QCOMPARE(WithEdgeMoved(narrowest, ECutEdge::High, -1, Rules()), narrowest);
  // From the end of the recording back.
  QCOMPARE(WithEdgeMoved({7'005'000, 10'000, {}, {}}, ECutEdge::End, -1, Rules()), (SCut{7'005'000, 10'000, {}, 1599}));
}

void CutShapeTest::TellsWhereACutLies() {
  const SCut cut{7'005'000, 10'000, 1100, {}};
  QCOMPARE(FrequenciesOf(cut), (SSpan{7'000'000.0, 7'010'000.0}));
  QCOMPARE(FramesOf(cut, Rules()), Seconds(100, 600));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::CutShapeTest)
#include "cut_shape_test.moc"
