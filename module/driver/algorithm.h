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
#include "module/data/aggregation.h"
#include "module/data/var_cat_info.h"
#include "module/independent/record.h"
#include "module/math/interval.h"
#include "module/onesample/record.h"
#include "module/paired/record.h"
#include "module/syntax/valid_specs.h"

namespace proportions {

/// Holds a copy of every setting that the analysis reads, what the first pass learnt, the counters
/// and the design's records. Made before the group's first pass, destroyed after the last group's
/// second pass.
struct PRPAlgorithm {
  PRPAlgorithm(ProcedureDataSource& dataSource, BpProcedure& procedure, const PRPValidSpecs& specs);
  PRPAlgorithm(const PRPAlgorithm&) = delete;
  PRPAlgorithm& operator=(const PRPAlgorithm&) = delete;

  /// Zeroes the counters for the second pass and sets `zCrit`. Always true.
  bool computeCriticalValue();
  /// The confidence level as the interval methods take it; valid after computeCriticalValue.
  Level level() const { return makeLevel(alpha, zCrit); }
  /// The variable at a position of the second list when there is one, else of the first.
  VarIndex secondVariable(int32_t position) const;

  // Members are released in reverse order: records and settings first, then the categories, the
  // split key and, last, the two message objects. The constructor makes those two late, hence the
  // optionals.
  std::optional<ACAInpAdaptMsg> inputMessages;
  std::optional<ParserMessage> messages;
  /// Values of the user split variables in the group's first used case; empty until then.
  std::vector<double> splitKey;
  std::unique_ptr<VarCatInfo> groupCats;
  std::vector<std::unique_ptr<VarCatInfo>> secondVarCats;  ///< parallel to secondVarIndices
  std::vector<std::unique_ptr<VarCatInfo>> testVarCats;    ///< parallel to testVarIndices

  ProcedureDataSource* dataSource;
  BpProcedure* procedure;
  const PRPValidSpecs* specs;
  const VarSpecObj* varValidSpecs;

  int32_t modelType;
  std::vector<VarIndex> testVarIndices;
  std::vector<BinInfoElem> testVarInfo;
  std::vector<VarIndex> secondVarIndices;
  std::vector<BinInfoElem> secondVarInfo;
  double testValue;
  bool orderedPair;
  VarIndex groupVarIndex;  ///< -1: none
  BinInfoElem groupInfo;
  double ciLevel;  ///< percent
  MethodFlags testTypes;
  MethodFlags ciTypes;
  bool ignoreCase;
  bool scopeAnalysis;
  bool userMissingIncluded;
  /// Working lists that this command leaves empty.
  std::vector<int32_t> firstWorkingIndices;
  std::vector<int32_t> secondWorkingIndices;
  bool printUpperCase;
  bool printCategoryOrder;

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
