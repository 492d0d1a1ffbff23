#include "workbench/results/interval_scale.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "workbench/results/number_text.h"

namespace workbench {
namespace {

/// The smallest of 1, 2 and 5 times a power of ten that is not below a number.
double niceStep(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

constexpr double kLeastSpan = 1e-6;

IntervalScale scaleFrom(double low, double high, size_t mostTicks) {
  if (high - low < kLeastSpan) {
    low -= kLeastSpan;
    high += kLeastSpan;
  }
  // Rounding the ends outwards may take a step on either side.
  double step = niceStep((high - low) / static_cast<double>(mostTicks - 1));
  while (std::ceil(high / step - 1e-9) - std::floor(low / step + 1e-9) >
         static_cast<double>(mostTicks - 1)) {
    step = niceStep(step * 1.5);
  }
  const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
  return {std::floor(low / step + 1e-9) * step, std::ceil(high / step - 1e-9) * step, step,
          decimals};
}

}  // namespace

size_t IntervalScale::tickCount() const {
  return static_cast<size_t>(std::lround((high - low) / step)) + 1;
}

double IntervalScale::tick(size_t number) const { return low + static_cast<double>(number) * step; }

std::string IntervalScale::tickText(size_t number, bool percent) const {
  if (!percent) return fixedText(tick(number), decimals);
  return fixedText(tick(number), std::max(0, decimals - 2), 2) + '%';
}

bool DrawnInterval::isWhole() const {
  return isPlainNumber(lower) && isPlainNumber(upper) && isPlainNumber(estimate);
}

DrawnInterval drawnInterval(const ResultRows& rows, size_t row) {
  const bool ofProportion = rows.kind().design == Design::kOneSample;
  return {rows.value(row, ofProportion ? Quantity::kProportion : Quantity::kDifference),
          rows.value(row, Quantity::kLower), rows.value(row, Quantity::kUpper)};
}

std::optional<double> referenceOf(const ResultRows& rows, const DocumentProcedure& procedure) {
  if (rows.kind().design != Design::kOneSample) return 0.0;
  for (const auto& table : procedure.tables) {
    const auto kind = tableKindOf(table->title().key);
    if (!kind || kind->kind != ResultKind::kTests) continue;
    return ResultRows(*table, EmptyCategories::kReadable).testValue();
  }
  return std::nullopt;
}

std::optional<IntervalScale> scaleOf(const ResultRows& rows, size_t rowCount,
                                     std::optional<double> reference, size_t mostTicks) {
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (size_t row = 0; row < std::min(rowCount, rows.count()); ++row) {
    const DrawnInterval interval = drawnInterval(rows, row);
    for (const double value : {interval.estimate, interval.lower, interval.upper}) {
      if (!isPlainNumber(value)) continue;
      low = std::min(low, value);
      high = std::max(high, value);
    }
  }
  if (!(low <= high)) return std::nullopt;
  if (reference && isPlainNumber(*reference)) {
    low = std::min(low, *reference);
    high = std::max(high, *reference);
  }
  return scaleFrom(low, high, mostTicks);
}

}  // namespace workbench
