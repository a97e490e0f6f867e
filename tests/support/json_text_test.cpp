#include "support/json_text.h"

#include <gtest/gtest.h>

namespace carvello::test {
namespace {

TEST(JsonText, NestsArraysAndObjectsWithTwoBlanksALevel) {
  CJsonText json;
  json.BeginObject();
  json.Member("name", "a \"b\"\n");
  json.Member("none", std::vector<std::string>{});
  json.Member("some", std::vector<int>{1, -2});
  json.Key("inner");
  json.BeginArray();
  json.BeginObject();
  json.Member("yes", true);
  json.EndObject();
  json.BeginObject();
  json.EndObject();
  json.EndArray();
  json.Member("half", 0.5);
  json.Member("large", std::uint64_t{18446744073709551615U});
  json.EndObject();
  EXPECT_EQ(json.Text(),
            "{\n"
            "  \"name\": \"a \\\"b\\\"\\n\",\n"
            "  \"none\": [],\n"
            "  \"some\": [\n"
            "    1,\n"
            "    -2\n"
            "  ],\n"
            "  \"inner\": [\n"
            "    {\n"
            "      \"yes\": true\n"
            "    },\n"
            "    {}\n"
            "  ],\n"
            "  \"half\": 0.5,\n"
            "  \"large\": 18446744073709551615\n"
            "}");
}

TEST(JsonText, ReplacesBytesThatAreNoUtf8) {
  CJsonText json;
  json.Add("\xff");
  EXPECT_EQ(json.Text(), "\"\xef\xbf\xbd\"");
}

}  // namespace
}  // namespace carvello::test
