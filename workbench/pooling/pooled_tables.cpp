#include "workbench/pooling/pooled_tables.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/constants.h"
#include "workbench/dataset/value_text.h"
#include "workbench/output/output_document.h"
#include "workbench/output/table_builder.h"
#include "workbench/pooling/rubin.h"
#include "workbench/results/result_rows.h"

namespace workbench {
namespace {

constexpr auto kGeneral = BpFormatSpec::Kind::kGeneralStat;
constexpr const char* kNotPooledNote = "Not pooled tests exact intervals ...";

/// One estimate of every imputation of a group.
struct Imputed {
  std::vector<LabelData> split;  ///< the other split variables' values, of shared tables
  ShownSplit shown;              ///< the same of tables of their own
  LabelData subject;
  std::optional<LabelData> member;              ///< the group, or the measurement of a pair
  std::map<double, ImputedEstimate> estimates;  ///< by imputation number
  double trials = 0;                            ///< least of all imputations
};

/// A table of results over all imputations.
struct ImputedTable {
  LabelData title;
  TableKind kind{};
  std::vector<LabelData> splits;  ///< dimensions of the other split variables
  std::vector<Imputed> estimates;
  std::map<std::string, size_t> byKey;
};

double textNumber(const std::string& text) {
  double number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() ? number : kSystemMissing;
}

/// Reads what a procedure shows of each imputation.
class ImputationReader {
 public:
  ImputationReader(const Variable& number, size_t position)
      : number_(number), position_(position) {}

  void read(const DocumentProcedure& procedure) {
    for (const auto& table : procedure.tables) {
      const auto kind = tableKindOf(table->title().key);
      if (kind && kind->kind != ResultKind::kTests) readTable(*table, *kind);
    }
  }

  const std::vector<ImputedTable>& tables() const { return tables_; }
  /// What an estimate is about; of a pair the label that names its variables, if there is one.
  const LabelData& subjectOf(const Imputed& estimate) const {
    return estimate.subject.number ? pairs_.at(*estimate.subject.number) : estimate.subject;
  }
  /// Trials of all members of a subject: those of a pair or of both groups.
  std::vector<double> trialsOf(const Imputed& estimate) const {
    std::vector<double> trials;
    const auto found = trials_.find(analysisKey(estimate));
    if (found == trials_.end()) return trials;
    for (const auto& [member, least] : found->second) trials.push_back(least);
    return trials;
  }

 private:
  static void append(std::string& key, std::string_view part) {
    key += std::to_string(part.size());
    key += ':';
    key += part;
  }

  static std::string analysisKey(const Imputed& estimate) {
    std::string key;
    for (const LabelData& value : estimate.split) append(key, value.identity);
    for (const auto& [name, value] : estimate.shown) append(key, value);
    append(key, estimate.subject.number ? std::to_string(*estimate.subject.number)
                                        : estimate.subject.identity);
    return key;
  }

  ImputedTable& tableOf(const Table& table, TableKind kind) {
    const auto known = std::find_if(tables_.begin(), tables_.end(), [&](const ImputedTable& one) {
      return one.title.identity == table.title().identity;
    });
    if (known != tables_.end()) return *known;
    tables_.push_back({table.title(), kind, {}, {}, {}});
    return tables_.back();
  }

  /// The number that an imputation's value is shown as, or has as its label.
  double numberOf(const std::string& shown) const {
    for (const auto& [value, label] : number_.numberLabels) {
      if (label == shown) return value;
    }
    return textNumber(shown);
  }

  void readTable(const Table& table, TableKind kind) {
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
          number = value->values.empty() ? kSystemMissing : exactNumber(value->values.front());
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

  static double exactNumber(const LabelValue& value) {
    const auto* number = std::get_if<double>(&value.exact);
    return number == nullptr ? kSystemMissing : *number;
  }

  void readRow(const ResultRows& rows, size_t row, double imputation, Imputed estimate,
               ImputedTable& into) {
    const ResultSubject subject = rows.subject(row);
    if (subject.pair != nullptr) {
      estimate.subject = *subject.pair;
      if (const LabelData* member = subject.measured()) estimate.member = *member;
    } else if (subject.variable != nullptr) {
      estimate.subject = *subject.variable;
    }
    if (subject.group != nullptr) estimate.member = *subject.group;
    if (estimate.subject.number) {
      LabelData& pair =
          pairs_.try_emplace(*estimate.subject.number, estimate.subject).first->second;
      if (estimate.subject.variables.size() > pair.variables.size()) pair = estimate.subject;
    }
    std::string key = analysisKey(estimate);
    if (estimate.member) append(key, estimate.member->identity);
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
    if (!kept.member) return;
    const auto [least, isNewMember] =
        trials_[analysisKey(kept)].emplace(kept.member->identity, trials);
    if (!isNewMember) least->second = std::min(least->second, trials);
  }

  /// The variance of a proportion is p (1 - p) / n, that of a difference its standard error's
  /// square.
  static ImputedEstimate estimateOf(const ResultRows& rows, size_t row) {
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

  const Variable& number_;
  size_t position_;
  std::vector<ImputedTable> tables_;
  std::map<double, LabelData> pairs_;                            ///< by number
  std::map<std::string, std::map<std::string, double>> trials_;  ///< by analysis and member
};

double completeDf(const ImputedTable& table, const Imputed& estimate,
                  const ImputationReader& reader) {
  if (table.kind.design == Design::kOneSample || table.kind.kind == ResultKind::kStatistics) {
    return estimate.trials - 1;
  }
  const std::vector<double> trials = reader.trialsOf(estimate);
  if (trials.size() < 2) return kSystemMissing;
  if (table.kind.design == Design::kPaired) return std::min(trials[0], trials[1]) - 1;
  return trials[0] + trials[1] - 2;
}

/// Writes one table, or that of one group.
class PooledTable {
 public:
  PooledTable(const ImputedTable& table, const ShownSplit& shown, double level)
      : builder_(keyedLabel("Pooled: ^1", {table.title.text}), shown),
        level_(level),
        withWilson_(table.kind.design == Design::kOneSample),
        isDifference_(table.kind.kind == ResultKind::kIntervals && !withWilson_) {
    for (const LabelData& split : table.splits) splits_.push_back(builder_.addSplit(split));
    variables_ = builder_.addRows(keyedLabel("Variables"));
    quantities_ = builder_.addRows(keyedLabel("Quantity"));
    columns_ = builder_.addColumns(keyedLabel("Statistics"));
  }

  void add(const Imputed& estimate, const LabelData& subject, double df) {
    for (size_t i = 0; i < splits_.size(); ++i) builder_.choose(splits_[i], {estimate.split[i]});
    builder_.choose(variables_, {subject});
    std::vector<LabelData> quantity{keyedLabel(isDifference_ ? "Difference" : "Proportion")};
    if (estimate.member) quantity.push_back(*estimate.member);
    builder_.choose(quantities_, quantity);

    std::vector<ImputedEstimate> imputations;
    for (const auto& [number, one] : estimate.estimates) imputations.push_back(one);
    const PooledEstimate pooled = poolEstimates(imputations, df, level_);
    set({keyedLabel("Statistic")}, pooled.estimate);
    builder_.note({kNotPooledNote, keyedLabel(kNotPooledNote).text});
    set({keyedLabel("Within Variance")}, pooled.within);
    set({keyedLabel("Between Variance")}, pooled.between);
    set({keyedLabel("Total Variance")}, pooled.total);
    set({keyedLabel("Std. Error")}, pooled.standardError);
    set({keyedLabel("Degrees of Freedom")}, pooled.df);
    setBounds("Rubin", {pooled.lower, pooled.upper});
    if (withWilson_) setBounds("Wilson", pooledWilson(pooled, estimate.trials, level_));
    set({keyedLabel("Relative Increase in Variance")}, pooled.relativeIncrease);
    set({keyedLabel("Fraction of Missing Information")}, pooled.missingInformation);
    set({keyedLabel("Relative Efficiency")}, pooled.efficiency);
  }

  std::unique_ptr<Table> take() { return builder_.take(); }

 private:
  void set(const std::vector<LabelData>& path, double value) {
    builder_.set(columns_, path, value, kGeneral);
  }

  void setBounds(const char* group, const PooledBounds& bounds) {
    LabelData label = keyedLabel(group);
    label.number = level_;
    set({label, keyedLabel("Lower")}, bounds.lower);
    set({label, keyedLabel("Upper")}, bounds.upper);
  }

  TableBuilder builder_;
  double level_;
  bool withWilson_;
  bool isDifference_;
  std::vector<size_t> splits_;
  size_t variables_ = 0;
  size_t quantities_ = 0;
  size_t columns_ = 0;
};

}  // namespace

void addPooledTables(Session& session, size_t position, double level) {
  const VarIndex number = session.dataset->splitVariables()[position];
  ImputationReader reader(session.dataset->declaration(number), position);
  DocumentProcedure& procedure = session.document->current();
  reader.read(procedure);
  for (const ImputedTable& table : reader.tables()) {
    std::vector<std::pair<ShownSplit, std::unique_ptr<PooledTable>>> groups;
    for (const Imputed& estimate : table.estimates) {
      auto group = std::find_if(groups.begin(), groups.end(),
                                [&](const auto& one) { return one.first == estimate.shown; });
      if (group == groups.end()) {
        groups.emplace_back(estimate.shown,
                            std::make_unique<PooledTable>(table, estimate.shown, level));
        group = groups.end() - 1;
      }
      group->second->add(estimate, reader.subjectOf(estimate), completeDf(table, estimate, reader));
    }
    for (const auto& [shown, pooled] : groups) procedure.tables.push_back(pooled->take());
  }
}

}  // namespace workbench
