// Windows come back where they were, as far as the screens are still there.
#include <QScreen>
#include <QSettings>
#include <QWidget>

#include "ui/ui_test.h"
#include "ui/window_place.h"

namespace carvello {

class WindowPlaceTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { QSettings().clear(); }
  void PlacesAreMovedNoFurtherThanTheyMustBe_data();
  void PlacesAreMovedNoFurtherThanTheyMustBe();
  void TheFirstWindowIsAsLargeAsTheScreenAllows();
  void ComesBackWhereItWas();
  void ComesBackOnTheScreensThatThereAre();
  void MovesWhenItsScreenGoes_data();
  void MovesWhenItsScreenGoes();
};

namespace {

constexpr QMargins kFrame(4, 30, 4, 4);
const QSize kLeast(300, 200);

QRect Outer(const QWidget& window) {
  return window.frameGeometry();
}

}  // namespace

void WindowPlaceTest::PlacesAreMovedNoFurtherThanTheyMustBe_data() {
  QTest::addColumn<QRect>("wanted");
  QTest::addColumn<QList<QRect>>("screens");
  QTest::addColumn<QRect>("place");
  const QRect left(0, 0, 1000, 700), right(1000, 0, 1000, 700);
  QTest::newRow("fits") << QRect(100, 100, 400, 300) << QList{left} << QRect(100, 100, 400, 300);
  QTest::newRow("fits exactly") << QRect(4, 30, 992, 666) << QList{left} << QRect(4, 30, 992, 666);
  QTest::newRow("across two screens") << QRect(800, 100, 400, 300) << QList{left, right} << QRect(800, 100, 400, 300);
  QTest::newRow("title above") << QRect(100, 0, 400, 300) << QList{left} << QRect(100, 30, 400, 300);
  QTest::newRow("beyond the right end") << QRect(800, 100, 400, 300) << QList{left} << QRect(596, 100, 400, 300);
  QTest::newRow("beyond the bottom") << QRect(100, 600, 400, 300) << QList{left} << QRect(100, 396, 400, 300);
  QTest::newRow("too large") << QRect(-50, -50, 3000, 2000) << QList{left} << QRect(4, 30, 992, 666);
  QTest::newRow("screen gone") << QRect(2500, 100, 400, 300) << QList{left, right} << QRect(1596, 100, 400, 300);
  QTest::newRow("mostly on the second") << QRect(900, 500, 400, 300) << QList{left, right}
                                        << QRect(1004, 396, 400, 300);
  QTest::newRow("tiny screen") << QRect(0, 0, 800, 600) << QList{QRect(0, 0, 200, 100)} << QRect(4, 30, 300, 200);
  QTest::newRow("no screen") << QRect(9000, 0, 800, 600) << QList<QRect>{} << QRect(9000, 0, 800, 600);
}

void WindowPlaceTest::PlacesAreMovedNoFurtherThanTheyMustBe() {
  QFETCH(QRect, wanted);
  QFETCH(QList<QRect>, screens);
  QFETCH(QRect, place);
  QCOMPARE(PlaceOnScreens(wanted, kFrame, kLeast, screens), place);
}

void WindowPlaceTest::TheFirstWindowIsAsLargeAsTheScreenAllows() {
  for (const QRect& screen : {QRect(0, 0, 640, 480), QRect(0, 0, 4000, 3000)}) {
    QWidget window;
    window.resize(1440, 800);
    CWindowPlace place(window, "Place", [screen] { return QList{screen}; });
    place.Restore();
    window.show();
    const bool fits = screen.width() > 1500;
    QVERIFY(Outer(window).width() <= screen.width() && Outer(window).height() <= screen.height());
    if (fits) QCOMPARE(window.size(), QSize(1440, 800));
    if (!fits) QVERIFY(window.width() > screen.width() - 40 && window.height() > screen.height() - 80);
  }
}

void WindowPlaceTest::ComesBackWhereItWas() {
  const QList<QRect> screens = {QRect(0, 0, 800, 800)};
  {
    QWidget window;
    CWindowPlace place(window, "Place", [screens] { return screens; });
    window.setGeometry(120, 90, 345, 234);
    window.show();
    place.Save();
  }
  QWidget window;
  CWindowPlace place(window, "Place", [screens] { return screens; });
  place.Restore();
  window.show();
  QCOMPARE(window.geometry(), QRect(120, 90, 345, 234));
}

void WindowPlaceTest::ComesBackOnTheScreensThatThereAre() {
  {
    QWidget window;
    CWindowPlace place(window, "Place");
    window.setGeometry(400, 300, 390, 390);
    window.show();
    place.Save();
  }
  const QRect screen(0, 0, 500, 400);
  QWidget window;
  CWindowPlace place(window, "Place", [screen] { return QList{screen}; });
  place.Restore();
  window.show();
  QVERIFY(screen.contains(Outer(window)));
  QVERIFY(window.height() < 390);
}

void WindowPlaceTest::MovesWhenItsScreenGoes_data() {
  QTest::addColumn<int>("news");
  QTest::newRow("removed") << 0;
  QTest::newRow("added") << 1;
  QTest::newRow("another is the main one") << 2;
  QTest::newRow("resized") << 3;
}

void WindowPlaceTest::MovesWhenItsScreenGoes() {
  QFETCH(int, news);
  QList<QRect> screens = {QRect(0, 0, 600, 400), QRect(600, 0, 2000, 1000)};
  QWidget window;
  CWindowPlace place(window, "Place", [&screens] { return screens; });
  window.setGeometry(1200, 300, 900, 500);
  window.show();
  QVERIFY(QTest::qWaitForWindowExposed(&window));
  screens.removeLast();
  QCOMPARE(window.geometry(), QRect(1200, 300, 900, 500));
  QScreen* pScreen = QGuiApplication::primaryScreen();
  switch (news) {
    case 0:
      emit qApp->screenRemoved(pScreen);
      break;
    case 1:
      emit qApp->screenAdded(pScreen);
      break;
    case 2:
      emit qApp->primaryScreenChanged(pScreen);
      break;
    default:
      emit pScreen->availableGeometryChanged(screens.front());
      break;
  }
  QTRY_VERIFY(screens.front().contains(Outer(window)));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::WindowPlaceTest)
#include "window_place_test.moc"
