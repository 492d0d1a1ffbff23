/// Counts what a command reads and leaves out, while its first pass over the cases is made.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/advice/observed_column.h"
#include "workbench/dataset/case_observer.h"
#include "workbench/output/case_report.h"
#include "workbench/output/split_names.h"
#include "workbench/parser/command_facts.h"

namespace workbench {

/// A sum of many numbers that hardly depends on their order (Neumaier 1974).
class CarefulSum {
 public:
  void add(double value);
  double value() const { return sum_ + rest_; }

 private:
  double sum_ = 0.0;
  double rest_ = 0.0;
};

/// One use per run of a command. Sees each case once, whether it comes alone or counted.
class CaseTally final : public CaseObserver {
 public:
  /// `facts` may be filled until the pass begins; both outlive the collector. With `forAdvice` the
  /// values are looked at, too.
  CaseTally(ActiveDataset& dataset, const CommandFacts& facts, bool forAdvice);
  ~CaseTally() override;

  void takeCases(const CountedChunk& chunk) override;
  void endGroup() override;
  void endPass() override;

  /// True when all cases were seen.
  bool isComplete() const { return complete_; }
  /// What was counted. In a session, since values of split variables are shown as there.
  CaseReport report() const;
  /// Of the variables of the command in the order of CommandFacts::variables().
  ColumnAnswers answers(size_t variable) const { return columns_[variable].observed->answers(); }
  /// A split group as a reader sees it: "region = north, year = 2024".
  std::string groupText(size_t group) const;
  /// The sums that tell what rounding does, over the weights above 0.
  double positiveWeight() const { return positiveWeight_.value(); }
  double positiveRoundedWeight() const { return roundedWeight_; }

 private:
  struct Column {
    VarIndex index;
    std::unique_ptr<Variable> entry;
    std::unique_ptr<ObservedColumn> observed;
    bool extremesOfGroups;
    std::vector<ValueClass> classes;  // of the rows of a chunk, unless all are valid
    bool allValid = false;
  };
  struct Totals {
    int64_t read = 0;
    int64_t dropped = 0;
    int64_t complete = 0;
    CarefulSum weight;
    double rounded = 0.0;
  };

  void begin();
  ColumnQuestions questionsAbout(VarIndex index, const Variable& entry) const;
  bool isResample() const;
  void countWeights(const CountedChunk& chunk);
  void countVariables(const CountedChunk& chunk);
  void countSingle(const Column& column, size_t rows, bool userIsMissing, VariableCases& cases);
  void observeValues(const CountedChunk& chunk);
  const uint8_t* markValid(const Column& column);
  bool isMissing(const Column& column, ValueClass type) const;
  static CaseTotals shownTotals(const Totals& totals, std::vector<VariableCases> variables);
  const SplitValue& splitValue(size_t group, size_t position) const {
    return splitValues_[group * dataset_.splitVariables().size() + position];
  }

  ActiveDataset& dataset_;
  const CommandFacts& facts_;
  const bool forAdvice_;
  bool begun_ = false;
  bool complete_ = false;
  bool weighted_ = false;
  bool inGroup_ = false;
  std::vector<Column> columns_;

  // Group after group; one only without split variables.
  std::vector<Totals> groups_;
  std::vector<SplitValue> splitValues_;  // of each group one for each split variable
  SplitNames groupNames_;
  std::vector<VariableCases> variableCases_;  // of each group one for each column

  CarefulSum positiveWeight_;
  double roundedWeight_ = 0.0;

  // Of the rows of a chunk.
  bool allSingle_ = false;    // each is one case, and no weight drops any
  std::vector<double> kept_;  // cases that the weight does not drop
  double keptInAll_ = 0.0;
  std::vector<uint8_t> isKept_;
  std::vector<uint8_t> isComplete_;
  std::vector<uint8_t> marks_;
};

/// What the levels of a rule mean to a variable; those that mean nothing are left out.
std::vector<SplitValue> levelValues(const RuleFacts& rule, const Variable& variable);

}  // namespace workbench
