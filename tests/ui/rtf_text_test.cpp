#include "ui/rtf_text.h"

#include "ui/ui_test.h"

namespace carvello {

class RtfTextTest : public QObject {
  Q_OBJECT

 private slots:
  void ReadsWhatWordProcessorsWrite_data();
  void ReadsWhatWordProcessorsWrite();
  void ATextThatEndsAnywhereIsReadUpToThere();
};

void RtfTextTest::ReadsWhatWordProcessorsWrite_data() {
  QTest::addColumn<QByteArray>("rtf");
  QTest::addColumn<QString>("html");
  const auto row = [](const char* name, const char* rtf, const char* html) {
    QTest::newRow(name) << QByteArray(rtf) << QString::fromUtf8(html);
  };
  row("nothing", "", "");
  row("a paragraph", "{\\rtf1 Text\\par}", "<p>Text</p>");
  row("line ends are no blanks", "{\\rtf1 Te\r\nxt\\par}", "<p>Text</p>");
  row("a paragraph that was not ended", "{\\rtf1 Text}", "<p>Text</p>");
  row("tables are no text", "{\\rtf1{\\fonttbl{\\f0\\fnil Calibri;}}{\\stylesheet{x;}}{\\*\\generator y;}Text\\par}",
      "<p>Text</p>");
  row("bold", "{\\rtf1 a \\b bold\\b0  b\\par}", "<p>a <b>bold</b> b</p>");
  row("bold ends with its group", "{\\rtf1 a{\\b b}c\\par}", "<p>a<b>b</b>c</p>");
  row("colours", "{\\rtf1{\\colortbl ;\\red128\\green129\\blue130;}\\cf1 grey\\cf0 text\\par}",
      "<p><span style=\"color:rgb(128,129,130)\">grey</span>text</p>");
  row("a colour that is not in the table", "{\\rtf1\\cf9 text\\par}", "<p>text</p>");
  row("bullets", "{\\rtf1 a\\par{\\pntext\\f1\\'B7\\tab}one\\par{\\pntext\\f1\\'B7\\tab}two\\par b\\par}",
      "<p>a</p><ul><li>one</li><li>two</li></ul><p>b</p>");
  row("bullets at the end", "{\\rtf1{\\pntext\\'B7\\tab}one\\par}", "<ul><li>one</li></ul>");
  row("characters of the code page", "{\\rtf1 \\'e4 \\'80 \\'93x\\'94\\par}",
      "<p>\xC3\xA4 \xE2\x82\xAC \xE2\x80\x9Cx\xE2\x80\x9D</p>");
  row("Unicode and its stand-in", "{\\rtf1\\uc1 \\u8364?\\u-3913? x\\par}", "<p>\xE2\x82\xAC\xEF\x82\xB7 x</p>");
  row("escaped characters", "{\\rtf1 \\{a\\} \\\\ <b>&\\~c\\par}",
      "<p>{a} \\ &lt;b&gt;&amp;\xC2\xA0"
      "c</p>");
  row("links", "{\\rtf1 See https://a.example/x?y=1.\\par}",
      "<p>See <a href=\"https://a.example/x?y=1\">https://a.example/x?y=1</a>.</p>");
  row("unknown words", "{\\rtf1\\ansi\\viewkind4\\sa120\\fi-360 Text\\par}", "<p>Text</p>");
  row("closed too often", "{\\rtf1 a}}}b\\par", "<p>ab</p>");
}

void RtfTextTest::ReadsWhatWordProcessorsWrite() {
  QFETCH(QByteArray, rtf);
  QFETCH(QString, html);
  QCOMPARE(RtfToHtml(rtf.toStdString()), html);
}

void RtfTextTest::ATextThatEndsAnywhereIsReadUpToThere() {
  const std::string whole =
      "{\\rtf1{\\fonttbl{\\f0 C;}}{\\colortbl ;\\red1\\green2\\blue3;}a\\'e4\\u8364?\\b b\\par{\\pntext\\'B7}c\\par}";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const QString html = RtfToHtml(whole.substr(0, length));
    QVERIFY2(!html.contains("rtf1"), qPrintable(html));
    QCOMPARE(html.count("<p>"), html.count("</p>"));
    QCOMPARE(html.count("<ul>"), html.count("</ul>"));
  }
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::RtfTextTest)
#include "rtf_text_test.moc"
