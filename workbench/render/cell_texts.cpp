#include "workbench/render/cell_texts.h"

#include <array>
#include <charconv>
#include <cmath>

#include "workbench/dataset/value_text.h"

namespace workbench {
namespace {

constexpr double kLargestWhole = 1e17;  // longer counts are unreadable, and no longer exact
constexpr double kLargestFixed = 1e7;
constexpr double kSmallestFixed = 1e-4;

std::string printed(std::chars_format form, int digits, double value) {
  std::array<char, 64> buffer{};
  char* const end = buffer.data() + buffer.size();
  return {buffer.data(), std::to_chars(buffer.data(), end, value, form, digits).ptr};
}

/// Decimals that leave two significant digits of a small number.
int decimalsFor(double size) {
  return size == 0.0 || size >= 0.01 ? 3 : 1 - static_cast<int>(std::floor(std::log10(size)));
}

std::string statisticText(double value) {
  const double size = std::fabs(value);
  if (size >= kLargestFixed) return printed(std::chars_format::scientific, 3, value);
  if (size != 0.0 && size < kSmallestFixed) return printed(std::chars_format::scientific, 1, value);
  return printed(std::chars_format::fixed, decimalsFor(size), size == 0.0 ? 0.0 : value);
}

bool isPlainNumber(double value) { return value != kSystemMissing && std::isfinite(value); }

/// The columns that hold p values, by the keys of their labels.
bool holdsProbabilities(const LabelData& label) {
  return label.key == "One-Sided p" || label.key == "Two-Sided p";
}

}  // namespace

std::string numberText(double value, BpFormatSpec::Kind format) {
  if (!isPlainNumber(value) || format == BpFormatSpec::Kind::kSigDigit) {
    return shortestNumber(value);
  }
  if (format == BpFormatSpec::Kind::kGeneralStat) return statisticText(value);
  if (std::fabs(value) >= kLargestWhole || value != std::floor(value)) return shortestNumber(value);
  return printed(std::chars_format::fixed, 0, value == 0.0 ? 0.0 : value);
}

std::string probabilityText(double value) {
  if (!isPlainNumber(value)) return shortestNumber(value);
  if (value > 0.0 && value < 0.0005) return "<0.001";
  return printed(std::chars_format::fixed, 3, value == 0.0 ? 0.0 : value);
}

std::string exactNumber(double value) {
  if (value == kSystemMissing) return "";
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  return shortestNumber(value);
}

CellTexts::CellTexts(const Table& table) : table_(table) {
  for (const Dimension& dimension : table.dimensions()) {
    std::vector<bool>& leaves = isProbability_.emplace_back();
    for (int32_t leaf = 0; leaf < dimension.leafCount(); ++leaf) {
      leaves.push_back(holdsProbabilities(dimension.node(dimension.leafNode(leaf)).label));
    }
  }
}

std::string CellTexts::operator()(size_t cell) const {
  const TableCell& entry = table_.cell(cell);
  for (size_t i = 0; i < isProbability_.size(); ++i) {
    const int32_t leaf = table_.leafOf(cell, i);
    if (leaf >= 0 && isProbability_[i][static_cast<size_t>(leaf)]) {
      return probabilityText(entry.value);
    }
  }
  return numberText(entry.value, entry.format);
}

}  // namespace workbench
