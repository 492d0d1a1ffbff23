/// The active data set as the rest of the workbench sees it, whatever it was read from.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/data_source.h"

namespace workbench {

/// What a variable's values are. All but strings are held as doubles: dates and date-times as
/// seconds since 1970-01-01 00:00:00, times as seconds since midnight, booleans as 0 and 1.
enum class ValueKind : uint8_t { kNumber, kBoolean, kDate, kTime, kDateTime, kString };

/// A variable's entry in the dictionary. Strings are without trailing blanks throughout.
struct Variable {
  std::string name;
  std::string label;  ///< empty: none
  ValueKind kind = ValueKind::kNumber;
  int32_t width = 0;  ///< bytes of the widest value, at least 1, for strings; 0 for all others
  std::vector<std::pair<double, std::string>> numberLabels;
  std::vector<std::pair<std::string, std::string>> stringLabels;
  std::vector<double> missingNumbers;
  double missingLow = 1.0;  ///< a range of missing numbers; low > high: none
  double missingHigh = 0.0;
  std::vector<std::string> missingStrings;

  bool isString() const { return kind == ValueKind::kString; }
  /// What a reader sees instead of the name.
  const std::string& shownName() const { return label.empty() ? name : label; }
  /// The value label, or null.
  const std::string* findLabel(double value) const;
  const std::string* findLabel(std::string_view value) const;
};

/// One value of a split variable: a number (kSystemMissing when missing) or a string without
/// trailing blanks.
using SplitValue = std::variant<double, std::string>;

/// Variables, cases, weight and split groups. One command at a time reads it.
class ActiveDataset {
 public:
  virtual ~ActiveDataset() = default;

  virtual int32_t variableCount() const = 0;
  /// The dictionary entry. For a string variable this may have to read the data, to know its width;
  /// after a failed read the width is 1 and failed() is true.
  virtual const Variable& variable(VarIndex index) = 0;
  /// Name, label and kind only; never reads data.
  virtual const Variable& declaration(VarIndex index) const = 0;
  /// By name, whatever the case of the letters (full Unicode case folding); an exact match wins.
  /// Negative: none.
  virtual VarIndex find(std::string_view name) const = 0;

  virtual const std::vector<VarIndex>& splitVariables() const = 0;  ///< outermost first
  virtual VarIndex weightVariable() const = 0;                      ///< negative: unweighted
  virtual bool separateSplitLayout() const = 0;

  /// The cases from the start. Null after a failure.
  virtual std::unique_ptr<CaseFeed> openFeed() = 0;
  /// The values of the split variables in the group whose cases the newest feed delivered last.
  virtual const std::vector<SplitValue>& currentSplit() const = 0;

  /// True from the first read error on; `failure` then says what, where and what to do, in one or
  /// more lines.
  virtual bool failed() const = 0;
  virtual const std::string& failure() const = 0;
  /// Number of cases that the last complete pass read, dropped ones included; negative before.
  virtual int64_t caseCount() const = 0;
};

}  // namespace workbench
