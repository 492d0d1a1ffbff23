#include "module/output/result_table.h"

#include "module/output/labels.h"

namespace proportions {
namespace {

constexpr int kTextFlag = 1;
constexpr int kTableCode = 1;
constexpr int kDimensionCode = 2;
constexpr int kRows = 0;
constexpr int kColumns = 1;

}  // namespace

BpString keyText(const char* text) { return {text, kTextFlag}; }

ResultTable::ResultTable(PRPAlgorithm& analysis, const char* title, const char* missingNote)
    : analysis_(analysis),
      missingNote_(missingNote),
      table_(analysis.procedure->Heading().PivotTable(keyText(title), title, kTableCode)) {}

BpDimension& ResultTable::addRowDimension(const BpLabel& label) {
  BpDimension& dimension = table_.Dimension(label, kDimensionCode);
  dimension.Position(kRows, 1, 0, 0);
  return dimension;
}

void ResultTable::addVariablesAndStatistics(bool alone) {
  variables_ = &table_.Dimension(keyText(texts::kVariables), kDimensionCode);
  variables_->Position(kRows, alone ? 1 : 2, 1, 0);
  statistics_ = &table_.Dimension(keyText(texts::kStatistics), kDimensionCode);
  statistics_->Position(kColumns, 1, 1, 0);
}

void ResultTable::addCount(BpGroup& group, const char* label, double value) {
  group.Category(keyText(label)).Cell(BpNumber(value, analysis_.procedure->Count()));
}

void ResultTable::addStatistic(BpGroup& group, const char* label, double value) {
  group.Category(keyText(label)).Cell(BpNumber(value, analysis_.procedure->GeneralStat()));
}

void ResultTable::addNotedStatistic(BpGroup& group, const char* label, double value) {
  BpCategory& category = group.Category(keyText(label));
  category.Cell(BpNumber(value, analysis_.procedure->GeneralStat()));
  if (!isMissing(value)) return;
  BpCellNote note;
  note.text = BpCellText::Replicate(keyText(missingNote_));
  category.CellNote(note);
}

BpGroup& ResultTable::statisticsGroup(const BpLabel& label) {
  return statistics_->Group(label, 1, 2);
}

void ResultTable::addIntervalCells(const char* groupTemplate, const Bounds& bounds) {
  const double level = analysis_.ciLevel;
  BpGroup& group = statisticsGroup(
      numberLabel(groupTemplate, BpNumber(level, analysis_.procedure->SigDigit(level))));
  addNotedStatistic(group, texts::kLower, bounds.lower);
  addNotedStatistic(group, texts::kUpper, bounds.upper);
}

void ResultTable::addTestCells(const MethodRow<TestResult>& row) {
  if (row.isNormal) {
    addNotedStatistic(*statistics_, texts::kZ, row.result.statistic);
  } else {
    statistics_->Category(keyText(texts::kZ));
  }
  BpGroup& group = statisticsGroup(keyText(texts::kSignificance));
  addNotedStatistic(group, texts::kOneSidedP, row.result.oneSided);
  addNotedStatistic(group, texts::kTwoSidedP, row.result.twoSided);
}

}  // namespace proportions
