#include "workbench/pooling/imputed_results.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>
#include <variant>

#include "host/constants.h"

namespace workbench {
namespace {

double textNumber(const std::string& text) {
  double number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() ? number : kSystemMissing;
}

double exactNumber(const LabelData& value) {
  if (value.values.empty()) return kSystemMissing;
  const auto* number = std::get_if<double>(&value.values.front().exact);
  return number == nullptr ? kSystemMissing : *number;
}

/// What all estimates of a table's subject in a split group have in common.
std::string analysisKey(const Imputed& estimate) {
  std::string key;
  for (const LabelData& value : estimate.split) appendToKey(key, value.identity);
  for (const auto& [name, value] : estimate.shown) appendToKey(key, value);
  appendToKey(key, estimate.about.subject);
  return key;
}

/// The variance of a proportion is p (1 - p) / n, that of a difference its standard error's square.
ImputedEstimate estimateOf(const ResultRows& rows, size_t row) {
  const double difference = rows.value(row, Quantity::kDifference);
  const double error = rows.value(row, Quantity::kStandardError);
  if (rows.cell(row, Quantity::kDifference) != nullptr) {
    return {difference, IsSystemMissing(error) ? error : error * error};
  }
  const double p = rows.value(row, Quantity::kProportion);
  const double n = rows.value(row, Quantity::kTrials);
  if (IsSystemMissing(p) || !(n > 0)) return {kSystemMissing, kSystemMissing};
  return {p, p * (1 - p) / n};
}

}  // namespace

void ImputedResults::read(const DocumentProcedure& procedure) {
  for (const auto& table : procedure.tables) {
    const auto kind = tableKindOf(table->title().key);
    if (kind && kind->kind != ResultKind::kTests) readTable(*table, *kind);
  }
}

double ImputedResults::completeDf(const ImputedTable& table, const Imputed& estimate) const {
  if (table.kind.design == Design::kOneSample || table.kind.kind == ResultKind::kStatistics) {
    return estimate.trials - 1;
  }
  const auto found = trials_.find(analysisKey(estimate));
  if (found == trials_.end() || found->second.size() < 2) return kSystemMissing;
  const double first = found->second.begin()->second;
  const double second = std::next(found->second.begin())->second;
  return table.kind.design == Design::kPaired ? std::min(first, second) - 1 : first + second - 2;
}

ImputedTable& ImputedResults::tableOf(const Table& table, TableKind kind) {
  const auto known = std::find_if(tables_.begin(), tables_.end(), [&](const ImputedTable& one) {
    return one.title.identity == table.title().identity;
  });
  if (known != tables_.end()) return *known;
  tables_.push_back({table.title(), kind, {}, {}, {}});
  return tables_.back();
}

/// The number that an imputation's value is shown as, or has as its label.
double ImputedResults::numberOf(const std::string& shown) const {
  for (const auto& [value, label] : number_.numberLabels) {
    if (label == shown) return value;
  }
  return textNumber(shown);
}

void ImputedResults::readTable(const Table& table, TableKind kind) {
  ImputedTable& into = tableOf(table, kind);
  const ResultRows rows(table, EmptyCategories::kReadable);
  const size_t splits = rows.splitDimensions().size();
  if (into.splits.empty()) {
    for (size_t i = 0; i < splits; ++i) {
      if (i != position_) into.splits.push_back(rows.splitVariable(i));
    }
  }
  for (size_t row = 0; row < rows.count(); ++row) {
    if (!rows.hasCells(row)) continue;
    Imputed estimate;
    double number = kSystemMissing;
    for (size_t i = 0; i < splits; ++i) {
      const LabelData* value = rows.splitValue(row, i);
      if (value == nullptr) continue;
      if (i == position_) {
        number = exactNumber(*value);
      } else {
        estimate.split.push_back(*value);
      }
    }
    for (size_t i = 0; i < table.split().size(); ++i) {
      if (i == position_) {
        number = numberOf(table.split()[i].second);
      } else {
        estimate.shown.push_back(table.split()[i]);
      }
    }
    if (number >= 0.5) readRow(rows, row, std::floor(number + 0.5), std::move(estimate), into);
  }
}

void ImputedResults::readRow(const ResultRows& rows, size_t row, double imputation,
                             Imputed estimate, ImputedTable& into) {
  estimate.about = shownSubject(rows.subject(row));
  pairs_.learn(estimate.about.subject);
  std::string key = analysisKey(estimate);
  if (estimate.about.member) appendToKey(key, estimate.about.member->identity);
  const auto [known, isNew] = into.byKey.emplace(std::move(key), into.estimates.size());
  if (isNew) into.estimates.push_back(std::move(estimate));
  Imputed& kept = into.estimates[known->second];
  // Rows of several methods have the same estimate.
  const auto [found, isFirst] = kept.estimates.emplace(imputation, estimateOf(rows, row));
  if (!isFirst) {
    if (IsSystemMissing(found->second.variance)) found->second = estimateOf(rows, row);
    return;
  }
  const double trials = rows.value(row, Quantity::kTrials);
  if (IsSystemMissing(trials)) return;
  kept.trials = kept.estimates.size() == 1 ? trials : std::min(kept.trials, trials);
  if (!kept.about.member) return;
  const auto [least, isNewMember] =
      trials_[analysisKey(kept)].emplace(kept.about.member->identity, trials);
  if (!isNewMember) least->second = std::min(least->second, trials);
}

}  // namespace workbench
