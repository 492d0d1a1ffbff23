/// The estimates of every imputation, gathered from the tables that a procedure shows.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "workbench/dataset/variable.h"
#include "workbench/output/document.h"
#include "workbench/pooling/rubin.h"
#include "workbench/results/result_rows.h"
#include "workbench/results/shown_subject.h"

namespace workbench {

/// One estimate, of all imputations.
struct Imputed {
  std::vector<LabelData> split;  ///< the other split variables' values, of shared tables
  ShownSplit shown;              ///< the same of tables of their own
  ShownSubject about;
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

class ImputedResults {
 public:
  /// `number` is the split variable of the imputation numbers, `position` its place among the split
  /// variables.
  ImputedResults(const Variable& number, size_t position) : number_(number), position_(position) {}

  /// Takes what a procedure shows: the estimates of its intervals and statistics, those of the
  /// original data left out.
  void read(const DocumentProcedure& procedure);

  const std::vector<ImputedTable>& tables() const { return tables_; }
  /// What an estimate is about; of a pair the label that names its variables, if there is one.
  const LabelData& subjectOf(const Imputed& estimate) const {
    return pairs_.fullest(estimate.about.subject);
  }
  /// Degrees of freedom that complete data would have; missing where the trials of both groups or
  /// measurements are not shown.
  double completeDf(const ImputedTable& table, const Imputed& estimate) const;

 private:
  ImputedTable& tableOf(const Table& table, TableKind kind);
  double numberOf(const std::string& shown) const;
  void readTable(const Table& table, TableKind kind);
  void readRow(const ResultRows& rows, size_t row, double imputation, Imputed estimate,
               ImputedTable& into);

  const Variable& number_;
  size_t position_;
  std::vector<ImputedTable> tables_;
  PairLabels pairs_;
  std::map<std::string, std::map<std::string, double>> trials_;  ///< by analysis and member
};

}  // namespace workbench
