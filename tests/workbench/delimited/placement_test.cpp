/// Every kind of value, and what nearly is one, wherever it stands in a long file.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/workbench/delimited/delimited_text.h"
#include "tests/workbench/delimited/plain_reader.h"

namespace workbench {
namespace {

constexpr size_t kCases = 200'010;

struct PlacedCase {
  const char* usual;  ///< what all other cases hold
  const char* value;
  const char* kind;  ///< of the column
  const char* shown;
};

std::string textOf(const std::vector<std::string_view>& values) {
  std::string text = "id,a,b\n";
  for (const std::string_view value : values) {
    text += "1,";
    text += value;
    text += ",x\n";
  }
  return text;
}

std::vector<std::string> columnOf(const std::vector<std::string_view>& values) {
  ReadAs how;
  how.request.columns = {{1, {}, {}}};
  std::vector<std::string> column = columnsOfText(textOf(values), how).front();
  std::sort(column.begin() + 1, column.end());
  return column;
}

std::vector<std::string> expectedColumn(const PlacedCase& placed) {
  const std::string usual = placed.kind == std::string("text")
                                ? '[' + std::string(placed.usual) + ']'
                                : shownNumber(interpretField(placed.usual, FieldRules()).number);
  std::vector<std::string> column(kCases, usual);
  column.front() = placed.shown;
  std::sort(column.begin(), column.end());
  column.insert(column.begin(), placed.kind);
  return column;
}

class Placement : public testing::TestWithParam<PlacedCase> {};

TEST_P(Placement, MakesNoDifference) {
  const PlacedCase& placed = GetParam();
  const std::vector<std::string> expected = expectedColumn(placed);
  std::mt19937 random(7);
  for (const size_t row : {size_t{0}, kCases / 2, kCases - 1, size_t{random() % kCases}}) {
    std::vector<std::string_view> values(kCases, placed.usual);
    values[row] = placed.value;
    EXPECT_TRUE(columnOf(values) == expected) << "in row " << row;
  }
}

const char* const kDay = "2024-01-07";
const char* const kMoment = "2024-01-07 10:00";
const char* const kZoned = "2024-01-07 10:00Z";

INSTANTIATE_TEST_SUITE_P(Values, Placement,
                         testing::ValuesIn(std::vector<PlacedCase>{
                             {"1", "", "number", "."},
                             {"1", "\"  \"", "number", "."},
                             {"1", "NA", "number", "."},
                             {"x", "NA", "text", "[NA]"},
                             {"x", "", "text", "."},
                             {"1", "nan", "number", "."},
                             {"1", "-Infinity", "number", "-inf"},
                             {"1", "1e+05", "number", "100000"},
                             {"1", "+.5", "number", "0.5"},
                             {"true", "FALSE", "boolean", "0"},
                             {kDay, "0001-01-01", "date", "-62135596800"},
                             {"10:00", "23:59:59.999999", "time", "86399.999999000007"},
                             {kMoment, "1970-01-01T00:00:00.5", "date and time", "0.5"},
                             {kZoned, "1970-01-01T00:00+01:30", "date and time with zone", "-5400"},
                         }));

INSTANTIATE_TEST_SUITE_P(NearMisses, Placement,
                         testing::ValuesIn(std::vector<PlacedCase>{
                             {"1234", "01234", "text", "[01234]"},
                             {"1000", "1_000", "text", "[1_000]"},
                             {"1000", "\"1,000\"", "text", "[1,000]"},
                             {"16", "0x10", "text", "[0x10]"},
                             {"5", "\" 5\"", "text", "[ 5]"},
                             {"5", "\"6 \"", "text", "[6]"},
                             {"1", "true", "text", "[true]"},
                             {"1", "unknown", "text", "[unknown]"},
                             {"1", "na", "text", "[na]"},
                             {"1", "-nan", "text", "[-nan]"},
                             {"1", "9007199254740993", "text", "[9007199254740993]"},
                             {"true", "yes", "text", "[yes]"},
                             {"true", "0", "text", "[0]"},
                             {kDay, "2024/01/07", "text", "[2024/01/07]"},
                             {kDay, "2023-02-29", "text", "[2023-02-29]"},
                             {kDay, kMoment, "text", "[2024-01-07 10:00]"},
                             {"10:00", "10:00:00 PM", "text", "[10:00:00 PM]"},
                             {"10:00", "24:00", "text", "[24:00]"},
                             {kMoment, kZoned, "text", "[2024-01-07 10:00Z]"},
                             {kMoment, "2024-13-45T99:99:99Z", "text", "[2024-13-45T99:99:99Z]"},
                             {kZoned, "2024-01-07 10:00+16", "text", "[2024-01-07 10:00+16]"},
                         }));

/// Values that differ in every row, so that the column leaves its codes early.
TEST(WidePlacement, OneTextMakesALongColumnOfNumbersOneOfTexts) {
  for (const size_t row : {size_t{0}, kCases / 2, kCases - 1}) {
    std::string text = "a\n";
    std::vector<std::string> expected;
    for (size_t i = 0; i < kCases; ++i) {
      const std::string value = i == row ? "1_000" : std::to_string(i) + ".50";
      text += value + '\n';
      expected.push_back('[' + value + ']');
    }
    std::sort(expected.begin(), expected.end());
    expected.insert(expected.begin(), "text");
    std::vector<std::string> column = columnsOfText(text).front();
    std::sort(column.begin() + 1, column.end());
    EXPECT_TRUE(column == expected) << row;
  }
}

TEST(WidePlacement, TheFirstContradictionIsNamed) {
  std::string text = "a\n";
  for (size_t i = 0; i < kCases; ++i) {
    text += i == kCases - 5 ? "1e999" : i == kCases - 2 ? "-1e999" : std::to_string(i) + ".5";
    text += '\n';
  }
  EXPECT_EQ(refusalOf(text).rfind(", line " + std::to_string(kCases - 3) + ", column a: 1e999 ", 0),
            0U);
}

}  // namespace
}  // namespace workbench
