#include "module/output/result_table.h"

#include "module/model/texts.h"
#include "module/output/labels.h"

namespace proportions {
namespace {

/// Levels of row dimensions, counted outward.
constexpr int kInnerLevel = 1;
constexpr int kOuterLevel = 2;

}  // namespace

BpString keyText(const char* text) { return {text, kCatalogueKey}; }

ResultTable::ResultTable(BpProcedure& procedure, const char* title, const char* missingNote)
    : procedure_(procedure),
      missingNote_(missingNote),
      table_(procedure.Heading().PivotTable(keyText(title), title, kTableCode)) {
  addVariablesAndStatistics(kInnerLevel);
}

ResultTable::ResultTable(BpProcedure& procedure, const char* title, const char* missingNote,
                         const BpLabel& inner)
    : procedure_(procedure),
      missingNote_(missingNote),
      table_(procedure.Heading().PivotTable(keyText(title), title, kTableCode)),
      inner_(&table_.Dimension(inner, kDimensionCode)) {
  inner_->Position(kRowAxis, kInnerLevel, 0, 0);
  addVariablesAndStatistics(kOuterLevel);
}

void ResultTable::addVariablesAndStatistics(int levelOfVariables) {
  variables_ = &table_.Dimension(keyText(texts::kVariables), kDimensionCode);
  variables_->Position(kRowAxis, levelOfVariables, 1, 0);
  statistics_ = &table_.Dimension(keyText(texts::kStatistics), kDimensionCode);
  statistics_->Position(kColumnAxis, 1, 1, 0);
}

void ResultTable::addCount(BpGroup& group, const char* label, double value) {
  group.Category(keyText(label)).Cell(BpNumber(value, procedure_.Count()));
}

void ResultTable::addStatistic(BpGroup& group, const char* label, double value) {
  group.Category(keyText(label)).Cell(BpNumber(value, procedure_.GeneralStat()));
}

void ResultTable::addNotedStatistic(BpGroup& group, const char* label, double value) {
  BpCategory& category = group.Category(keyText(label));
  category.Cell(BpNumber(value, procedure_.GeneralStat()));
  if (!isMissing(value)) return;
  BpCellNote note;
  note.text = BpCellText::Replicate(keyText(missingNote_));
  category.CellNote(note);
}

BpGroup& ResultTable::statisticsGroup(const BpLabel& label) {
  return statistics_->Group(label, kGroupCode, kGroupStyle);
}

void ResultTable::addIntervals(const IntervalRows& rows, const char* heading, double level,
                               const AddCells& addShared) {
  for (const auto& row : rows) {
    inner_->Category(keyText(row.label));
    addShared();
    addBounds(heading, level, row.result);
  }
}

void ResultTable::addTests(const TestRows& rows, const AddCells& addShared) {
  for (const auto& row : rows) {
    inner_->Category(keyText(row.label));
    addShared();
    addTestCells(row);
  }
}

void ResultTable::addBounds(const char* heading, double level, const Bounds& bounds) {
  BpGroup& group =
      statisticsGroup(NumberLabel(heading, BpNumber(level, procedure_.SigDigit(level))));
  addNotedStatistic(group, texts::kLower, bounds.lower);
  addNotedStatistic(group, texts::kUpper, bounds.upper);
}

/// The Z column is made for every test, so that the columns keep their order; a test without a
/// statistic has no cell in it.
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
