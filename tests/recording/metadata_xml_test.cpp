#include "recording/metadata_xml.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/hresult.h"
#include "support/platform.h"
#include "support/version.h"

namespace carvello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SMetadataLists Parse(const std::string& xml) {
  SMetadataLists lists;
  lists.names = {"stale"};
  lists.values = {"stale"};
  EXPECT_EQ(ParseMetadataXml(xml, lists), 0);
  EXPECT_EQ(lists.names.size(), lists.values.size());
  return lists;
}

TEST(ParseMetadataXml, GivesAttributesInDocumentOrder) {
  const SMetadataLists lists =
      Parse("<?xml version=\"1.0\"?><SDR-XML-Root Description=\"x\"><Definition B=\"1\" A=\"2\"/></SDR-XML-Root>");
  EXPECT_THAT(lists.names, ElementsAre("B", "A"));
  EXPECT_THAT(lists.values, ElementsAre("1", "2"));
}

TEST(ParseMetadataXml, SizeAttributesFollowThoseOfDefinition) {
  const SMetadataLists lists = Parse("<SDR-XML-Root><Size S=\"3\"/><Definition D=\"1\"/></SDR-XML-Root>");
  EXPECT_THAT(lists.names, ElementsAre("D", "S"));
  EXPECT_THAT(lists.values, ElementsAre("1", "3"));
}

TEST(ParseMetadataXml, RootSdrServerIsReadLikeSdrXmlRoot) {
  const SMetadataLists lists = Parse("<SDR-Server><Definition D=\"1\"/><Size S=\"3\"/></SDR-Server>");
  EXPECT_THAT(lists.names, ElementsAre("D", "S"));
}

TEST(ParseMetadataXml, SdrXmlRootComesBeforeSdrServer) {
  const SMetadataLists lists =
      Parse("<SDR-Server><Definition D=\"1\"/></SDR-Server><SDR-XML-Root><Definition D=\"2\"/></SDR-XML-Root>");
  EXPECT_THAT(lists.values, ElementsAre("2"));
}

TEST(ParseMetadataXml, TheFirstElementOfANameCounts) {
  const SMetadataLists lists = Parse("<SDR-XML-Root><Definition D=\"1\"/><Definition D=\"2\"/></SDR-XML-Root>");
  EXPECT_THAT(lists.values, ElementsAre("1"));
}

TEST(ParseMetadataXml, EscapesAndUnicodeAreRead) {
  const SMetadataLists lists =
      Parse("<SDR-XML-Root><Definition A=\"&lt;&amp;&quot;&#x20AC;\" B=\"\xF0\x9F\x93\xBB\" C=\"\"/></SDR-XML-Root>");
  EXPECT_THAT(lists.values, ElementsAre("<&\"\xE2\x82\xAC", "\xF0\x9F\x93\xBB", ""));
}

TEST(ParseMetadataXml, UnreadableTextsLeaveBothListsEmpty) {
  EXPECT_THAT(Parse("").names, IsEmpty());
  EXPECT_THAT(Parse("no xml").names, IsEmpty());
  EXPECT_THAT(Parse("<Other><Definition D=\"1\"/></Other>").names, IsEmpty());
  EXPECT_THAT(Parse("<SDR-XML-Root/>").names, IsEmpty());
  EXPECT_THAT(Parse("<SDR-XML-Root><Definition D=\"1\"/>").names, IsEmpty());
  EXPECT_THAT(Parse("<SDR-XML-Root><Definition D=\"1\" E=/></SDR-XML-Root>").names, IsEmpty());
}

TEST(MetadataLists, FindIsExactAndTakesTheFirst) {
  SMetadataLists lists;
  lists.names = {"A", "B", "A"};
  lists.values = {"1", "2", "3"};
  EXPECT_EQ(lists.Find("A"), "1");
  EXPECT_EQ(lists.Find("a"), "");
  EXPECT_EQ(lists.Find("AB"), "");
  EXPECT_TRUE(lists.Has("B"));
  EXPECT_FALSE(lists.Has("b"));
}

TEST(MetadataLists, NumbersAreReadUpToTheirEnd) {
  SMetadataLists lists;
  lists.names = {"a", "b", "c", "d"};
  lists.values = {"4294967296", " -12 Hz", "x", ""};
  EXPECT_EQ(lists.FindNumber("a"), 4'294'967'296);
  EXPECT_EQ(lists.FindNumber("b"), -12);
  EXPECT_EQ(lists.FindNumber("c"), 0);
  EXPECT_EQ(lists.FindNumber("d"), 0);
  EXPECT_EQ(lists.FindNumber("e"), 0);
}

SMetadataFacts Facts() {
  SMetadataFacts facts;
  facts.tCreated = 1'794'789'880;  // 2026-11-16 00:44:40
  facts.tStart = 1'795'264'496;    // 2026-11-21 12:34:56
  facts.strFileName = "D:\\IQ\\Out 001.wav";
  facts.strFirstFile = "D:\\IQ\\Out 000.wav";
  facts.strPreviousFile = "D:\\IQ\\Out 000.wav";
  facts.strInternalTag = "6A17-3C88-01F4";
  facts.strRadioModel = "Model <1 & \"2\"";
  facts.strRadioSerial = "SN7";
  facts.nDualMode = -1;
  facts.nSequence = 1;
  facts.nADFrequency = 4'000'000'000;
  facts.nBitsPerSample = 16;
  facts.nBytesPerSecond = 192'000;
  facts.nRadioCenterFreq = 10'000'000'000;
  facts.nSampleRate = 48'000;
  return facts;
}

// The value of an attribute by plain text search; the texts compared here need no unescaping.
std::string ValueIn(const std::string& xml, const std::string& name) {
  const std::string head = " " + name + "=\"";
  const std::size_t start = xml.find(head);
  if (start == std::string::npos) return "(none)";
  const std::size_t end = xml.find('"', start + head.size());
  return xml.substr(start + head.size(), end - start - head.size());
}

TEST(BuildMetadataXml, HasItsAttributesInOrderAndNothingElse) {
  const std::string xml = BuildMetadataXml(Facts());
  // What differs from machine to machine is taken from the text and looked at below.
  const std::string expected =
      "<?xml version=\"1.0\"?>"
      "<SDR-XML-Root Description=\"Saved recording data\" Created=\"16-Nov-2026 00:44\">"
      "<Definition CurrentTimeUTC=\"21-11-2026 12:34:56\" Filename=\"Out 001.wav\" FirstFile=\"Out 000.wav\""
      " Folder=\"D:\\IQ\" InternalTag=\"6A17-3C88-01F4\" PreviousFile=\"Out 000.wav\""
      " RadioModel=\"Model &lt;1 &amp; &quot;2&quot;\" RadioSerial=\"SN7\" SoftwareName=\"Carvello\""
      " SoftwareVersion=\"" +
      VersionInfo().strVersionText + "\" UTC=\"21-11-2026 12:34:56\" XMLLevel=\"XMLLevel003\" CreatedBy=\"" +
      ValueIn(xml, "CreatedBy") + "\" TimeZoneStatus=\"" + ValueIn(xml, "TimeZoneStatus") + "\" TimeZoneInfo=\"" +
      ValueIn(xml, "TimeZoneInfo") +
      "\" DualMode=\"-1\" Sequence=\"1\" ADFrequency=\"4000000000\" BitsPerSample=\"16\" BytesPerSecond=\"192000\""
      " RadioCenterFreq=\"10000000000\" SampleRate=\"48000\" UTCSeconds=\"1795264496\"/></SDR-XML-Root>";
  EXPECT_EQ(xml, expected);
}

TEST(BuildMetadataXml, NamesTheUserTheComputerAndTheTimeZone) {
  const std::string xml = BuildMetadataXml(Facts());
  EXPECT_EQ(ValueIn(xml, "CreatedBy"), platform::UserName() + " on " + platform::ComputerName());
  EXPECT_EQ(ValueIn(xml, "TimeZoneStatus"), std::to_string(platform::GetTimeZoneRecord().nStatus));
  const std::string zone = ValueIn(xml, "TimeZoneInfo");
  EXPECT_EQ(zone.size(), 232U);
  EXPECT_TRUE(zone.ends_with("=="));
}

TEST(BuildMetadataXml, ABareDriveCountsAsFolder) {
  SMetadataFacts facts = Facts();
  facts.strFileName = "C:Out.wav";
  const std::string xml = BuildMetadataXml(facts);
  EXPECT_EQ(ValueIn(xml, "Folder"), "C");
  EXPECT_EQ(ValueIn(xml, "Filename"), "Out.wav");
}

TEST(BuildMetadataXml, TheFolderIsTheTextAsItStands) {
  SMetadataFacts facts = Facts();
  facts.strFileName = "/home/a\\b:c/Out.wav";
  EXPECT_EQ(ValueIn(BuildMetadataXml(facts), "Folder"), "/home/a\\b:c");
}

TEST(BuildMetadataXml, TheFolderIsEmptyWhenTheSeparatorStandsFirstOrNowhere) {
  SMetadataFacts facts = Facts();
  facts.strFileName = "/Out.wav";
  std::string xml = BuildMetadataXml(facts);
  EXPECT_EQ(ValueIn(xml, "Folder"), "");
  EXPECT_EQ(ValueIn(xml, "Filename"), "/Out.wav");
  facts.strFileName = "Out.wav";
  xml = BuildMetadataXml(facts);
  EXPECT_EQ(ValueIn(xml, "Folder"), "");
  EXPECT_EQ(ValueIn(xml, "Filename"), "Out.wav");
}

TEST(BuildMetadataXml, UtcSecondsAreTheLow32Bits) {
  SMetadataFacts facts = Facts();
  facts.tStart = 4'294'967'296 + 5;  // in the year 2106
  EXPECT_EQ(ValueIn(BuildMetadataXml(facts), "UTCSeconds"), "5");
}

TEST(BuildMetadataXml, AnImpossibleStartTimeRaisesInvalidArgument) {
  SMetadataFacts facts = Facts();
  facts.tStart = std::numeric_limits<std::int64_t>::max();
  try {
    BuildMetadataXml(facts);
    FAIL() << "no exception";
  } catch (const CHResultError& error) {
    EXPECT_EQ(error.Code(), kInvalidArgument);
  }
}

TEST(BuildMetadataXml, ReadsBackWhatItWrote) {
  SMetadataFacts facts = Facts();
  facts.strRadioModel = "\xF0\x9F\x94\x92 R\xC3\xA4\xC3\xA4 <&>'\"\t";
  const SMetadataLists lists = Parse(BuildMetadataXml(facts));
  EXPECT_EQ(lists.names.size(), 23U);
  EXPECT_EQ(lists.Find("RadioModel"), facts.strRadioModel);
  EXPECT_EQ(lists.FindNumber("RadioCenterFreq"), facts.nRadioCenterFreq);
  EXPECT_EQ(lists.Find("Folder"), "D:\\IQ");
}

TEST(FileNameOnly, CutsBehindTheLastSeparatorOfAnyKind) {
  EXPECT_EQ(FileNameOnly("D:\\IQ\\Out.wav"), "Out.wav");
  EXPECT_EQ(FileNameOnly("/a/b\\Out.wav"), "Out.wav");
  EXPECT_EQ(FileNameOnly("/a\\b/Out.wav"), "Out.wav");
  EXPECT_EQ(FileNameOnly("C:Out.wav"), "Out.wav");
  EXPECT_EQ(FileNameOnly("a/"), "");
}

TEST(FileNameOnly, KeepsThePathWhenTheSeparatorStandsFirstOrNowhere) {
  EXPECT_EQ(FileNameOnly("Out.wav"), "Out.wav");
  EXPECT_EQ(FileNameOnly("\\Out.wav"), "\\Out.wav");
  EXPECT_EQ(FileNameOnly(""), "");
}

}  // namespace
}  // namespace carvello
