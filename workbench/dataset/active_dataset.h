/// The active data set as the rest of the workbench sees it, whatever it was read from.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/data_source.h"
#include "workbench/dataset/odd_text.h"
#include "workbench/dataset/variable.h"

namespace workbench {

/// The split variable that numbers the resamples of the cases; 0 are the cases themselves.
inline constexpr const char* kSampleVariable = "$bootstrap_split";

/// Variables, cases, weight and split groups. One command at a time reads it.
class ActiveDataset {
 public:
  virtual ~ActiveDataset() = default;

  /// To be called before each command, with the variables that it may look at; weight and split
  /// variables come by themselves. No feed may be open.
  virtual void beginCommand(const std::vector<VarIndex>& /*mentioned*/) {}

  virtual int32_t variableCount() const = 0;
  /// The dictionary entry. For a string variable this may have to read the data, to know its width;
  /// after a failed read the width is 1 and failed() is true.
  virtual const Variable& variable(VarIndex index) = 0;
  /// Name, label and kind only; never reads data.
  virtual const Variable& declaration(VarIndex index) const = 0;
  /// By name, whatever the case of the letters (full Unicode case folding); an exact match wins.
  /// Negative: none.
  virtual VarIndex find(std::string_view name) const = 0;
  /// Why no command may name the variable, as a sentence without its end; empty when it may.
  virtual std::string unusableBecause(VarIndex) const { return {}; }

  virtual const std::vector<VarIndex>& splitVariables() const = 0;  ///< outermost first
  virtual VarIndex weightVariable() const = 0;                      ///< negative: unweighted
  virtual bool separateSplitLayout() const = 0;

  /// The cases from the start. Null after a failure.
  virtual std::unique_ptr<CaseFeed> openFeed() = 0;
  /// The values of the split variables in the group whose cases the newest feed delivered last.
  virtual const std::vector<SplitValue>& currentSplit() const = 0;

  /// What made a column a string variable though nearly all of its values are of another kind; null
  /// when nothing did, or when nobody knows.
  virtual const OddText* oddText(VarIndex) const { return nullptr; }

  /// True from the first read error on; `failure` then says what, where and what to do, in one or
  /// more lines.
  virtual bool failed() const = 0;
  virtual const std::string& failure() const = 0;
  /// What reading has brought from elsewhere so far, as a text for the reader; empty when nothing.
  virtual std::string cost() const { return {}; }
  /// Number of cases that the last complete pass of the running command read, dropped ones
  /// included; negative before.
  virtual int64_t caseCount() const = 0;
};

}  // namespace workbench
