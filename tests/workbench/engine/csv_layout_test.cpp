#include "workbench/engine/csv_layout.h"

#include <gtest/gtest.h>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

const std::vector<std::string>& nothingMissing(const std::string&) {
  static const std::vector<std::string> none;
  return none;
}

CsvLayout layoutOf(std::string_view text, bool complete = true, char delimiter = 0) {
  return csvLayout(text, complete, delimiter, "f", nothingMissing);
}

TEST(CsvLayout, TakesTheDelimiterFromTheHeader) {
  EXPECT_EQ(layoutOf("a,b;c,d\n1,2,3\n").delimiter, ',');
  EXPECT_EQ(layoutOf("a;b\n1,5;2\n").delimiter, ';');
  EXPECT_EQ(layoutOf("\"x;y;z\",b\n1,2\n").delimiter, ',');
  EXPECT_EQ(layoutOf("a\tb\n1\t2\n").delimiter, '\t');
  EXPECT_EQ(layoutOf("a\n1\n").delimiter, ',');
  EXPECT_EQ(layoutOf("a,b\n1,2\n", true, '\t').columns.size(), 1U);
}

TEST(CsvLayout, KnowsWhatItHasSeen) {
  const CsvLayout layout = layoutOf("a,b,c\n1,1.5,x\n2, ,\n");
  EXPECT_EQ(layout.rows, 2U);
  EXPECT_EQ(layout.bytes, 13U);
  EXPECT_TRUE(layout.columns[0].whole);
  EXPECT_FALSE(layout.columns[1].whole);
  EXPECT_TRUE(layout.columns[1].blanks);
  EXPECT_EQ(layout.columns[1].form, ColumnForm::kNumber);
  EXPECT_EQ(layout.columns[2].form, ColumnForm::kString);
}

TEST(CsvLayout, AHeadMayEndAnywhere) {
  const std::string text = "a,b\n1,\"x\ny\"\n22,\xC3\xA9\n";
  for (size_t size = 4; size < text.size(); ++size) {
    EXPECT_NO_THROW(layoutOf(text.substr(0, size), false)) << size;
  }
  EXPECT_EQ(layoutOf(text.substr(0, text.size() - 3), false).rows, 1U);
}

TEST(CsvLayout, TextsForMissingValuesAreNoValues) {
  const std::vector<std::string> texts{"NA"};
  const MissingTexts missing =
      [&texts](const std::string& name) -> const std::vector<std::string>& {
    return name == "a" ? texts : nothingMissing(name);
  };
  const CsvLayout layout = csvLayout("a,b\n1,NA\nNA,1\n", true, 0, "f", missing);
  EXPECT_EQ(layout.columns[0].form, ColumnForm::kNumber);
  EXPECT_TRUE(layout.columns[0].odd);
  EXPECT_EQ(layout.columns[1].form, ColumnForm::kString);
}

TEST(CsvRecords, CountsLines) {
  CsvRecords records("a\r\n\"x\ny\",z\r\n\r\nlast", true, ',');
  ASSERT_TRUE(records.next());
  EXPECT_EQ(records.line(), 1U);
  ASSERT_TRUE(records.next());
  EXPECT_EQ(records.values(), (std::vector<std::string>{"x\ny", "z"}));
  EXPECT_EQ(records.line(), 2U);
  ASSERT_TRUE(records.next());
  EXPECT_TRUE(records.blank());
  ASSERT_TRUE(records.next());
  EXPECT_EQ(records.line(), 5U);
  EXPECT_EQ(records.values(), (std::vector<std::string>{"last"}));
  EXPECT_FALSE(records.next());
}

}  // namespace
}  // namespace workbench
