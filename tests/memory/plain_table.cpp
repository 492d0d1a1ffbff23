#include "tests/memory/plain_table.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <unordered_map>

#include "workbench/dataset/variable.h"
#include "workbench/text/collation.h"

namespace workbench {

std::string_view PlainTable::Column::text(size_t row) const {
  const size_t begin = row == 0 ? 0 : ends[row - 1];
  return std::string_view(bytes).substr(begin, ends[row] - begin);
}

PlainTable::PlainTable(const std::vector<VarIndex>& columns, bool weighted) : weighted_(weighted) {
  for (const VarIndex variable : columns) columns_.emplace_back().variable = variable;
}

void PlainTable::addNumbers(size_t column, const double* values, size_t count) {
  std::vector<double>& words = columns_[column].words;
  words.insert(words.end(), values, values + count);
}

void PlainTable::declareString(size_t column, int32_t width) {
  columns_[column].isString = true;
  columns_[column].width = std::max(width, 1);
}

void PlainTable::addString(size_t column, std::string_view value) {
  Column& into = columns_[column];
  into.width = std::max(into.width, static_cast<int32_t>(value.size()));
  into.bytes += value;
  into.ends.push_back(into.bytes.size());
}

ColumnView PlainTable::view(size_t column) const {
  return {columns_[column].words.data(), columns_[column].stride};
}

std::vector<size_t> PlainTable::positions(const std::vector<VarIndex>& variables) const {
  std::vector<size_t> found;
  for (const VarIndex variable : variables) {
    const auto at = std::find_if(columns_.begin(), columns_.end(),
                                 [&](const Column& c) { return c.variable == variable; });
    if (at == columns_.end()) throw std::logic_error("a split variable was not read");
    found.push_back(static_cast<size_t>(at - columns_.begin()));
  }
  return found;
}

void PlainTable::finish(const std::vector<VarIndex>& splitVariables) {
  if (!splitVariables.empty() && caseCount_ > 0) {
    orderCases(positions(splitVariables));
    cutGroups(positions(splitVariables));
  }
  for (Column& column : columns_) {
    if (column.isString) padStrings(column);
  }
}

/// Numbers in the order of their split values; strings are replaced by their rank.
std::vector<double> PlainTable::sortKeys(const Column& column) const {
  const auto count = static_cast<size_t>(caseCount_);
  std::vector<double> keys(count);
  if (!column.isString) {
    // -infinity would sort before the system-missing value.
    for (size_t i = 0; i < count; ++i) {
      const double value = column.words[i];
      keys[i] = value == kSystemMissing  ? -std::numeric_limits<double>::infinity()
                : value < kSystemMissing ? kSystemMissing
                                         : value;
    }
    return keys;
  }
  std::unordered_map<std::string_view, double> ranks;
  for (size_t i = 0; i < count; ++i) ranks.emplace(column.text(i), 0.0);
  std::vector<std::string_view> values;
  for (const auto& [value, rank] : ranks) values.push_back(value);
  std::sort(values.begin(), values.end(),
            [](std::string_view a, std::string_view b) { return compareStrings(a, b) < 0; });
  for (size_t i = 0; i < values.size(); ++i) ranks[values[i]] = static_cast<double>(i);
  for (size_t i = 0; i < count; ++i) keys[i] = ranks.find(column.text(i))->second;
  return keys;
}

void PlainTable::orderCases(const std::vector<size_t>& splitColumns) {
  if (caseCount_ > std::numeric_limits<uint32_t>::max()) {
    throw std::length_error("too many cases to hold in memory");
  }
  std::vector<std::vector<double>> keys;
  for (const size_t column : splitColumns) keys.push_back(sortKeys(columns_[column]));
  const auto before = [&keys](uint32_t a, uint32_t b) {
    for (const std::vector<double>& key : keys) {
      if (key[a] != key[b]) return key[a] < key[b];
    }
    return false;
  };
  std::vector<uint32_t> order(static_cast<size_t>(caseCount_));
  std::iota(order.begin(), order.end(), 0U);
  if (std::is_sorted(order.begin(), order.end(), before)) return;
  std::stable_sort(order.begin(), order.end(), before);
  for (Column& column : columns_) permute(column, order);
  if (weighted_) {
    std::vector<double> moved(weights_.size());
    for (size_t i = 0; i < order.size(); ++i) moved[i] = weights_[order[i]];
    weights_ = std::move(moved);
  }
}

void PlainTable::permute(Column& column, const std::vector<uint32_t>& order) {
  if (!column.isString) {
    std::vector<double> moved(order.size());
    for (size_t i = 0; i < order.size(); ++i) moved[i] = column.words[order[i]];
    column.words = std::move(moved);
    return;
  }
  std::string bytes;
  bytes.reserve(column.bytes.size());
  std::vector<size_t> ends;
  ends.reserve(order.size());
  for (const uint32_t row : order) {
    bytes += column.text(row);
    ends.push_back(bytes.size());
  }
  column.bytes = std::move(bytes);
  column.ends = std::move(ends);
}

SplitValue PlainTable::splitValue(const Column& column, int64_t row) const {
  const auto index = static_cast<size_t>(row);
  if (column.isString) return std::string(column.text(index));
  return column.words[index];
}

void PlainTable::cutGroups(const std::vector<size_t>& splitColumns) {
  const auto differs = [&](int64_t row) {
    const auto index = static_cast<size_t>(row);
    return std::any_of(splitColumns.begin(), splitColumns.end(), [&](size_t position) {
      const Column& column = columns_[position];
      return column.isString ? column.text(index) != column.text(index - 1)
                             : column.words[index] != column.words[index - 1];
    });
  };
  for (int64_t row = 0; row < caseCount_; ++row) {
    if (row == 0 || differs(row)) {
      SplitGroup& group = groups_.emplace_back();
      for (const size_t column : splitColumns) {
        group.values.push_back(splitValue(columns_[column], row));
      }
    }
    groups_.back().end = row + 1;
  }
}

void PlainTable::padStrings(Column& column) {
  const int32_t words = ObsLength(column.width);
  column.stride = words;
  column.words.resize(column.ends.size() * static_cast<size_t>(words));
  for (size_t row = 0; row < column.ends.size(); ++row) {
    writeObservation(column.text(row), words,
                     column.words.data() + row * static_cast<size_t>(words));
  }
  column.bytes = std::string();
  column.ends = std::vector<size_t>();
}

}  // namespace workbench
