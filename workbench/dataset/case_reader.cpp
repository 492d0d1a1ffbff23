#include "workbench/dataset/case_reader.h"

#include <fmt/format.h>

#include <cmath>
#include <string_view>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/dataset/variable.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kWidestString = 32'767;

}  // namespace

CaseReader::CaseReader(std::vector<ReadColumn> columns, Weights weights, const Variable* weight,
                       std::string label)
    : columns_(std::move(columns)), weights_(weights), weight_(weight), label_(std::move(label)) {}

CaseTable CaseReader::newTable() const {
  std::vector<VarIndex> variables;
  for (const ReadColumn& column : columns_) variables.push_back(column.variable);
  CaseTable table(variables, weights_ != Weights::kNone);
  for (size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i].entry->isString()) table.declareString(i, columns_[i].entry->width);
  }
  return table;
}

void CaseReader::refuse(size_t column, size_t row, const std::string& what) const {
  // Of grouped cases nobody knows the number.
  const bool numbered = weights_ == Weights::kNone || weights_ == Weights::kRaw;
  const std::string place =
      numbered ? fmt::format(", case {}", cases_ + static_cast<int64_t>(row) + 1) : "";
  throw DataError(fmt::format("{}{}: {}: {}", label_, place, columns_[column].entry->name, what));
}

void CaseReader::add(const Chunk& chunk, CaseTable& table) {
  for (size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i].entry->isString()) {
      addStrings(chunk, i, table);
    } else {
      addNumbers(chunk, i, table);
    }
  }
  if (weights_ == Weights::kRaw) addRawWeights(chunk, table);
  if (weights_ == Weights::kCounts || weights_ == Weights::kRounded) {
    addCounts(chunk, table);
  } else {
    cases_ += static_cast<int64_t>(chunk.size());
  }
  table.setCaseCount(table.caseCount() + static_cast<int64_t>(chunk.size()));
}

void CaseReader::addNumbers(const Chunk& chunk, size_t column, CaseTable& table) const {
  const size_t count = chunk.size();
  const auto* values = chunk.data<double>(column);
  const uint64_t* validity = chunk.validity(column);
  double* out = table.extend(column, count);
  for (size_t row = 0; row < count; ++row) out[row] = normalNumber(values[row]);
  if (validity != nullptr) {
    for (size_t row = 0; row < count; ++row) {
      if (Chunk::isNull(validity, row)) out[row] = kSystemMissing;
    }
  }
  if (!columns_[column].wholeOnly) return;
  for (size_t row = 0; row < count; ++row) {
    if (std::isfinite(out[row]) && out[row] != std::trunc(out[row])) {
      refuse(column, row,
             fmt::format("{} is no whole number, though the dictionary gives the type integer.",
                         shortestNumber(out[row])));
    }
  }
}

void CaseReader::addStrings(const Chunk& chunk, size_t column, CaseTable& table) const {
  const auto* values = chunk.data<duckdb_string_t>(column);
  const uint64_t* validity = chunk.validity(column);
  for (size_t row = 0; row < chunk.size(); ++row) {
    if (Chunk::isNull(validity, row)) {
      table.addString(column, {});
      continue;
    }
    const std::string_view value = trimmed(textOf(values[row]));
    if (value.size() > kWidestString) {
      refuse(column, row,
             fmt::format("the text takes {} bytes; a string holds up to {}.", value.size(),
                         kWidestString));
    }
    if (value.find('\0') != std::string_view::npos) {
      refuse(column, row, "the text holds a zero byte; remove it.");
    }
    table.addString(column, value);
  }
}

void CaseReader::addRawWeights(const Chunk& chunk, CaseTable& table) const {
  const size_t count = chunk.size();
  double* out = table.extendWeights(count);
  const auto* values = chunk.data<double>(columns_.size());
  const uint64_t* validity = chunk.validity(columns_.size());
  for (size_t row = 0; row < count; ++row) {
    out[row] = Chunk::isNull(validity, row) ? kSystemMissing : normalWeight(*weight_, values[row]);
  }
}

void CaseReader::addCounts(const Chunk& chunk, CaseTable& table) {
  const bool weighted = weights_ == Weights::kRounded;
  const size_t first = columns_.size();
  const auto* rounded = weighted ? chunk.data<double>(first) : nullptr;
  const uint64_t* validity = weighted ? chunk.validity(first) : nullptr;
  const auto* counts = chunk.data<int64_t>(first + (weighted ? 1 : 0));
  double* out = table.extendWeights(chunk.size());
  for (size_t row = 0; row < chunk.size(); ++row) {
    cases_ += counts[row];
    const auto count = static_cast<double>(counts[row]);
    if (!weighted) {
      out[row] = count;
    } else {
      out[row] = Chunk::isNull(validity, row) ? kSystemMissing : rounded[row] * count;
    }
    if (out[row] != kSystemMissing) totalWeight_ += out[row];
  }
}

}  // namespace workbench
