/// Names of split groups that stand outside of dimensions.
#pragma once

#include <map>
#include <string>

#include "workbench/dataset/variable.h"
#include "workbench/session/session.h"

namespace workbench {

/// Names the values of split variables as the categories of a dimension with all of them would be
/// named: where the labels of a variable give one text to several of its values, these are told
/// apart.
class SplitNames {
 public:
  /// The variable is one of the session's data set; its labels are looked at once.
  std::string text(VarIndex variable, const SplitValue& value);

 private:
  struct Ascending {
    bool operator()(const SplitValue& a, const SplitValue& b) const {
      return compareSplitValues(a, b) < 0;
    }
  };
  using Names = std::map<SplitValue, std::string, Ascending>;
  /// The values of a variable that share a text with another one, by that text.
  using Alike = std::map<std::string, Names>;

  const Alike& alikeOf(VarIndex variable);

  std::map<VarIndex, Alike> alike_;
};

}  // namespace workbench
