#include "ui/view_span.h"

#include "ui/ui_test.h"

namespace carvello {

class ViewSpanTest : public QObject {
  Q_OBJECT

 private slots:
  void ShowsAllAtFirst();
  void ZoomingLeavesWhatIsUnderThePointerInItsPlace();
  void ZoomingOutEndsAtTheWhole();
  void ZoomingInEndsAtTheLeast();
  void AWholeThatIsShorterThanTheLeastIsShownWhole();
  void PanningEndsAtTheEdges();
  void ShowingASpanHoldsItWithinTheWhole();
  void CarriesAPlaceFromOneSpanToAnother();
};

void ViewSpanTest::ShowsAllAtFirst() {
  const CViewSpan span({-10.0, 90.0}, 1.0);
  QCOMPARE(span.Shown(), (SSpan{-10.0, 90.0}));
  QVERIFY(span.ShowsAll());
}

void ViewSpanTest::ZoomingLeavesWhatIsUnderThePointerInItsPlace() {
  CViewSpan span({0.0, 100.0}, 1.0);
  QVERIFY(span.Zoom(0.5, 20.0));
  QCOMPARE(span.Shown(), (SSpan{10.0, 60.0}));  // a fifth from the left, as before
  QVERIFY(span.Zoom(0.5, 20.0));
  QCOMPARE(span.Shown(), (SSpan{15.0, 40.0}));
  QVERIFY(span.Zoom(2.0, 20.0));
  QCOMPARE(span.Shown(), (SSpan{10.0, 60.0}));
}

void ViewSpanTest::ZoomingOutEndsAtTheWhole() {
  CViewSpan span({0.0, 100.0}, 1.0);
  span.Zoom(0.1, 97.0);
  QVERIFY(span.Zoom(50.0, 88.0));
  QVERIFY(span.ShowsAll());
  QVERIFY(!span.Zoom(2.0, 50.0));
  span.Show({90.0, 100.0});
  QVERIFY(span.Zoom(2.0, 90.0));
  QCOMPARE(span.Shown(), (SSpan{80.0, 100.0}));
}

void ViewSpanTest::ZoomingInEndsAtTheLeast() {
  CViewSpan span({0.0, 100.0}, 8.0);
  QVERIFY(span.Zoom(0.001, 50.0));
  QCOMPARE(span.Shown(), (SSpan{46.0, 54.0}));
  QVERIFY(!span.Zoom(0.5, 50.0));
}

void ViewSpanTest::AWholeThatIsShorterThanTheLeastIsShownWhole() {
  CViewSpan span({5.0, 7.0}, 100.0);
  QVERIFY(!span.Zoom(0.5, 6.0));
  QCOMPARE(span.Shown(), (SSpan{5.0, 7.0}));
  CViewSpan empty({0.0, 0.0}, 1.0);
  QVERIFY(!empty.Zoom(0.5, 0.0));
  QVERIFY(!empty.Pan(1.0));
}

void ViewSpanTest::PanningEndsAtTheEdges() {
  CViewSpan span({0.0, 100.0}, 1.0);
  QVERIFY(!span.Pan(10.0));  // nowhere to go
  span.Show({40.0, 60.0});
  QVERIFY(span.Pan(15.0));
  QCOMPARE(span.Shown(), (SSpan{55.0, 75.0}));
  QVERIFY(span.Pan(1000.0));
  QCOMPARE(span.Shown(), (SSpan{80.0, 100.0}));
  QVERIFY(span.Pan(-1000.0));
  QCOMPARE(span.Shown(), (SSpan{0.0, 20.0}));
  QVERIFY(!span.Pan(-1.0));
}

void ViewSpanTest::ShowingASpanHoldsItWithinTheWhole() {
  CViewSpan span({0.0, 100.0}, 2.0);
  span.Show({95.0, 115.0});
  QCOMPARE(span.Shown(), (SSpan{80.0, 100.0}));
  span.Show({50.0, 50.0});
  QCOMPARE(span.Shown(), (SSpan{49.0, 51.0}));
  span.Show({-500.0, 500.0});
  QVERIFY(span.ShowsAll());
}

void ViewSpanTest::CarriesAPlaceFromOneSpanToAnother() {
  QCOMPARE(Carried(25.0, {0.0, 100.0}, {1000.0, 2000.0}), 1250.0);
  QCOMPARE(Carried(25.0, {0.0, 100.0}, {200.0, 0.0}), 150.0);  // upside down
  QCOMPARE(Carried(5.0, {5.0, 5.0}, {7.0, 9.0}), 7.0);
  QCOMPARE(SpanOf(3.0, 1.0), (SSpan{1.0, 3.0}));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::ViewSpanTest)
#include "view_span_test.moc"
