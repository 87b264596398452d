#include "tools/trelvo/JsonItems.h"

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

using Form = JsonItems::Form;

Outcome readAll(ProducedStream& stream, Form form = Form::ElementsOfItems) {
  Outcome outcome;
  ImportSource source(stream, "report");
  JsonItems items(
      source, form,
      [&](const json& item, unsigned long long line) {
        outcome.items.push_back(item);
        outcome.lines.push_back(line);
      },
      [&](const char* complaint, unsigned long long line) {
        outcome.complaints.push_back(complaint + (":" + std::to_string(line)));
      });
  try {
    items.run();
  } catch (const JsonItems::Damage& damage) {
    outcome.damage = damage.what();
    outcome.damageLine = source.line();
  }
  outcome.emptyLists = items.emptyLists();
  return outcome;
}

Outcome readAll(const std::string& text, Form form = Form::ElementsOfItems) {
  ProducedStream stream(text);
  return readAll(stream, form);
}

TEST(JsonItems, GivesWholeDocumentsToo) {
  const std::string first = R"({"a": {"items": [1, {"b": null}]}, "items": [2]})";
  const Outcome outcome = readAll(first + "\n[3, [4]] 5 {} \n \"x\"", Form::WholeDocuments);
  EXPECT_EQ(outcome.items, (std::vector<json>{json::parse(first), json::parse("[3, [4]]"), 5,
                                              json::object(), "x"}));
  EXPECT_EQ(outcome.lines, (std::vector<unsigned long long>{1, 2, 2, 2, 3}));
  EXPECT_TRUE(outcome.complaints.empty());
  EXPECT_TRUE(outcome.damage.empty()) << outcome.damage;
}

TEST(JsonItems, AWholeDocumentHasALimitToo) {
  const std::string big(60000, 'x');
  std::string document = "{\"a\": [";
  for (int i = 0; i < 20; ++i) {
    document += "\"" + big + "\",";
  }
  const Outcome outcome = readAll(document + "1]} {\"b\": 1}", Form::WholeDocuments);
  EXPECT_EQ(outcome.items, std::vector<json>{json::parse("{\"b\": 1}")});
  EXPECT_EQ(outcome.complaints, std::vector<std::string>{JsonItems::kOversize + std::string(":1")});
}

TEST(JsonItems, BuildsEachItemAsItStands) {
  const std::string first =
      R"({"a": [1, -2, 2.5, [], {}], "b": {"c": {"d": null}}, "e": true, "f": "\"\\x\u00e9"})";
  const Outcome outcome = readAll("{\"items\": [" + first + ",\n {\"g\": 1}]}");
  ASSERT_EQ(outcome.items.size(), 2u);
  EXPECT_EQ(outcome.items[0], json::parse(first));
  EXPECT_EQ(outcome.items[1], json::parse(R"({"g": 1})"));
  EXPECT_EQ(outcome.lines, (std::vector<unsigned long long>{1, 2}));
  EXPECT_EQ(outcome.damage, "");
}

TEST(JsonItems, PassesOverWhatStandsBesideTheList) {
  const Outcome outcome =
      readAll(R"({"x": {"items": [{"no": 1}]}, "items": [{"yes": {"items": [1]}}], "y": [[{}]]})");
  ASSERT_EQ(outcome.items.size(), 1u);
  EXPECT_EQ(outcome.items[0], json::parse(R"({"yes": {"items": [1]}})"));
  EXPECT_TRUE(outcome.complaints.empty());
}

TEST(JsonItems, GivesItemsThatAreNoObjectsToo) {
  const Outcome outcome = readAll(R"({"items": [1, "two", null, [3, [4]], true]})");
  EXPECT_EQ(json(outcome.items), json::parse(R"([1, "two", null, [3, [4]], true])"));
}

TEST(JsonItems, ReadsDocumentsOneBehindTheOther) {
  const Outcome outcome =
      readAll("{\"items\":[{\"a\":1}]}\n{\"items\":[]}{\"items\":[{\"a\":2}]}\n\n");
  ASSERT_EQ(outcome.items.size(), 2u);
  EXPECT_EQ(outcome.emptyLists, 1u);
  EXPECT_EQ(outcome.damage, "");
}

TEST(JsonItems, ComplainsOfDocumentsWithoutAList) {
  const Outcome outcome = readAll("{\"a\": 1}\n[{\"items\": [1]}]\n{\"items\": {\"a\": 1}}");
  EXPECT_TRUE(outcome.items.empty());
  const std::string complaint = JsonItems::kNoItems;
  EXPECT_EQ(outcome.complaints,
            (std::vector<std::string>{complaint + ":1", complaint + ":2", complaint + ":3"}));
}

TEST(JsonItems, ALaterMemberOfTheSameNameReplacesTheFirst) {
  EXPECT_EQ(readAll(R"({"items": [{"a": {"b": 1}, "a": 2}]})").items[0],
            json::parse(R"({"a": 2})"));
}

TEST(JsonItems, GivesTheItemsAheadOfTheDamage) {
  const Outcome outcome = readAll("{\"items\": [{\"a\": 1},\n{\"b\": 2},\n{\"c\": }]}");
  EXPECT_EQ(outcome.items.size(), 2u);
  EXPECT_NE(outcome.damage, "");
  EXPECT_EQ(outcome.damageLine, 3u);
}

TEST(JsonItems, FailsWhereverTheTextEnds) {
  const std::string text = R"({"items": [{"a": [1, {"b": "c\n"}], "d": -1.5e3}]})";
  for (size_t length = 1; length < text.size(); ++length) {
    EXPECT_NE(readAll(text.substr(0, length)).damage, "") << length;
  }
  EXPECT_EQ(readAll(text).damage, "");
  EXPECT_EQ(readAll("").damage, "");
}

TEST(JsonItems, RefusesDeepNesting) {
  for (const char* start : {"{\"items\": [", "{\"x\": ", ""}) {
    ProducedStream stream([n = 0]() mutable { return ++n < 1000 ? std::string(10000, '[') : ""; });
    std::string text = start + std::string(100, '[');
    EXPECT_EQ(readAll(text).damage, "nesting beyond 64 levels") << start;
    EXPECT_EQ(readAll(stream).damage, "nesting beyond 64 levels");
  }
}

TEST(JsonItems, ReadsTheDeepestNestingAllowed) {
  const int inner = JsonItems::kMaxDepth - 2;
  const std::string item =
      std::string(static_cast<size_t>(inner), '[') + std::string(static_cast<size_t>(inner), ']');
  const Outcome outcome = readAll("{\"items\": [" + item + "]}");
  EXPECT_EQ(outcome.damage, "");
  EXPECT_EQ(outcome.items.size(), 1u);
  EXPECT_NE(readAll("{\"items\": [[" + item + "]]}").damage, "");
}

// An endless token must not be collected: each stream would give 4 GiB.
TEST(JsonItems, RefusesTokensThatDoNotEnd) {
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

TEST(JsonItems, PassesOverAnItemThatIsTooLargeAndGoesOn) {
  std::string large = "{\"a\": [";
  while (large.size() < 2 * JsonItems::kMaxItemBytes) {
    large += "{\"b\": [1, 2]}, ";
  }
  const Outcome outcome = readAll("{\"items\": [{\"c\": 1},\n" + large + "0]}, {\"d\": 2}]}");
  EXPECT_EQ(json(outcome.items), json::parse(R"([{"c": 1}, {"d": 2}])"));
  EXPECT_EQ(outcome.complaints, std::vector<std::string>{JsonItems::kOversize + std::string(":2")});
}

TEST(JsonItems, RefusesBytesThatAreNoJson) {
  for (const char* text : {"\x01", "\xff\xfe", "nonsense", "{\"items\": [\"\xc3\x28\"]}", "{} x",
                           "{\"items\": [1e999]}", "]"}) {
    EXPECT_NE(readAll(text).damage, "") << text;
  }
}

TEST(JsonItems, PassesOverAByteOrderMark) {
  EXPECT_EQ(readAll("\xEF\xBB\xBF{\"items\": [{}]}").items.size(), 1u);
}

}  // namespace
}  // namespace trelvo::tool
