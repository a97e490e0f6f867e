// Meta files and collections typed by hand, the odd ones above all.
#include "input/sigmf_meta.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace carvello::test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

SSigMfMeta Parsed(const std::string& text) {
  SSigMfMeta meta;
  std::string error;
  EXPECT_TRUE(ParseSigMfMeta(text, meta, error)) << error << " in " << text;
  return meta;
}

std::string Problem(const std::string& text) {
  SSigMfMeta meta;
  std::string error;
  EXPECT_FALSE(ParseSigMfMeta(text, meta, error)) << text;
  return error;
}

// A meta file whose global object holds these members, behind the data type.
std::string Global(const std::string& members) {
  return R"({"global": {"core:datatype": "ci16_le")" + (members.empty() ? "" : ", " + members) + "}}";
}

std::string Captures(const std::string& list) {
  return R"({"global": {"core:datatype": "ci16_le"}, "captures": )" + list + "}";
}

std::string Annotations(const std::string& list) {
  return R"({"global": {"core:datatype": "ci16_le"}, "annotations": )" + list + "}";
}

TEST(SigMfMeta, ExampleIsTakenWhole) {
  const SSigMfMeta meta = Parsed(R"({
    "global": {"core:datatype": "cf32_le", "core:sample_rate": 2.4e6, "core:version": "1.0.0", "core:offset": 7,
               "core:sha512": "AB", "core:recorder": "r", "core:trailing_bytes": 12, "core:dataset": "x.wav"},
    "captures": [{"core:sample_start": 7, "core:frequency": -1.5, "core:datetime": "2024-03-30T12:00:00Z",
                  "core:global_index": 9, "core:header_bytes": 44},
                 {"core:sample_start": 1000}],
    "annotations": [{"core:sample_start": 8, "core:sample_count": 3, "core:freq_lower_edge": 1,
                     "core:freq_upper_edge": 2.5, "core:label": "l", "core:comment": "c"}]})");
  EXPECT_EQ(meta.strDataType, "cf32_le");
  EXPECT_EQ(meta.sampleRate, 2'400'000.0);
  EXPECT_EQ(meta.nOffset, 7);
  EXPECT_EQ(meta.nTrailingBytes, 12);
  EXPECT_EQ(meta.nChannels, 1);
  EXPECT_EQ(meta.strSha512, "AB");
  EXPECT_EQ(meta.strRecorder, "r");
  EXPECT_EQ(meta.strDataset, "x.wav");
  EXPECT_FALSE(meta.bMetadataOnly);
  EXPECT_FALSE(meta.bSdrangel);
  ASSERT_EQ(meta.captures.size(), 2U);
  EXPECT_EQ(meta.captures[0].nSampleStart, 7);
  EXPECT_EQ(meta.captures[0].frequency, -1.5);
  EXPECT_EQ(meta.captures[0].strDateTime, "2024-03-30T12:00:00Z");
  EXPECT_EQ(meta.captures[0].globalIndex, 9);
  EXPECT_EQ(meta.captures[0].nHeaderBytes, 44);
  EXPECT_EQ(meta.captures[1].nSampleStart, 1000);
  EXPECT_FALSE(meta.captures[1].frequency);
  EXPECT_FALSE(meta.captures[1].globalIndex);
  ASSERT_EQ(meta.annotations.size(), 1U);
  EXPECT_EQ(meta.annotations[0].nSampleStart, 8);
  EXPECT_EQ(meta.annotations[0].sampleCount, 3);
  EXPECT_EQ(meta.annotations[0].lowerEdge, 1.0);
  EXPECT_EQ(meta.annotations[0].upperEdge, 2.5);
  EXPECT_EQ(meta.annotations[0].strLabel, "l");
  EXPECT_EQ(meta.annotations[0].strComment, "c");
}

TEST(SigMfMeta, UnknownKeysAreKeptWithTheNamesThatLeadToThem) {
  const SSigMfMeta meta =
      Parsed(Global(R"("x:a": null, "x:b": {"c": [true, {"d": -1.50}], "e": "two"}, "core:author": "A")"));
  EXPECT_EQ(meta.global.Find("x:a"), "null");
  EXPECT_EQ(meta.global.Find("x:b.c.0"), "true");
  EXPECT_EQ(meta.global.Find("x:b.c.1.d"), "-1.50");
  EXPECT_EQ(meta.global.Find("x:b.e"), "two");
  EXPECT_EQ(meta.global.Find("core:author"), "A");
  // Outside the global object nothing stands in the way.
  Parsed(R"({"x:top": [[1]], "global": {"core:datatype": "cu8"}, "captures": [{"x:y": {"z": [1, [2]]}}],
             "annotations": [{"x:y": [{"core:sample_start": "no"}]}]})");
}

TEST(SigMfMeta, RequiredExtensionIsNamedUnlessItIsKnown) {
  EXPECT_THAT(Parsed(Global(R"("core:extensions": [{"name": "secret", "version": "1.0.0", "optional": false},
                                {"optional": false, "name": "other"}, {"name": "antenna", "optional": false},
                                {"optional": false, "name": "signal"}, {"name": "free", "optional": true},
                                {"name": "silent"}, {"optional": false}])"))
                  .required,
              ElementsAre("secret", "other"));
  EXPECT_THAT(Parsed(Global(R"("core:extensions": {"secret": "1.0.0"})")).required, ElementsAre());
  EXPECT_THAT(Parsed(Global(R"("core:extensions": "secret")")).required, ElementsAre());
}

TEST(SigMfMeta, ValuesAreReadToADepthOf64AndNoFurther) {
  // Within the file's object, the global object and this value.
  const auto nested = [](std::size_t depth) {
    return Global("\"x:y\": " + std::string(depth, '[') + "1" + std::string(depth, ']'));
  };
  EXPECT_EQ(Parsed(nested(62)).global.values.back(), "1");
  EXPECT_THAT(Problem(nested(63)), HasSubstr("64 deep"));
  EXPECT_THAT(Problem(nested(1'000'000)), HasSubstr("64 deep"));
}

TEST(SigMfMeta, OfKeysThatComeTwiceTheLastCounts) {
  EXPECT_EQ(Parsed(Global(R"("core:sample_rate": 1, "core:sample_rate": 2)")).sampleRate, 2.0);
  const SSigMfMeta meta = Parsed(R"({"captures": [{"core:sample_start": 1}, {"core:sample_start": 2}],
      "annotations": [{"core:sample_start": 1}], "global": {"core:datatype": "cu8"},
      "captures": [{"core:sample_start": 3, "core:sample_start": 4}], "annotations": []})");
  ASSERT_EQ(meta.captures.size(), 1U);
  EXPECT_EQ(meta.captures[0].nSampleStart, 4);
  EXPECT_TRUE(meta.annotations.empty());
}

TEST(SigMfMeta, WhatIsNoNumberIsRefused) {
  for (const char* number : {"NaN", "Infinity", "-Infinity", "1e999", "-1e999", "0x10", "01", "+1"}) {
    EXPECT_THAT(Problem(Global(std::string("\"core:sample_rate\": ") + number)), StartsWith("no JSON")) << number;
  }
  for (const char* other : {"\"1\"", "true", "null"}) {
    EXPECT_EQ(Problem(Global(std::string("\"core:sample_rate\": ") + other)), "core:sample_rate is not a number");
  }
}

TEST(SigMfMeta, CountsAreWholeNumbersWithin63Bits) {
  for (const char* number : {"18446744073709551615", "9223372036854775808", "-1", "1.5", "1e19",
                             "99999999999999999999999", "\"1\"", "true", "null"}) {
    const std::string value = number;
    EXPECT_EQ(Problem(Captures("[{\"core:sample_start\": " + value + "}]")),
              "core:sample_start is not a whole number from 0 up");
    EXPECT_EQ(Problem(Captures("[{\"core:global_index\": " + value + "}]")),
              "core:global_index is not a whole number from 0 up");
    EXPECT_EQ(Problem(Global("\"core:offset\": " + value)), "core:offset is not a whole number from 0 up");
  }
  const SSigMfMeta meta = Parsed(Captures(R"([{"core:sample_start": 9223372036854775807, "core:header_bytes": 1e3}])"));
  EXPECT_EQ(meta.captures[0].nSampleStart, INT64_MAX);
  EXPECT_EQ(meta.captures[0].nHeaderBytes, 1000);
  EXPECT_FALSE(Parsed(Annotations(R"([{"core:sample_count": null}])")).annotations[0].sampleCount);
}

TEST(SigMfMeta, CapturesKeepTheOrderOfTheFile) {
  const SSigMfMeta meta = Parsed(Captures(R"([{"core:sample_start": 30}, {"core:sample_start": 10}, {}])"));
  ASSERT_EQ(meta.captures.size(), 3U);
  EXPECT_EQ(meta.captures[0].nSampleStart, 30);
  EXPECT_EQ(meta.captures[1].nSampleStart, 10);
  EXPECT_EQ(meta.captures[2].nSampleStart, 0);
}

TEST(SigMfMeta, ListsOfAnythingButObjectsAreRefused) {
  for (const char* list : {"[[]]", "[[\"core:sample_start\", 1]]", "[7]", "[null]", "[{}, \"x\"]", "[[{\"a\": 1}]]"}) {
    EXPECT_EQ(Problem(Captures(list)), "captures holds what is no object") << list;
    EXPECT_EQ(Problem(Annotations(list)), "annotations holds what is no object") << list;
  }
  for (const char* other : {"{}", "7", "\"x\"", "null"}) {
    EXPECT_EQ(Problem(Captures(other)), "captures is of the wrong kind") << other;
    EXPECT_EQ(Problem(Annotations(other)), "annotations is of the wrong kind") << other;
  }
}

TEST(SigMfMeta, WhatIsNoMetaFileSaysWhy) {
  EXPECT_THAT(Problem(""), StartsWith("no JSON"));
  EXPECT_THAT(Problem("{\"global\": {\"core:datatype\": \"cu8\"}"), StartsWith("no JSON"));
  EXPECT_THAT(Problem("{} {}"), AnyOf(StartsWith("no JSON"), StartsWith("global")));
  EXPECT_EQ(Problem("[]"), "no JSON object");
  EXPECT_EQ(Problem("7"), "no JSON object");
  EXPECT_EQ(Problem("{}"), "global is missing");
  EXPECT_EQ(Problem(R"({"global": {}})"), "core:datatype is missing");
  EXPECT_EQ(Problem(R"({"global": []})"), "global is of the wrong kind");
  EXPECT_EQ(Problem(R"({"global": {"core:datatype": 7}})"), "core:datatype is not a text");
  EXPECT_THAT(Problem("{\"global\": {\"\xFF\x01\": 1}}"), StartsWith("no JSON"));
}

TEST(SigMfTime, HasAnyNumberOfDigitsAndAnyZone) {
  const auto check = [](const char* text, std::int64_t seconds, std::uint32_t nanoseconds) {
    const auto time = ParseSigMfTime(text);
    ASSERT_TRUE(time) << text;
    EXPECT_EQ(time->nSeconds, seconds) << text;
    EXPECT_EQ(time->nNanoseconds, nanoseconds) << text;
  };
  check("1970-01-01T00:00:00Z", 0, 0);
  check("2024-02-29T23:59:59.1Z", 1'709'251'199, 100'000'000);
  check("2024-02-29T23:59:59.123456789999999Z", 1'709'251'199, 123'456'789);
  check("2024-03-30t12:00:01", 1'711'800'001, 0);
  check("2024-03-30 14:00:01+02:00", 1'711'800'001, 0);
  check("2024-03-30T06:30:01.5-0530", 1'711'800'001, 500'000'000);
  check("20240330T120001Z", 1'711'800'001, 0);
  check("2016-12-31T23:59:60Z", 1'483'228'800, 0);
  check("1969-12-31T23:59:59.25Z", -1, 250'000'000);
}

TEST(SigMfTime, OtherTextsAreNone) {
  for (const char* text : {"", "2024-03-30", "2024-02-30T00:00:00Z", "2023-02-29T00:00:00Z", "2024-13-01T00:00:00Z",
                           "2024-03-30T24:00:00Z", "2024-03-30T12:60:00Z", "2024-03-30T12:00:61Z",
                           "2024-03-30T12:00:01.Z", "2024-03-30T12:00:01ZZ", "2024-03-30T12:00:01+2",
                           "2024-03-30T12:00:01 CET", "24-03-30T12:00:01Z", "-024-03-30T12:00:01Z"}) {
    EXPECT_FALSE(ParseSigMfTime(text)) << text;
  }
}

TEST(SigMfCollection, StreamsArePairsOrObjects) {
  SigMfStreams streams;
  std::string error;
  ASSERT_TRUE(ParseSigMfCollection(R"({"collection": {"core:version": "1.2.5", "core:streams":
      [["a", "12"], {"hash": "34", "name": "b"}, {"name": "c"}, ["d"]]}})",
                                   streams, error))
      << error;
  EXPECT_THAT(streams, ElementsAre(Pair("a", "12"), Pair("b", "34"), Pair("c", ""), Pair("d", "")));
  for (const char* text : {"{}", "[]", R"({"collection": {"core:streams": []}})", R"({"collection": 7})", "{"}) {
    EXPECT_FALSE(ParseSigMfCollection(text, streams, error)) << text;
    EXPECT_NE(error, "") << text;
  }
}

}  // namespace
}  // namespace carvello::test
