#include "ui/readable_colours.h"

#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

class ReadableColoursTest : public QObject {
  Q_OBJECT

 private slots:
  void ContrastIsThatOfTheGuidelines();
  void EveryToneIsReadableOnEveryGrey();
  void EveryToneIsReadableInEveryTheme();
  void TonesCanBeToldApart();
  void PlainIsWhatItIs();
};

void ReadableColoursTest::ContrastIsThatOfTheGuidelines() {
  QCOMPARE(ContrastOf(Qt::black, Qt::white), 21.0);
  QCOMPARE(ContrastOf(Qt::white, Qt::black), 21.0);
  QCOMPARE(ContrastOf(Qt::red, Qt::red), 1.0);
  // The grey that the guidelines' readers know as the palest on white: #767676 has 4.54.
  QVERIFY(std::abs(ContrastOf({0x76, 0x76, 0x76}, Qt::white) - 4.54) < 0.005);
}

void ReadableColoursTest::EveryToneIsReadableOnEveryGrey() {
  for (int grey = 0; grey < 256; ++grey) {
    const QColor background(grey, grey, grey);
    QVERIFY(ContrastOf(ReadableOn(background), background) >= 4.5);
    for (const ETone tone : {ETone::Good, ETone::Caution, ETone::Bad}) {
      QVERIFY2(ContrastOf(ToneColour(tone, {background}, {}), background) >= 4.5, qPrintable(background.name()));
    }
  }
}

void ReadableColoursTest::EveryToneIsReadableInEveryTheme() {
  for (const test::STheme& theme : test::Themes()) {
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
      const QList<QColor> backgrounds = {theme.palette.color(group, QPalette::Window),
                                         theme.palette.color(group, QPalette::Base),
                                         theme.palette.color(group, QPalette::AlternateBase)};
      for (const ETone tone : {ETone::Good, ETone::Caution, ETone::Bad}) {
        const QColor colour = ToneColour(tone, backgrounds, {});
        for (const QColor& background : backgrounds) QVERIFY(ContrastOf(colour, background) >= 4.5);
      }
    }
  }
}

void ReadableColoursTest::TonesCanBeToldApart() {
  for (const QColor& background : {QColor(Qt::white), QColor(Qt::black)}) {
    const QColor good = ToneColour(ETone::Good, {background}, {});
    const QColor caution = ToneColour(ETone::Caution, {background}, {});
    const QColor bad = ToneColour(ETone::Bad, {background}, {});
    QVERIFY(good.green() > good.red() && good.green() > good.blue());
    QVERIFY(bad.red() > bad.green() && bad.red() > bad.blue());
    QVERIFY(caution.red() > caution.blue() && caution.green() > caution.blue());
    QVERIFY(caution != good && caution != bad);
  }
}

void ReadableColoursTest::PlainIsWhatItIs() {
  QCOMPARE(ToneColour(ETone::Plain, {Qt::white}, Qt::yellow), QColor(Qt::yellow));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::ReadableColoursTest)
#include "readable_colours_test.moc"
