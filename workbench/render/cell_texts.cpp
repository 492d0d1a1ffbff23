#include "workbench/render/cell_texts.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "workbench/dataset/value_text.h"
#include "workbench/results/known_labels.h"
#include "workbench/results/number_text.h"

namespace workbench {
namespace {

constexpr int kFewestDecimals = 3;
constexpr int kMostDecimals = 6;
constexpr double kSmallestFixed = 1e-5;  // the least number with two digits among six decimals
constexpr double kLargestFixed = 1e10;
constexpr int kPercentShift = 2;

bool isShare(Quantity quantity) {
  switch (quantity) {
    case Quantity::kProportion:
    case Quantity::kDifference:
    case Quantity::kStandardError:
    case Quantity::kLower:
    case Quantity::kUpper:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::string exactNumber(double value) {
  return value == kSystemMissing ? "" : shortestNumber(value);
}

CellTexts::CellTexts(const Table& table, const RenderOptions& options)
    : table_(table),
      hasFixedDigits_(options.digits.has_value()),
      dimension_(table.dimensions().size()) {
  const std::vector<size_t> onColumns = table.displayOrder(1);
  if (!onColumns.empty()) dimension_ = onColumns.back();
  findColumns(options);
  if (!hasFixedDigits_) settleDecimals();
}

/// One column for each leaf; the bounds of an interval share theirs.
void CellTexts::findColumns(const RenderOptions& options) {
  Column plain;
  plain.decimals = options.digits.value_or(kFewestDecimals);
  columns_.push_back(plain);  // of cells without a leaf
  place_.push_back(0);
  if (dimension_ == table_.dimensions().size()) return;
  const Dimension& dimension = table_.dimensions()[dimension_];
  std::map<int32_t, size_t> ofInterval;  // by the group's node
  for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
    const DimensionNode& node = dimension.node(dimension.leafNode(leaf));
    size_t place = columns_.size();
    if (isIntervalGroup(dimension.node(node.parent).label.key)) {
      place = ofInterval.emplace(node.parent, place).first->second;
    }
    place_.push_back(place);
    if (place < columns_.size()) continue;
    Column column = plain;
    if (const auto quantity = quantityOf(node.label.key)) {
      column.isProbability = *quantity == Quantity::kOneSidedP || *quantity == Quantity::kTwoSidedP;
      column.inPercent = options.percent && isShare(*quantity);
    }
    columns_.push_back(column);
  }
}

void CellTexts::settleDecimals() {
  for (size_t cell = 0; cell < table_.cellCount(); ++cell) {
    const TableCell& entry = table_.cell(cell);
    if (entry.format != BpFormatSpec::Kind::kGeneralStat || !isPlainNumber(entry.value)) continue;
    const double size = std::fabs(entry.value);
    if (size < kSmallestFixed) continue;
    int& decimals = columns_[columnPosition(cell)].decimals;
    decimals = std::max(decimals, decimalsFor(size, kFewestDecimals, kMostDecimals));
  }
  for (Column& column : columns_) {
    if (column.inPercent) column.decimals -= kPercentShift;
  }
}

const CellTexts::Column& CellTexts::columnOf(size_t cell) const {
  return columns_[columnPosition(cell)];
}

size_t CellTexts::columnPosition(size_t cell) const {
  const int32_t leaf = table_.leafOf(cell, dimension_);
  return place_[leaf < 0 ? 0 : static_cast<size_t>(leaf) + 1];
}

std::string CellTexts::operator()(size_t cell) const {
  const TableCell& entry = table_.cell(cell);
  if (!isPlainNumber(entry.value) || entry.format == BpFormatSpec::Kind::kSigDigit) {
    return shortestNumber(entry.value);
  }
  if (entry.format == BpFormatSpec::Kind::kCount) return countText(entry.value);
  const Column& column = columnOf(cell);
  if (column.isProbability) {
    return probabilityText(entry.value, hasFixedDigits_ ? column.decimals : kFewestDecimals);
  }
  const double size = std::fabs(entry.value);
  if (size >= kLargestFixed) return exponentText(entry.value, kFewestDecimals);
  const bool isTiny = size != 0.0 && size < kSmallestFixed && !hasFixedDigits_;
  if (column.inPercent) {
    return (isTiny ? exponentText(100 * entry.value, 1)
                   : fixedText(entry.value, column.decimals, kPercentShift)) +
           '%';
  }
  return isTiny ? exponentText(entry.value, 1) : fixedText(entry.value, column.decimals);
}

}  // namespace workbench
