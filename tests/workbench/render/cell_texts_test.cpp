#include "workbench/render/cell_texts.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "sample_documents.h"

namespace workbench {
namespace {

using Kind = BpFormatSpec::Kind;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(CellTexts, countsAreWholeNumbers) {
  EXPECT_EQ(numberText(0, Kind::kCount), "0");
  EXPECT_EQ(numberText(-0.0, Kind::kCount), "0");
  EXPECT_EQ(numberText(37, Kind::kCount), "37");
  EXPECT_EQ(numberText(1e15, Kind::kCount), "1000000000000000");
  EXPECT_EQ(numberText(1e300, Kind::kCount), "1e+300");
  EXPECT_EQ(numberText(2.5, Kind::kCount), "2.5");
}

TEST(CellTexts, statisticsHaveThreeDecimalsOrTwoDigits) {
  const std::pair<double, const char*> examples[] = {
      {0, "0.000"},        {-0.0, "0.000"},         {1, "1.000"},
      {0.37, "0.370"},     {0.0483, "0.048"},       {0.01, "0.010"},
      {0.0099, "0.0099"},  {0.00125, "0.0013"},     {-0.00052, "-0.00052"},
      {0.0001, "0.00010"}, {0.0000999, "1.0e-04"},  {1e-300, "1.0e-300"},
      {-1.5275, "-1.528"}, {1234.5678, "1234.568"}, {9999999, "9999999.000"},
      {1e7, "1.000e+07"},  {-1e300, "-1.000e+300"},
  };
  for (const auto& [value, expected] : examples) {
    EXPECT_EQ(numberText(value, Kind::kGeneralStat), expected);
  }
}

TEST(CellTexts, labelNumbersAreShortest) {
  EXPECT_EQ(numberText(99.9, Kind::kSigDigit), "99.9");
  EXPECT_EQ(numberText(95, Kind::kSigDigit), "95");
}

TEST(CellTexts, whatIsNoNumber) {
  for (const Kind kind : {Kind::kCount, Kind::kGeneralStat, Kind::kSigDigit}) {
    EXPECT_EQ(numberText(kSystemMissing, kind), ".");
    EXPECT_EQ(numberText(kNaN, kind), "NaN");
    EXPECT_EQ(numberText(kInfinity, kind), "Infinity");
    EXPECT_EQ(numberText(-kInfinity, kind), "-Infinity");
  }
  EXPECT_EQ(probabilityText(kSystemMissing), ".");
  EXPECT_EQ(probabilityText(kNaN), "NaN");
}

TEST(CellTexts, probabilities) {
  EXPECT_EQ(probabilityText(0.5), "0.500");
  EXPECT_EQ(probabilityText(0.0005), "0.001");
  EXPECT_EQ(probabilityText(0.00049999), "<0.001");
  EXPECT_EQ(probabilityText(1e-300), "<0.001");
  EXPECT_EQ(probabilityText(0), "0.000");
  EXPECT_EQ(probabilityText(1), "1.000");
}

TEST(CellTexts, probabilitiesAreKnownByTheirColumn) {
  SampleBench bench;
  bench.document.beginProcedure("", "");
  BpProcedure procedure("Proportions", 10);
  BpDimension& columns = dimensionAt(pivot(procedure, "T"), text("Statistics"), 1);
  SampleBench::writeCells(columns, {{"Significance|One-Sided p", statistic(1e-9)},
                                    {"Significance|Two-Sided p", statistic(1e-9)},
                                    {"Z", statistic(1e-9)},
                                    {"Trials", count(3)}});
  const CellTexts texts(*bench.document.current().tables[0]);
  EXPECT_EQ(texts(0), "<0.001");
  EXPECT_EQ(texts(1), "<0.001");
  EXPECT_EQ(texts(2), "1.0e-09");
  EXPECT_EQ(texts(3), "3");
}

TEST(CellTexts, exactNumbersReadBack) {
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
