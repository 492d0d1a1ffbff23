/// What a run read and left out, and what there is to say about its command, as plain data.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

/// A variable's cases among those that the weight did not drop, whatever the command makes of
/// user-missing values.
struct VariableCases {
  int64_t valid = 0;
  int64_t userMissing = 0;
  int64_t systemMissing = 0;
};

/// Cases counted one by one, not weighted.
struct CaseTotals {
  int64_t read = 0;
  int64_t droppedByWeight = 0;
  /// Without a missing value in any variable of the command, as the command understands missing.
  int64_t complete = 0;
  /// Sum of the weights that are not missing, to ten significant digits: the order of addition
  /// never shows.
  double weight = 0.0;
  double roundedWeight = 0.0;  ///< sum of the weights that the analysis uses
  std::vector<VariableCases> variables;
};

struct CaseReport {
  bool weighted = false;               ///< else the two sums have no meaning
  std::vector<std::string> variables;  ///< names, in the order of CaseTotals::variables
  std::vector<std::string> splitVariables;
  CaseTotals all;
  struct Group {
    std::vector<std::string> split;  ///< values as shown
    CaseTotals cases;
  };
  std::vector<Group> groups;  ///< none without split variables
};

/// One piece of advice.
struct Advice {
  std::string code;
  std::string variable;  ///< name; empty when it is about none
  std::string text;
};

}  // namespace workbench
