#include "workbench/engine/typed_values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace workbench {
namespace {

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

/// One column of a query's first chunk.
class Column {
 public:
  explicit Column(const std::string& select)
      : database_("", {}),
        type_(Statement(database_, select).columnType(0)),
        query_(database_, select),
        chunk_(query_.fetch()) {}

  std::vector<double> numbers(TypedColumn::Flaw& flaw) const {
    std::vector<double> values(chunk_.size());
    if (!type_.numbers(chunk_, 0, values.data(), flaw)) values.clear();
    return values;
  }
  /// Empty when they are none.
  std::vector<uint8_t> bytes() const {
    std::vector<uint8_t> values(chunk_.size());
    if (!type_.bytes(chunk_, 0, values.data())) values.clear();
    return values;
  }

 private:
  Database database_;
  TypedColumn type_;
  Query query_;
  Chunk chunk_;
};

std::string listOf(const std::vector<std::string>& values, const std::string& type) {
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : ", ") + value;
  return "SELECT CAST(unnest([" + list + "]) AS " + type + ")";
}

void expectNumbers(const std::string& type, const std::vector<std::string>& values,
                   const std::vector<double>& expected) {
  TypedColumn::Flaw flaw;
  const std::vector<double> found = Column(listOf(values, type)).numbers(flaw);
  ASSERT_EQ(found.size(), expected.size()) << type << ": " << flaw.value << " " << flaw.reason;
  for (size_t i = 0; i < found.size(); ++i) {
    if (std::isnan(expected[i])) {
      EXPECT_TRUE(std::isnan(found[i])) << type << " " << i;
    } else {
      EXPECT_EQ(found[i], expected[i]) << type << " " << i;
    }
  }
}

const std::vector<const char*> kWholeTypes = {"TINYINT",  "SMALLINT",  "INTEGER",  "BIGINT",
                                              "UTINYINT", "USMALLINT", "UINTEGER", "UBIGINT"};

TEST(TypedColumn, ReadsWholeNumbersOfEveryWidth) {
  for (const char* type : kWholeTypes) {
    expectNumbers(type, {"1", "NULL", "127", "0"}, {1, kNull, 127, 0});
  }
  expectNumbers("TINYINT", {"-128", "NULL"}, {-128, kNull});
  expectNumbers("INTEGER", {"-2147483648", "2147483647"}, {-2147483648.0, 2147483647.0});
  expectNumbers("UINTEGER", {"4294967295"}, {4294967295.0});
}

TEST(TypedColumn, KeepsWholeNumbersThatADoubleHoldsExactly) {
  expectNumbers("BIGINT", {"9007199254740992", "-9007199254740992", "NULL", "1"},
                {9007199254740992.0, -9007199254740992.0, kNull, 1});
  expectNumbers("BIGINT", {"9007199254740994", "-9223372036854775808"},
                {9007199254740994.0, -9223372036854775808.0});
  expectNumbers("UBIGINT", {"9007199254740991", "9223372036854775808"},
                {9007199254740991.0, 9223372036854775808.0});
}

TEST(TypedColumn, RefusesWholeNumbersThatItDoesNot) {
  for (const auto& [type, value] :
       std::vector<std::pair<std::string, std::string>>{{"BIGINT", "9007199254740993"},
                                                        {"BIGINT", "-9007199254740993"},
                                                        {"BIGINT", "9223372036854775807"},
                                                        {"UBIGINT", "9007199254740993"},
                                                        {"UBIGINT", "18446744073709551615"}}) {
    TypedColumn::Flaw flaw;
    EXPECT_TRUE(Column(listOf({"5", "NULL", value, "6"}, type)).numbers(flaw).empty()) << value;
    EXPECT_EQ(flaw.row, 2U);
    EXPECT_EQ(flaw.value, value);
  }
}

TEST(TypedColumn, FindsNullsAnywhereInAChunk) {
  const std::string select =
      "SELECT CASE WHEN i % 67 = 3 THEN NULL ELSE i % 100 END FROM range(2048) t(i)";
  TypedColumn::Flaw flaw;
  const Column column(select);
  const std::vector<double> numbers = column.numbers(flaw);
  const std::vector<uint8_t> bytes = column.bytes();
  ASSERT_EQ(numbers.size(), bytes.size());
  ASSERT_FALSE(numbers.empty());
  for (size_t i = 0; i < numbers.size(); ++i) {
    const bool missing = i % 67 == 3;
    ASSERT_EQ(std::isnan(numbers[i]), missing) << i;
    ASSERT_EQ(bytes[i], missing ? TypedColumn::kMissingByte : i % 100) << i;
    if (!missing) {
      ASSERT_EQ(numbers[i], static_cast<double>(i % 100));
    }
  }
}

TEST(TypedColumn, ReadsSmallWholeNumbersAsBytes) {
  for (const char* type : kWholeTypes) {
    EXPECT_EQ(Column(listOf({"0", "127", "NULL"}, type)).bytes(),
              (std::vector<uint8_t>{0, 127, TypedColumn::kMissingByte}))
        << type;
  }
  EXPECT_EQ(Column(listOf({"true", "false", "NULL"}, "BOOLEAN")).bytes(),
            (std::vector<uint8_t>{1, 0, TypedColumn::kMissingByte}));
}

TEST(TypedColumn, OthersAreNoBytes) {
  for (const char* type : {"SMALLINT", "INTEGER", "BIGINT", "USMALLINT", "UINTEGER", "UBIGINT"}) {
    EXPECT_TRUE(Column(listOf({"0", "128"}, type)).bytes().empty()) << type;
    EXPECT_TRUE(Column(listOf({"0", "256"}, type)).bytes().empty()) << type;
  }
  for (const char* type : {"TINYINT", "SMALLINT", "INTEGER", "BIGINT"}) {
    EXPECT_TRUE(Column(listOf({"0", "-1"}, type)).bytes().empty()) << type;
  }
  EXPECT_TRUE(Column(listOf({"1.0"}, "DOUBLE")).bytes().empty());
  EXPECT_TRUE(Column(listOf({"DATE '1970-01-02'"}, "DATE")).bytes().empty());
}

TEST(TypedColumn, ReadsFloatingPoint) {
  expectNumbers("DOUBLE", {"0.1", "NULL", "CAST('Infinity' AS DOUBLE)"},
                {0.1, kNull, std::numeric_limits<double>::infinity()});
}

}  // namespace
}  // namespace workbench
