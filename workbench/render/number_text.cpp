#include "workbench/render/number_text.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "host/constants.h"
#include "workbench/dataset/value_text.h"

namespace workbench {
namespace {

template <typename... Arguments>
std::string printed(const char* format, Arguments... arguments) {
  std::array<char, 400> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, arguments...);
  return buffer.data();
}

}  // namespace

bool isProbabilityColumn(const LabelData& column) {
  return column.key == "One-Sided p" || column.key == "Two-Sided p";
}

std::string cellText(const TableCell& cell, bool isProbability) {
  const double value = cell.value;
  if (value == kSystemMissing) return ".";
  if (!std::isfinite(value) || cell.format == BpFormatSpec::Kind::kSigDigit) {
    return shortestNumber(value);
  }
  const double size = std::fabs(value);
  if (cell.format == BpFormatSpec::Kind::kCount) {
    return size < 1e15 ? printed("%.0f", value) : shortestNumber(value);
  }
  constexpr double kSmallest = 0.00005;
  if (isProbability && size > 0.0 && size < kSmallest) return "<0.0001";
  if (size >= 1e6) return printed("%.6g", value);
  // A value that four decimals would show as zero, although it is none.
  if (size > 0.0 && size < kSmallest) return printed("%.2e", value);
  return printed("%.4f", value);
}

}  // namespace workbench
