#include "workbench/render/cell_texts.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "sample_documents.h"

namespace workbench {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Cells of one row, shown with some options.
class CellTextsOfTables : public testing::Test {
 protected:
  /// Adds a row with these cells.
  void addRow(const std::vector<SampleBench::CellAt>& cells) {
    BpPivotTable& table = pivot(procedure, "T");
    dimensionAt(table, text("Rows"), 0).Category(composite("^1", count(++rows_)));
    SampleBench::writeCells(dimensionAt(table, text("Statistics"), 1), cells);
  }
  std::vector<std::string> texts(const RenderOptions& options = {}) {
    const Table& table = *bench.document.current().tables[0];
    const CellTexts texts(table, options);
    std::vector<std::string> result;
    for (size_t cell = 0; cell < table.cellCount(); ++cell) result.push_back(texts(cell));
    return result;
  }

  SampleBench bench;
  BpProcedure procedure{"Proportions", 10};

 private:
  double rows_ = 0;
};

using Texts = std::vector<std::string>;

TEST_F(CellTextsOfTables, ThreeDecimalsWhereNothingIsSmall) {
  addRow({{"Proportion", statistic(0.37)}, {"Z", statistic(-12.34567)}, {"Trials", count(100)}});
  EXPECT_EQ(texts(), (Texts{"0.370", "-12.346", "100"}));
}

TEST_F(CellTextsOfTables, DecimalsOfAColumnAgree) {
  addRow({{"Proportion", statistic(0.5)}, {"Z", statistic(1)}});
  addRow({{"Proportion", statistic(0.0012)}, {"Z", statistic(2)}});
  addRow({{"Proportion", statistic(0)}, {"Z", statistic(3)}});
  EXPECT_EQ(texts(), (Texts{"0.5000", "1.000", "0.0012", "2.000", "0.0000", "3.000"}));
}

TEST_F(CellTextsOfTables, DecimalsOfAnIntervalAgree) {
  BpPivotTable& table = pivot(procedure, "T");
  BpGroup& bounds = dimensionAt(table, text("Statistics"), 1)
                        .Group(composite("^1% Confidence Interval", labelNumber(95)), 1, 2);
  bounds.Category(text("Lower")).Cell(statistic(0.0047));
  bounds.Category(text("Upper")).Cell(statistic(0.0111));
  EXPECT_EQ(texts(), (Texts{"0.0047", "0.0111"}));
}

TEST_F(CellTextsOfTables, WhatSixDecimalsCannotShowHasAnExponent) {
  addRow({{"Proportion", statistic(0.0000123)}, {"Z", statistic(1e-5)}});
  addRow({{"Proportion", statistic(1.26e-7)}, {"Z", statistic(9.9e-6)}});
  addRow({{"Proportion", statistic(-1e300)}, {"Z", statistic(-12345678.5)}});
  EXPECT_EQ(texts(), (Texts{"0.000012", "0.000010", "1.3e-07", "9.9e-06", "-1.000e+300",
                            "-12345678.500000"}));
}

TEST_F(CellTextsOfTables, PValuesAreKnownByTheirColumn) {
  addRow({{"Significance|One-Sided p", statistic(0)},
          {"Significance|Two-Sided p", statistic(0.0009)},
          {"Z", statistic(1e-9)}});
  EXPECT_EQ(texts(), (Texts{"<0.001", "<0.001", "1.0e-09"}));
}

TEST_F(CellTextsOfTables, DigitsAreThoseAskedFor) {
  addRow({{"Proportion", statistic(0.0625)},
          {"Z", statistic(1e-9)},
          {"Trials", count(7)},
          {"Significance|Two-Sided p", statistic(0.04999)}});
  RenderOptions options;
  options.digits = 1;
  EXPECT_EQ(texts(options), (Texts{"0.1", "0.0", "7", "0.050"}));
  options.digits = 5;
  EXPECT_EQ(texts(options), (Texts{"0.06250", "0.00000", "7", "0.04999"}));
}

TEST_F(CellTextsOfTables, SharesInPercent) {
  addRow({{"Proportion", statistic(0.308)},
          {"Difference in Proportions", statistic(-0.0042)},
          {"Asymptotic Standard Error", statistic(1e-7)},
          {"Z", statistic(1.5)},
          {"Significance|Two-Sided p", statistic(0.5)}});
  RenderOptions options;
  options.percent = true;
  EXPECT_EQ(texts(options), (Texts{"30.8%", "-0.42%", "1.0e-05%", "1.500", "0.500"}));
  options.digits = 0;
  EXPECT_EQ(texts(options), (Texts{"31%", "0%", "0%", "2", "0.500"}));
}

TEST_F(CellTextsOfTables, WhatIsNoNumber) {
  addRow({{"Proportion", statistic(kSystemMissing)},
          {"Z", statistic(kNaN)},
          {"Lower", statistic(kInfinity)},
          {"Trials", count(kSystemMissing)},
          {"Significance|Two-Sided p", statistic(-kInfinity)}});
  const Texts expected{".", "NaN", "Infinity", ".", "-Infinity"};
  EXPECT_EQ(texts(), expected);
  RenderOptions options;
  options.percent = true;
  options.digits = 2;
  EXPECT_EQ(texts(options), expected);
}

TEST(CellTexts, ExactNumbersReadBack) {
  EXPECT_EQ(exactNumber(kSystemMissing), "");
  EXPECT_EQ(exactNumber(5), "5");
  EXPECT_EQ(exactNumber(0.1), "0.1");
  EXPECT_EQ(exactNumber(100000), "100000");
  std::mt19937_64 random(20240501);
  for (int i = 0; i < 20000; ++i) {
    const uint64_t bits = random();
    double value = 0;
    static_assert(sizeof value == sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
    if (!(value >= std::numeric_limits<double>::lowest()) || value > 1.7e308) continue;
    EXPECT_EQ(std::strtod(exactNumber(value).c_str(), nullptr), value);
  }
}

}  // namespace
}  // namespace workbench
