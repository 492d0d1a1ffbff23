// JSON as it is read: strict, and by the rules of all texts.
#include <gtest/gtest.h>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using testing::refusal;
using Lines = std::vector<std::string>;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

Lines read(const std::string& bytes) {
  const DataFolder folder;
  return casesOf(folder.write("a.json", bytes));
}

std::string refused(const std::string& bytes) {
  const DataFolder folder;
  const std::string path = folder.write("a.json", bytes);
  const std::string message = refusal(path);
  EXPECT_EQ(message.substr(0, path.size()), path) << message;
  return message.substr(std::min(path.size(), message.size()));
}

TEST(Json, IsAnArrayOfObjectsOrOneObjectALine) {
  const Lines expected{"1|x|1", "2|y|1"};
  EXPECT_EQ(read(R"([{"a":1,"b":"x"},{"a":2,"b":"y"}])"), expected);
  EXPECT_EQ(read("\n[\n {\"a\":1,\n\"b\":\"x\"} , {\"b\":\"y\",\"a\":2}\n]\n"), expected);
  EXPECT_EQ(read("{\"a\":1,\"b\":\"x\"}\n{\"a\":2,\"b\":\"y\"}"), expected);
  EXPECT_EQ(read("{\"a\":1,\"b\":\"x\"}\r\n\r\n \t\n{\"a\":2,\"b\":\"y\"}\r\n"), expected);
  EXPECT_EQ(read("\xEF\xBB\xBF[{\"a\":1,\"b\":\"x\"},{\"a\":2,\"b\":\"y\"}]"), expected);
}

TEST(Json, KeysThatAnObjectLacksAreNull) {
  EXPECT_EQ(read(R"([{"a":1},{"b":2},{},{"a":null,"b":3}])"),
            (Lines{"1|.|1", ".|2|1", ".|.|1", ".|3|1"}));
}

TEST(Json, StringsAreNeitherNumbersNorBooleans) {
  EXPECT_EQ(read(R"([{"n":1.50,"s":"1","b":true,"d":"2024-02-29","e":""}])"),
            (Lines{"1.5|1|1|2024-02-29|.|1"}));
  EXPECT_EQ(read(R"([{"x":"31-01-24"},{"x":"2024-13-01"}])"),
            (Lines{"31-01-24  |1", "2024-13-01|1"}));
  EXPECT_EQ(read(R"([{"x":1},{"x":"1"},{"x":true},{"x":1.0}])"),
            (Lines{"1   |1", "1   |1", "true|1", "1.0 |1"}))
      << "in a column of texts every value is its own text";
}

TEST(Json, WholeNumbersThatADoubleCannotHoldMakeTheColumnText) {
  EXPECT_EQ(read(R"([{"x":9007199254740992},{"x":9007199254740993}])"),
            (Lines{"9007199254740992|1", "9007199254740993|1"}));
}

TEST(Json, NumbersBeyondADoubleMatterInNamedColumnsOfNumbersAlone) {
  EXPECT_TRUE(has(refused("[{\"x\":1},\n{\"x\":-1e999}]"),
                  ", line 2: x: '-1e999' is beyond the range of numbers"));
  EXPECT_EQ(read(R"([{"x":1e999},{"x":"a"}])"), (Lines{"1e999|1", "a    |1"}));
  const DataFolder folder;
  const auto data = openDataset(dataOptions(folder.write("a.json", R"([{"x":1e999,"y":2}])")));
  data->beginCommand({1});
  EXPECT_EQ(casesOf(*data, {1}), (Lines{"2|1"}));
  EXPECT_TRUE(has(refused("[{\"x\":1},\n{\"x\":1e99999}]"),
                  ", line 2: x: the number '1e99999' is too large"));
}

TEST(Json, TheOddValueOfAColumnIsRemembered) {
  const DataFolder folder;
  std::string text;
  for (int i = 0; i < 3000; ++i) text += "{\"x\":" + std::to_string(i % 9) + "}\n";
  DataOptions options =
      dataOptions(folder.write("a.jsonl", text + "{\"x\":\"n.d.\"}\n" + text + "{\"x\":\"?\"}\n"));
  for (const size_t limit : {size_t{1} << 30U, size_t{0}}) {  // in memory, and not
    options.memoryLimit = limit;
    const auto data = openDataset(options);
    casesOf(*data);
    const OddText* odd = data->oddText(0);
    ASSERT_NE(odd, nullptr) << limit;
    EXPECT_EQ(odd->text, "n.d.");
    EXPECT_TRUE(has(odd->place, "a.jsonl, line 3001")) << odd->place;
    EXPECT_EQ(odd->usual, FieldKind::kNumber);
  }
}

TEST(Json, ListsAndObjectsAreIgnoredUnlessTheyAreNamed) {
  const DataFolder folder;
  const std::string deep = std::string(200000, '[') + std::string(200000, ']');
  const std::string path =
      folder.write("a.json", "[{\"x\":1,\"deep\":" + deep + ",\"o\":{\"x\":5}},\n{\"x\":2}]");
  EXPECT_EQ(casesOf(path), (Lines{"1|.|.|1", "2|.|.|1"}));
  DataOptions options = dataOptions(path);
  options.split = {"deep"};
  EXPECT_TRUE(has(refusal(options), "--split: deep holds lists or objects (line 1)"));
  options.split.clear();
  options.query = "SELECT CAST(o->>'$.x' AS INTEGER) AS inner_x FROM data WHERE o IS NOT NULL";
  EXPECT_EQ(casesOf(options), (Lines{"5|1"}));
}

struct BadJson {
  const char* bytes;
  const char* message;
};
void PrintTo(const BadJson& bad, std::ostream* out) { *out << bad.bytes; }

class BadJsons : public ::testing::TestWithParam<BadJson> {};

TEST_P(BadJsons, AreRefusedWithTheirLine) {
  EXPECT_TRUE(has(refused(GetParam().bytes), GetParam().message)) << refused(GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BadJsons,
    ::testing::Values(BadJson{"[{\"a\":1},\n{\"a\":01}]", ", line 2: this is not valid JSON"},
                      BadJson{"[{\"a\":1},]", ", line 1: this is not valid JSON"},
                      BadJson{"[{\"a\":NaN}]", ", line 1: this is not valid JSON"},
                      BadJson{"{\"a\":1}\n{\"a\":'x'}\n", ", line 2: this is not valid JSON"},
                      BadJson{"{\"a\":1}\n{\"a\":2\n", ", line 2: this is not valid JSON"},
                      BadJson{"{\"a\":1} {\"a\":2}\n", ", line 1: this is not valid JSON"},
                      BadJson{"[{\"a\":1}]\n[]", ", line 2: this is not valid JSON"},
                      BadJson{"[{\"a\":\"\xFF\"}]", ", line 1: this is not valid JSON"},
                      BadJson{"[{\"a\":\"\\ud800\"}]", ", line 1: this is not valid JSON"},
                      BadJson{"[1]", ", line 1: a record must be an object"},
                      BadJson{"7\n", ", line 1: a record must be an object"},
                      BadJson{"[[{\"a\":1}]]", ", line 1: a record must be an object"},
                      BadJson{"[{\"a\":\"x\\u0000\"}]", ", line 1: a string holds a NUL"},
                      BadJson{"{\"a\":1}\n{\"a\":1,\"a\":2}\n",
                              ", line 2: the record has the key a twice"}));

TEST(Json, KeysThatDifferInCaseAloneCannotBeNamed) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.json", "[{\"a\":1,\"b\":2},\n{\"A\":1}]"));
  EXPECT_EQ(casesOf(options), (Lines{".|2|.|1", ".|.|.|1"}));
  options.weight = "a";
  EXPECT_TRUE(has(refusal(options), "a and A (line 2) differ in the case"));
}

TEST(Json, ATextThatIsNeverClosedTakesNotAllMemory) {
  std::string bytes = "{\"a\":1}\n{\"a\":\"";
  bytes.resize(135'000'000, 'x');
  EXPECT_TRUE(has(refused(bytes), ", line 2: there is a text, or a run of blanks, of more than "));
}

TEST(Json, AFileThatEndsInZeroBytesIsRefusedAtOnce) {
  std::string bytes = "{\"a\":1}\n";
  bytes.resize(9'000'000, '\0');
  EXPECT_TRUE(has(refused(bytes), ", line 2: there is a NUL byte"));
}

TEST(Json, WhatDoesNotFitIntoMemoryIsTheSame) {
  const DataFolder folder;
  std::string text;
  for (int i = 0; i < 5000; ++i) {
    text += "{\"n\":" + std::to_string(i % 7) + ",\"s\":\"t" + std::to_string(i) + "\"}\n";
  }
  DataOptions options = dataOptions(folder.write("a.jsonl", text));
  const Lines inMemory = casesOf(options);
  EXPECT_EQ(inMemory.size(), 5000U);
  options.memoryLimit = 0;
  EXPECT_EQ(casesOf(options), inMemory);
}

}  // namespace
}  // namespace workbench
