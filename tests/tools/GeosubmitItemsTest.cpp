#include "tools/trelvo/GeosubmitItems.h"

#include <string>
#include <vector>

#include "tests/tools/ImportInput.h"

namespace trelvo::tool {
namespace {

using nlohmann::json;

struct Outcome {
  std::vector<json> items;
  std::vector<unsigned long long> lines;
  std::vector<std::string> complaints;
  std::string damage;
  unsigned long long damageLine = 0;
  unsigned long long emptyLists = 0;
};

Outcome readAll(ProducedStream& stream) {
  Outcome outcome;
  ImportSource source(stream, "report");
  GeosubmitItems items(
      source,
      [&](const json& item, unsigned long long line) {
        outcome.items.push_back(item);
        outcome.lines.push_back(line);
      },
      [&](const char* complaint, unsigned long long line) {
        outcome.complaints.push_back(complaint + (":" + std::to_string(line)));
      });
  try {
    items.run();
  } catch (const GeosubmitItems::Damage& damage) {
    outcome.damage = damage.what();
    outcome.damageLine = source.line();
  }
  outcome.emptyLists = items.emptyLists();
  return outcome;
}

Outcome readAll(const std::string& text) {
  ProducedStream stream(text);
  return readAll(stream);
}

TEST(GeosubmitItems, BuildsEachItemAsItStands) {
  const std::string first =
      R"({"a": [1, -2, 2.5, [], {}], "b": {"c": {"d": null}}, "e": true, "f": "\"\\x\u00e9"})";
  const Outcome outcome = readAll("{\"items\": [" + first + ",\n {\"g\": 1}]}");
  ASSERT_EQ(outcome.items.size(), 2u);
  EXPECT_EQ(outcome.items[0], json::parse(first));
  EXPECT_EQ(outcome.items[1], json::parse(R"({"g": 1})"));
  EXPECT_EQ(outcome.lines, (std::vector<unsigned long long>{1, 2}));
  EXPECT_EQ(outcome.damage, "");
}

TEST(GeosubmitItems, PassesOverWhatStandsBesideTheList) {
  const Outcome outcome =
      readAll(R"({"x": {"items": [{"no": 1}]}, "items": [{"yes": {"items": [1]}}], "y": [[{}]]})");
  ASSERT_EQ(outcome.items.size(), 1u);
  EXPECT_EQ(outcome.items[0], json::parse(R"({"yes": {"items": [1]}})"));
  EXPECT_TRUE(outcome.complaints.empty());
}

TEST(GeosubmitItems, GivesItemsThatAreNoObjectsToo) {
  const Outcome outcome = readAll(R"({"items": [1, "two", null, [3, [4]], true]})");
  EXPECT_EQ(json(outcome.items), json::parse(R"([1, "two", null, [3, [4]], true])"));
}

TEST(GeosubmitItems, ReadsDocumentsOneBehindTheOther) {
  const Outcome outcome =
      readAll("{\"items\":[{\"a\":1}]}\n{\"items\":[]}{\"items\":[{\"a\":2}]}\n\n");
  ASSERT_EQ(outcome.items.size(), 2u);
  EXPECT_EQ(outcome.emptyLists, 1u);
  EXPECT_EQ(outcome.damage, "");
}

TEST(GeosubmitItems, ComplainsOfDocumentsWithoutAList) {
  const Outcome outcome = readAll("{\"a\": 1}\n[{\"items\": [1]}]\n{\"items\": {\"a\": 1}}");
  EXPECT_TRUE(outcome.items.empty());
  const std::string complaint = GeosubmitItems::kNoItems;
  EXPECT_EQ(outcome.complaints,
            (std::vector<std::string>{complaint + ":1", complaint + ":2", complaint + ":3"}));
}

TEST(GeosubmitItems, ALaterMemberOfTheSameNameReplacesTheFirst) {
  EXPECT_EQ(readAll(R"({"items": [{"a": {"b": 1}, "a": 2}]})").items[0],
            json::parse(R"({"a": 2})"));
}

TEST(GeosubmitItems, GivesTheItemsAheadOfTheDamage) {
  const Outcome outcome = readAll("{\"items\": [{\"a\": 1},\n{\"b\": 2},\n{\"c\": }]}");
  EXPECT_EQ(outcome.items.size(), 2u);
  EXPECT_NE(outcome.damage, "");
  EXPECT_EQ(outcome.damageLine, 3u);
}

TEST(GeosubmitItems, FailsWhereverTheTextEnds) {
  const std::string text = R"({"items": [{"a": [1, {"b": "c\n"}], "d": -1.5e3}]})";
  for (size_t length = 1; length < text.size(); ++length) {
    EXPECT_NE(readAll(text.substr(0, length)).damage, "") << length;
  }
  EXPECT_EQ(readAll(text).damage, "");
  EXPECT_EQ(readAll("").damage, "");
}

TEST(GeosubmitItems, RefusesDeepNesting) {
  for (const char* start : {"{\"items\": [", "{\"x\": ", ""}) {
    ProducedStream stream([n = 0]() mutable { return ++n < 1000 ? std::string(10000, '[') : ""; });
    std::string text = start + std::string(100, '[');
    EXPECT_EQ(readAll(text).damage, "nesting beyond 64 levels") << start;
    EXPECT_EQ(readAll(stream).damage, "nesting beyond 64 levels");
  }
}

TEST(GeosubmitItems, ReadsTheDeepestNestingAllowed) {
  const int inner = GeosubmitItems::kMaxDepth - 2;
  const std::string item =
      std::string(static_cast<size_t>(inner), '[') + std::string(static_cast<size_t>(inner), ']');
  const Outcome outcome = readAll("{\"items\": [" + item + "]}");
  EXPECT_EQ(outcome.damage, "");
  EXPECT_EQ(outcome.items.size(), 1u);
  EXPECT_NE(readAll("{\"items\": [[" + item + "]]}").damage, "");
}

// An endless token must not be collected: each stream would give 4 GiB.
TEST(GeosubmitItems, RefusesTokensThatDoNotEnd) {
  for (const char* start :
       {"{\"items\": [{\"a\": \"", "{\"items\": [{\"", "{\"items\": [1", "{\"x\": \"\\\""}) {
    bool first = true;
    ProducedStream stream([&first, start, n = 0]() mutable {
      const bool wasFirst = first;
      first = false;
      return wasFirst ? std::string(start) : ++n < 65536 ? std::string(65536, '1') : "";
    });
    EXPECT_EQ(readAll(stream).damage, "string or number of more than 64 KiB") << start;
  }
}

TEST(GeosubmitItems, PassesOverAnItemThatIsTooLargeAndGoesOn) {
  std::string large = "{\"a\": [";
  while (large.size() < 2 * GeosubmitItems::kMaxItemBytes) {
    large += "{\"b\": [1, 2]}, ";
  }
  const Outcome outcome = readAll("{\"items\": [{\"c\": 1},\n" + large + "0]}, {\"d\": 2}]}");
  EXPECT_EQ(json(outcome.items), json::parse(R"([{"c": 1}, {"d": 2}])"));
  EXPECT_EQ(outcome.complaints,
            std::vector<std::string>{GeosubmitItems::kOversize + std::string(":2")});
}

TEST(GeosubmitItems, RefusesBytesThatAreNoJson) {
  for (const char* text : {"\x01", "\xff\xfe", "nonsense", "{\"items\": [\"\xc3\x28\"]}", "{} x",
                           "{\"items\": [1e999]}", "]"}) {
    EXPECT_NE(readAll(text).damage, "") << text;
  }
}

TEST(GeosubmitItems, PassesOverAByteOrderMark) {
  EXPECT_EQ(readAll("\xEF\xBB\xBF{\"items\": [{}]}").items.size(), 1u);
}

}  // namespace
}  // namespace trelvo::tool
