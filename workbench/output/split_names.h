/// Names of split groups that stand outside of dimensions.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "workbench/dataset/variable.h"
#include "workbench/session/session.h"

namespace workbench {

/// Names the values of split variables as the categories of a dimension with all of them would be
/// named: where a value's label reads like another value or its label, these are told apart.
class SplitNames {
 public:
  /// A value that occurs. The variable is one of the session's data set; its labels are looked at
  /// once.
  void note(VarIndex variable, const SplitValue& value);
  /// The name of a value that was noted. Another one that is noted later may change it.
  std::string text(VarIndex variable, const SplitValue& value) const;
  /// The same; null when the value reads like no label.
  const std::string* toldApart(VarIndex variable, const SplitValue& value) const;

 private:
  struct Ascending {
    bool operator()(const SplitValue& a, const SplitValue& b) const {
      return compareSplitValues(a, b) < 0;
    }
  };
  using Names = std::map<SplitValue, std::string, Ascending>;
  /// The values of a variable that have a label, and those that read like one, by that text.
  using Alike = std::map<std::string, Names, std::less<>>;

  static Alike labelled(VarIndex variable);
  static void tellApart(VarIndex variable, Names& names);

  std::map<VarIndex, Alike> alike_;
};

}  // namespace workbench
