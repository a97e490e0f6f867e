#include "recording/signal_info.h"

#include <gtest/gtest.h>

#include <limits>

#include "recording/layout.h"
#include "recording/xml_mgr.h"
#include "support/hresult.h"

namespace carvello {
namespace {

using test::U32At;

// 2026-11-16 00:44:40
constexpr SSignalFacts kFacts{
    .tSignal = 1'794'789'880, .nCenterFrequency = 7'100'000'000, .nBandwidth = 48'000, .nSampleRate = 96'000};

constexpr char kDocument[] =
    "<?xml version='1.0' encoding='UTF-8'?>"
    "<signalinfo xml:lang=\"EN\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xsi:noNamespaceSchemaLocation=\"signalinfo.xsd\">"
    "<base><bandwidth>48000.000</bandwidth><data_type>complex</data_type><if_frequency>0</if_frequency>"
    "<rf_frequency>7100000000.000</rf_frequency><sample_rate>96000.000</sample_rate>"
    "<signaltime>2026-11-16T00:00:40.000Z</signaltime></base></signalinfo>";

TEST(SignalInfo, HasItsElementsInOrder) {
  EXPECT_EQ(BuildSignalInfoXml(kFacts), kDocument);
}

TEST(SignalInfo, TheSignalTimeHasTheHourTwiceAndNoMinutes) {
  SSignalFacts facts = kFacts;
  facts.tSignal = 1'795'264'496;  // 2026-11-21 12:34:56
  const std::string xml = BuildSignalInfoXml(facts);
  EXPECT_NE(xml.find("<signaltime>2026-11-21T12:12:56.000Z</signaltime>"), std::string::npos) << xml;
}

TEST(SignalInfo, AnImpossibleTimeRaisesInvalidArgument) {
  SSignalFacts facts = kFacts;
  facts.tSignal = std::numeric_limits<std::int64_t>::max();
  EXPECT_THROW(BuildSignalInfoXml(facts), CHResultError);
}

TEST(MetaChunk, IsTheDocumentFilledUpToAMultipleOfFour) {
  // Centre frequencies of one to five digits give every remainder of the length.
  for (const std::int64_t frequency : {1, 12, 123, 1234, 12345}) {
    SSignalFacts facts = kFacts;
    facts.nCenterFrequency = frequency;
    const std::string document = BuildSignalInfoXml(facts);
    const std::string chunk = BuildMetaChunk(facts);
    EXPECT_EQ(chunk.substr(0, 4), "meta");
    const std::size_t size = (document.size() + 4) / 4 * 4;
    EXPECT_EQ(U32At(chunk, 4), size);
    EXPECT_EQ(chunk.size(), 8 + size);
    EXPECT_EQ(chunk.substr(8), document + std::string(size - document.size(), '\0'));
    EXPECT_EQ(chunk.back(), '\0');
  }
}

TEST(XmlMgr, NestsElementsWithTextsAndAttributes) {
  CXMLMgr manager;
  manager.Initialise();
  const pugi::xml_node root = manager.AddElement(manager.Document(), "root", "", {{"two words here", "a<b"}});
  manager.AddElement(manager.AddBase(root), "leaf", "x & y");
  CXMLMgr::SetAttribute(root, "more", "1");
  CXMLMgr::SetAttribute(root, "more", "2");
  EXPECT_EQ(manager.Text(),
            "<?xml version='1.0' encoding='UTF-8'?><root two_-SPACE-_words_-SPACE-_here=\"a&lt;b\" more=\"2\">"
            "<base><leaf>x &amp; y</leaf></base></root>");
}

TEST(XmlMgr, InitialiseDropsTheDocumentBefore) {
  CXMLMgr manager;
  manager.Initialise();
  manager.AddElement(manager.Document(), "old", "");
  manager.Initialise();
  manager.AddElement(manager.Document(), "new", "");
  EXPECT_EQ(manager.Text(), "<?xml version='1.0' encoding='UTF-8'?><new/>");
}

TEST(XmlMgr, WithoutADocumentThePointerErrorIsRaised) {
  CXMLMgr manager;
  try {
    manager.Text();
    FAIL() << "no exception";
  } catch (const CHResultError& error) {
    EXPECT_EQ(error.Code(), kPointer);
  }
}

}  // namespace
}  // namespace carvello
