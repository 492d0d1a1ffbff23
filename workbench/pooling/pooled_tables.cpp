#include "workbench/pooling/pooled_tables.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/output/output_document.h"
#include "workbench/output/table_builder.h"
#include "workbench/pooling/imputed_results.h"

namespace workbench {
namespace {

constexpr auto kGeneral = BpFormatSpec::Kind::kGeneralStat;
constexpr const char* kNotPooledNote = "Not pooled tests exact intervals ...";

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
    if (estimate.about.member) quantity.push_back(*estimate.about.member);
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
  ImputedResults results(session.dataset->declaration(number), position);
  DocumentProcedure& procedure = session.document->current();
  results.read(procedure);
  for (const ImputedTable& table : results.tables()) {
    std::vector<std::unique_ptr<PooledTable>> tables;
    std::map<ShownSplit, PooledTable*> byGroup;
    for (const Imputed& estimate : table.estimates) {
      PooledTable*& group = byGroup[estimate.shown];
      if (group == nullptr) {
        tables.push_back(std::make_unique<PooledTable>(table, estimate.shown, level));
        group = tables.back().get();
      }
      group->add(estimate, results.subjectOf(estimate), results.completeDf(table, estimate));
    }
    for (const auto& pooled : tables) procedure.tables.push_back(pooled->take());
  }
}

}  // namespace workbench
