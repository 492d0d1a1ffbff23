/// The analysis object of one split group, or of the whole data set when there are no split
/// variables.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "host/data_source.h"
#include "host/messages.h"
#include "host/output.h"
#include "module/math/level.h"
#include "module/model/gathered_values.h"
#include "module/model/independent_record.h"
#include "module/model/onesample_record.h"
#include "module/model/paired_record.h"
#include "module/model/valid_specs.h"
#include "module/model/var_cat_info.h"

namespace proportions {

/// A variable of one of the two lists, with what its rows are labelled by.
struct ListedVariable {
  VarIndex index;
  const BinInfoElem& definition;
  const VarCatInfo& cats;
  const GatheredValues* gathered;  ///< of all split groups; null when nothing is gathered
};

/// The grouping variable with what its sides are labelled by.
struct Grouping {
  VarIndex index;
  const BinInfoElem& definition;
  const VarCatInfo& cats;
  const GatheredValues* midPoints;  ///< of all split groups; null when nothing is gathered
};

/// Holds what the first pass learnt, the counters and the design's records. Made before the group's
/// first pass, destroyed after the last group's second pass.
struct PRPAlgorithm {
  PRPAlgorithm(ProcedureDataSource& dataSource, BpProcedure& procedure, const PRPValidSpecs& specs);
  PRPAlgorithm(const PRPAlgorithm&) = delete;
  PRPAlgorithm& operator=(const PRPAlgorithm&) = delete;

  /// Zeroes the counters for the second pass and sets `zCrit`. Always true.
  bool computeCriticalValue();
  /// The confidence level as the interval methods take it; valid after computeCriticalValue.
  Level level() const { return makeLevel(alpha, zCrit); }
  ListedVariable firstListVariable(int32_t position) const;
  /// From the second list when there is one, else from the first.
  ListedVariable secondListVariable(int32_t position) const;
  /// Only where there is a grouping variable, after the first pass has begun.
  Grouping grouping() const;

  // Members are released in reverse order: records and settings first, then the categories, the
  // split key and, last, the two message objects. The constructor makes those two late, hence the
  // optionals.
  std::optional<ACAInpAdaptMsg> inputMessages;
  std::optional<ParserMessage> messages;
  /// Values of the user split variables in the group's first used case; empty until then.
  std::vector<double> splitKey;
  std::unique_ptr<VarCatInfo> groupCats;
  std::vector<std::unique_ptr<VarCatInfo>> secondVarCats;  ///< parallel to the second list
  std::vector<std::unique_ptr<VarCatInfo>> testVarCats;    ///< parallel to the first list

  ProcedureDataSource* dataSource;
  BpProcedure* procedure;
  const PRPValidSpecs* specs;
  const VarSpecObj* varValidSpecs;
  const CommandSettings& settings;  ///< nobody changes them during a run: all groups share them

  /// Working lists that this command leaves empty.
  std::vector<int32_t> firstWorkingIndices;
  std::vector<int32_t> secondWorkingIndices;

  bool initialDataPass = true;  ///< extremes are collected, values not yet classified
  VarIndex weightVarIndex;      ///< negative: unweighted
  bool splitFile;
  bool splitsAsRows = false;
  bool goodData = true;
  bool completeData = true;
  int32_t nAll = 0;
  int32_t nValid = 0;
  int32_t nInvalid = 0;
  double wAll = 0.0;
  double wValid = 0.0;
  double wInvalid = 0.0;
  double alpha;
  double zCrit = 0.0;

  bool needAggregation = false;
  bool needSuccessAggregation = false;
  bool needSelectAggregation = false;
  PRPAggregation* aggregation = nullptr;  ///< set by the first pass when needAggregation is true
  bool bootstrapping = false;
  bool multipleImputation = false;
  VarIndex poolingVarIndex = -1;
  int32_t poolingSampleIndex = 0;  ///< 0: base data; 1, 2, ...: resamples or imputations
  std::vector<VarIndex> userSplitIndices;

  /// Only the records of the parsed design are made.
  std::vector<PropZOneSamp> oneSampleRecords;
  std::vector<PropZPairSamp> pairedRecords;
  std::vector<PropZIndSamp> independentRecords;

 private:
  void decideAggregation();
  void findPoolingVariable();
};

}  // namespace proportions
