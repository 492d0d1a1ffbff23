/// What a command asks for, as one value: the specification record fills it, every analysis object
/// reads it.
#pragma once

#include <vector>

#include "host/constants.h"
#include "module/math/method.h"
#include "module/model/bin_info_elem.h"

namespace proportions {

struct CommandSettings {
  Design modelType = Design::kOneSample;
  std::vector<VarIndex> testVarIndices;
  std::vector<BinInfoElem> testVarInfo;    ///< parallel to testVarIndices
  std::vector<VarIndex> secondVarIndices;  ///< paired: the second list, if there is one
  std::vector<BinInfoElem> secondVarInfo;  ///< parallel to secondVarIndices
  double testValue = 0.5;
  bool orderedPair = false;
  VarIndex groupVarIndex = -1;  ///< -1: none
  BinInfoElem groupInfo;
  double ciLevel = 95.0;  ///< percent
  /// Empty until a design subcommand has been validated: read only for the model type that was
  /// parsed.
  MethodFlags testTypes;
  MethodFlags ciTypes;
  bool scopeAnalysis = true;  ///< analysis-wise exclusion, else listwise
  bool userMissingIncluded = false;
  bool ignoreCase = false;
  bool printUpperCase = true;
  bool printCategoryOrder = true;

  /// The variable at a position of the second list when there is one, else of the first.
  VarIndex secondVariable(int32_t position) const {
    const auto& list = secondVarIndices.empty() ? testVarIndices : secondVarIndices;
    return list[static_cast<size_t>(position)];
  }
};

}  // namespace proportions
